// "vsps g726 encode|decode --rate 16|24|32|40 --law a|u|linear IN OUT
// [--format rtp|aal2] [--container bytes|words]": the G.726 ADPCM codec on
// files. Encoder input: G.711 code words for a and u (or a WAV file, first
// compressed with that law), 16-bit PCM for linear. Decoder output: G.711
// code words for a and u, 16-bit PCM for linear. Code words one per byte (or
// 16-bit word), or packed into octets in RTP or AAL2 order.
#include "tools/codec_io.h"
#include "tools/commands.h"
#include "vsps_codecs.h"

namespace vsps::tool {

namespace {

struct Setup {
  int kbps = 0, bits = 0, law = -1;
  VspscodecG726Format format = vspscodecG726Unpacked;
  bool words = false;
  // Packed formats: code words that fill whole octets (4, 8, 2, 8) in
  // octets (1, 3, 1, 5).
  int frameCodes() const { return bits == 2 ? 4 : (bits == 4 ? 2 : 8); }
  int frameBytes() const { return frameCodes() * bits / 8; }
};

bool parse_setup(const Options& opt, Setup* s, FILE* err) {
  const std::string* rate = opt.get("--rate");
  if (rate == nullptr) {
    std::fprintf(err, "vsps: --rate is required (16, 24, 32 or 40 kbit/s)\n");
    return false;
  }
  for (int k : {16, 24, 32, 40})
    if (*rate == std::to_string(k)) s->kbps = k;
  if (s->kbps == 0) {
    std::fprintf(err, "vsps: --rate %s: use 16, 24, 32 or 40\n", rate->c_str());
    return false;
  }
  s->bits = s->kbps / 8;
  s->law = parse_law(opt.get("--law"), true, err);
  if (s->law < 0 || !parse_container(opt.get("--container"), &s->words, err)) return false;
  if (const std::string* f = opt.get("--format")) {
    if (*f == "rtp") {
      s->format = vspscodecG726Rtp;
    } else if (*f == "aal2") {
      s->format = vspscodecG726Aal2;
    } else {
      std::fprintf(err, "vsps: --format %s: use rtp or aal2\n", f->c_str());
      return false;
    }
    if (opt.get("--container") != nullptr) {
      std::fprintf(err, "vsps: --container applies to unpacked code words, not to --format %s\n", f->c_str());
      return false;
    }
  }
  return true;
}

int encode(const Setup& s, const std::string& in, const std::string& out, FILE* err) {
  std::vector<int16_t> pcm;
  std::vector<uint8_t> law8;
  int n = 0;
  if (s.law == vspPcmLinear || is_wav_name(in)) {
    if (!read_pcm(in, &pcm, err)) return 1;
    n = static_cast<int>(pcm.size());
    if (s.law != vspPcmLinear) {  // a WAV input of a log-PCM encoder: compressed with the law first
      law8.resize(pcm.size());
      if (n > 0 && vspscodecG711Encode(s.law, pcm.data(), n, law8.data()) != vspStsNoErr) {
        std::fprintf(err, "vsps: library error in the G.711 encoder\n");
        return 1;
      }
    }
  } else {
    if (!read_codes(in, s.words, 255, &law8, err)) return 1;
    n = static_cast<int>(law8.size());
  }
  if (s.format != vspscodecG726Unpacked && n % s.frameCodes() != 0) {
    std::fprintf(err,
                 "vsps: %s: %d samples leave a truncated last frame: packed %d kbit/s code words fill whole octets "
                 "in groups of %d samples\n",
                 in.c_str(), n, s.kbps, s.frameCodes());
    return 1;
  }
  int size = 0;
  vspscodecG726EncoderGetSize(&size);
  std::vector<unsigned char> mem(static_cast<std::size_t>(size));
  auto* enc = reinterpret_cast<VspscodecG726Encoder*>(mem.data());
  std::vector<uint8_t> codes;
  int bytes = 0;
  if (vspscodecG726EncoderInit(enc, s.kbps, s.law, s.format) == vspStsNoErr &&
      vspscodecG726EncoderOutputBytes(enc, n, &bytes) == vspStsNoErr) {
    codes.resize(static_cast<std::size_t>(bytes));
    const void* src = s.law == vspPcmLinear ? static_cast<const void*>(pcm.data()) : law8.data();
    if (n == 0 || vspscodecG726EncoderEncode(enc, src, n, codes.data()) == vspStsNoErr)
      return write_codes(out, s.words, codes, err) ? 0 : 1;
  }
  std::fprintf(err, "vsps: library error in the G.726 encoder\n");
  return 1;
}

int decode(const Setup& s, const std::string& in, const std::string& out, FILE* err) {
  std::vector<uint8_t> input;
  if (!read_codes(in, s.words, s.format == vspscodecG726Unpacked ? (1 << s.bits) - 1 : 255, &input, err)) return 1;
  int n = static_cast<int>(input.size());
  if (s.format != vspscodecG726Unpacked) {
    if (input.size() % static_cast<std::size_t>(s.frameBytes()) != 0) {
      std::fprintf(err,
                   "vsps: %s: %zu octets end in a truncated frame: packed %d kbit/s code words come in groups of %d "
                   "octets\n",
                   in.c_str(), input.size(), s.kbps, s.frameBytes());
      return 1;
    }
    n = static_cast<int>(input.size() / static_cast<std::size_t>(s.frameBytes())) * s.frameCodes();
  }
  int size = 0;
  vspscodecG726DecoderGetSize(&size);
  std::vector<unsigned char> mem(static_cast<std::size_t>(size));
  auto* dec = reinterpret_cast<VspscodecG726Decoder*>(mem.data());
  if (vspscodecG726DecoderInit(dec, s.kbps, s.law, s.format) == vspStsNoErr) {
    if (s.law == vspPcmLinear) {
      std::vector<int16_t> pcm(static_cast<std::size_t>(n));
      if (n == 0 || vspscodecG726DecoderDecode(dec, input.data(), n, pcm.data()) == vspStsNoErr)
        return write_pcm(out, pcm, err) ? 0 : 1;
    } else {
      std::vector<uint8_t> law8(static_cast<std::size_t>(n));
      if (n == 0 || vspscodecG726DecoderDecode(dec, input.data(), n, law8.data()) == vspStsNoErr)
        return write_codes(out, s.words, law8, err) ? 0 : 1;
    }
  }
  std::fprintf(err, "vsps: library error in the G.726 decoder\n");
  return 1;
}

}  // namespace

const CommandSpec kG726Spec = {
    "g726",
    "encode|decode --rate R --law L IN OUT [options]",
    "G.726 ADPCM at 16-40 kbit/s between G.711 or linear PCM and code words",
    {{"--rate", "16|24|32|40", "kbit/s (required)"},
     {"--law", "a|u|linear", "PCM side: G.711 code words (a WAV input is compressed first) or 16-bit PCM (required)"},
     {"--format", "rtp|aal2", "code words packed into octets (RFC 3551 or I.366.2 order)"},
     {"--container", "bytes|words", "unpacked code words and G.711 words one per byte (default) or 16-bit word"}}};

int cmd_g726(const Args& args, FILE* stdOut, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kG726Spec, args, &opt, stdOut, err); status >= 0) return status;
  if (opt.positional.size() != 3 || (opt.positional[0] != "encode" && opt.positional[0] != "decode")) {
    std::fprintf(err, "vsps: g726 needs encode|decode, an input and an output file\n");
    return 2;
  }
  if (!output_names_no_input(opt.positional[2], opt.positional[1], err)) return 1;
  Setup s;
  if (!parse_setup(opt, &s, err)) return 2;
  return opt.positional[0] == "encode" ? encode(s, opt.positional[1], opt.positional[2], err)
                                       : decode(s, opt.positional[1], opt.positional[2], err);
}

}  // namespace vsps::tool
