// A G.729 round trip through the companion codec layer: encoder, ITU serial
// bit-stream, decoder, with the processor time of the codec calls.
#pragma once

#include <cstdint>
#include <vector>

namespace vsps::tool {

// Samples the decoded speech lags the input: the encoder codes the frame
// whose end is its 5 ms look-ahead (40 samples) behind the newest input
// samples, and the decoder puts out each frame as soon as it is received.
constexpr int kG729DelaySamples = 40;

struct G729RoundTrip {
  std::vector<int16_t> decoded;  // 80 samples per whole input frame
  int frames = 0;
  double encoderNs = 0;  // processor time in the encoder calls
  double decoderNs = 0;  // and in the decoder calls
};

// Codes the whole 80-sample frames of `pcm` with the codec-layer options
// (VSPS_G729_ANNEX_A, VSPS_G729_DTX), writes each frame in the ITU serial
// format, reads it back and decodes it. False on a codec-layer error.
bool g729_round_trip(const std::vector<int16_t>& pcm, int options, G729RoundTrip* out);

}  // namespace vsps::tool
