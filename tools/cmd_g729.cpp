// vsps g729 encode|decode [--annex a] [--dtx] [--format itu|rtp] IN OUT:
// the G.729 codec of the companion library over files. Audio: WAV (8 kHz
// mono 16-bit) when the name ends in .wav, raw 16-bit little-endian PCM
// otherwise. Bit-streams: the ITU serial format, or RTP payloads (RFC 3551)
// each preceded by a one-octet length with --format rtp.
#include <cstdint>
#include <cstdio>
#include <vector>

#include "tools/codec_io.h"
#include "tools/commands.h"
#include "tools/options.h"
#include "tools/output_file.h"
#include "tools/progress.h"
#include "tools/wav_io.h"
#include "vsps_codecs.h"

namespace vsps::tool {

namespace {

constexpr int kG729Frame = 80;
constexpr int kG729Rate = 8000;

std::vector<int16_t> words_of(const std::vector<uint8_t>& b) {
  std::vector<int16_t> w(b.size() / 2);
  for (std::size_t i = 0; i < w.size(); ++i) w[i] = static_cast<int16_t>(b[2 * i] | b[2 * i + 1] << 8);
  return w;
}

void append_words(std::vector<uint8_t>* b, const int16_t* w, int n) {
  for (int i = 0; i < n; ++i) {
    b->push_back(static_cast<uint8_t>(w[i] & 0xff));
    b->push_back(static_cast<uint8_t>((w[i] >> 8) & 0xff));
  }
}

bool read_audio(const std::string& path, std::vector<int16_t>* pcm, FILE* err) {
  if (is_wav_name(path)) {
    WavAudio wav;
    if (!load_wav(path, {kG729Rate}, "G.729 needs 8 kHz", &wav, err)) return false;
    *pcm = std::move(wav.samples);
    return true;
  }
  std::vector<uint8_t> b;
  if (!read_bytes(path, &b, err)) return false;
  *pcm = words_of(b);
  return true;
}

bool write_audio(const std::string& path, const std::vector<int16_t>& pcm, FILE* err) {
  if (is_wav_name(path)) {
    std::string error;
    if (!write_wav(path, kG729Rate, pcm, &error)) {
      std::fprintf(err, "vsps: %s\n", error.c_str());
      return false;
    }
    return true;
  }
  std::vector<uint8_t> b;
  append_words(&b, pcm.data(), static_cast<int>(pcm.size()));
  return write_bytes(path, b, err);
}

// Reads every frame of a bit-stream file; false with the frame number on a
// malformed frame.
bool read_frames(const std::string& path, bool rtp, std::vector<VspsG729Frame>* frames, FILE* err) {
  std::vector<uint8_t> b;
  if (!read_bytes(path, &b, err)) return false;
  if (rtp) {
    for (std::size_t pos = 0; pos < b.size();) {
      const int n = b[pos];
      VspsG729Frame f{};
      if (pos + 1 + static_cast<std::size_t>(n) > b.size()) {
        std::fprintf(err, "vsps: %s: frame %zu is truncated and dropped\n", path.c_str(), frames->size());
        return true;
      }
      if (vspscodecG729RtpRead(b.data() + pos + 1, n, &f) != vspStsNoErr) {
        std::fprintf(err, "vsps: %s: frame %zu has a payload of %d octets (10, 2 or 0 expected)\n", path.c_str(),
                     frames->size(), n);
        return false;
      }
      frames->push_back(f);
      pos += 1 + static_cast<std::size_t>(n);
    }
    return true;
  }
  if (b.size() % 2 != 0) std::fprintf(err, "vsps: %s: odd byte count, last byte ignored\n", path.c_str());
  const std::vector<int16_t> w = words_of(b);
  for (std::size_t pos = 0; pos < w.size();) {
    VspsG729Frame f{};
    int used = 0;
    const VspStatus st = vspscodecG729SerialRead(w.data() + pos, static_cast<int>(w.size() - pos), &f, &used);
    if (st == vspStsSizeErr) {  // a cut last frame: the whole frames before it are decoded
      std::fprintf(err, "vsps: %s: frame %zu is truncated and dropped\n", path.c_str(), frames->size());
      return true;
    }
    if (st != vspStsNoErr) {
      std::fprintf(err, "vsps: %s: frame %zu: bad bit count or bit word\n", path.c_str(), frames->size());
      return false;
    }
    if (w[pos] != 0x6B21)
      std::fprintf(err, "vsps: %s: frame %zu: bad sync word 0x%04X, decoded as a lost frame\n", path.c_str(),
                   frames->size(), static_cast<unsigned>(static_cast<uint16_t>(w[pos])));
    frames->push_back(f);
    pos += static_cast<std::size_t>(used);
  }
  return true;
}

struct G729Options {
  int options = 0;
  bool rtp = false;
  std::string in, out;
};

int decode(const G729Options& o, FILE* err) {
  std::vector<VspsG729Frame> frames;
  if (!read_frames(o.in, o.rtp, &frames, err)) return 1;
  int size = 0;
  vspscodecG729DecoderGetSize(&size);
  std::vector<uint8_t> mem(static_cast<std::size_t>(size));
  auto* dec = reinterpret_cast<VspsG729Decoder*>(mem.data());
  if (vspscodecG729DecoderInit(dec, o.options) != vspStsNoErr) return 1;
  std::vector<int16_t> pcm(frames.size() * kG729Frame);
  Progress progress(err, "decoding", pcm.size(), kG729Rate);
  for (std::size_t n = 0; n < frames.size(); ++n) {
    const VspStatus st = vspscodecG729DecoderDecode(dec, &frames[n], pcm.data() + n * kG729Frame);
    if (st < 0) {
      std::fprintf(err, "vsps: frame %zu: decoder status %d\n", n, st);
      return 1;
    }
    progress.update((n + 1) * kG729Frame);
  }
  return write_audio(o.out, pcm, err) ? 0 : 1;
}

int encode(const G729Options& o, FILE* err) {
  std::vector<int16_t> pcm;
  if (!read_audio(o.in, &pcm, err)) return 1;
  const std::size_t frames = pcm.size() / kG729Frame;
  if (pcm.size() % kG729Frame != 0)
    std::fprintf(err, "vsps: %s: the last %zu samples do not fill a frame and are dropped\n", o.in.c_str(),
                 pcm.size() % kG729Frame);
  int size = 0;
  vspscodecG729EncoderGetSize(&size);
  std::vector<uint8_t> mem(static_cast<std::size_t>(size));
  auto* enc = reinterpret_cast<VspsG729Encoder*>(mem.data());
  if (vspscodecG729EncoderInit(enc, o.options) != vspStsNoErr) return 1;
  std::vector<uint8_t> bytes;
  Progress progress(err, "encoding", frames * kG729Frame, kG729Rate);
  for (std::size_t n = 0; n < frames; ++n) {
    VspsG729Frame f{};
    const VspStatus st = vspscodecG729EncoderEncode(enc, pcm.data() + n * kG729Frame, &f);
    if (st < 0) {
      std::fprintf(err, "vsps: frame %zu: encoder status %d\n", n, st);
      return 1;
    }
    if (o.rtp) {
      uint8_t payload[10];
      int written = 0;
      vspscodecG729RtpWrite(&f, payload, &written);
      bytes.push_back(static_cast<uint8_t>(written));
      bytes.insert(bytes.end(), payload, payload + written);
    } else {
      int16_t words[VSPS_G729_SERIAL_MAX_WORDS];
      int written = 0;
      vspscodecG729SerialWrite(&f, words, &written);
      append_words(&bytes, words, written);
    }
    progress.update((n + 1) * kG729Frame);
  }
  return write_bytes(o.out, bytes, err) ? 0 : 1;
}

}  // namespace

const CommandSpec kG729Spec = {
    "g729",
    "encode|decode IN OUT [options]",
    "G.729 codec: audio (.wav or raw 16-bit PCM) <-> ITU serial bit-stream or RTP payloads",
    {{"--annex", "a", "Annex A (reduced complexity) encoder or decoder"},
     {"--dtx", nullptr, "Annex B: VAD, DTX and comfort noise (the decoder also takes streams without SID frames)"},
     {"--format", "itu|rtp",
      "bit-stream: ITU serial words (default) or RFC 3551 payloads, each after a length octet"}}};

int cmd_g729(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kG729Spec, args, &opt, out, err); status >= 0) return status;
  if (opt.positional.size() != 3 || (opt.positional[0] != "encode" && opt.positional[0] != "decode")) {
    std::fprintf(err, "vsps: g729 needs encode or decode, an input and an output file\n");
    return 2;
  }
  G729Options o;
  if (const std::string* a = opt.get("--annex")) {
    if (*a != "a" && *a != "A") {
      std::fprintf(err, "vsps: --annex takes a\n");
      return 2;
    }
    o.options |= VSPS_G729_ANNEX_A;
  }
  if (opt.has("--dtx")) o.options |= VSPS_G729_DTX;
  if (const std::string* f = opt.get("--format")) {
    if (*f != "itu" && *f != "rtp") {
      std::fprintf(err, "vsps: --format takes itu or rtp\n");
      return 2;
    }
    o.rtp = *f == "rtp";
  }
  o.in = opt.positional[1];
  o.out = opt.positional[2];
  std::string error;
  if (!output_is_not_an_input(o.out, {o.in}, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return 1;
  }
  return opt.positional[0] == "decode" ? decode(o, err) : encode(o, err);
}

}  // namespace vsps::tool
