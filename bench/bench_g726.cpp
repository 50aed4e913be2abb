// G.726 per 10 ms (80 samples) at 16, 24, 32 and 40 kbit/s (argument: the
// rate in kbit/s), linear PCM in and out (the Annex A path), one code word
// per byte: the exports as the G.726 driver calls them, and SpanDSP's g726
// module on the same blocks (linear, unpacked) when installed.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/bench_data.h"
#include "bench/waveform_blocks.h"

#if defined(VSPS_BENCH_SPANDSP)
#include <spandsp.h>
#endif

namespace {

constexpr int kBlock = 80;

int rate_code(int64_t kbps) {
  switch (kbps) {
    case 16:
      return vspRate16000;
    case 24:
      return vspRate24000;
    case 32:
      return vspRate32000;
    default:
      return vspRate40000;
  }
}

// The code words of the whole signal at one rate (input of the decoders).
std::vector<Vsp8u> codes(int64_t kbps) {
  const std::vector<Vsp16s>& s = bench::speech8k();
  std::vector<Vsp8u> c(s.size());
  std::vector<Vsp8u> mem = bench::state_block(&legacy90vspsEncodeGetStateSize_G726_16s8u);
  auto* st = reinterpret_cast<VspsEncoderState_G726_16s*>(mem.data());
  legacy90vspsEncodeInit_G726_16s8u(st, rate_code(kbps));
  legacy90vspsEncode_G726_16s8u(s.data(), c.data(), static_cast<int>(s.size()), st);
  return c;
}

void BM_G726_Encode(benchmark::State& state) {
  std::vector<Vsp8u> mem = bench::state_block(&legacy90vspsEncodeGetStateSize_G726_16s8u);
  auto* st = reinterpret_cast<VspsEncoderState_G726_16s*>(mem.data());
  legacy90vspsEncodeInit_G726_16s8u(st, rate_code(state.range(0)));
  Vsp8u out[kBlock];
  bench::walk_blocks(state, bench::speech8k(), kBlock, 10, kBlock,
                     [&](const Vsp16s* in) { legacy90vspsEncode_G726_16s8u(in, out, kBlock, st); });
}
BENCHMARK(BM_G726_Encode)->Arg(16)->Arg(24)->Arg(32)->Arg(40);

void BM_G726_Decode(benchmark::State& state) {
  std::vector<Vsp8u> mem = bench::state_block(&legacy90vspsDecodeGetStateSize_G726_8u16s);
  auto* st = reinterpret_cast<VspsDecoderState_G726_16s*>(mem.data());
  legacy90vspsDecodeInit_G726_8u16s(st, rate_code(state.range(0)), vspPcmLinear);
  Vsp16s out[kBlock];
  bench::walk_blocks(state, codes(state.range(0)), kBlock, 10, kBlock,
                     [&](const Vsp8u* in) { legacy90vspsDecode_G726_8u16s(in, out, kBlock, st); });
}
BENCHMARK(BM_G726_Decode)->Arg(16)->Arg(24)->Arg(32)->Arg(40);

#if defined(VSPS_BENCH_SPANDSP)
void spandsp_g726(benchmark::State& state, bool encode) {
  g726_state_t* g =
      g726_init(nullptr, static_cast<int>(state.range(0)) * 1000, G726_ENCODING_LINEAR, G726_PACKING_NONE);
  uint8_t codeOut[kBlock];
  int16_t pcmOut[kBlock];
  if (encode)
    bench::walk_blocks(state, bench::speech8k(), kBlock, 10, kBlock,
                       [&](const Vsp16s* in) { g726_encode(g, codeOut, in, kBlock); });
  else
    bench::walk_blocks(state, codes(state.range(0)), kBlock, 10, kBlock,
                       [&](const Vsp8u* in) { g726_decode(g, pcmOut, in, kBlock); });
  g726_free(g);
}
void BM_Peer_SpanDsp_G726_Encode(benchmark::State& state) { spandsp_g726(state, true); }
BENCHMARK(BM_Peer_SpanDsp_G726_Encode)->Arg(16)->Arg(24)->Arg(32)->Arg(40);
void BM_Peer_SpanDsp_G726_Decode(benchmark::State& state) { spandsp_g726(state, false); }
BENCHMARK(BM_Peer_SpanDsp_G726_Decode)->Arg(16)->Arg(24)->Arg(32)->Arg(40);
#endif

}  // namespace
