// The whole G.729 codec per 10 ms frame (counter frame_ms): the codec layer's
// encoder and decoder (vsps_codecs, main body, Annex A, and with Annex B DTX)
// on the speech-like signal, and, when pkg-config finds libbcg729, that
// peer's Annex A encoder and decoder (with and without its VAD/DTX) on the
// same input in the same run. Items = frames.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "bench/bench_data.h"
#include "vsps_codecs.h"

#if defined(VSPS_BENCH_BCG729)
extern "C" {  // the peer's headers declare C functions without a C++ guard
#include <bcg729/decoder.h>
#include <bcg729/encoder.h>
}
#endif

namespace {

constexpr int kFrame = 80;

int frame_count() { return static_cast<int>(bench::speech8k().size() / kFrame); }

const Vsp16s* frame_pcm(int f) { return bench::speech8k().data() + static_cast<std::ptrdiff_t>(f) * kFrame; }

// Caller memory for a codec object (max_align_t words).
std::vector<std::max_align_t> object_memory(int bytes) {
  return std::vector<std::max_align_t>(static_cast<std::size_t>(bytes) / sizeof(std::max_align_t) + 1);
}

// Our encoder's frames of the whole signal with the given options (the
// decoders' input).
const std::vector<VspsG729Frame>& our_stream(int options) {
  static std::vector<VspsG729Frame> streams[4];
  std::vector<VspsG729Frame>& s = streams[options & 3];
  if (s.empty()) {
    int size = 0;
    vspscodecG729EncoderGetSize(&size);
    std::vector<std::max_align_t> mem = object_memory(size);
    auto* enc = reinterpret_cast<VspsG729Encoder*>(mem.data());
    vspscodecG729EncoderInit(enc, options);
    s.resize(static_cast<std::size_t>(frame_count()));
    for (int f = 0; f < frame_count(); ++f)
      vspscodecG729EncoderEncode(enc, frame_pcm(f), &s[static_cast<std::size_t>(f)]);
  }
  return s;
}

// Arg: options (0 main body, VSPS_G729_ANNEX_A, | VSPS_G729_DTX).
void BM_G729_CodecEncode(benchmark::State& state) {
  const int options = static_cast<int>(state.range(0));
  int size = 0;
  vspscodecG729EncoderGetSize(&size);
  std::vector<std::max_align_t> mem = object_memory(size);
  auto* enc = reinterpret_cast<VspsG729Encoder*>(mem.data());
  vspscodecG729EncoderInit(enc, options);
  VspsG729Frame out;
  int f = 0;
  for (auto _ : state) {
    if (vspscodecG729EncoderEncode(enc, frame_pcm(f), &out) < vspStsNoErr) {
      state.SkipWithError("encoder error");
      return;
    }
    benchmark::DoNotOptimize(out);
    f = f + 1 == frame_count() ? 0 : f + 1;
  }
  state.SetItemsProcessed(state.iterations());
  state.counters["frame_ms"] = 10;
}
BENCHMARK(BM_G729_CodecEncode)
    ->Arg(0)
    ->Arg(VSPS_G729_ANNEX_A)
    ->Arg(VSPS_G729_DTX)
    ->Arg(VSPS_G729_ANNEX_A | VSPS_G729_DTX);

void BM_G729_CodecDecode(benchmark::State& state) {
  const int options = static_cast<int>(state.range(0));
  const std::vector<VspsG729Frame>& stream = our_stream(options);
  int size = 0;
  vspscodecG729DecoderGetSize(&size);
  std::vector<std::max_align_t> mem = object_memory(size);
  auto* dec = reinterpret_cast<VspsG729Decoder*>(mem.data());
  vspscodecG729DecoderInit(dec, options);
  Vsp16s pcm[kFrame];
  std::size_t f = 0;
  for (auto _ : state) {
    if (vspscodecG729DecoderDecode(dec, &stream[f], pcm) < vspStsNoErr) {
      state.SkipWithError("decoder error");
      return;
    }
    benchmark::DoNotOptimize(pcm);
    f = f + 1 == stream.size() ? 0 : f + 1;
  }
  state.SetItemsProcessed(state.iterations());
  state.counters["frame_ms"] = 10;
}
BENCHMARK(BM_G729_CodecDecode)
    ->Arg(0)
    ->Arg(VSPS_G729_ANNEX_A)
    ->Arg(VSPS_G729_DTX)
    ->Arg(VSPS_G729_ANNEX_A | VSPS_G729_DTX);

#if defined(VSPS_BENCH_BCG729)
// The peer's frames of the whole signal: up to 10 octets and the length
// (10 speech, 2 SID, 0 not transmitted).
struct PeerFrame {
  uint8_t bits[10];
  uint8_t len;
};

const std::vector<PeerFrame>& peer_stream(int vad) {
  static std::vector<PeerFrame> streams[2];
  std::vector<PeerFrame>& s = streams[vad & 1];
  if (s.empty()) {
    bcg729EncoderChannelContextStruct* enc = initBcg729EncoderChannel(static_cast<uint8_t>(vad));
    s.resize(static_cast<std::size_t>(frame_count()));
    for (int f = 0; f < frame_count(); ++f) {
      PeerFrame& p = s[static_cast<std::size_t>(f)];
      bcg729Encoder(enc, frame_pcm(f), p.bits, &p.len);
    }
    closeBcg729EncoderChannel(enc);
  }
  return s;
}

// Arg: 0 without, 1 with the peer's VAD/DTX.
void BM_Peer_Bcg729Encode(benchmark::State& state) {
  bcg729EncoderChannelContextStruct* enc = initBcg729EncoderChannel(static_cast<uint8_t>(state.range(0)));
  PeerFrame out;
  int f = 0;
  for (auto _ : state) {
    bcg729Encoder(enc, frame_pcm(f), out.bits, &out.len);
    benchmark::DoNotOptimize(out);
    f = f + 1 == frame_count() ? 0 : f + 1;
  }
  closeBcg729EncoderChannel(enc);
  state.SetItemsProcessed(state.iterations());
  state.counters["frame_ms"] = 10;
}
BENCHMARK(BM_Peer_Bcg729Encode)->Arg(0)->Arg(1);

void BM_Peer_Bcg729Decode(benchmark::State& state) {
  const std::vector<PeerFrame>& stream = peer_stream(static_cast<int>(state.range(0)));
  bcg729DecoderChannelContextStruct* dec = initBcg729DecoderChannel();
  int16_t pcm[kFrame];
  std::size_t f = 0;
  for (auto _ : state) {
    const PeerFrame& p = stream[f];
    // A SID frame (2 octets) or a frame not transmitted (0): comfort noise.
    bcg729Decoder(dec, p.bits, p.len, 0, p.len != 10 ? 1 : 0, 0, pcm);
    benchmark::DoNotOptimize(pcm);
    f = f + 1 == stream.size() ? 0 : f + 1;
  }
  closeBcg729DecoderChannel(dec);
  state.SetItemsProcessed(state.iterations());
  state.counters["frame_ms"] = 10;
}
BENCHMARK(BM_Peer_Bcg729Decode)->Arg(0)->Arg(1);
#endif

}  // namespace
