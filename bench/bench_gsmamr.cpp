// Every GSM-AMR export on the frames of the speech-like signal
// (bench_data.h), one call per iteration.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "bench/bench_data.h"

namespace {

using bench::amr_frames;
using bench::kFrames;

struct Cycle {
  int i = 0;
  const bench::AmrFrame& next() {
    i = i + 1 == kFrames ? 0 : i + 1;
    return amr_frames()[static_cast<std::size_t>(i)];
  }
};

// Arg: the rate (0 = 4.75, 7 = 12.2 kbit/s).
void BM_AMR_AutoCorr(benchmark::State& state) {
  const int mode = static_cast<int>(state.range(0));
  Cycle c;
  Vsp32s r[22];
  for (auto _ : state) {
    legacy90vspsAutoCorr_GSMAMR_16s32s(c.next().buffer, r, mode);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(BM_AMR_AutoCorr)->Arg(vspRate4750)->Arg(vspRate12200);

void BM_AMR_LevinsonDurbin(benchmark::State& state) {
  Cycle c;
  Vsp16s a[11];
  for (auto _ : state) {
    legacy90vspsLevinsonDurbin_GSMAMR_32s16s(c.next().r122, a);
    benchmark::DoNotOptimize(a);
  }
}
BENCHMARK(BM_AMR_LevinsonDurbin);

void BM_AMR_LPCToLSP(benchmark::State& state) {
  Cycle c;
  Vsp16s lsp[10];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLPCToLSP_GSMAMR_16s(f.lpc, f.lsp, lsp);
    benchmark::DoNotOptimize(lsp);
  }
}
BENCHMARK(BM_AMR_LPCToLSP);

void BM_AMR_LSPToLPC(benchmark::State& state) {
  Cycle c;
  Vsp16s a[11];
  for (auto _ : state) {
    legacy90vspsLSPToLPC_GSMAMR_16s(c.next().lsp, a);
    benchmark::DoNotOptimize(a);
  }
}
BENCHMARK(BM_AMR_LSPToLPC);

void BM_AMR_LSFToLSP(benchmark::State& state) {
  static const Vsp16s lsf[10] = {1384, 2077, 3420, 5108, 6742, 8122, 9863, 11092, 12714, 13701};
  Vsp16s lsp[10];
  for (auto _ : state) {
    legacy90vspsLSFToLSP_GSMAMR_16s(lsf, lsp);
    benchmark::DoNotOptimize(lsp);
  }
}
BENCHMARK(BM_AMR_LSFToLSP);

void BM_AMR_LSPQuant(benchmark::State& state) {
  const int mode = static_cast<int>(state.range(0));
  const bool mr122 = mode == vspRate12200;
  Cycle c;
  Vsp16s pastRq[10] = {}, q[20], idx[5];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLSPQuant_GSMAMR_16s(mr122 ? f.lsp122 : f.lsp, pastRq, q, idx, mode);
    benchmark::DoNotOptimize(q);
  }
}
BENCHMARK(BM_AMR_LSPQuant)->Arg(vspRate4750)->Arg(vspRate7950)->Arg(vspRate12200);

void BM_AMR_QuantLSPDecode(benchmark::State& state) {
  const int mode = static_cast<int>(state.range(0));
  const bool mr122 = mode == vspRate12200;
  Cycle c;
  Vsp16s pastRq[10] = {}, pastLsfQ[10] = {1384, 2077, 3420, 5108, 6742, 8122, 9863, 11092, 12714, 13701};
  Vsp16s lsp[10] = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000}, sub[40];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsQuantLSPDecode_GSMAMR_16s(mr122 ? f.idx122 : f.idx475, pastRq, pastLsfQ, lsp, sub, 0, mode);
    benchmark::DoNotOptimize(sub);
  }
}
BENCHMARK(BM_AMR_QuantLSPDecode)->Arg(vspRate4750)->Arg(vspRate12200);

void BM_AMR_Interpolate(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<Vsp16s>& s = bench::speech8k();
  std::vector<Vsp16s> out(static_cast<std::size_t>(len));
  for (auto _ : state) {
    legacy90vspsInterpolate_GSMAMR_16s(s.data(), s.data() + 4000, out.data(), len);
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BM_AMR_Interpolate)->Arg(10)->Arg(240);

// Arg: block length (40 = subframe, 160 = frame).
void BM_AMR_Preemphasize(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  Cycle c;
  Vsp16s out[240], mem = 0;
  for (auto _ : state) {
    legacy90vspsPreemphasize_GSMAMR_16s(22938, c.next().buffer, out, len, &mem);
    benchmark::DoNotOptimize(out);
  }
}
BENCHMARK(BM_AMR_Preemphasize)->Arg(40)->Arg(160);

}  // namespace
