// "vsps demo": each family's calling order on built-in signals, with the
// figures a codec or echo-canceller engineer looks at first, and SVG plots.
#include <algorithm>
#include <cmath>
#include <filesystem>

#include "tools/commands.h"
#include "tools/echo/echo_scenario.h"
#include "tools/g729_round_trip.h"
#include "tools/lp_frontend.h"
#include "tools/seg_snr.h"
#include "tools/speech_signal.h"
#include "tools/svg_plot.h"
#include "tools/tone_scan.h"
#include "vsps.h"
#include "vsps_codecs.h"

namespace vsps::tool {

namespace {

constexpr double kSpeechSeconds = 10.0;
constexpr int kLossPeriod = 25;  // every 25th frame is erased at the decoder
constexpr double kPi = 3.14159265358979323846;
const char* const kColours[10] = {"#1f77b4", "#ff7f0e", "#2ca02c", "#d62728", "#9467bd",
                                  "#8c564b", "#e377c2", "#7f7f7f", "#bcbd22", "#17becf"};

struct Run {
  std::vector<LpFrame> frames;
  LpSummary summary;
  double channelsPerCore = 0;
};

constexpr int kTimingRuns = 7;  // speed: the median of this many runs over the signal

// The median of the kTimingRuns figures of a speed (a single run swings with
// the machine's load and clock).
double median_of_runs(std::vector<double> v) {
  std::nth_element(v.begin(), v.begin() + kTimingRuns / 2, v.end());
  return v[kTimingRuns / 2];
}

bool run_frontend(LpFrontEnd& fe, const std::vector<int16_t>& pcm, std::vector<LpFrame>* frames) {
  const auto len = static_cast<std::size_t>(fe.frame_length());
  frames->resize(pcm.size() / len);
  for (std::size_t n = 0; n < frames->size(); ++n)
    if (!fe.process(&pcm[n * len], n % kLossPeriod == kLossPeriod - 1, &(*frames)[n])) return false;
  return true;
}

// Analyses the signal with fresh front ends made by `make`, kTimingRuns
// times: the frames of the first run, and the speed as channels one core
// carries in real time (seconds of audio per second spent in library
// calls), the median over the runs.
template <class Make>
bool analyse(Make make, const std::vector<int16_t>& pcm, Run* run) {
  std::vector<double> channels;
  for (int r = 0; r < kTimingRuns; ++r) {
    std::unique_ptr<LpFrontEnd> fe = make();
    std::vector<LpFrame> frames;
    if (!fe || !run_frontend(*fe, pcm, &frames)) return false;
    channels.push_back(static_cast<double>(pcm.size()) / 8000.0 / (fe->library_ns() * 1e-9));
    if (r == 0) run->frames = std::move(frames);
  }
  run->channelsPerCore = median_of_runs(std::move(channels));
  run->summary = summarise(run->frames);
  return true;
}

void print_row(FILE* out, const char* name, const Run& run) {
  const LpSummary& s = run.summary;
  std::fprintf(out, "  %-14s %6d  %5.2f dB  %5.2f dB  %5.1f%%  %5.1f%%  %8d  %-12s %12.0f\n", name, s.frames,
               s.meanSdDb, s.maxSdDb, s.pct2to4, s.pctOver4, s.unstable, s.mismatches == 0 ? "reproduces" : "DIFFERS",
               run.channelsPerCore);
}

// Line spectral frequency tracks (Hz at 8 kHz, from the LSPs): unquantised
// wide and light, quantised thin and dark on top, one colour per LSF.
bool plot_lsf_tracks(const std::filesystem::path& file, const char* codec, const Run& run, double frameSeconds,
                     std::string* error) {
  Plot p;
  p.title = std::string(codec) + " LSF tracks: unquantised (wide, light) and quantised (thin, dark)";
  p.xLabel = "time (s)";
  p.yLabel = "line spectral frequency (Hz)";
  p.xMax = static_cast<double>(run.frames.size()) * frameSeconds;
  p.yMax = 4000;
  for (int k = 0; k < 10; ++k) {
    PlotSeries raw, quant;
    raw.colour = quant.colour = kColours[k];
    raw.width = 5;
    raw.opacity = 0.3;
    quant.label = "LSF " + std::to_string(k + 1);
    for (std::size_t n = 0; n < run.frames.size(); ++n) {
      const double t = static_cast<double>(n) * frameSeconds;
      raw.x.push_back(t);
      quant.x.push_back(t);
      raw.y.push_back(std::acos(run.frames[n].lspQ15[k] / 32768.0) / (2 * kPi) * 8000);
      quant.y.push_back(std::acos(run.frames[n].quantLspQ15[k] / 32768.0) / (2 * kPi) * 8000);
    }
    p.series.push_back(std::move(raw));
    p.series.push_back(std::move(quant));
  }
  PlotSeries rawKey, quantKey;  // legend entries of the two styles
  rawKey.colour = quantKey.colour = "#555555";
  rawKey.width = 5;
  rawKey.opacity = 0.3;
  rawKey.label = "unquantised";
  quantKey.label = "quantised";
  p.series.push_back(std::move(rawKey));
  p.series.push_back(std::move(quantKey));
  return write_svg(file.string(), p, error);
}

bool demo_lp(const std::vector<int16_t>& speech, const std::filesystem::path& dir, std::vector<std::string>* plots,
             FILE* out, FILE* err) {
  std::fprintf(out,
               "LP analysis and LSP quantisation, encoder and decoder (every %dth frame erased at the decoder);\n"
               "spectral distortion between the unquantised and quantised LP envelopes; speed in channels\n"
               "one core carries in real time (processor time of the library calls, median of %d runs):\n"
               "  %-14s %6s  %8s  %8s  %6s  %6s  %8s  %-12s %12s\n",
               kLossPeriod, kTimingRuns, "codec", "frames", "SD mean", "SD max", "2-4 dB", ">4 dB", "unstable",
               "decoder", "channels/core");
  std::string error;
  Run run;
  if (!analyse(make_g729_frontend, speech, &run)) return false;
  print_row(out, "G.729", run);
  if (!plot_lsf_tracks(dir / "lsp_g729.svg", "G.729", run, 0.010, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return false;
  }
  plots->push_back("lsp_g729.svg");
  bool allMatch = run.summary.mismatches == 0;
  for (const AmrMode& m : amr_modes()) {
    const std::string name = std::string("GSM-AMR ") + m.kbps;
    if (!analyse([&] { return make_gsmamr_frontend(m.mode); }, speech, &run)) return false;
    print_row(out, name.c_str(), run);
    allMatch = allMatch && run.summary.mismatches == 0;
    if (m.mode == vspRate12200) {
      if (!plot_lsf_tracks(dir / "lsp_gsmamr_12k2.svg", "GSM-AMR 12.2", run, 0.020, &error)) {
        std::fprintf(err, "vsps: %s\n", error.c_str());
        return false;
      }
      plots->push_back("lsp_gsmamr_12k2.svg");
    }
  }
  std::fprintf(
      out,
      "  (modes that share an LSP quantiser show the same distortion: GSM-AMR 4.75 and 5.15 share one; 5.9, 6.7,\n"
      "  7.4 and 10.2 another (7.95 uses it with its own first-split table); all on one LP analysis; 12.2 has\n"
      "  its own analysis and quantiser)\n"
      "  (decoder: LSPs rebuilt from the codes equal the encoder's on good frames once the predictor "
      "memory has recovered from an erasure)\n");
  return allMatch;
}

// G.729 and G.729A through the codec layer and back: how close the decoded
// speech comes to the input, and the codec's speed. A segmental SNR below
// kMinSegSnrDb means the round trip is broken: a silent output scores 0 dB,
// an unrelated one of the same power about -3 dB, the decoded speech
// compared at a wrong delay about -2 dB; an 8 kbit/s CELP codec that works
// keeps its waveform well above that.
constexpr double kMinSegSnrDb = 3.0;

bool demo_g729_codec(const std::vector<int16_t>& speech, FILE* out) {
  std::fprintf(out,
               "\nG.729 round trip through the codec layer (encoder -> ITU serial bit-stream -> decoder, no frame\n"
               "lost): segmental SNR of the decoded speech against the input delayed by %d samples (the encoder's\n"
               "5 ms look-ahead; 10 ms frames, each clamped to -10..35 dB, frames below -50 dBFS left out); speed\n"
               "of the encoder and decoder calls (processor time, median of %d runs); a channel is one encoder\n"
               "and one decoder:\n"
               "  %-8s %6s  %9s  %16s  %16s  %13s\n",
               kG729DelaySamples, kTimingRuns, "codec", "frames", "seg. SNR", "encoder frames/s", "decoder frames/s",
               "channels/core");
  struct Codec {
    const char* name;
    int options;
  };
  bool ok = true;
  for (const Codec& c : {Codec{"G.729", 0}, Codec{"G.729A", VSPS_G729_ANNEX_A}}) {
    std::vector<double> encFps, decFps, channels;
    SegSnr snr;
    int frames = 0;
    for (int r = 0; r < kTimingRuns; ++r) {
      G729RoundTrip trip;
      if (!g729_round_trip(speech, c.options, &trip)) return false;
      const double seconds = trip.frames * 0.010;
      encFps.push_back(trip.frames / (trip.encoderNs * 1e-9));
      decFps.push_back(trip.frames / (trip.decoderNs * 1e-9));
      channels.push_back(seconds / ((trip.encoderNs + trip.decoderNs) * 1e-9));
      if (r == 0) snr = segmental_snr(speech, trip.decoded, kG729DelaySamples, 80), frames = trip.frames;
    }
    std::fprintf(out, "  %-8s %6d  %6.2f dB  %16.0f  %16.0f  %13.0f%s\n", c.name, frames, snr.db,
                 median_of_runs(std::move(encFps)), median_of_runs(std::move(decFps)),
                 median_of_runs(std::move(channels)), snr.db < kMinSegSnrDb ? "  TOO LOW" : "");
    ok = ok && snr.db >= kMinSegSnrDb;
  }
  return ok;
}

bool demo_echo(const std::filesystem::path& dir, std::vector<std::string>* plots, FILE* out, FILE* err) {
  const ecdemo::CancellerConfig cfg;
  ecdemo::Scenario scenario;
  scenario.farEnd = ecdemo::FarEnd::SpeechLike;
  const g168::EchoPath& path = g168::kEchoPaths[3];
  ecdemo::Measurement m;
  if (!ecdemo::run_scenario(cfg, path, scenario, &m)) return false;
  const double blockSeconds = 0.05;  // run_scenario's ERLE blocks
  std::fprintf(out,
               "\nSub-band echo canceller: %d sub-bands (N = %d, hop %d), %d taps per sub-band (%d ms tail),\n"
               "G.168 echo path %s at %.0f dB ERL, %.0f s of speech-like far end, NLMS step %.2f:\n"
               "  ERLE per 0.5 s:",
               (1 << cfg.order) / 2 + 1, 1 << cfg.order, cfg.frameSize, cfg.segments, cfg.segments * cfg.frameSize / 8,
               path.name, scenario.erlDb, scenario.seconds, cfg.mu);
  const std::size_t per = static_cast<std::size_t>(0.5 / blockSeconds + 0.5);
  for (std::size_t b = 0; b < m.blockErleDb.size(); b += per) {
    double sum = 0;
    int count = 0;
    for (std::size_t i = b; i < std::min(b + per, m.blockErleDb.size()); ++i)
      if (!std::isnan(m.blockErleDb[i])) sum += m.blockErleDb[i], ++count;
    if ((b / per) % 4 == 0) std::fprintf(out, "\n   ");
    if (count > 0)
      std::fprintf(out, " %4.1f-%4.1f s %4.1f dB", static_cast<double>(b) * blockSeconds,
                   static_cast<double>(b + per) * blockSeconds, sum / count);
    else
      std::fprintf(out, " %4.1f-%4.1f s  (silent)", static_cast<double>(b) * blockSeconds,
                   static_cast<double>(b + per) * blockSeconds);
  }
  std::fprintf(out, "\n  convergence: 20 dB ERLE first reached at %.2f s; %.1f dB over the last quarter\n",
               m.secondsTo20dB, m.erleDb);
  Plot p;
  p.title = std::string("Sub-band echo canceller, G.168 model ") + path.name + ", speech-like far end";
  p.xLabel = "time (s)";
  p.yLabel = "ERLE (dB), 50 ms blocks";
  p.xMax = scenario.seconds;
  p.yMin = 0;
  p.yMax = 50;
  PlotSeries erle;
  erle.colour = kColours[0];
  erle.label = "ERLE";
  for (std::size_t i = 0; i < m.blockErleDb.size(); ++i) {
    erle.x.push_back(static_cast<double>(i) * blockSeconds);
    erle.y.push_back(m.blockErleDb[i]);
  }
  PlotSeries target;
  target.colour = "#999999";
  target.dashed = true;
  target.label = "20 dB";
  target.x = {0, scenario.seconds};
  target.y = {20, 20};
  p.series = {erle, target};
  std::string error;
  if (!write_svg((dir / "erle.svg").string(), p, &error)) {
    std::fprintf(err, "vsps: %s\n", error.c_str());
    return false;
  }
  plots->push_back("erle.svg");
  return m.secondsTo20dB >= 0;
}

bool demo_tone(const std::vector<int16_t>& speech, FILE* out) {
  struct Case {
    const char* what;
    std::vector<int16_t> pcm;
    bool expected;
  };
  const Case cases[] = {
      {"2100 Hz at -12 dBFS, phase reversal every 450 ms", signals::tone_with_reversals(3.0, 8000, 2100, 8200, 450),
       true},
      {"the same tone without phase reversals", signals::tone_with_reversals(3.0, 8000, 2100, 8200, 0), false},
      {"speech-like signal", speech, false},
  };
  std::fprintf(out, "\n2100 Hz answer-tone detector (8 kHz, 20 ms blocks):\n");
  bool ok = true;
  for (const Case& c : cases) {
    std::vector<double> times;
    if (!scan_for_tone(c.pcm, 8000, &times)) return false;
    std::fprintf(out, "  %-50s ", c.what);
    if (times.empty()) {
      std::fprintf(out, "does not fire\n");
    } else {
      std::fprintf(out, "fires at %.2f s", times[0]);
      for (std::size_t i = 1; i < times.size(); ++i) std::fprintf(out, "%s%.2f", i == 1 ? " (then " : ", ", times[i]);
      std::fprintf(out, "%s\n", times.size() > 1 ? " s)" : "");
    }
    ok = ok && times.empty() != c.expected;
  }
  return ok;
}

}  // namespace

const CommandSpec kDemoSpec = {"demo",
                               "[-o DIR]",
                               "every family on built-in signals: figures, and SVG plots in DIR",
                               {{"-o", "DIR", "folder for the plots (default vsps-demo)"}}};

int cmd_demo(const Args& args, FILE* out, FILE* err) {
  Options opt;
  if (const int status = parse_or_exit(kDemoSpec, args, &opt, out, err); status >= 0) return status;
  if (!opt.positional.empty()) {
    std::fprintf(err, "vsps: demo takes no input (use lpc, aec or tone for files)\n");
    return 2;
  }
  const std::filesystem::path dir = opt.get("-o") ? *opt.get("-o") : "vsps-demo";
  std::error_code ec;
  std::filesystem::create_directories(dir, ec);
  if (ec) {
    std::fprintf(err, "vsps: cannot create %s: %s\n", dir.string().c_str(), ec.message().c_str());
    return 1;
  }
  const VspLibraryVersion* v = legacy90vspscGetLibVersion();
  std::fprintf(out, "vsps demo: library %s, version %s\ninput: built-in 8 kHz speech-like signal of %.0f s\n\n",
               v->Name, v->Version, kSpeechSeconds);
  const std::vector<int16_t> speech = signals::speech_like(kSpeechSeconds, 8000, 1);
  std::vector<std::string> plots;
  const bool lp = demo_lp(speech, dir, &plots, out, err);
  const bool codec = lp && demo_g729_codec(speech, out);
  const bool echo = codec && demo_echo(dir, &plots, out, err);
  const bool tone = echo && demo_tone(speech, out);
  if (!plots.empty()) {
    std::fprintf(out, "\nplots written to %s:", dir.string().c_str());
    for (const std::string& p : plots) std::fprintf(out, " %s", p.c_str());
    std::fprintf(out, "\n");
  }
  if (!(lp && codec && echo && tone)) {
    std::fprintf(err, "vsps: demo failed (a library error or an unexpected result above)\n");
    return 1;
  }
  return 0;
}

}  // namespace vsps::tool
