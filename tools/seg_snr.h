// Segmental signal-to-noise ratio of decoded speech against its input.
#pragma once

#include <cstdint>
#include <vector>

namespace vsps::tool {

struct SegSnr {
  double db = 0;    // mean of the frames' SNRs
  int frames = 0;   // frames that count (not silent)
  int skipped = 0;  // silent frames left out
};

// Frames of `frame` samples of `decoded` against `input` delayed by `delay`
// samples (input[t - delay], zero before the start): each frame's
// 10 log10(sum ref^2 / sum (ref - dec)^2) clamped to -10..35 dB, the usual
// bounds that keep a silent or a perfect frame from dominating the mean;
// frames whose reference is below -50 dBFS RMS are silence and left out.
SegSnr segmental_snr(const std::vector<int16_t>& input, const std::vector<int16_t>& decoded, int delay, int frame);

}  // namespace vsps::tool
