// G.711 per 10 ms (80 samples): compression and expansion in both laws
// through the exports the G.711 driver calls, the plain scalar model
// (checked bit for bit against the library on every input first) and
// SpanDSP's g711 module on the same blocks when installed.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/bench_data.h"
#include "bench/model/g711_model.h"
#include "bench/waveform_blocks.h"

#if defined(VSPS_BENCH_SPANDSP)
#include <spandsp.h>
#endif

namespace {

constexpr int kBlock = 80;

using Compress = VspStatus (*)(const Vsp16s*, Vsp8u*, int);
using Expand = VspStatus (*)(const Vsp8u*, Vsp16s*, int);
using ModelCompress = void (*)(const int16_t*, uint8_t*, int);
using ModelExpand = void (*)(const uint8_t*, int16_t*, int);

// The code words of the whole signal in one law (input of the expansions).
const std::vector<Vsp8u>& codes(bool alaw) {
  static const auto make = [](Compress f) {
    const std::vector<Vsp16s>& s = bench::speech8k();
    std::vector<Vsp8u> c(s.size());
    f(s.data(), c.data(), static_cast<int>(s.size()));
    return c;
  };
  static const std::vector<Vsp8u> a = make(&legacy90vspsLinToALaw_G711_16s8u);
  static const std::vector<Vsp8u> u = make(&legacy90vspsLinToMuLaw_G711_16s8u);
  return alaw ? a : u;
}

// One call of `f(in, out)` on each 10 ms block.
template <class In, class Out, class F>
void run_blocks(benchmark::State& state, const std::vector<In>& in, F f) {
  Out out[kBlock];
  bench::walk_blocks(state, in, kBlock, 10, kBlock, [&](const In* x) { f(x, out); });
}

void BM_G711_Compress(benchmark::State& state, Compress f) {
  run_blocks<Vsp16s, Vsp8u>(state, bench::speech8k(), [f](const Vsp16s* x, Vsp8u* y) { f(x, y, kBlock); });
}
BENCHMARK_CAPTURE(BM_G711_Compress, ALaw, &legacy90vspsLinToALaw_G711_16s8u);
BENCHMARK_CAPTURE(BM_G711_Compress, MuLaw, &legacy90vspsLinToMuLaw_G711_16s8u);

void BM_G711_Expand(benchmark::State& state, Expand f, bool alaw) {
  run_blocks<Vsp8u, Vsp16s>(state, codes(alaw), [f](const Vsp8u* x, Vsp16s* y) { f(x, y, kBlock); });
}
BENCHMARK_CAPTURE(BM_G711_Expand, ALaw, &legacy90vspsALawToLin_G711_8u16s, true);
BENCHMARK_CAPTURE(BM_G711_Expand, MuLaw, &legacy90vspsMuLawToLin_G711_8u16s, false);

// The model agrees with the library on all 65536 inputs (compression) or
// all 256 code words (expansion), or the row fails.
void BM_Model_G711_Compress(benchmark::State& state, Compress lib, ModelCompress model) {
  std::vector<Vsp16s> all(65536);
  for (int v = 0; v < 65536; ++v) all[static_cast<std::size_t>(v)] = static_cast<Vsp16s>(v - 32768);
  std::vector<Vsp8u> a(all.size()), b(all.size());
  lib(all.data(), a.data(), 65536);
  model(all.data(), b.data(), 65536);
  if (a != b) return state.SkipWithError("the scalar model differs from the library");
  run_blocks<Vsp16s, Vsp8u>(state, bench::speech8k(), [model](const Vsp16s* x, Vsp8u* y) { model(x, y, kBlock); });
}
BENCHMARK_CAPTURE(BM_Model_G711_Compress, ALaw, &legacy90vspsLinToALaw_G711_16s8u, &model::g711::alaw_compress);
BENCHMARK_CAPTURE(BM_Model_G711_Compress, MuLaw, &legacy90vspsLinToMuLaw_G711_16s8u, &model::g711::ulaw_compress);

void BM_Model_G711_Expand(benchmark::State& state, Expand lib, ModelExpand model, bool alaw) {
  std::vector<Vsp8u> all(256);
  for (int v = 0; v < 256; ++v) all[static_cast<std::size_t>(v)] = static_cast<Vsp8u>(v);
  std::vector<Vsp16s> a(256), b(256);
  lib(all.data(), a.data(), 256);
  model(all.data(), b.data(), 256);
  if (a != b) return state.SkipWithError("the scalar model differs from the library");
  run_blocks<Vsp8u, Vsp16s>(state, codes(alaw), [model](const Vsp8u* x, Vsp16s* y) { model(x, y, kBlock); });
}
BENCHMARK_CAPTURE(BM_Model_G711_Expand, ALaw, &legacy90vspsALawToLin_G711_8u16s, &model::g711::alaw_expand, true);
BENCHMARK_CAPTURE(BM_Model_G711_Expand, MuLaw, &legacy90vspsMuLawToLin_G711_8u16s, &model::g711::ulaw_expand, false);

#if defined(VSPS_BENCH_SPANDSP)
// SpanDSP's block calls, as a program using its g711 module makes them.
void BM_Peer_SpanDsp_G711_Compress(benchmark::State& state, int mode) {
  g711_state_t* g = g711_init(nullptr, mode);
  run_blocks<Vsp16s, Vsp8u>(state, bench::speech8k(), [g](const Vsp16s* x, Vsp8u* y) { g711_encode(g, y, x, kBlock); });
  g711_free(g);
}
BENCHMARK_CAPTURE(BM_Peer_SpanDsp_G711_Compress, ALaw, G711_ALAW);
BENCHMARK_CAPTURE(BM_Peer_SpanDsp_G711_Compress, MuLaw, G711_ULAW);

void BM_Peer_SpanDsp_G711_Expand(benchmark::State& state, int mode) {
  g711_state_t* g = g711_init(nullptr, mode);
  run_blocks<Vsp8u, Vsp16s>(state, codes(mode == G711_ALAW),
                            [g](const Vsp8u* x, Vsp16s* y) { g711_decode(g, y, x, kBlock); });
  g711_free(g);
}
BENCHMARK_CAPTURE(BM_Peer_SpanDsp_G711_Expand, ALaw, G711_ALAW);
BENCHMARK_CAPTURE(BM_Peer_SpanDsp_G711_Expand, MuLaw, G711_ULAW);
#endif

}  // namespace
