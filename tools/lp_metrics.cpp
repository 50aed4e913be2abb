#include "tools/lp_metrics.h"

#include <cmath>
#include <numbers>

namespace vsps::tool {

namespace {
// |A(e^jw)|^2 of a Q12 order-10 filter.
double power_response(const int16_t* aQ12, double w) {
  double re = 0, im = 0;
  for (int k = 0; k <= 10; ++k) {
    re += aQ12[k] / 4096.0 * std::cos(w * k);
    im -= aQ12[k] / 4096.0 * std::sin(w * k);
  }
  return re * re + im * im;
}
}  // namespace

double spectral_distortion_db(const int16_t* aQ12, const int16_t* bQ12) {
  constexpr int kPoints = 256;
  double sum = 0;
  for (int i = 0; i < kPoints; ++i) {
    const double w = std::numbers::pi * (i + 0.5) / kPoints;
    const double d = 10 * std::log10(power_response(aQ12, w) / power_response(bQ12, w));
    sum += d * d;
  }
  return std::sqrt(sum / kPoints);
}

}  // namespace vsps::tool
