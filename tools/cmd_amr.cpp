// vsps amr encode|decode: GSM-AMR (AMR-NB) coding of 8 kHz audio (.wav, else
// raw 16-bit little-endian PCM) into the standard's serial bit-stream (250
// 16-bit words a frame) or an RFC 4867 storage-format file (.amr), and back.
#include <cstdint>
#include <cstring>
#include <fstream>
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

// Mode index 0..7 from a rate name ("4.75" .. "12.2") or a mode-file name
// ("MR475" .. "MR122"); -1 when unknown.
int mode_index(const std::string& name) {
  static const char* const rates[8] = {"4.75", "5.15", "5.9", "6.7", "7.4", "7.95", "10.2", "12.2"};
  static const char* const names[8] = {"MR475", "MR515", "MR59", "MR67", "MR74", "MR795", "MR102", "MR122"};
  for (int i = 0; i < 8; ++i)
    if (name == rates[i] || name == names[i]) return i;
  return -1;
}

// The mode of every frame: the constant mode, or the mode file's lines
// (used in turn; the file must have a line for every frame).
bool frame_modes(const Options& opt, std::size_t frames, std::vector<int>* modes, FILE* err) {
  const std::string* mode = opt.get("--mode");
  const std::string* file = opt.get("--mode-file");
  if ((mode == nullptr) == (file == nullptr)) {
    std::fprintf(err, "vsps: amr encode needs exactly one of --mode and --mode-file\n");
    return false;
  }
  if (mode != nullptr) {
    const int m = mode_index(*mode);
    if (m < 0) {
      std::fprintf(err, "vsps: amr encode: unknown mode %s (4.75, 5.15, 5.9, 6.7, 7.4, 7.95, 10.2 or 12.2)\n",
                   mode->c_str());
      return false;
    }
    modes->assign(frames, m);
    return true;
  }
  std::ifstream f(*file);
  if (!f) {
    std::fprintf(err, "vsps: %s: cannot open\n", file->c_str());
    return false;
  }
  std::string line;
  for (int n = 1; modes->size() < frames && std::getline(f, line); ++n) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t')) line.pop_back();
    if (line.empty()) continue;
    const int m = mode_index(line);
    if (m < 0) {
      std::fprintf(err, "vsps: %s: line %d: unknown mode %s (MR475 .. MR122)\n", file->c_str(), n, line.c_str());
      return false;
    }
    modes->push_back(m);
  }
  if (modes->size() < frames) {
    std::fprintf(err, "vsps: %s: %zu modes for %zu frames\n", file->c_str(), modes->size(), frames);
    return false;
  }
  return true;
}

int encode(const Options& opt, const std::string& in, const std::string& out, FILE* err) {
  const bool dtx = opt.has("--dtx");
  int vad = 1;
  if (const std::string* v = opt.get("--vad")) {
    if (!dtx || (*v != "1" && *v != "2")) {
      std::fprintf(err, "vsps: amr encode: --vad takes 1 or 2, with --dtx\n");
      return 2;
    }
    vad = *v == "1" ? 1 : 2;
  }
  std::vector<int16_t> pcm;
  if (!read_pcm(in, &pcm, err)) return 1;
  const std::size_t frames = pcm.size() / 160;
  if (pcm.size() % 160 != 0)
    std::fprintf(err, "vsps: warning: %s: the last %zu samples (a partial frame) are dropped\n", in.c_str(),
                 pcm.size() % 160);
  std::vector<int> modes;
  if (!frame_modes(opt, frames, &modes, err)) return 2;
  int size = 0;
  vspscodecGsmAmrEncoderGetSize(&size);
  std::vector<uint64_t> mem((static_cast<std::size_t>(size) + 7) / 8);
  if (vspscodecGsmAmrEncoderInit(mem.data(), dtx ? 1 : 0, vad) != vspStsNoErr) return 1;
  const bool storage = ends_with(out, ".amr");
  std::vector<uint8_t> bytes;
  if (storage) bytes = {'#', '!', 'A', 'M', 'R', '\n'};
  for (std::size_t k = 0; k < frames; ++k) {
    Vsp8u bits[244];
    int tx = 0;
    VspStatus st = vspscodecGsmAmrEncode(mem.data(), modes[k], &pcm[160 * k], &tx, bits);
    if (st == vspStsNoErr && storage) {
      Vsp8u frame[32];
      int n = 0;
      st = vspscodecGsmAmrStorageWrite(tx, modes[k], bits, frame, &n);
      bytes.insert(bytes.end(), frame, frame + n);
    } else if (st == vspStsNoErr) {
      Vsp16s words[250];
      st = vspscodecGsmAmrSerialWrite(tx, modes[k], bits, words);
      for (const Vsp16s w : words) {
        bytes.push_back(static_cast<uint8_t>(w & 0xFF));
        bytes.push_back(static_cast<uint8_t>((w >> 8) & 0xFF));
      }
    }
    if (st != vspStsNoErr) {
      std::fprintf(err, "vsps: %s: frame %zu: encoder status %d\n", in.c_str(), k, static_cast<int>(st));
      return 1;
    }
  }
  return write_bytes(out, bytes, err) ? 0 : 1;
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
    if (pos.size() != 3) {
      std::fprintf(err, "vsps: amr encode needs IN and OUT\n");
      return 2;
    }
    if (!output_names_no_input(pos[2], pos[1], err)) return 1;
    return encode(opt, pos[1], pos[2], err);
  }
  std::fprintf(err, "vsps: amr needs encode or decode\n");
  return 2;
}

}  // namespace vsps::tool
