// "vsps aec FAR.wav NEAR.wav -o OUT.wav": the sub-band echo canceller of the
// toolkit on the user's recordings. FAR is the signal sent to the echo path
// (loudspeaker or hybrid input), NEAR the signal coming back (microphone or
// hybrid output); OUT is NEAR with the echo removed, time-aligned with NEAR.
#include <algorithm>
#include <cmath>

#include "tools/commands.h"
#include "tools/echo/echo_scenario.h"
#include "tools/output_file.h"
#include "tools/progress.h"
#include "tools/wav_io.h"

namespace vsps::tool {

namespace {

constexpr double kBlockSeconds = 0.5;  // ERLE reporting block

Vsp16s to_pcm(Vsp32f v) { return static_cast<Vsp16s>(std::lround(std::clamp(v * 32768.0, -32768.0, 32767.0))); }

}  // namespace

const CommandSpec kAecSpec = {"aec",
                              "FAR.wav NEAR.wav -o OUT.wav [options]",
                              "sub-band echo canceller: removes the echo of FAR from NEAR (8 or 16 kHz)",
                              {{"-o", "OUT.wav", "the near end with the echo removed (required)"},
                               {"--tail", "MS", "echo tail covered, 4 to 1000 ms (default 64)"}}};

int cmd_aec(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kAecSpec, args, &opt, out, err); status >= 0) return status;
  if (opt.positional.size() != 2 || !opt.get("-o")) {
    std::fprintf(err, "vsps: aec needs FAR.wav NEAR.wav -o OUT.wav\n");
    return 2;
  }
  const double tailMs = opt.get("--tail") ? std::atof(opt.get("--tail")->c_str()) : 64.0;
  if (!(tailMs >= 4.0 && tailMs <= 1000.0)) {
    std::fprintf(err, "vsps: --tail takes 4 to 1000 ms\n");
    return 2;
  }
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
  if (farWav.samples.size() != nearWav.samples.size())
    std::fprintf(err, "vsps: warning: the files differ in length; the near end is processed, the far end %s\n",
                 farWav.samples.size() < nearWav.samples.size() ? "padded with silence" : "cut");

  // N = 64 sub-bands at 8 kHz (128 at 16 kHz), hop N/2, 4N-sample prototype.
  ecdemo::CancellerConfig cfg;
  cfg.order = rate == 8000 ? 6 : 7;
  cfg.frameSize = (1 << cfg.order) / 2;
  cfg.windowLen = 4 << cfg.order;
  cfg.window = ecdemo::design_prototype(cfg.order, cfg.windowLen, cfg.frameSize);
  cfg.segments = std::max(1, static_cast<int>(std::ceil(tailMs * rate / 1000.0 / cfg.frameSize)));
  ecdemo::SubbandEchoCanceller aec;
  if (!aec.init(cfg)) {
    std::fprintf(err, "vsps: the library refused the canceller configuration\n");
    return 1;
  }
  const std::size_t hop = static_cast<std::size_t>(cfg.frameSize);
  const std::size_t delay = static_cast<std::size_t>(cfg.windowLen - cfg.frameSize);  // of the filter bank
  const std::size_t n = nearWav.samples.size();
  const std::size_t total = (n + delay + hop - 1) / hop * hop;
  std::vector<Vsp32f> f(total, 0.0f), d(total, 0.0f), y(total, 0.0f);
  for (std::size_t i = 0; i < n; ++i) {
    d[i] = nearWav.samples[i] / 32768.0f;
    if (i < farWav.samples.size()) f[i] = farWav.samples[i] / 32768.0f;
  }
  {
    Progress progress(err, "aec", total, rate);
    for (std::size_t p = 0; p < total; p += hop) {
      if (!aec.process(&f[p], &d[p], &y[p])) {
        std::fprintf(err, "vsps: library error at %.2f s\n", static_cast<double>(p) / rate);
        return 1;
      }
      progress.update(p + hop);
    }
  }
  std::vector<Vsp16s> pcm(n);
  for (std::size_t i = 0; i < n; ++i) pcm[i] = to_pcm(y[i + delay]);
  if (!write_wav(*opt.get("-o"), rate, pcm, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return 1;
  }

  // Echo reduction per block while the far end is active: near-end power over
  // output power (near-end talk, if any, counts as echo left).
  const auto block = static_cast<std::size_t>(kBlockSeconds * rate);
  double farPeak = 0;
  for (std::size_t b = 0; b + block <= n; b += block) {
    double pf = 0;
    for (std::size_t i = b; i < b + block; ++i) pf += double(f[i]) * f[i];
    farPeak = std::max(farPeak, pf);
  }
  std::fprintf(out, "echo canceller: %d sub-bands, %d taps each (%.0f ms tail), %zu samples at %d Hz\n",
               (1 << cfg.order) / 2 + 1, cfg.segments, tailMs, n, rate);
  std::fprintf(out, "ERLE (near-end over output power, far end active) per %.1f s:\n", kBlockSeconds);
  double firstAt20 = -1;
  int shown = 0;
  for (std::size_t b = 0; b + block <= n; b += block) {
    double pf = 0, pd = 0, py = 0;
    for (std::size_t i = b; i < b + block; ++i) {
      pf += double(f[i]) * f[i];
      pd += double(d[i]) * d[i];
      py += double(pcm[i]) * pcm[i] / (32768.0 * 32768.0);
    }
    const double t = static_cast<double>(b) / rate;
    if (pf < 1e-3 * farPeak || pd <= 0) {
      std::fprintf(out, "%s%6.1f s    -- ", shown++ % 6 ? "" : "  ", t);
    } else {
      const double erle = 10 * std::log10(pd / (py + 1e-20));
      if (erle >= 20 && firstAt20 < 0) firstAt20 = t;
      std::fprintf(out, "%s%6.1f s %5.1f", shown++ % 6 ? "" : "  ", t, erle);
    }
    if (shown % 6 == 0) std::fprintf(out, "\n");
  }
  if (shown % 6) std::fprintf(out, "\n");
  if (firstAt20 >= 0)
    std::fprintf(out, "20 dB ERLE first reached in the block at %.1f s\n", firstAt20);
  else
    std::fprintf(out, "20 dB ERLE not reached\n");
  std::fprintf(out, "output written to %s\n", opt.get("-o")->c_str());
  return 0;
}

}  // namespace vsps::tool
