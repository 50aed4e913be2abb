// "vsps gsmfr encode IN OUT" and "vsps gsmfr decode IN OUT": GSM 06.10 full
// rate through the codec driver. PCM is 8 kHz (raw 16-bit little-endian, or
// .wav); coded files are .gsm (33-octet frames) or .cod (76 16-bit
// little-endian parameter words per frame).
#include <vector>

#include "tools/commands.h"
#include "tools/pcm_io.h"
#include "vsps_codecs.h"

namespace vsps::tool {

namespace {

constexpr int kGsmfrRate = 8000;

enum class Coded { Gsm, Cod, Unknown };
Coded coded_format(const std::string& path) {
  if (has_suffix(path, ".gsm")) return Coded::Gsm;
  if (has_suffix(path, ".cod")) return Coded::Cod;
  return Coded::Unknown;
}

int encode(const std::string& in, const std::string& outPath, Coded fmt, FILE* err) {
  std::vector<int16_t> pcm;
  if (!read_pcm(in, kGsmfrRate, &pcm, err)) return 1;
  if (pcm.size() % vspscodecGsmfrFrame != 0) {
    std::fprintf(err, "vsps: %s: truncated last frame: %zu samples left over (frames are %d samples)\n", in.c_str(),
                 pcm.size() % vspscodecGsmfrFrame, vspscodecGsmfrFrame);
    return 1;
  }
  int size = 0;
  vspscodecGsmfrEncoderGetSize(&size);
  std::vector<uint64_t> mem((static_cast<std::size_t>(size) + 7) / 8);
  auto* enc = reinterpret_cast<VspscodecGsmfrEncoder*>(mem.data());
  vspscodecGsmfrEncoderInit(enc);
  const std::size_t frameBytes = fmt == Coded::Gsm ? vspscodecGsmfrPackedBytes : vspscodecGsmfrCodBytes;
  const std::size_t frames = pcm.size() / vspscodecGsmfrFrame;
  std::vector<uint8_t> coded(frames * frameBytes);
  for (std::size_t f = 0; f < frames; ++f) {
    Vsp16s params[vspscodecGsmfrParams];
    VspStatus st = vspscodecGsmfrEncoderEncode(enc, pcm.data() + f * vspscodecGsmfrFrame, params);
    if (st == vspStsNoErr)
      st = fmt == Coded::Gsm ? vspscodecGsmfrPack(params, coded.data() + f * frameBytes)
                             : vspscodecGsmfrToCod(params, coded.data() + f * frameBytes);
    if (st != vspStsNoErr) {
      std::fprintf(err, "vsps: library error %d in frame %zu\n", st, f);
      return 1;
    }
  }
  return write_octets(outPath, coded, err) ? 0 : 1;
}

int decode(const std::string& in, Coded fmt, const std::string& outPath, FILE* err) {
  std::vector<uint8_t> coded;
  if (!read_octets(in, &coded, err)) return 1;
  if (fmt == Coded::Cod && coded.size() % 2 != 0) {
    std::fprintf(err, "vsps: %s: odd number of bytes (%zu) for 16-bit parameter words\n", in.c_str(), coded.size());
    return 1;
  }
  const std::size_t frameBytes = fmt == Coded::Gsm ? vspscodecGsmfrPackedBytes : vspscodecGsmfrCodBytes;
  if (coded.size() % frameBytes != 0) {
    std::fprintf(err, "vsps: %s: truncated last frame: %zu bytes left over (frames are %zu bytes)\n", in.c_str(),
                 coded.size() % frameBytes, frameBytes);
    return 1;
  }
  int size = 0;
  vspscodecGsmfrDecoderGetSize(&size);
  std::vector<uint64_t> mem((static_cast<std::size_t>(size) + 7) / 8);
  auto* dec = reinterpret_cast<VspscodecGsmfrDecoder*>(mem.data());
  vspscodecGsmfrDecoderInit(dec);
  const std::size_t frames = coded.size() / frameBytes;
  std::vector<int16_t> pcm(frames * vspscodecGsmfrFrame);
  for (std::size_t f = 0; f < frames; ++f) {
    const uint8_t* src = coded.data() + f * frameBytes;
    Vsp16s params[vspscodecGsmfrParams];
    if (fmt == Coded::Gsm && vspscodecGsmfrUnpack(src, params) != vspStsNoErr) {
      std::fprintf(err, "vsps: %s: frame %zu: invalid GSM frame signature 0x%X (expected 0xD)\n", in.c_str(), f,
                   src[0] >> 4);
      return 1;
    }
    if (fmt == Coded::Cod && vspscodecGsmfrFromCod(src, params) != vspStsNoErr) {
      std::fprintf(err, "vsps: %s: frame %zu: a parameter word lies outside its field\n", in.c_str(), f);
      return 1;
    }
    const VspStatus st = vspscodecGsmfrDecoderDecode(dec, params, pcm.data() + f * vspscodecGsmfrFrame);
    if (st != vspStsNoErr) {
      std::fprintf(err, "vsps: library error %d in frame %zu\n", st, f);
      return 1;
    }
  }
  return write_pcm(outPath, kGsmfrRate, pcm, err) ? 0 : 1;
}

}  // namespace

const CommandSpec kGsmfrSpec = {"gsmfr",
                                "encode|decode IN OUT",
                                "GSM 06.10 full rate: 8 kHz PCM (raw or .wav) <-> .gsm (33-octet frames) or .cod",
                                {}};

int cmd_gsmfr(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kGsmfrSpec, args, &opt, out, err); status >= 0) return status;
  if (opt.positional.size() != 3 || (opt.positional[0] != "encode" && opt.positional[0] != "decode")) {
    std::fprintf(err, "vsps: gsmfr needs encode|decode IN OUT\n");
    return 2;
  }
  const bool enc = opt.positional[0] == "encode";
  const std::string& in = opt.positional[1];
  const std::string& outPath = opt.positional[2];
  const Coded fmt = coded_format(enc ? outPath : in);
  if (fmt == Coded::Unknown) {
    std::fprintf(err, "vsps: gsmfr: the coded file %s must end in .gsm (33-octet frames) or .cod (76 words)\n",
                 (enc ? outPath : in).c_str());
    return 2;
  }
  if (!output_differs_from_input(outPath, in, err)) return 1;
  return enc ? encode(in, outPath, fmt, err) : decode(in, fmt, outPath, err);
}

}  // namespace vsps::tool
