// The kernel's exports and the internal energy-64 operation.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "bench/bench_data.h"
#include "core/cpu_state.h"
#include "core/internal_access.h"

namespace {

void BM_InvSqrt_32s_I(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::mt19937 rng(1);
  std::vector<Vsp32s> src(static_cast<std::size_t>(len)), work(src.size());
  for (auto& v : src) v = static_cast<Vsp32s>(rng() & 0x7FFFFFFF) >> (rng() % 24);
  for (auto _ : state) {
    work = src;
    legacy90vspsInvSqrt_32s_I(work.data(), len);
    benchmark::DoNotOptimize(work.data());
  }
  state.SetItemsProcessed(state.iterations() * len);
}
BENCHMARK(BM_InvSqrt_32s_I)->Arg(64)->Arg(1024);

void BM_ConvPartial_16s_Sfs(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const std::vector<Vsp16s>& s = bench::speech8k();
  std::vector<Vsp16s> d(static_cast<std::size_t>(len));
  for (auto _ : state) {
    legacy90vspsConvPartial_16s_Sfs(s.data() + 8000, s.data() + 12000, d.data(), len, 12);
    benchmark::DoNotOptimize(d.data());
  }
  state.SetItemsProcessed(state.iterations() * len);
}
BENCHMARK(BM_ConvPartial_16s_Sfs)->Arg(40)->Arg(80);

// Internal: energy-64 at the dispatched level (40 = the subframe path).
void BM_Energy64(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  const vsps::KernelOps& ops = vsps::kernel_ops(vsps::current_level());
  const Vsp16s* s = bench::speech8k().data() + 8000;
  for (auto _ : state) benchmark::DoNotOptimize(ops.energy64(s, len));
  state.SetItemsProcessed(state.iterations() * len);
}
BENCHMARK(BM_Energy64)->Arg(40)->Arg(240)->Arg(1024);

}  // namespace
