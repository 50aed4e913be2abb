// GSM 06.10 full rate per 20 ms frame (160 samples, 33 octets): the driver's
// encoder and decoder (its frame loops over the library's step exports)
// with the 33-octet packing, and SpanDSP's gsm0610 module with its 33-octet
// packing on the same frames when installed. The tables also give the time
// per 10 ms (half a frame).
#include <benchmark/benchmark.h>

#include <vector>

#include "bench/bench_data.h"
#include "bench/waveform_blocks.h"
#include "vsps_codecs.h"

#if defined(VSPS_BENCH_SPANDSP)
#include <spandsp.h>
#endif

namespace {

constexpr int kFrame = 160, kParams = 76, kBytes = 33;

template <class T>
std::vector<Vsp8u> object(VspStatus (*getSize)(int*), VspStatus (*init)(T*)) {
  int size = 0;
  getSize(&size);
  std::vector<Vsp8u> mem(static_cast<std::size_t>(size));
  init(reinterpret_cast<T*>(mem.data()));
  return mem;
}

// The packed frames of the whole signal (input of the decoders).
const std::vector<Vsp8u>& frames() {
  static const std::vector<Vsp8u> f = [] {
    const std::vector<Vsp16s>& s = bench::speech8k();
    std::vector<Vsp8u> mem = object(&vspscodecGsmfrEncoderGetSize, &vspscodecGsmfrEncoderInit);
    auto* enc = reinterpret_cast<VspscodecGsmfrEncoder*>(mem.data());
    std::vector<Vsp8u> out;
    Vsp16s params[kParams];
    Vsp8u bytes[kBytes];
    for (std::size_t at = 0; at + kFrame <= s.size(); at += kFrame) {
      vspscodecGsmfrEncoderEncode(enc, s.data() + at, params);
      vspscodecGsmfrPack(params, bytes);
      out.insert(out.end(), bytes, bytes + kBytes);
    }
    return out;
  }();
  return f;
}

void BM_GSMFR_Encode(benchmark::State& state) {
  std::vector<Vsp8u> mem = object(&vspscodecGsmfrEncoderGetSize, &vspscodecGsmfrEncoderInit);
  auto* enc = reinterpret_cast<VspscodecGsmfrEncoder*>(mem.data());
  Vsp16s params[kParams];
  Vsp8u out[kBytes];
  bench::walk_blocks(state, bench::speech8k(), kFrame, 20, kFrame, [&](const Vsp16s* in) {
    vspscodecGsmfrEncoderEncode(enc, in, params);
    vspscodecGsmfrPack(params, out);
  });
}
BENCHMARK(BM_GSMFR_Encode);

void BM_GSMFR_Decode(benchmark::State& state) {
  std::vector<Vsp8u> mem = object(&vspscodecGsmfrDecoderGetSize, &vspscodecGsmfrDecoderInit);
  auto* dec = reinterpret_cast<VspscodecGsmfrDecoder*>(mem.data());
  Vsp16s params[kParams];
  Vsp16s out[kFrame];
  bench::walk_blocks(state, frames(), kBytes, 20, kFrame, [&](const Vsp8u* in) {
    vspscodecGsmfrUnpack(in, params);
    vspscodecGsmfrDecoderDecode(dec, params, out);
  });
}
BENCHMARK(BM_GSMFR_Decode);

#if defined(VSPS_BENCH_SPANDSP)
void BM_Peer_SpanDsp_GSMFR_Encode(benchmark::State& state) {
  gsm0610_state_t* g = gsm0610_init(nullptr, GSM0610_PACKING_VOIP);
  uint8_t out[kBytes];
  bench::walk_blocks(state, bench::speech8k(), kFrame, 20, kFrame,
                     [&](const Vsp16s* in) { gsm0610_encode(g, out, in, kFrame); });
  gsm0610_free(g);
}
BENCHMARK(BM_Peer_SpanDsp_GSMFR_Encode);

void BM_Peer_SpanDsp_GSMFR_Decode(benchmark::State& state) {
  gsm0610_state_t* g = gsm0610_init(nullptr, GSM0610_PACKING_VOIP);
  int16_t out[kFrame];
  bench::walk_blocks(state, frames(), kBytes, 20, kFrame, [&](const Vsp8u* in) { gsm0610_decode(g, out, in, kBytes); });
  gsm0610_free(g);
}
BENCHMARK(BM_Peer_SpanDsp_GSMFR_Decode);
#endif

}  // namespace
