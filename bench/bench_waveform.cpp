// The waveform codecs: G.726 encoder and decoder at 32 kbit/s over 10 ms
// blocks of the speech-like signal, G.711 compression and expansion; with
// SpanDSP's G.726 (linear PCM in and out) beside them when installed.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/bench_data.h"

#if defined(VSPS_BENCH_SPANDSP)
#include <spandsp.h>
#endif

namespace {

constexpr int kBlock = 80;

// 32 kbit/s code words of the whole signal (input of the decoder rows).
const std::vector<Vsp8u>& g726_codes() {
  static const std::vector<Vsp8u> codes = [] {
    const std::vector<Vsp16s>& s = bench::speech8k();
    std::vector<Vsp8u> c(s.size());
    std::vector<uint8_t> mem(104);
    auto* st = reinterpret_cast<VspsEncoderState_G726_16s*>(mem.data());
    legacy90vspsEncodeInit_G726_16s8u(st, vspRate32000);
    legacy90vspsEncode_G726_16s8u(s.data(), c.data(), static_cast<int>(s.size()), st);
    return c;
  }();
  return codes;
}

void BM_Encode_G726_16s8u(benchmark::State& state) {
  const std::vector<Vsp16s>& s = bench::speech8k();
  std::vector<uint8_t> mem(104);
  auto* st = reinterpret_cast<VspsEncoderState_G726_16s*>(mem.data());
  legacy90vspsEncodeInit_G726_16s8u(st, vspRate32000);
  Vsp8u out[kBlock];
  std::size_t pos = 0;
  for (auto _ : state) {
    legacy90vspsEncode_G726_16s8u(s.data() + pos, out, kBlock, st);
    benchmark::DoNotOptimize(out);
    pos = pos + 2 * kBlock > s.size() ? 0 : pos + kBlock;
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_Encode_G726_16s8u);

void BM_Decode_G726_8u16s(benchmark::State& state) {
  const std::vector<Vsp8u>& c = g726_codes();
  std::vector<uint8_t> mem(104);
  auto* st = reinterpret_cast<VspsDecoderState_G726_16s*>(mem.data());
  legacy90vspsDecodeInit_G726_8u16s(st, vspRate32000, static_cast<int>(state.range(0)));
  Vsp16s out[kBlock];
  std::size_t pos = 0;
  for (auto _ : state) {
    legacy90vspsDecode_G726_8u16s(c.data() + pos, out, kBlock, st);
    benchmark::DoNotOptimize(out);
    pos = pos + 2 * kBlock > c.size() ? 0 : pos + kBlock;
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_Decode_G726_8u16s)->Arg(vspPcmLinear)->Arg(vspPcmALaw);

void BM_LinToALaw_G711_16s8u(benchmark::State& state) {
  const std::vector<Vsp16s>& s = bench::speech8k();
  Vsp8u out[kBlock];
  for (auto _ : state) {
    legacy90vspsLinToALaw_G711_16s8u(s.data() + 8000, out, kBlock);
    benchmark::DoNotOptimize(out);
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_LinToALaw_G711_16s8u);

void BM_ALawToLin_G711_8u16s(benchmark::State& state) {
  const std::vector<Vsp8u>& c = g726_codes();  // any bytes
  Vsp16s out[kBlock];
  for (auto _ : state) {
    legacy90vspsALawToLin_G711_8u16s(c.data() + 8000, out, kBlock);
    benchmark::DoNotOptimize(out);
  }
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_ALawToLin_G711_8u16s);

#if defined(VSPS_BENCH_SPANDSP)
void BM_Peer_SpanDspG726Encode(benchmark::State& state) {
  const std::vector<Vsp16s>& s = bench::speech8k();
  g726_state_t* g = g726_init(nullptr, 32000, G726_ENCODING_LINEAR, G726_PACKING_NONE);
  uint8_t out[kBlock];
  std::size_t pos = 0;
  for (auto _ : state) {
    g726_encode(g, out, s.data() + pos, kBlock);
    benchmark::DoNotOptimize(out);
    pos = pos + 2 * kBlock > s.size() ? 0 : pos + kBlock;
  }
  g726_free(g);
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_Peer_SpanDspG726Encode);

void BM_Peer_SpanDspG726Decode(benchmark::State& state) {
  const std::vector<Vsp8u>& c = g726_codes();
  g726_state_t* g = g726_init(nullptr, 32000, G726_ENCODING_LINEAR, G726_PACKING_NONE);
  int16_t out[kBlock];
  std::size_t pos = 0;
  for (auto _ : state) {
    g726_decode(g, out, c.data() + pos, kBlock);
    benchmark::DoNotOptimize(out);
    pos = pos + 2 * kBlock > c.size() ? 0 : pos + kBlock;
  }
  g726_free(g);
  state.SetItemsProcessed(state.iterations() * kBlock);
}
BENCHMARK(BM_Peer_SpanDspG726Decode);
#endif

}  // namespace
