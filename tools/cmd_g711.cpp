// "vsps g711 encode|decode --law a|u IN OUT": G.711 compression of 16-bit
// PCM (raw little-endian, or WAV at 8000 Hz) into code words, and back.
#include "tools/codec_io.h"
#include "tools/commands.h"
#include "vsps_codecs.h"

namespace vsps::tool {

const CommandSpec kG711Spec = {
    "g711",
    "encode|decode --law a|u IN OUT [options]",
    "G.711 compression of 16-bit PCM into code words, or expansion back",
    {{"--law", "a|u", "A-law or mu-law (required)"},
     {"--container", "bytes|words", "code words one per byte (default) or per 16-bit word"}}};

int cmd_g711(const Args& args, FILE* stdOut, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kG711Spec, args, &opt, stdOut, err); status >= 0) return status;
  if (opt.positional.size() != 3 || (opt.positional[0] != "encode" && opt.positional[0] != "decode")) {
    std::fprintf(err, "vsps: g711 needs encode|decode, an input and an output file\n");
    return 2;
  }
  const int law = parse_law(opt.get("--law"), false, err);
  bool words = false;
  if (law < 0 || !parse_container(opt.get("--container"), &words, err)) return 2;
  const std::string& in = opt.positional[1];
  const std::string& out = opt.positional[2];
  if (!output_names_no_input(out, in, err)) return 1;
  if (opt.positional[0] == "encode") {
    std::vector<int16_t> pcm;
    if (!read_pcm(in, &pcm, err)) return 1;
    std::vector<uint8_t> codes(pcm.size());
    if (!pcm.empty() &&
        vspscodecG711Encode(law, pcm.data(), static_cast<int>(pcm.size()), codes.data()) != vspStsNoErr) {
      std::fprintf(err, "vsps: library error in the G.711 encoder\n");
      return 1;
    }
    return write_codes(out, words, codes, err) ? 0 : 1;
  }
  std::vector<uint8_t> codes;
  if (!read_codes(in, words, 255, &codes, err)) return 1;
  std::vector<int16_t> pcm(codes.size());
  if (!codes.empty() &&
      vspscodecG711Decode(law, codes.data(), static_cast<int>(codes.size()), pcm.data()) != vspStsNoErr) {
    std::fprintf(err, "vsps: library error in the G.711 decoder\n");
    return 1;
  }
  return write_pcm(out, pcm, err) ? 0 : 1;
}

}  // namespace vsps::tool
