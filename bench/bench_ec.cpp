// Every echo-cancellation export on realistic sizes: filter banks N = 32 and
// 64 (17 and 33 sub-bands) with their built-in windows, full-band filters of
// 128..1024 taps on 10 ms blocks, sub-band filters of 8..64 segments, the
// tone detector on 10 ms blocks (items = samples where the cost per sample
// matters).
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "bench/bench_data.h"
#include "bench/model/ec_model.h"
#include "core/cpu_state.h"
#include "ec/internal_ops.h"
#include "tools/speech_signal.h"

namespace {

constexpr int kBlock = 80;  // 10 ms at 8 kHz

// The built-in bank configurations (order, hop, window length).
struct BankConfig {
  int order, frameSize, windowLen;
};
BankConfig bank_config(int64_t order) { return order == 5 ? BankConfig{5, 24, 128} : BankConfig{6, 44, 256}; }

struct Bank {
  std::vector<Vsp8u> state, work;
  bool init(bool fixed, const BankConfig& c) {
    int s = 0, i = 0, w = 0;
    if ((fixed ? legacy90vspsSubbandProcessGetSize_16s : legacy90vspsSubbandProcessGetSize_32f)(c.order, c.windowLen,
                                                                                                &s, &i, &w) != 0)
      return false;
    std::vector<Vsp8u> initBuf(static_cast<std::size_t>(i) + 1);
    state.assign(static_cast<std::size_t>(s), 0);
    work.assign(static_cast<std::size_t>(w), 0);
    return (fixed ? legacy90vspsSubbandProcessInit_16s(state.data(), c.order, c.frameSize, c.windowLen, nullptr,
                                                       initBuf.data())
                  : legacy90vspsSubbandProcessInit_32f(state.data(), c.order, c.frameSize, c.windowLen, nullptr,
                                                       initBuf.data())) == 0;
  }
};

std::vector<Vsp32f> speech_float() {
  std::vector<Vsp32f> f;
  for (Vsp16s v : bench::speech8k()) f.push_back(static_cast<Vsp32f>(v) / 32768.0f);
  return f;
}

void BM_EC_SubbandGetSize(benchmark::State& state) {
  int s, i, w;
  for (auto _ : state) {
    legacy90vspsSubbandProcessGetSize_16s(6, 256, &s, &i, &w);
    legacy90vspsSubbandProcessGetSize_32f(6, 256, &s, &i, &w);
    benchmark::DoNotOptimize(s);
  }
}
BENCHMARK(BM_EC_SubbandGetSize);

// Arg: 0 fixed point, 1 float.
void BM_EC_SubbandInit(benchmark::State& state) {
  const bool fixed = state.range(0) == 0;
  Bank b;
  if (!b.init(fixed, bank_config(6))) return state.SkipWithError("init failed");
  std::vector<Vsp8u> initBuf(8 * 17 + 16);
  for (auto _ : state) {
    if (fixed)
      legacy90vspsSubbandProcessInit_16s(b.state.data(), 6, 44, 256, nullptr, initBuf.data());
    else
      legacy90vspsSubbandProcessInit_32f(b.state.data(), 6, 44, 256, nullptr, initBuf.data());
    benchmark::DoNotOptimize(b.state.data());
  }
}
BENCHMARK(BM_EC_SubbandInit)->Arg(0)->Arg(1);

// Arg: transform order (5: N = 32, 6: N = 64).
void BM_EC_SubbandAnalysis_16s(benchmark::State& state) {
  const BankConfig c = bank_config(state.range(0));
  Bank b;
  if (!b.init(true, c)) return state.SkipWithError("init failed");
  std::vector<Vsp32sc> out(static_cast<std::size_t>((1 << c.order) / 2 + 1));
  const std::vector<Vsp16s>& s = bench::speech8k();
  std::size_t pos = 0;
  for (auto _ : state) {
    legacy90vspsSubbandAnalysis_16s32sc_Sfs(
        &s[pos], out.data(), reinterpret_cast<VspsSubbandProcessState_16s*>(b.state.data()), 0, b.work.data());
    benchmark::DoNotOptimize(out.data());
    pos = pos + 2 * kBlock < s.size() ? pos + static_cast<std::size_t>(c.frameSize) : 0;
  }
}
BENCHMARK(BM_EC_SubbandAnalysis_16s)->Arg(5)->Arg(6);

void BM_EC_SubbandAnalysis_32f(benchmark::State& state) {
  const BankConfig c = bank_config(state.range(0));
  Bank b;
  if (!b.init(false, c)) return state.SkipWithError("init failed");
  std::vector<Vsp32fc> out(static_cast<std::size_t>((1 << c.order) / 2 + 1));
  const std::vector<Vsp32f> s = speech_float();
  std::size_t pos = 0;
  for (auto _ : state) {
    legacy90vspsSubbandAnalysis_32f32fc(&s[pos], out.data(),
                                        reinterpret_cast<VspsSubbandProcessState_32f*>(b.state.data()), b.work.data());
    benchmark::DoNotOptimize(out.data());
    pos = pos + 2 * kBlock < s.size() ? pos + static_cast<std::size_t>(c.frameSize) : 0;
  }
}
BENCHMARK(BM_EC_SubbandAnalysis_32f)->Arg(5)->Arg(6);

// Synthesis of the analysis frames of speech (realistic bins).
template <bool kFixed>
void run_synthesis(benchmark::State& state) {
  const BankConfig c = bank_config(state.range(0));
  Bank ana, syn;
  if (!ana.init(kFixed, c) || !syn.init(kFixed, c)) return state.SkipWithError("init failed");
  const std::size_t bins = static_cast<std::size_t>((1 << c.order) / 2 + 1);
  constexpr int kFramesKept = 32;
  std::vector<Vsp32sc> framesI(bins * kFramesKept);
  std::vector<Vsp32fc> framesF(bins * kFramesKept);
  const std::vector<Vsp16s>& s = bench::speech8k();
  const std::vector<Vsp32f> sf = speech_float();
  for (int f = 0; f < kFramesKept; ++f) {
    const std::size_t pos = 8000 + static_cast<std::size_t>(f * c.frameSize);
    if (kFixed)
      legacy90vspsSubbandAnalysis_16s32sc_Sfs(&s[pos], &framesI[bins * static_cast<std::size_t>(f)],
                                              reinterpret_cast<VspsSubbandProcessState_16s*>(ana.state.data()), 0,
                                              ana.work.data());
    else
      legacy90vspsSubbandAnalysis_32f32fc(&sf[pos], &framesF[bins * static_cast<std::size_t>(f)],
                                          reinterpret_cast<VspsSubbandProcessState_32f*>(ana.state.data()),
                                          ana.work.data());
  }
  std::vector<Vsp16s> outI(static_cast<std::size_t>(c.frameSize));
  std::vector<Vsp32f> outF(static_cast<std::size_t>(c.frameSize));
  std::size_t f = 0;
  for (auto _ : state) {
    if (kFixed)
      legacy90vspsSubbandSynthesis_32sc16s_Sfs(&framesI[bins * f], outI.data(),
                                               reinterpret_cast<VspsSubbandProcessState_16s*>(syn.state.data()), 0,
                                               syn.work.data());
    else
      legacy90vspsSubbandSynthesis_32fc32f(&framesF[bins * f], outF.data(),
                                           reinterpret_cast<VspsSubbandProcessState_32f*>(syn.state.data()),
                                           syn.work.data());
    benchmark::ClobberMemory();
    f = f + 1 == kFramesKept ? 0 : f + 1;
  }
}
void BM_EC_SubbandSynthesis_16s(benchmark::State& state) { run_synthesis<true>(state); }
void BM_EC_SubbandSynthesis_32f(benchmark::State& state) { run_synthesis<false>(state); }
BENCHMARK(BM_EC_SubbandSynthesis_16s)->Arg(5)->Arg(6);
BENCHMARK(BM_EC_SubbandSynthesis_32f)->Arg(5)->Arg(6);

// ---- full-band filters: one 10 ms block, Arg = taps ---------------------------

struct FullBand {
  std::vector<Vsp16s> ref16, near16, err16, h16;
  std::vector<Vsp32f> ref32, near32, err32, h32;
  std::vector<Vsp32s> step16;
  std::vector<Vsp32f> step32;
  explicit FullBand(int taps) {
    const std::vector<Vsp16s>& s = bench::speech8k();
    for (int n = 0; n < taps + kBlock; ++n) {
      ref16.push_back(s[static_cast<std::size_t>(8000 + n)]);
      near16.push_back(static_cast<Vsp16s>(s[static_cast<std::size_t>(8000 + n)] / 3));
    }
    for (Vsp16s v : ref16) ref32.push_back(v / 32768.0f);
    for (Vsp16s v : near16) near32.push_back(v / 32768.0f);
    err16.assign(kBlock, 0);
    err32.assign(kBlock, 0);
    for (int k = 0; k < taps; ++k) {
      const double v = 0.3 * std::exp(-k / 40.0) * std::cos(0.3 * k);
      h16.push_back(static_cast<Vsp16s>(v * 32767));
      h32.push_back(static_cast<Vsp32f>(v));
    }
    step16.assign(kBlock, 16);  // c = e * 16 / 2^11
    step32.assign(kBlock, 1e-4f);
  }
  const Vsp16s* x16() const { return ref16.data() + (ref16.size() - kBlock); }
  const Vsp32f* x32() const { return ref32.data() + (ref32.size() - kBlock); }
};

void BM_EC_FIR_32f(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  FullBand fb(taps);
  for (auto _ : state) {
    legacy90vspsFIR_EC_32f(fb.x32(), fb.near32.data(), fb.err32.data(), kBlock, fb.h32.data(), taps);
    benchmark::DoNotOptimize(fb.err32.data());
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_EC_FIR_32f)->Arg(128)->Arg(256)->Arg(512)->Arg(1024);

void BM_EC_FIR_16s(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  FullBand fb(taps);
  for (auto _ : state) {
    legacy90vspsFIR_EC_16s(fb.x16(), fb.near16.data(), fb.err16.data(), kBlock, fb.h16.data(), taps);
    benchmark::DoNotOptimize(fb.err16.data());
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_EC_FIR_16s)->Arg(128)->Arg(256)->Arg(512)->Arg(1024);

void BM_EC_NLMS_32f(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  FullBand fb(taps);
  Vsp32f carried = 0;
  for (auto _ : state) {
    legacy90vspsNLMS_EC_32f(fb.x32(), fb.near32.data(), fb.step32.data(), fb.err32.data(), kBlock, fb.h32.data(), taps,
                            &carried);
    benchmark::DoNotOptimize(fb.err32.data());
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
  if (taps == 512) state.counters["frame_ms"] = 10;
}
BENCHMARK(BM_EC_NLMS_32f)->Arg(128)->Arg(256)->Arg(512)->Arg(1024);

void BM_EC_NLMS_16s(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  FullBand fb(taps);
  Vsp16s carried = 0;
  for (auto _ : state) {
    legacy90vspsNLMS_EC_16s(fb.x16(), fb.near16.data(), fb.step16.data(), fb.err16.data(), kBlock, fb.h16.data(), taps,
                            &carried);
    benchmark::DoNotOptimize(fb.err16.data());
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
  if (taps == 512) state.counters["frame_ms"] = 10;
}
BENCHMARK(BM_EC_NLMS_16s)->Arg(128)->Arg(256)->Arg(512)->Arg(1024);

// The plain scalar model of the Q15 filters (bench/model/ec_model.h), after
// a check that it computes what the library computes.
void BM_Model_EC_FIR_16s(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  FullBand fb(taps);
  std::vector<Vsp16s> lib(kBlock);
  legacy90vspsFIR_EC_16s(fb.x16(), fb.near16.data(), lib.data(), kBlock, fb.h16.data(), taps);
  model::ec::fir_16s(fb.x16(), fb.near16.data(), fb.err16.data(), kBlock, fb.h16.data(), taps);
  if (lib != fb.err16) return state.SkipWithError("the scalar model differs from the library");
  for (auto _ : state) {
    model::ec::fir_16s(fb.x16(), fb.near16.data(), fb.err16.data(), kBlock, fb.h16.data(), taps);
    benchmark::DoNotOptimize(fb.err16.data());
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_Model_EC_FIR_16s)->Arg(128)->Arg(256)->Arg(512)->Arg(1024);

void BM_Model_EC_NLMS_16s(benchmark::State& state) {
  const int taps = static_cast<int>(state.range(0));
  FullBand a(taps), b(taps);
  Vsp16s ca = 0, cb = 0;
  for (int r = 0; r < 3; ++r) {
    legacy90vspsNLMS_EC_16s(a.x16(), a.near16.data(), a.step16.data(), a.err16.data(), kBlock, a.h16.data(), taps, &ca);
    model::ec::lms_16s(b.x16(), b.near16.data(), b.step16.data(), b.err16.data(), kBlock, b.h16.data(), taps, &cb);
  }
  if (a.err16 != b.err16 || a.h16 != b.h16 || ca != cb)
    return state.SkipWithError("the scalar model differs from the library");
  for (auto _ : state) {
    model::ec::lms_16s(b.x16(), b.near16.data(), b.step16.data(), b.err16.data(), kBlock, b.h16.data(), taps, &cb);
    benchmark::DoNotOptimize(b.err16.data());
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_Model_EC_NLMS_16s)->Arg(128)->Arg(256)->Arg(512)->Arg(1024);

// ---- sub-band filters: Args = sub-bands, segments -------------------------------

struct SubbandFrames {
  int bands, segments;
  std::vector<Vsp32fc> xf, hf, ef, outf, apFrames, apErr;
  std::vector<Vsp32sc> xi, hi, ei, outi, work;
  std::vector<const Vsp32fc*> xpf, hpfc, apX, apE;
  std::vector<Vsp32fc*> hpf;
  std::vector<const Vsp32sc*> xpi, hpic;
  std::vector<Vsp32sc*> hpi;
  std::vector<double> stepF, apStep;
  std::vector<Vsp32s> stepI;
  SubbandFrames(int b, int s, int apOrder = 1) : bands(b), segments(s) {
    const std::size_t n = static_cast<std::size_t>(b) * static_cast<std::size_t>(s + apOrder);
    const std::vector<Vsp16s>& sp = bench::speech8k();
    for (std::size_t i = 0; i < n; ++i) {
      const float re = sp[8000 + 2 * i] / 32768.0f, im = sp[8001 + 2 * i] / 32768.0f;
      xf.push_back({re, im});
      hf.push_back({0.01f * im, -0.01f * re});
      xi.push_back({sp[8000 + 2 * i] * 256, sp[8001 + 2 * i] * 256});
      hi.push_back({sp[9000 + 2 * i] * 4, sp[9001 + 2 * i] * 4});
    }
    for (int k = 0; k < b; ++k) {
      ef.push_back({0.001f * static_cast<float>(k), -0.002f});
      ei.push_back({1000 * k, -3000});
      stepF.push_back(0.5 / (1.0 + k));
      stepI.push_back(0x40000000);
      stepI.push_back(20);
      apStep.push_back(0.5);
      apStep.push_back(1e-3);
    }
    outf.assign(static_cast<std::size_t>(b), {0, 0});
    outi.assign(static_cast<std::size_t>(b), {0, 0});
    work.assign(static_cast<std::size_t>(b), {0, 0});
    for (int m = 0; m < s + apOrder - 1; ++m) apX.push_back(&xf[static_cast<std::size_t>(m * b)]);
    for (int p = 0; p < apOrder; ++p) apE.push_back(ef.data());
    for (int m = 0; m < s; ++m) {
      const std::size_t o = static_cast<std::size_t>(m * b);
      xpf.push_back(&xf[o]);
      hpf.push_back(&hf[o]);
      hpfc.push_back(&hf[o]);
      xpi.push_back(&xi[o]);
      hpi.push_back(&hi[o]);
      hpic.push_back(&hi[o]);
    }
  }
};

#define VSPS_SUBBAND_ARGS ->Args({17, 8})->Args({33, 16})->Args({33, 64})

void BM_EC_FIRSubband_32fc(benchmark::State& state) {
  SubbandFrames f(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) {
    legacy90vspsFIRSubband_EC_32fc(f.xpf.data(), f.hpfc.data(), f.outf.data(), f.segments, f.bands);
    benchmark::DoNotOptimize(f.outf.data());
  }
}
BENCHMARK(BM_EC_FIRSubband_32fc) VSPS_SUBBAND_ARGS;

void BM_EC_FIRSubband_32sc(benchmark::State& state) {
  SubbandFrames f(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) {
    legacy90vspsFIRSubband_EC_32sc_Sfs(f.xpi.data(), f.hpic.data(), f.outi.data(), f.segments, f.bands, 12);
    benchmark::DoNotOptimize(f.outi.data());
  }
}
BENCHMARK(BM_EC_FIRSubband_32sc) VSPS_SUBBAND_ARGS;

void BM_EC_FIRSubbandLow_32sc(benchmark::State& state) {
  SubbandFrames f(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) {
    legacy90vspsFIRSubbandLow_EC_32sc_Sfs(f.xpi.data(), f.hpic.data(), f.segments, f.outi.data(), 0, f.bands, 12);
    benchmark::DoNotOptimize(f.outi.data());
  }
}
BENCHMARK(BM_EC_FIRSubbandLow_32sc) VSPS_SUBBAND_ARGS;

void BM_EC_CoeffUpdate_32fc(benchmark::State& state) {
  SubbandFrames f(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) {
    legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I(f.stepF.data(), f.xpf.data(), f.ef.data(), f.hpf.data(), f.segments,
                                                f.bands);
    benchmark::DoNotOptimize(f.hf.data());
  }
}
BENCHMARK(BM_EC_CoeffUpdate_32fc) VSPS_SUBBAND_ARGS;

void BM_EC_CoeffUpdate_32sc(benchmark::State& state) {
  SubbandFrames f(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) {
    legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I(f.stepI.data(), f.xpi.data(), f.ei.data(), f.hpi.data(), f.segments,
                                                f.bands, 12);
    benchmark::DoNotOptimize(f.hi.data());
  }
}
BENCHMARK(BM_EC_CoeffUpdate_32sc) VSPS_SUBBAND_ARGS;

void BM_EC_LowCoeffUpdate_32sc(benchmark::State& state) {
  SubbandFrames f(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  for (auto _ : state) {
    legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I(f.xpi.data(), f.ei.data(), f.hpi.data(), f.segments, f.work.data(),
                                                   f.stepI.data(), 0, f.bands, 12);
    benchmark::DoNotOptimize(f.hi.data());
  }
}
BENCHMARK(BM_EC_LowCoeffUpdate_32sc) VSPS_SUBBAND_ARGS;

// Args: sub-bands, segments, projection order.
void BM_EC_APCoeffUpdate_32fc(benchmark::State& state) {
  const int order = static_cast<int>(state.range(2));
  SubbandFrames f(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), order);
  for (auto _ : state) {
    legacy90vspsFIRSubbandAPCoeffUpdate_EC_32fc_I(f.apStep.data(), f.apX.data(), f.apE.data(), f.hpf.data(), f.segments,
                                                  f.bands, order);
    benchmark::DoNotOptimize(f.hf.data());
  }
}
BENCHMARK(BM_EC_APCoeffUpdate_32fc)->Args({33, 16, 1})->Args({33, 16, 4});

// ---- tone detector -------------------------------------------------------------

// The 2100 Hz answer tone with phase reversals every 450 ms, -12 dBFS.
const std::vector<Vsp16s>& answer_tone() {
  static const std::vector<Vsp16s> t = [] {
    const std::vector<int16_t> v = vsps::signals::tone_with_reversals(4.0, 8000, 2100.0, 8000.0, 450.0);
    return std::vector<Vsp16s>(v.begin(), v.end());
  }();
  return t;
}

void BM_EC_ToneDetectSetup(benchmark::State& state) {
  Vsp8u st[96];
  int size = 0;
  for (auto _ : state) {
    legacy90vspsToneDetectGetStateSize_EC_16s(8000, &size);
    legacy90vspsToneDetectGetStateSize_EC_32f(8000, &size);
    legacy90vspsToneDetectInit_EC_16s(st, 8000);
    legacy90vspsToneDetectInit_EC_32f(st, 8000);
    benchmark::DoNotOptimize(st);
  }
}
BENCHMARK(BM_EC_ToneDetectSetup);

void BM_EC_ToneDetect_16s(benchmark::State& state) {
  Vsp8u st[96];
  legacy90vspsToneDetectInit_EC_16s(st, 8000);
  const std::vector<Vsp16s>& t = answer_tone();
  std::size_t pos = 0;
  int result = 0, hits = 0;
  for (auto _ : state) {
    legacy90vspsToneDetect_EC_16s(&t[pos], kBlock, &result, reinterpret_cast<VspsToneDetectState_16s*>(st));
    hits += result;
    pos = pos + 2 * kBlock < t.size() ? pos + kBlock : 0;
  }
  benchmark::DoNotOptimize(hits);
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_EC_ToneDetect_16s);

void BM_EC_ToneDetect_32f(benchmark::State& state) {
  Vsp8u st[96];
  legacy90vspsToneDetectInit_EC_32f(st, 8000);
  std::vector<Vsp32f> t;
  for (Vsp16s v : answer_tone()) t.push_back(v / 32768.0f);
  std::size_t pos = 0;
  int result = 0, hits = 0;
  for (auto _ : state) {
    legacy90vspsToneDetect_EC_32f(&t[pos], kBlock, &result, reinterpret_cast<VspsToneDetectState_32f*>(st));
    hits += result;
    pos = pos + 2 * kBlock < t.size() ? pos + kBlock : 0;
  }
  benchmark::DoNotOptimize(hits);
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_EC_ToneDetect_32f);

}  // namespace

namespace {

// The bare real transforms inside the float analysis and synthesis (the
// denominator of the analysis-plus-synthesis target), Arg = order.
void BM_EC_RealTransforms_32f(benchmark::State& state) {
  const BankConfig c = bank_config(state.range(0));
  Bank b;
  if (!b.init(false, c)) return state.SkipWithError("init failed");
  const int n = 1 << c.order;
  const vsps::EcTransformOps& ops = vsps::ec_transform_ops(vsps::current_level());
  auto* st = reinterpret_cast<VspsSubbandProcessState_32f*>(b.state.data());
  std::vector<Vsp32f> input(static_cast<std::size_t>(n));
  for (int j = 0; j < n; ++j)
    input[static_cast<std::size_t>(j)] = bench::speech8k()[static_cast<std::size_t>(9000 + j)] / 32768.0f;
  auto* u =
      reinterpret_cast<Vsp32f*>(b.work.data() + ((16 - reinterpret_cast<std::uintptr_t>(b.work.data()) % 16) % 16));
  std::vector<Vsp32fc> bins(static_cast<std::size_t>(n / 2 + 1));
  for (auto _ : state) {
    std::memcpy(u, input.data(), sizeof(Vsp32f) * static_cast<std::size_t>(n));
    ops.forward_32f(st, b.work.data(), bins.data());
    ops.inverse_32f(st, bins.data(), b.work.data());
    benchmark::DoNotOptimize(u);
  }
}
BENCHMARK(BM_EC_RealTransforms_32f)->Arg(5)->Arg(6);

// Analysis plus synthesis of the float bank (the numerator), Arg = order.
void BM_EC_AnalysisSynthesis_32f(benchmark::State& state) {
  const BankConfig c = bank_config(state.range(0));
  Bank ana, syn;
  if (!ana.init(false, c) || !syn.init(false, c)) return state.SkipWithError("init failed");
  std::vector<Vsp32fc> bins(static_cast<std::size_t>((1 << c.order) / 2 + 1));
  const std::vector<Vsp32f> s = speech_float();
  std::vector<Vsp32f> out(static_cast<std::size_t>(c.frameSize));
  std::size_t pos = 0;
  for (auto _ : state) {
    legacy90vspsSubbandAnalysis_32f32fc(
        &s[pos], bins.data(), reinterpret_cast<VspsSubbandProcessState_32f*>(ana.state.data()), ana.work.data());
    legacy90vspsSubbandSynthesis_32fc32f(
        bins.data(), out.data(), reinterpret_cast<VspsSubbandProcessState_32f*>(syn.state.data()), syn.work.data());
    benchmark::DoNotOptimize(out.data());
    pos = pos + 2 * kBlock < s.size() ? pos + static_cast<std::size_t>(c.frameSize) : 0;
  }
}
BENCHMARK(BM_EC_AnalysisSynthesis_32f)->Arg(5)->Arg(6);

}  // namespace
