// "vsps aec FAR.wav NEAR.wav -o OUT.wav [--tail MS] [--no-nlp] [--blocks]":
// the codec layer's echo canceller on the user's recordings. FAR is the
// signal sent to the echo path (loudspeaker or hybrid input), NEAR the
// signal coming back (microphone or hybrid output); OUT is NEAR with the
// echo removed, time-aligned with NEAR. Per 0.5 s block it reports the
// echo reduction (near-end over output power while the far end is active)
// and what the canceller did: double talk, the disabling tone.
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "tools/commands.h"
#include "tools/output_file.h"
#include "tools/progress.h"
#include "tools/wav_io.h"
#include "vsps_codecs.h"

namespace vsps::tool {

namespace {

constexpr double kBlockSeconds = 0.5;  // reporting block

struct BlockStats {
  double far = 0, near = 0, out = 0;
  int hops = 0, doubleTalk = 0, tone = 0;
};

}  // namespace

const CommandSpec kAecSpec = {
    "aec",
    "FAR.wav NEAR.wav -o OUT.wav [options]",
    "echo canceller: removes the echo of FAR from NEAR (8 or 16 kHz)",
    {{"-o", "OUT.wav", "the near end with the echo removed (required)"},
     {"--tail", "MS", "echo tail covered, 1 to 128 ms at 8 kHz, 1 to 64 at 16 kHz (default 64)"},
     {"--no-nlp", nullptr, "no noise filter: the linear canceller's residual"},
     {"--blocks", nullptr, "per 0.5 s block: ERLE, double talk and tone disabling"}}};

int cmd_aec(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kAecSpec, args, &opt, out, err); status >= 0) return status;
  if (opt.positional.size() != 2 || !opt.get("-o")) {
    std::fprintf(err, "vsps: aec needs FAR.wav NEAR.wav -o OUT.wav [--tail MS] [--no-nlp] [--blocks]\n");
    return 2;
  }
  const int tailMs = opt.get("--tail") ? std::atoi(opt.get("--tail")->c_str()) : 64;
  std::string error;
  if (!output_is_not_an_input(*opt.get("-o"), opt.positional, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return 1;
  }
  WavAudio farWav, nearWav;
  const char* needs = "the canceller runs at 8000 or 16000 Hz";
  if (!load_wav(opt.positional[0], {8000, 16000}, needs, &farWav, err) ||
      !load_wav(opt.positional[1], {8000, 16000}, needs, &nearWav, err))
    return 1;
  if (farWav.rate != nearWav.rate) {
    std::fprintf(err, "vsps: the far end is at %d Hz, the near end at %d Hz; both must have the same rate\n",
                 farWav.rate, nearWav.rate);
    return 1;
  }
  const int rate = farWav.rate;
  int size = 0;
  if (vspscodecEchoCancellerGetSize(rate, tailMs, &size) != vspStsNoErr) {
    std::fprintf(err, "vsps: --tail takes 1 to %d ms at %d Hz\n", rate == 8000 ? 128 : 64, rate);
    return 2;
  }
  if (farWav.samples.size() != nearWav.samples.size())
    std::fprintf(err, "vsps: warning: the files differ in length; the near end is processed, the far end %s\n",
                 farWav.samples.size() < nearWav.samples.size() ? "padded with silence" : "cut");
  std::vector<Vsp8u> memory(static_cast<std::size_t>(size));
  const int flags = opt.get("--no-nlp") ? VSPSCODEC_EC_NO_NLP : 0;
  if (vspscodecEchoCancellerInit(memory.data(), rate, tailMs, flags) != vspStsNoErr) {
    std::fprintf(err, "vsps: the canceller refused the configuration\n");
    return 1;
  }
  auto* ec = reinterpret_cast<VspscodecEchoCanceller*>(memory.data());
  const auto hop = static_cast<std::size_t>(vspscodecEchoCancellerFrameSize(rate));
  const auto delay = static_cast<std::size_t>(vspscodecEchoCancellerDelay(rate));
  const std::size_t n = nearWav.samples.size();
  const std::size_t total = (n + delay + hop - 1) / hop * hop;
  std::vector<Vsp16s> f(total, 0), d(total, 0), y(total, 0);
  std::copy(nearWav.samples.begin(), nearWav.samples.end(), d.begin());
  std::copy_n(farWav.samples.begin(), std::min(n, farWav.samples.size()), f.begin());
  const auto block = static_cast<std::size_t>(kBlockSeconds * rate);
  std::vector<BlockStats> stats(total / block + 1);
  {
    Progress progress(err, "aec", total, rate);
    for (std::size_t p = 0; p < total; p += hop) {
      VspscodecEchoDiagnostics diag{};
      if (vspscodecEchoCancellerProcess(ec, &f[p], &d[p], &y[p], &diag) != vspStsNoErr) {
        std::fprintf(err, "vsps: library error at %.2f s\n", static_cast<double>(p) / rate);
        return 1;
      }
      BlockStats& s = stats[p / block];
      s.hops += 1;
      s.doubleTalk += diag.doubleTalk;
      s.tone += diag.toneDisabled;
      progress.update(p + hop);
    }
  }
  std::vector<Vsp16s> pcm(y.begin() + static_cast<std::ptrdiff_t>(delay),
                          y.begin() + static_cast<std::ptrdiff_t>(delay + n));
  if (!write_wav(*opt.get("-o"), rate, pcm, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return 1;
  }
  for (std::size_t i = 0; i < n; ++i) {
    BlockStats& s = stats[i / block];
    s.far += double(f[i]) * f[i];
    s.near += double(d[i]) * d[i];
    s.out += double(pcm[i]) * pcm[i];
  }
  std::fprintf(out, "echo canceller: %d ms tail at %d Hz, %s, %zu samples\n", tailMs, rate,
               flags ? "no noise filter" : "with noise filter", n);
  double sumNear = 0, sumOut = 0, firstAt20 = -1;
  const bool perBlock = opt.get("--blocks") != nullptr;
  if (perBlock) std::fprintf(out, "  time      ERLE   double talk   tone\n");
  for (std::size_t b = 0; b * block + block <= n; ++b) {
    const BlockStats& s = stats[b];
    const double t = double(b * block) / rate;
    const bool active = s.far / double(block) > 100.0 * 100.0;  // -50 dBFS
    const double erle = 10 * std::log10((s.near + 1) / (s.out + 1));
    const double dt = s.hops ? 100.0 * s.doubleTalk / s.hops : 0, tone = s.hops ? 100.0 * s.tone / s.hops : 0;
    if (active && s.doubleTalk == 0 && s.tone == 0) {
      sumNear += s.near;
      sumOut += s.out;
      if (erle >= 20 && firstAt20 < 0) firstAt20 = t;
    }
    if (perBlock) {
      if (active)
        std::fprintf(out, "  %6.1f s %5.1f dB  %5.0f %%     %5.0f %%\n", t, erle, dt, tone);
      else
        std::fprintf(out, "  %6.1f s    --     %5.0f %%     %5.0f %%\n", t, dt, tone);
    }
  }
  if (sumNear > 0)
    std::fprintf(out, "ERLE over the single-talk blocks: %.1f dB\n", 10 * std::log10((sumNear + 1) / (sumOut + 1)));
  if (firstAt20 >= 0)
    std::fprintf(out, "20 dB ERLE first reached in the block at %.1f s\n", firstAt20);
  else
    std::fprintf(out, "20 dB ERLE not reached\n");
  std::fprintf(out, "output written to %s\n", opt.get("-o")->c_str());
  return 0;
}

}  // namespace vsps::tool
