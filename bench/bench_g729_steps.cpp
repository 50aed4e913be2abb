// The G.729 codec steps with correlation, filter and codebook-search inner
// loops (and the shared speech/ filters), one call per iteration on
// subframes derived from the benchmark frames (bench_data.h): the LP
// residual and weighted speech of each frame's analysis buffer, the impulse
// response of the weighted synthesis filter, the open-loop lag. The targets
// are the weighted speech itself (no zero-input response is subtracted): the
// magnitudes and lags are those of speech, the values are not a codec's.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "bench/bench_data.h"

namespace {

constexpr int kSub = 40;
constexpr int kExcHist = 154;  // past excitation before a subframe

struct Subframe {
  Vsp16s lpc[11], ap1[11], ap2[11];  // Q12: A(z), A(z/0.94), A(z/0.6)
  Vsp16s speech[10 + kSub];          // 10 past samples, then the subframe
  Vsp16s res[kSub];                  // LP residual of the subframe
  Vsp16s wsp[143 + 80];              // weighted speech: 143 past, then the frame
  Vsp16s xn[kSub];                   // target (weighted speech of the subframe)
  Vsp16s h[kSub];                    // impulse response of A(z/0.94) / (A(z) A(z/0.6)), Q12
  Vsp16s exc[kExcHist + kSub];       // residual history, then the subframe's residual
  Vsp16s lag;                        // open-loop lag of the frame
  int subframe;
};

const std::vector<Subframe>& subframes() {
  static const std::vector<Subframe> out = [] {
    std::vector<Subframe> v;
    for (const bench::G729Frame& fr : bench::g729_frames()) {
      Vsp16s ap1[11], ap2[11], res[230], wsp[230], mem[10] = {};
      legacy90vspsWeightLPC_G729_16s(fr.lpc, 30802, ap1);  // 0.94 Q15
      legacy90vspsWeightLPC_G729_16s(fr.lpc, 19661, ap2);  // 0.6 Q15
      legacy90vspsResidualFilter_NR_16s_Sfs(fr.lpc, 10, fr.buffer, res, 230, 12);
      Vsp16s wres[230];
      legacy90vspsResidualFilter_NR_16s_Sfs(ap1, 10, fr.buffer, wres, 230, 12);
      legacy90vspsSynthesisFilter_NR_16s_Sfs(ap2, 10, wres, wsp, 230, 12, mem);
      Vsp16s lag = 40;
      legacy90vspsOpenLoopPitch_G729_16s(wsp + 7, &lag);
      Vsp16s imp[kSub] = {}, h1[kSub];
      std::memcpy(imp, ap1, sizeof ap1);
      Vsp16s m1[10] = {}, m2[10] = {};
      legacy90vspsSynthesisFilter_NR_16s_Sfs(fr.lpc, 10, imp, h1, kSub, 12, m1);
      Subframe s{};
      legacy90vspsSynthesisFilter_NR_16s_Sfs(ap2, 10, h1, s.h, kSub, 12, m2);
      for (int sf = 0; sf < 2; ++sf) {
        const int at = 160 + kSub * sf;  // subframe start in the 240-sample buffer
        std::memcpy(s.lpc, fr.lpc, sizeof s.lpc);
        std::memcpy(s.ap1, ap1, sizeof ap1);
        std::memcpy(s.ap2, ap2, sizeof ap2);
        std::memcpy(s.speech, fr.buffer + at - 10, sizeof s.speech);
        std::memcpy(s.res, res + at - 10, sizeof s.res);
        std::memcpy(s.wsp, wsp + 7, sizeof s.wsp);
        std::memcpy(s.xn, wsp + at - 10, sizeof s.xn);
        std::memcpy(s.exc, res + 230 - (kExcHist + kSub), sizeof s.exc);  // the history ends at the frame end
        s.lag = lag;
        s.subframe = sf;
        v.push_back(s);
      }
    }
    return v;
  }();
  return out;
}

struct Cycle {
  std::size_t i = 0;
  const Subframe& next() {
    const std::vector<Subframe>& s = subframes();
    i = i + 1 == s.size() ? 0 : i + 1;
    return s[i];
  }
};

void BM_ResidualFilter_NR(benchmark::State& state) {
  Cycle c;
  Vsp16s y[kSub];
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsResidualFilter_NR_16s_Sfs(s.lpc, 10, s.speech, y, kSub, 12);
    benchmark::DoNotOptimize(y);
  }
}
BENCHMARK(BM_ResidualFilter_NR);

void BM_SynthesisFilter_NR(benchmark::State& state) {
  Cycle c;
  Vsp16s y[kSub], mem[10] = {};
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsSynthesisFilter_NR_16s_Sfs(s.ap2, 10, s.res, y, kSub, 12, mem);
    benchmark::DoNotOptimize(y);
  }
}
BENCHMARK(BM_SynthesisFilter_NR);

void BM_ConvPartial_NR(benchmark::State& state) {
  Cycle c;
  Vsp16s y[kSub];
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsConvPartial_NR_16s_Sfs(s.exc + kExcHist - s.lag, s.h, y, kSub, 12);
    benchmark::DoNotOptimize(y);
  }
}
BENCHMARK(BM_ConvPartial_NR);

