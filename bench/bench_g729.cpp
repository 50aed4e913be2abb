// Every G.729 export on the frames of the speech-like signal (bench_data.h),
// one call per iteration; items = calls.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "bench/bench_data.h"

namespace {

using bench::g729_frames;
using bench::kFrames;

// Cycles through the frames.
struct Cycle {
  int i = 0;
  const bench::G729Frame& next() {
    i = i + 1 == kFrames ? 0 : i + 1;
    return g729_frames()[static_cast<std::size_t>(i)];
  }
};

void BM_G729_AutoCorr_NormE(benchmark::State& state) {
  Cycle c;
  Vsp32s r[11];
  int norm = 0;
  for (auto _ : state) {
    legacy90vspsAutoCorr_NormE_16s32s(c.next().windowed, 240, r, 11, &norm);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(BM_G729_AutoCorr_NormE);

void BM_G729_AutoCorr_NormE_G729(benchmark::State& state) {
  Cycle c;
  Vsp32s r[11];
  int norm = 0;
  for (auto _ : state) {
    legacy90vspsAutoCorr_NormE_G729_16s32s(c.next().buffer, r, 11, &norm);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(BM_G729_AutoCorr_NormE_G729);

void BM_G729_HighPassFilter(benchmark::State& state) {
  Vsp8u hpf[24];
  int size = 0;
  legacy90vspsHighPassFilterSize_G729(&size);
  const Vsp16s coeff[6] = {4096, 7807, -3733, 1899, -3798, 1899};
  legacy90vspsHighPassFilterInit_G729(coeff, hpf);
  Cycle c;
  Vsp16s x[80];
  for (auto _ : state) {
    std::memcpy(x, c.next().buffer + 160, sizeof x);
    legacy90vspsHighPassFilter_G729_16s_ISfs(x, 80, 12, hpf);
    benchmark::DoNotOptimize(x);
  }
}
BENCHMARK(BM_G729_HighPassFilter);

void BM_G729_HighPassFilterInit(benchmark::State& state) {
  Vsp8u hpf[24];
  const Vsp16s coeff[6] = {8192, 15836, -7667, 7699, -15398, 7699};
  for (auto _ : state) {
    legacy90vspsHighPassFilterInit_G729(coeff, hpf);
    benchmark::DoNotOptimize(hpf);
  }
}
BENCHMARK(BM_G729_HighPassFilterInit);

void BM_G729_LagWindow(benchmark::State& state) {
  Cycle c;
  Vsp32s r[10];
  for (auto _ : state) {
    std::memcpy(r, c.next().r + 1, sizeof r);
    legacy90vspsLagWindow_G729_32s_I(r, 10);
    benchmark::DoNotOptimize(r);
  }
}
BENCHMARK(BM_G729_LagWindow);

void BM_G729_LevinsonDurbin(benchmark::State& state) {
  Cycle c;
  Vsp16s a[11], rc[10], err;
  for (auto _ : state) {
    legacy90vspsLevinsonDurbin_G729_32s16s(c.next().r, 10, a, rc, &err);
    benchmark::DoNotOptimize(a);
  }
}
BENCHMARK(BM_G729_LevinsonDurbin);

void BM_G729_LevinsonDurbin_32f(benchmark::State& state) {
  Cycle c;
  Vsp32f a[11], rc[10], err;
  for (auto _ : state) {
    legacy90vspsLevinsonDurbin_G729_32f(c.next().rF, 10, a, rc, &err);
    benchmark::DoNotOptimize(a);
  }
}
BENCHMARK(BM_G729_LevinsonDurbin_32f);

void BM_G729_LPCToLSP(benchmark::State& state) {
  Cycle c;
  Vsp16s lsp[10];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLPCToLSP_G729_16s(f.lpc, f.lsp, lsp);
    benchmark::DoNotOptimize(lsp);
  }
}
BENCHMARK(BM_G729_LPCToLSP);

void BM_G729_LPCToLSP_A(benchmark::State& state) {
  Cycle c;
  Vsp16s lsp[10];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLPCToLSP_G729A_16s(f.lpc, f.lsp, lsp);
    benchmark::DoNotOptimize(lsp);
  }
}
BENCHMARK(BM_G729_LPCToLSP_A);

void BM_G729_LPCToLSP_32f(benchmark::State& state) {
  Cycle c;
  Vsp32f lsp[10];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLPCToLSP_G729_32f(f.lpcF, f.lspF, lsp);
    benchmark::DoNotOptimize(lsp);
  }
}
BENCHMARK(BM_G729_LPCToLSP_32f);

void BM_G729_LPCToLSP_A_32f(benchmark::State& state) {
  Cycle c;
  Vsp32f lsp[10];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLPCToLSP_G729A_32f(f.lpcF, f.lspF, lsp);
    benchmark::DoNotOptimize(lsp);
  }
}
BENCHMARK(BM_G729_LPCToLSP_A_32f);

void BM_G729_LSPToLPC(benchmark::State& state) {
  Cycle c;
  Vsp16s a[11];
  for (auto _ : state) {
    legacy90vspsLSPToLPC_G729_16s(c.next().lsp, a);
    benchmark::DoNotOptimize(a);
  }
}
BENCHMARK(BM_G729_LSPToLPC);

void BM_G729_LSPToLPC_32f(benchmark::State& state) {
  Cycle c;
  Vsp32f a[11];
  for (auto _ : state) {
    legacy90vspsLSPToLPC_G729_32f(c.next().lspF, a);
    benchmark::DoNotOptimize(a);
  }
}
BENCHMARK(BM_G729_LSPToLPC_32f);

void BM_G729_LSPToLSF(benchmark::State& state) {
  Cycle c;
  Vsp16s lsf[10];
  for (auto _ : state) {
    legacy90vspsLSPToLSF_G729_16s(c.next().lsp, lsf);
    benchmark::DoNotOptimize(lsf);
  }
}
BENCHMARK(BM_G729_LSPToLSF);

void BM_G729_LSPToLSF_Norm(benchmark::State& state) {
  Cycle c;
  Vsp16s lsf[10];
  for (auto _ : state) {
    legacy90vspsLSPToLSF_Norm_G729_16s(c.next().lsp, lsf);
    benchmark::DoNotOptimize(lsf);
  }
}
BENCHMARK(BM_G729_LSPToLSF_Norm);

void BM_G729_LSFToLSP(benchmark::State& state) {
  Cycle c;
  Vsp16s lsp[10];
  for (auto _ : state) {
    legacy90vspsLSFToLSP_G729_16s(c.next().lsf, lsp);
    benchmark::DoNotOptimize(lsp);
  }
}
BENCHMARK(BM_G729_LSFToLSP);

void BM_G729_LSFQuant(benchmark::State& state) {
  Cycle c;
  Vsp16s mem[40], q[10], idx[4];
  for (auto _ : state) {
    const auto& f = c.next();
    std::memcpy(mem, f.prevFreq, sizeof mem);
    legacy90vspsLSFQuant_G729_16s(f.lsf, mem, q, idx);
    benchmark::DoNotOptimize(q);
  }
}
BENCHMARK(BM_G729_LSFQuant);

void BM_G729_LSPQuant(benchmark::State& state) {
  Cycle c;
  Vsp16s mem[40], q[10], words[2];
  for (auto _ : state) {
    const auto& f = c.next();
    std::memcpy(mem, f.prevFreq, sizeof mem);
    legacy90vspsLSPQuant_G729_16s(f.lsp, mem, q, words);
    benchmark::DoNotOptimize(q);
  }
}
BENCHMARK(BM_G729_LSPQuant);

void BM_G729_LSPQuant_E(benchmark::State& state) {
  Cycle c;
  Vsp16s q[10], cur[10], words[2];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLSPQuant_G729E_16s(f.lsp, f.prevFreq, q, cur, words);
    benchmark::DoNotOptimize(q);
  }
}
BENCHMARK(BM_G729_LSPQuant_E);

