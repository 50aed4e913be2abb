// The kernel's exports.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "vsps.h"

namespace {

void BM_InvSqrt_32s_I(benchmark::State& state) {
  const int len = static_cast<int>(state.range(0));
  std::mt19937 rng(1);
  std::vector<Vsp32s> src(static_cast<std::size_t>(len)), work(src.size());
  for (auto& v : src) v = static_cast<Vsp32s>(rng() & 0x7FFFFFFF);
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
  std::mt19937 rng(2);
  std::vector<Vsp16s> a(static_cast<std::size_t>(len)), b(a.size()), d(a.size());
  for (auto& v : a) v = static_cast<Vsp16s>(rng() % 8192 - 4096);
  for (auto& v : b) v = static_cast<Vsp16s>(rng() % 8192 - 4096);
  for (auto _ : state) {
    legacy90vspsConvPartial_16s_Sfs(a.data(), b.data(), d.data(), len, 12);
    benchmark::DoNotOptimize(d.data());
  }
  state.SetItemsProcessed(state.iterations() * len);
}
BENCHMARK(BM_ConvPartial_16s_Sfs)->Arg(40)->Arg(80);

}  // namespace
