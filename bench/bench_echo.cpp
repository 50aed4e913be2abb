// Echo cancellers and tone detectors end to end, ours beside the peers
// found by pkg-config (speexdsp's echo canceller, SpanDSP's echo canceller
// and modem connect-tones detector; optional, benchmarks only), on one echo
// scenario: 8 s of the speech-like far end of tools/echo/echo_scenario.h
// through the G.168 hybrid model D2 (6 dB echo return loss) plus near-end
// noise 45 dB below the far end. Each canceller's quality is reported as
// the counter erle_db: 10 log10 of the near-end power over the output power
// in the last quarter of the run (the same definition for all; the noise
// floor limits it to about 39 dB). Time per call: our sub-band canceller per
// 4 ms hop (N = 64, 33 sub-bands, 16 segments), full-band NLMS per 10 ms
// block, peers per 10 ms block or per sample as they are called.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <vector>

#include "tools/echo/echo_scenario.h"
#include "tools/echo/g168_models.h"
#include "tools/echo/g168_scenarios.h"
#include "tools/echo/subband_echo_canceller.h"
#include "tools/speech_signal.h"
#include "vsps.h"
#include "vsps_codecs.h"

#if defined(VSPS_BENCH_SPEEXDSP)
#include <speex/speex_echo.h>
#endif
#if defined(VSPS_BENCH_SPANDSP)
#include <spandsp.h>
#endif

