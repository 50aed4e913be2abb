// G.722 at 64 kbit/s per 10 ms (160 samples at 16 kHz, 80 octets): the
// whole-block encoder and the mode-1 decoder (both QMFs included) as the
// G.722 driver calls them, and SpanDSP's g722 module (64 kbit/s, one octet
// per sample pair) on the same blocks when installed.
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/bench_data.h"
#include "bench/waveform_blocks.h"

#if defined(VSPS_BENCH_SPANDSP)
#include <spandsp.h>
#endif

namespace {

constexpr int kSamples = 160, kOctets = 80;

// The octets of the whole signal (input of the decoders).
const std::vector<Vsp8u>& octets() {
  static const std::vector<Vsp8u> c = [] {
    const std::vector<Vsp16s>& s = bench::speech16k();
    std::vector<Vsp8u> out(s.size() / 2);
    std::vector<Vsp8u> mem = bench::state_block(&legacy90vspsEncodeGetStateSize_G722_16s8u);
    auto* st = reinterpret_cast<VspsEncoderState_G722_16s*>(mem.data());
    legacy90vspsEncodeInit_G722_16s8u(st);
    legacy90vspsEncode_G722_16s8u(s.data(), out.data(), static_cast<int>(s.size() & ~std::size_t{1}), st);
    return out;
  }();
  return c;
}

void BM_G722_Encode(benchmark::State& state) {
  std::vector<Vsp8u> mem = bench::state_block(&legacy90vspsEncodeGetStateSize_G722_16s8u);
  auto* st = reinterpret_cast<VspsEncoderState_G722_16s*>(mem.data());
  legacy90vspsEncodeInit_G722_16s8u(st);
  Vsp8u out[kOctets];
  bench::walk_blocks(state, bench::speech16k(), kSamples, 10, kSamples,
                     [&](const Vsp16s* in) { legacy90vspsEncode_G722_16s8u(in, out, kSamples, st); });
}
BENCHMARK(BM_G722_Encode);

void BM_G722_Decode(benchmark::State& state) {
  std::vector<Vsp8u> mem = bench::state_block(&legacy90vspsDecodeGetStateSize_G722_8u16s);
  auto* st = reinterpret_cast<VspsDecoderState_G722_16s*>(mem.data());
  legacy90vspsDecodeInit_G722_8u16s(st);
  Vsp16s out[kSamples];
  bench::walk_blocks(state, octets(), kOctets, 10, kSamples,
                     [&](const Vsp8u* in) { legacy90vspsDecode_G722_8u16s(in, out, kOctets, st, 1); });
}
BENCHMARK(BM_G722_Decode);

#if defined(VSPS_BENCH_SPANDSP)
void BM_Peer_SpanDsp_G722_Encode(benchmark::State& state) {
  g722_encode_state_t* g = g722_encode_init(nullptr, 64000, 0);
  uint8_t out[kOctets];
  bench::walk_blocks(state, bench::speech16k(), kSamples, 10, kSamples,
                     [&](const Vsp16s* in) { g722_encode(g, out, in, kSamples); });
  g722_encode_free(g);
}
BENCHMARK(BM_Peer_SpanDsp_G722_Encode);

void BM_Peer_SpanDsp_G722_Decode(benchmark::State& state) {
  g722_decode_state_t* g = g722_decode_init(nullptr, 64000, 0);
  int16_t out[kSamples];
  bench::walk_blocks(state, octets(), kOctets, 10, kSamples,
                     [&](const Vsp8u* in) { g722_decode(g, out, in, kOctets); });
  g722_decode_free(g);
}
BENCHMARK(BM_Peer_SpanDsp_G722_Decode);
#endif

}  // namespace
