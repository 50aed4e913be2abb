#include "codecs/echo/prototype.h"

#include <cmath>
#include <numbers>

namespace vsps::codecs::echo {

namespace {

// Root-raised-cosine pulse with roll-off 1 at t periods from its centre.
double rrc(double t) {
  constexpr double pi = std::numbers::pi;
  if (std::fabs(t) < 1e-12) return 4.0 / pi;
  if (std::fabs(std::fabs(t) - 0.25) < 1e-12)  // the removable singularity
    return (1.0 / std::numbers::sqrt2) *
           ((1.0 + 2.0 / pi) * std::sin(pi / 4.0) + (1.0 - 2.0 / pi) * std::cos(pi / 4.0));
  return 4.0 * t * std::cos(2.0 * pi * t) / (pi * t * (1.0 - 16.0 * t * t));
}

}  // namespace

void root_nyquist_prototype(int order, int windowLen, int frameSize, Vsp32f* window) {
  const double n = double(1 << order), centre = (double(windowLen) - 1.0) / 2.0;
  double energy = 0.0;
  for (int i = 0; i < windowLen; ++i) {
    const double v = rrc((double(i) - centre) / n);
    energy += v * v;
  }
  const double scale = std::sqrt(double(frameSize) / energy);
  for (int i = 0; i < windowLen; ++i) window[i] = static_cast<Vsp32f>(rrc((double(i) - centre) / n) * scale);
}

}  // namespace vsps::codecs::echo
