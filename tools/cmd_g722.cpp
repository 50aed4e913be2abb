// "vsps g722 encode IN OUT" and "vsps g722 decode [--mode 1|2|3] IN OUT":
// G.722 through the codec driver. PCM is 16 kHz (raw 16-bit little-endian,
// or .wav); the coded file holds one octet per sample pair.
#include <vector>

#include "tools/commands.h"
#include "tools/pcm_io.h"
#include "vsps_codecs.h"

namespace vsps::tool {

namespace {

constexpr int kRate = 16000;

// Runs the driver over the whole file in one call per block.
template <class Object>
std::vector<uint64_t> object_memory(VspStatus (*size_fn)(int*)) {
  int size = 0;
  size_fn(&size);
  return std::vector<uint64_t>((static_cast<std::size_t>(size) + 7) / 8);
}

int encode(const std::string& in, const std::string& out, FILE* err) {
  std::vector<int16_t> pcm;
  if (!read_pcm(in, kRate, &pcm, err)) return 1;
  if (pcm.size() % 2 != 0) {
    std::fprintf(err, "vsps: %s: truncated last frame: %zu samples, G.722 codes sample pairs\n", in.c_str(),
                 pcm.size());
    return 1;
  }
  std::vector<uint8_t> coded(pcm.size() / 2);
  if (!pcm.empty()) {
    auto mem = object_memory<VspscodecG722Encoder>(vspscodecG722EncoderGetSize);
    auto* enc = reinterpret_cast<VspscodecG722Encoder*>(mem.data());
    VspStatus st = vspscodecG722EncoderInit(enc);
    if (st == vspStsNoErr) st = vspscodecG722EncoderEncode(enc, pcm.data(), static_cast<int>(pcm.size()), coded.data());
    if (st != vspStsNoErr) {
      std::fprintf(err, "vsps: library error %d\n", st);
      return 1;
    }
  }
  return write_octets(out, coded, err) ? 0 : 1;
}

int decode(const std::string& in, const std::string& out, int mode, FILE* err) {
  std::vector<uint8_t> coded;
  if (!read_octets(in, &coded, err)) return 1;
  std::vector<int16_t> pcm(coded.size() * 2);
  if (!coded.empty()) {
    auto mem = object_memory<VspscodecG722Decoder>(vspscodecG722DecoderGetSize);
    auto* dec = reinterpret_cast<VspscodecG722Decoder*>(mem.data());
    VspStatus st = vspscodecG722DecoderInit(dec, mode);
    if (st == vspStsNoErr)
      st = vspscodecG722DecoderDecode(dec, coded.data(), static_cast<int>(coded.size()), pcm.data());
    if (st != vspStsNoErr) {
      std::fprintf(err, "vsps: library error %d\n", st);
      return 1;
    }
  }
  return write_pcm(out, kRate, pcm, err) ? 0 : 1;
}

}  // namespace

const CommandSpec kG722Spec = {
    "g722",
    "encode|decode [--mode 1|2|3] IN OUT",
    "G.722 64/56/48 kbit/s: 16 kHz PCM (raw or .wav) <-> one octet per sample pair",
    {{"--mode", "1|2|3", "decoder: 1 = 64 kbit/s (default), 2 = 56, 3 = 48 (low octet bits ignored)"}}};

int cmd_g722(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kG722Spec, args, &opt, out, err); status >= 0) return status;
  const bool shape = opt.positional.size() == 3 && (opt.positional[0] == "encode" || opt.positional[0] == "decode");
  if (!shape) {
    std::fprintf(err, "vsps: g722 needs encode IN OUT or decode [--mode 1|2|3] IN OUT\n");
    return 2;
  }
  const bool enc = opt.positional[0] == "encode";
  int mode = 1;
  if (const std::string* m = opt.get("--mode")) {
    if (enc) {
      std::fprintf(err, "vsps: --mode applies to g722 decode\n");
      return 2;
    }
    if (*m != "1" && *m != "2" && *m != "3") {
      std::fprintf(err, "vsps: --mode takes 1 (64 kbit/s), 2 (56) or 3 (48), not %s\n", m->c_str());
      return 2;
    }
    mode = (*m)[0] - '0';
  }
  if (!output_differs_from_input(opt.positional[2], opt.positional[1], err)) return 1;
  return enc ? encode(opt.positional[1], opt.positional[2], err)
             : decode(opt.positional[1], opt.positional[2], mode, err);
}

}  // namespace vsps::tool
