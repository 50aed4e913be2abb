#include "tools/seg_snr.h"

#include <algorithm>
#include <cmath>

namespace vsps::tool {

namespace {
constexpr double kFloorDb = -10, kCeilDb = 35;
constexpr double kSilenceDbfs = -50;  // frame RMS against full scale 32768
}  // namespace

SegSnr segmental_snr(const std::vector<int16_t>& input, const std::vector<int16_t>& decoded, int delay, int frame) {
  SegSnr r;
  const double silence = std::pow(10.0, kSilenceDbfs / 10) * 32768.0 * 32768.0 * frame;  // energy of the frame
  double sum = 0;
  for (std::size_t start = 0; start + static_cast<std::size_t>(frame) <= decoded.size();
       start += static_cast<std::size_t>(frame)) {
    double signal = 0, noise = 0;
    for (std::size_t t = start; t < start + static_cast<std::size_t>(frame); ++t) {
      const long src = static_cast<long>(t) - delay;
      const double ref = src >= 0 && src < static_cast<long>(input.size()) ? input[static_cast<std::size_t>(src)] : 0;
      const double err = ref - decoded[t];
      signal += ref * ref;
      noise += err * err;
    }
    if (signal < silence) {
      ++r.skipped;
      continue;
    }
    sum += noise == 0 ? kCeilDb : std::clamp(10 * std::log10(signal / noise), kFloorDb, kCeilDb);
    ++r.frames;
  }
  r.db = r.frames > 0 ? sum / r.frames : 0;
  return r;
}

}  // namespace vsps::tool