void BM_G729_OpenLoopPitch(benchmark::State& state) {
  Cycle c;
  Vsp16s lag = 0;
  for (auto _ : state) {
    legacy90vspsOpenLoopPitch_G729_16s(c.next().wsp, &lag);
    benchmark::DoNotOptimize(lag);
  }
}
BENCHMARK(BM_G729_OpenLoopPitch);

void BM_G729_OpenLoopPitch_A(benchmark::State& state) {
  Cycle c;
  Vsp16s lag = 0;
  for (auto _ : state) {
    legacy90vspsOpenLoopPitch_G729A_16s(c.next().wsp, &lag);
    benchmark::DoNotOptimize(lag);
  }
}
BENCHMARK(BM_G729_OpenLoopPitch_A);

void BM_G729_ClosedLoopPitch(benchmark::State& state) {
  Cycle c;
  Vsp16s t0 = 0, frac = 0;
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsClosedLoopPitch_G729_16s(s.exc, s.xn, s.h, s.lag, 0, &t0, &frac);
    benchmark::DoNotOptimize(t0);
  }
}
BENCHMARK(BM_G729_ClosedLoopPitch);

void BM_G729_ClosedLoopPitch_A(benchmark::State& state) {
  Cycle c;
  Vsp16s exc[kExcHist + kSub], t0 = 0, frac = 0;
  for (auto _ : state) {
    const Subframe& s = c.next();
    std::memcpy(exc, s.exc, sizeof exc);
    legacy90vspsClosedLoopPitch_G729A_16s_I(exc, s.xn, s.h, s.lag, 0, &t0, &frac);
    benchmark::DoNotOptimize(exc);
  }
}
BENCHMARK(BM_G729_ClosedLoopPitch_A);

void BM_G729_DecodeAdaptiveVector(benchmark::State& state) {
  Cycle c;
  Vsp16s exc[kExcHist + kSub];
  for (auto _ : state) {
    const Subframe& s = c.next();
    std::memcpy(exc, s.exc, sizeof exc);
    legacy90vspsDecodeAdaptiveVector_G729_16s_I(s.lag, 1, exc);
    benchmark::DoNotOptimize(exc);
  }
}
BENCHMARK(BM_G729_DecodeAdaptiveVector);

void BM_G729_PitchGain(benchmark::State& state) {
  Cycle c;
  Vsp16s y1[kSub], gain = 0, coeff[4], xn2[kSub];
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsConvPartial_NR_16s_Sfs(s.exc + kExcHist - s.lag, s.h, y1, kSub, 12);
    legacy90vspsPitchGain_G729_16s(s.xn, y1, 0, &gain, coeff, xn2);
    benchmark::DoNotOptimize(xn2);
  }
}
BENCHMARK(BM_G729_PitchGain);

void BM_G729_FixedCodebookSearch(benchmark::State& state) {
  Cycle c;
  Vsp16s code[kSub], y2[kSub], index[2];
  for (auto _ : state) {
    const Subframe& s = c.next();
    Vsp16s extra = 30;
    legacy90vspsFixedCodebookSearch_G729_16s(s.xn, s.h, s.lag, 8000, 0, &extra, code, y2, index);
    benchmark::DoNotOptimize(index);
  }
}
BENCHMARK(BM_G729_FixedCodebookSearch);

void BM_G729_FixedCodebookSearch_A(benchmark::State& state) {
  Cycle c;
  Vsp16s code[kSub], y2[kSub], index[2];
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsFixedCodebookSearch_G729A_16s(s.xn, s.h, s.lag, 8000, code, y2, index);
    benchmark::DoNotOptimize(index);
  }
}
BENCHMARK(BM_G729_FixedCodebookSearch_A);

void BM_G729_PostFilter(benchmark::State& state) {
  int size = 0;
  legacy90vspsPostFilterGetStateSize_G729(&size);
  std::vector<Vsp8u> st(static_cast<std::size_t>(size));
  legacy90vspsPostFilterInit_G729(st.data());
  Cycle c;
  Vsp16s y[kSub], voicing = 0;
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsPostFilter_G729_16s(s.lpc, s.speech + 10, y, s.lag, 1, &voicing, st.data());
    benchmark::DoNotOptimize(y);
  }
}
BENCHMARK(BM_G729_PostFilter);

void BM_G729_PostFilter_A(benchmark::State& state) {
  int size = 0;
  legacy90vspsPostFilterGetStateSize_G729A(&size);
  std::vector<Vsp8u> st(static_cast<std::size_t>(size));
  legacy90vspsPostFilterInit_G729A(st.data());
  Cycle c;
  Vsp16s y[kSub];
  for (auto _ : state) {
    const Subframe& s = c.next();
    legacy90vspsPostFilter_G729A_16s(s.lpc, s.speech + 10, y, s.lag, 1, st.data());
    benchmark::DoNotOptimize(y);
  }
}
BENCHMARK(BM_G729_PostFilter_A);

}  // namespace