void BM_G729_LSPQuant_E_32f(benchmark::State& state) {
  Cycle c;
  Vsp32f q[10], cur[10];
  int words[2];
  for (auto _ : state) {
    const auto& f = c.next();
    legacy90vspsLSPQuant_G729E_32f(f.lspF, f.prevFreqF, q, cur, words);
    benchmark::DoNotOptimize(q);
  }
}
BENCHMARK(BM_G729_LSPQuant_E_32f);

void BM_G729_LSFDecode(benchmark::State& state) {
  Cycle c;
  Vsp16s mem[40], lsf[10];
  for (auto _ : state) {
    const auto& f = c.next();
    std::memcpy(mem, f.prevFreq, sizeof mem);
    legacy90vspsLSFDecode_G729_16s(f.codes, mem, lsf);
    benchmark::DoNotOptimize(lsf);
  }
}
BENCHMARK(BM_G729_LSFDecode);

void BM_G729_LSFDecodeErased(benchmark::State& state) {
  Cycle c;
  Vsp16s mem[40], lsf[10];
  for (auto _ : state) {
    const auto& f = c.next();
    std::memcpy(mem, f.prevFreq, sizeof mem);
    std::memcpy(lsf, f.lsf, sizeof lsf);
    legacy90vspsLSFDecodeErased_G729_16s(f.codes[0], mem, lsf);
    benchmark::DoNotOptimize(mem);
  }
}
BENCHMARK(BM_G729_LSFDecodeErased);

