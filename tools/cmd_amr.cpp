// vsps amr decode IN OUT: GSM-AMR (AMR-NB) decoding of the standard's serial
// bit-stream (250 16-bit words a frame) or an RFC 4867 storage-format file
// (.amr) to 8 kHz audio (.wav, else raw 16-bit little-endian PCM).
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "tools/codec_io.h"
#include "tools/commands.h"
#include "vsps_codecs.h"

namespace vsps::tool {
namespace {

bool ends_with(const std::string& s, const char* suffix) {
  const std::size_t n = std::strlen(suffix);
  return s.size() >= n && s.compare(s.size() - n, n, suffix) == 0;
}

// One decoded frame from either format: rx type, mode (-1: previous), bits.
struct Frame {
  int rx = 0, mode = 0;
  Vsp8u bits[244] = {};
};

int decode(const std::string& in, const std::string& out, FILE* err) {
  std::vector<uint8_t> data;
  if (!read_bytes(in, &data, err)) return 1;
  const bool storage = ends_with(in, ".amr") || (data.size() >= 5 && std::memcmp(data.data(), "#!AMR", 5) == 0);
  std::vector<Frame> frames;
  if (storage) {
    if (data.size() < 6 || std::memcmp(data.data(), "#!AMR\n", 6) != 0) {
      std::fprintf(err, "vsps: %s: not an AMR-NB storage file (header is not #!AMR)\n", in.c_str());
      return 1;
    }
    for (std::size_t pos = 6; pos < data.size();) {
      const int n = static_cast<int>(frames.size());
      int bytes = 0;
      if (vspscodecGsmAmrStorageFrameSize(data[pos], &bytes) != vspStsNoErr) {
        std::fprintf(err, "vsps: %s: frame %d: unknown frame type %d\n", in.c_str(), n, (data[pos] >> 3) & 15);
        return 1;
      }
      if (pos + static_cast<std::size_t>(bytes) > data.size()) {
        std::fprintf(err, "vsps: %s: frame %d is truncated\n", in.c_str(), n);
        return 1;
      }
      Frame f;
      if (vspscodecGsmAmrStorageRead(&data[pos], &f.rx, &f.mode, f.bits) != vspStsNoErr) return 1;
      frames.push_back(f);
      pos += static_cast<std::size_t>(bytes);
    }
  } else {
    const std::size_t n = data.size() / 500;
    if (data.size() % 500 != 0) {
      std::fprintf(err, "vsps: %s: frame %zu is truncated (%zu of 500 bytes)\n", in.c_str(), n, data.size() % 500);
      return 1;
    }
    for (std::size_t k = 0; k < n; ++k) {
      Vsp16s words[250];
      for (int i = 0; i < 250; ++i)
        words[i] = static_cast<Vsp16s>(data[500 * k + 2 * i] | (data[500 * k + 2 * i + 1] << 8));
      Frame f;
      if (vspscodecGsmAmrSerialRead(words, &f.rx, &f.mode, f.bits) != vspStsNoErr) {
        std::fprintf(err, "vsps: %s: frame %zu: unknown frame type %d or mode %d\n", in.c_str(), k, words[0],
                     words[245]);
        return 1;
      }
      frames.push_back(f);
    }
  }
  int size = 0;
  vspscodecGsmAmrDecoderGetSize(&size);
  std::vector<uint64_t> mem((static_cast<std::size_t>(size) + 7) / 8);
  vspscodecGsmAmrDecoderInit(mem.data());
  std::vector<int16_t> pcm(frames.size() * 160);
  for (std::size_t k = 0; k < frames.size(); ++k) {
    const VspStatus st = vspscodecGsmAmrDecode(mem.data(), frames[k].rx, frames[k].mode, frames[k].bits, &pcm[160 * k]);
    if (st != vspStsNoErr) {
      std::fprintf(err, "vsps: %s: frame %zu: decoder status %d\n", in.c_str(), k, static_cast<int>(st));
      return 1;
    }
  }
  return write_pcm(out, pcm, err) ? 0 : 1;
}

}  // namespace

const CommandSpec kAmrSpec = {
    "amr",
    "encode|decode [options] IN OUT",
    "GSM-AMR codec: .amr (RFC 4867) or the standard's serial bit-stream, audio .wav or raw 16-bit PCM",
    {{"--mode", "KBPS", "encode: 4.75, 5.15, 5.9, 6.7, 7.4, 7.95, 10.2 or 12.2"},
     {"--mode-file", "FILE", "encode: one mode name (MR475 .. MR122) per frame"},
     {"--dtx", nullptr, "encode: discontinuous transmission"},
     {"--vad", "1|2", "encode with --dtx: VAD option"}}};

int cmd_amr(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kAmrSpec, args, &opt, out, err); status >= 0) return status;
  const auto& pos = opt.positional;
  if (!pos.empty() && pos[0] == "decode") {
    if (pos.size() != 3) {
      std::fprintf(err, "vsps: amr decode needs IN and OUT\n");
      return 2;
    }
    if (!output_names_no_input(pos[2], pos[1], err)) return 1;
    return decode(pos[1], pos[2], err);
  }
  if (!pos.empty() && pos[0] == "encode") {
    std::fprintf(err, "vsps: amr encode is not available in this build (decoder only)\n");
    return 1;
  }
  std::fprintf(err, "vsps: amr needs encode or decode\n");
  return 2;
}

}  // namespace vsps::tool