namespace {

constexpr int kBlock = 80;

struct EchoData {
  std::vector<float> far, near;  // full scale 1.0
  std::vector<Vsp16s> far16, near16;
  std::size_t n = 0;
};

const EchoData& echo_data() {
  static const EchoData d = [] {
    EchoData e;
    ecdemo::Scenario sc;
    sc.farEnd = ecdemo::FarEnd::SpeechLike;
    e.n = static_cast<std::size_t>(sc.seconds * ecdemo::kRate) / 160 * 160;
    const std::vector<double> far = ecdemo::far_end_signal(sc.farEnd, e.n, sc.farLevel, sc.seed);
    const std::vector<double> echo = ecdemo::echo_of(far, g168::kEchoPaths[0], sc.erlDb);
    std::mt19937 rng(sc.seed * 7919u + 1u);
    std::normal_distribution<double> gauss(0.0, sc.farLevel * std::pow(10.0, sc.nearNoiseDb / 20.0));
    for (std::size_t i = 0; i < e.n; ++i) {
      const double nearv = echo[i] + gauss(rng);
      e.far.push_back(static_cast<float>(far[i]));
      e.near.push_back(static_cast<float>(nearv));
      e.far16.push_back(static_cast<Vsp16s>(std::lround(far[i] * 32767.0)));
      e.near16.push_back(static_cast<Vsp16s>(std::lround(nearv * 32767.0)));
    }
    return e;
  }();
  return d;
}

// ERLE over the last quarter; out is delayed by `delay` samples.
template <class T>
double erle_db(const std::vector<T>& near, const std::vector<T>& out, std::size_t delay) {
  double pn = 0, po = 0;
  for (std::size_t i = near.size() * 3 / 4; i + delay < near.size(); ++i) {
    pn += double(near[i]) * double(near[i]);
    po += double(out[i + delay]) * double(out[i + delay]);
  }
  return 10.0 * std::log10(pn / (po + 1e-30));
}

// ---- ours: sub-band canceller --------------------------------------------------

double subband_erle() {
  static const double erle = [] {
    const EchoData& d = echo_data();
    ecdemo::SubbandEchoCanceller aec;
    const ecdemo::CancellerConfig cfg;
    if (!aec.init(cfg)) return -1.0;
    std::vector<float> out(d.n);
    for (std::size_t p = 0; p + static_cast<std::size_t>(cfg.frameSize) <= d.n;
         p += static_cast<std::size_t>(cfg.frameSize))
      aec.process(&d.far[p], &d.near[p], &out[p]);
    return erle_db(d.near, out, static_cast<std::size_t>(cfg.windowLen - cfg.frameSize));
  }();
  return erle;
}

void BM_EC_SubbandCanceller(benchmark::State& state) {
  const EchoData& d = echo_data();
  ecdemo::SubbandEchoCanceller aec;
  const ecdemo::CancellerConfig cfg;
  if (!aec.init(cfg)) return state.SkipWithError("init failed");
  const auto hop = static_cast<std::size_t>(cfg.frameSize);
  std::vector<float> out(hop);
  std::size_t p = 0;
  for (auto _ : state) {
    aec.process(&d.far[p], &d.near[p], out.data());
    p = p + 2 * hop <= d.n ? p + hop : 0;
  }
  state.counters["frame_ms"] = 1000.0 * static_cast<double>(hop) / ecdemo::kRate;
  state.counters["erle_db"] = subband_erle();
}
BENCHMARK(BM_EC_SubbandCanceller);

// ---- ours: full-band NLMS canceller (float), Arg = taps ----------------------

struct NlmsCanceller {
  int taps;
  std::vector<float> h, hist, step;  // hist: taps + 1 history samples, then the block
  float carried = 0, energy = 0;
  explicit NlmsCanceller(int t)
      : taps(t),
        h(static_cast<std::size_t>(t), 0.0f),
        hist(static_cast<std::size_t>(t + 1 + kBlock), 0.0f),
        step(kBlock) {}
  // One block: far[0..79], near[0..79] -> out.
  void block(const float* far, const float* near, float* out) {
    const std::size_t h0 = static_cast<std::size_t>(taps + 1);
    for (int n = 0; n < kBlock; ++n) {
      hist[h0 + static_cast<std::size_t>(n)] = far[n];
      const float leaving = hist[h0 + static_cast<std::size_t>(n) - static_cast<std::size_t>(taps)];
      energy += far[n] * far[n] - leaving * leaving;
      step[static_cast<std::size_t>(n)] = 0.5f / (std::max(energy, 0.0f) + 1e-3f);
    }
    legacy90vspsNLMS_EC_32f(&hist[h0], near, step.data(), out, kBlock, h.data(), taps, &carried);
    std::copy(hist.end() - static_cast<std::ptrdiff_t>(h0), hist.end(), hist.begin());
  }
};

double nlms_erle(int taps) {
  const EchoData& d = echo_data();
  NlmsCanceller c(taps);
  std::vector<float> out(d.n);
  for (std::size_t p = 0; p + kBlock <= d.n; p += kBlock) c.block(&d.far[p], &d.near[p], &out[p]);
  return erle_db(d.near, out, 0);
}

void BM_EC_NlmsCanceller(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  const EchoData& d = echo_data();
  NlmsCanceller c(taps);
  std::vector<float> out(kBlock);
  std::size_t p = 0;
  for (auto _ : state) {
    c.block(&d.far[p], &d.near[p], out.data());
    p = p + 2 * kBlock <= d.n ? p + kBlock : 0;
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
  state.counters["frame_ms"] = 10;
  state.counters["erle_db"] = nlms_erle(taps);
}
BENCHMARK(BM_EC_NlmsCanceller)->Arg(256)->Arg(512);

// ---- ours: tone detector on the answer tone, per 10 ms -------------------------

const std::vector<Vsp16s>& answer_tone() {
  static const std::vector<Vsp16s> t = [] {
    const std::vector<int16_t> v = vsps::signals::tone_with_reversals(4.0, 8000, 2100.0, 8000.0, 450.0);
    return std::vector<Vsp16s>(v.begin(), v.end());
  }();
  return t;
}

void BM_EC_ToneDetector(benchmark::State& state) {
  const std::vector<Vsp16s>& t = answer_tone();
  Vsp8u st[96];
  legacy90vspsToneDetectInit_EC_16s(st, 8000);
  int detected = 0, result = 0;
  for (std::size_t p = 0; p + kBlock <= t.size(); p += kBlock) {
    legacy90vspsToneDetect_EC_16s(&t[p], kBlock, &result, reinterpret_cast<VspsToneDetectState_16s*>(st));
    detected |= result;
  }
  legacy90vspsToneDetectInit_EC_16s(st, 8000);
  std::size_t p = 0;
  for (auto _ : state) {
    legacy90vspsToneDetect_EC_16s(&t[p], kBlock, &result, reinterpret_cast<VspsToneDetectState_16s*>(st));
    p = p + 2 * kBlock <= t.size() ? p + kBlock : 0;
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
  state.counters["detected"] = detected;
}
BENCHMARK(BM_EC_ToneDetector);

// ---- peers ------------------------------------------------------------------------

#if defined(VSPS_BENCH_SPEEXDSP)
// speexdsp's frequency-domain echo canceller, 10 ms frames, Arg = filter taps.
void BM_Peer_SpeexEcho(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  const EchoData& d = echo_data();
  static double erle[2049] = {};
  if (erle[taps] == 0) {
    SpeexEchoState* s = speex_echo_state_init(kBlock, taps);
    std::vector<Vsp16s> out(d.n);
    for (std::size_t p = 0; p + kBlock <= d.n; p += kBlock)
      speex_echo_cancellation(s, &d.near16[p], &d.far16[p], &out[p]);
    speex_echo_state_destroy(s);
    erle[taps] = erle_db(d.near16, out, 0);
  }
  SpeexEchoState* s = speex_echo_state_init(kBlock, taps);
  std::vector<Vsp16s> out(kBlock);
  std::size_t p = 0;
  for (auto _ : state) {
    speex_echo_cancellation(s, &d.near16[p], &d.far16[p], out.data());
    p = p + 2 * kBlock <= d.n ? p + kBlock : 0;
  }
  speex_echo_state_destroy(s);
  state.SetItemsProcessed(state.iterations() * kBlock);
  state.counters["frame_ms"] = 10;
  state.counters["erle_db"] = erle[taps];
}
BENCHMARK(BM_Peer_SpeexEcho)->Arg(256)->Arg(512);
#endif

#if defined(VSPS_BENCH_SPANDSP)
// SpanDSP's time-domain echo canceller, sample by sample, 10 ms per
// iteration, Arg = taps (adaptation only: no non-linear processing, so that
// its output is the linear residual as ours).
void BM_Peer_SpanDspEcho(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  const EchoData& d = echo_data();
  static double erle[2049] = {};
  if (erle[taps] == 0) {
    echo_can_state_t* ec = echo_can_init(taps, ECHO_CAN_USE_ADAPTION);
    std::vector<Vsp16s> out(d.n);
    for (std::size_t i = 0; i < d.n; ++i) out[i] = echo_can_update(ec, d.far16[i], d.near16[i]);
    echo_can_free(ec);
    erle[taps] = erle_db(d.near16, out, 0);
  }
  echo_can_state_t* ec = echo_can_init(taps, ECHO_CAN_USE_ADAPTION);
  std::size_t p = 0;
  int16_t sink = 0;
  for (auto _ : state) {
    for (int i = 0; i < kBlock; ++i)
      sink = static_cast<int16_t>(sink ^ echo_can_update(ec, d.far16[p + i], d.near16[p + i]));
    p = p + 2 * kBlock <= d.n ? p + kBlock : 0;
  }
  benchmark::DoNotOptimize(sink);
  echo_can_free(ec);
  state.SetItemsProcessed(state.iterations() * kBlock);
  state.counters["frame_ms"] = 10;
  state.counters["erle_db"] = erle[taps];
}
BENCHMARK(BM_Peer_SpanDspEcho)->Arg(256)->Arg(512);

void report_tone(void* user, int code, int, int) {
  if (code == MODEM_CONNECT_TONES_ANSAM_PR || code == MODEM_CONNECT_TONES_ANS_PR) *static_cast<int*>(user) = 1;
}

// SpanDSP's modem connect-tones detector for the answer tone with phase
// reversals, 10 ms per call.
void BM_Peer_SpanDspConnectTones(benchmark::State& state) {
  const std::vector<Vsp16s>& t = answer_tone();
  int detected = 0;
  modem_connect_tones_rx_state_t* s =
      modem_connect_tones_rx_init(nullptr, MODEM_CONNECT_TONES_ANS_PR, report_tone, &detected);
  for (std::size_t p = 0; p + kBlock <= t.size(); p += kBlock) modem_connect_tones_rx(s, &t[p], kBlock);
  modem_connect_tones_rx_free(s);
  int sink = 0;
  s = modem_connect_tones_rx_init(nullptr, MODEM_CONNECT_TONES_ANS_PR, report_tone, &sink);
  std::size_t p = 0;
  for (auto _ : state) {
    modem_connect_tones_rx(s, &t[p], kBlock);
    p = p + 2 * kBlock <= t.size() ? p + kBlock : 0;
  }
  modem_connect_tones_rx_free(s);
  state.SetItemsProcessed(state.iterations() * kBlock);
  state.counters["detected"] = detected;
}
BENCHMARK(BM_Peer_SpanDspConnectTones);
#endif

// ---- the eight G.168 scenarios, ours beside the peers ---------------------------
// One iteration runs a whole 12 s file; counters: erle_db (steady state),
// talk_snr_db (double talk), divergent (0.5 s blocks louder than the
// input), converge_s, reconverge_s, us_per_10ms. Arg = scenario index.
namespace scen {

using Runner = std::vector<int16_t> (*)(const ecscen::Scenario&, int tailTaps);
constexpr int kTailTaps = 512;  // 64 ms at 8000 Hz

const std::vector<ecscen::Scenario>& scenarios() {
  static const std::vector<ecscen::Scenario> s = ecscen::all_scenarios();
  return s;
}

template <int Flags>
std::vector<int16_t> ours(const ecscen::Scenario& s, int tailTaps) {
  int size = 0;
  vspscodecEchoCancellerGetSize(8000, tailTaps / 8, &size);
  std::vector<Vsp8u> mem(static_cast<std::size_t>(size));
  vspscodecEchoCancellerInit(mem.data(), 8000, tailTaps / 8, Flags);
  auto* ec = reinterpret_cast<VspscodecEchoCanceller*>(mem.data());
  std::vector<int16_t> out(s.near.size());
  for (std::size_t p = 0; p + 32 <= s.near.size(); p += 32)
    vspscodecEchoCancellerProcess(ec, &s.far[p], &s.near[p], &out[p], nullptr);
  return out;
}

void run(benchmark::State& state, Runner runner, std::size_t delay) {
  const ecscen::Scenario& s = scenarios()[static_cast<std::size_t>(state.range(0))];
  std::vector<int16_t> out;
  double seconds = 0;
  for (auto _ : state) {
    const auto t0 = std::chrono::steady_clock::now();
    out = runner(s, kTailTaps);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
    benchmark::DoNotOptimize(out.data());
  }
  const ecscen::Metrics m = ecscen::measure(s, out, delay);
  state.SetLabel(s.name);
  state.counters["erle_db"] = m.erleDb;
  state.counters["limit_db"] = s.limitDb;
  state.counters["talk_snr_db"] = m.talkSnrDb;
  state.counters["divergent"] = m.divergentBlocks;
  state.counters["converge_s"] = m.convergeS;
  state.counters["reconverge_s"] = m.reconvergeS;
  state.counters["us_per_10ms"] = 1e6 * seconds / double(state.iterations()) / (double(s.near.size()) / 80.0);
}

void BM_EC_Scenario_Ours(benchmark::State& state) {
  run(state, &ours<0>, static_cast<std::size_t>(vspscodecEchoCancellerDelay(8000)));
}
void BM_EC_Scenario_OursLinear(benchmark::State& state) {
  run(state, &ours<VSPSCODEC_EC_NO_NLP>, static_cast<std::size_t>(vspscodecEchoCancellerDelay(8000)));
}
BENCHMARK(BM_EC_Scenario_Ours)->DenseRange(0, 7)->Iterations(3);
BENCHMARK(BM_EC_Scenario_OursLinear)->DenseRange(0, 7)->Iterations(3);

#if defined(VSPS_BENCH_SPEEXDSP)
std::vector<int16_t> speex(const ecscen::Scenario& s, int tailTaps) {
  SpeexEchoState* st = speex_echo_state_init(kBlock, tailTaps);
  int rate = 8000;
  speex_echo_ctl(st, SPEEX_ECHO_SET_SAMPLING_RATE, &rate);
  std::vector<int16_t> out(s.near.size());
  for (std::size_t p = 0; p + kBlock <= s.near.size(); p += kBlock)
    speex_echo_cancellation(st, &s.near[p], &s.far[p], &out[p]);
  speex_echo_state_destroy(st);
  return out;
}
void BM_Peer_Scenario_Speex(benchmark::State& state) { run(state, &speex, 0); }
BENCHMARK(BM_Peer_Scenario_Speex)->DenseRange(0, 7)->Iterations(3);
#endif

#if defined(VSPS_BENCH_SPANDSP)
template <int Flags>
std::vector<int16_t> spandsp(const ecscen::Scenario& s, int tailTaps) {
  echo_can_state_t* ec = echo_can_init(tailTaps, Flags);
  std::vector<int16_t> out(s.near.size());
  for (std::size_t i = 0; i < s.near.size(); ++i) out[i] = echo_can_update(ec, s.far[i], s.near[i]);
  echo_can_free(ec);
  return out;
}
void BM_Peer_Scenario_SpanDsp(benchmark::State& state) {
  run(state, &spandsp<ECHO_CAN_USE_ADAPTION | ECHO_CAN_USE_NLP | ECHO_CAN_USE_CNG>, 0);
}
void BM_Peer_Scenario_SpanDspLinear(benchmark::State& state) { run(state, &spandsp<ECHO_CAN_USE_ADAPTION>, 0); }
BENCHMARK(BM_Peer_Scenario_SpanDsp)->DenseRange(0, 7)->Iterations(3);
BENCHMARK(BM_Peer_Scenario_SpanDspLinear)->DenseRange(0, 7)->Iterations(3);
#endif

}  // namespace scen

}  // namespace