void BM_G729_LSFDecode_32f(benchmark::State& state) {
  Cycle c;
  Vsp32f mem[40], lsf[10];
  for (auto _ : state) {
    const auto& f = c.next();
    const int codes[4] = {f.codes[0], f.codes[1], f.codes[2], f.codes[3]};
    std::memcpy(mem, f.prevFreqF, sizeof mem);
    legacy90vspsLSFDecode_G729_32f(codes, mem, lsf);
    benchmark::DoNotOptimize(lsf);
  }
}
BENCHMARK(BM_G729_LSFDecode_32f);

void BM_G729_LSFDecodeErased_32f(benchmark::State& state) {
  Cycle c;
  Vsp32f mem[40], lsf[10];
  for (auto _ : state) {
    const auto& f = c.next();
    std::memcpy(mem, f.prevFreqF, sizeof mem);
    std::memcpy(lsf, f.lsfF, sizeof lsf);
    legacy90vspsLSFDecodeErased_G729_32f(f.codes[0], mem, lsf);
    benchmark::DoNotOptimize(mem);
  }
}
BENCHMARK(BM_G729_LSFDecodeErased_32f);

void BM_G729_Interpolate(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<Vsp16s>& s = bench::speech8k();
  std::vector<Vsp16s> out(static_cast<std::size_t>(len));
  for (auto _ : state) {
    legacy90vspsInterpolate_G729_16s(s.data(), s.data() + 4000, out.data(), len);
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BM_G729_Interpolate)->Arg(10)->Arg(240);

void BM_G729_InterpolateC(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<Vsp16s>& s = bench::speech8k();
  std::vector<Vsp16s> out(static_cast<std::size_t>(len));
  for (auto _ : state) {
    legacy90vspsInterpolateC_G729_16s_Sfs(s.data(), 24576, s.data() + 4000, 8192, out.data(), len, 15);
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BM_G729_InterpolateC)->Arg(10)->Arg(240);

void BM_G729_InterpolateC_32f(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::vector<Vsp32f> a(static_cast<std::size_t>(len)), b(a.size()), out(a.size());
  for (int n = 0; n < len; ++n) {
    a[static_cast<std::size_t>(n)] = bench::speech8k()[static_cast<std::size_t>(n)] / 32768.0f;
    b[static_cast<std::size_t>(n)] = bench::speech8k()[static_cast<std::size_t>(n + 4000)] / 32768.0f;
  }
  for (auto _ : state) {
    legacy90vspsInterpolateC_G729_32f(a.data(), 0.75f, b.data(), 0.25f, out.data(), len);
    benchmark::DoNotOptimize(out.data());
  }
}
BENCHMARK(BM_G729_InterpolateC_32f)->Arg(10)->Arg(240);

void BM_G729_HighPassFilterSize(benchmark::State& state) {
  int size = 0;
  for (auto _ : state) {
    legacy90vspsHighPassFilterSize_G729(&size);
    benchmark::DoNotOptimize(size);
  }
}
BENCHMARK(BM_G729_HighPassFilterSize);

}  // namespace
