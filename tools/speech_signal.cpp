#include "tools/speech_signal.h"

#include <algorithm>
#include <cmath>

namespace vsps::signals {

namespace {

constexpr double kPi = 3.14159265358979323846;

// Small deterministic generator (no dependence on the standard library's
// distributions, which differ between implementations).
class Lcg {
 public:
  explicit Lcg(uint32_t seed) : s_(seed * 2654435761u + 12345u) {}
  uint32_t next() {
    s_ = s_ * 1664525u + 1013904223u;
    return s_;
  }
  double uniform() { return (next() >> 8) * (1.0 / 16777216.0); }  // [0, 1)
  double symmetric() { return 2.0 * uniform() - 1.0; }             // [-1, 1)

 private:
  uint32_t s_;
};

// Two-pole resonator at centre frequency f and bandwidth bw, unit gain at f.
struct Resonator {
  double a1 = 0, a2 = 0, g = 0, y1 = 0, y2 = 0;
  void tune(double f, double bw, int rate) {
    const double r = std::exp(-kPi * bw / rate);
    const double w = 2 * kPi * f / rate;
    a1 = 2 * r * std::cos(w);
    a2 = -r * r;
    g = (1 - r) * std::sqrt(1 - 2 * r * std::cos(2 * w) + r * r);
  }
  double step(double x) {
    const double y = g * x + a1 * y1 + a2 * y2;
    y2 = y1;
    y1 = y;
    return y;
  }
};

struct Vowel {
  double f1, f2, f3;
};
constexpr Vowel kVowels[] = {{730, 1090, 2440}, {270, 2290, 3010}, {300, 870, 2240},
                             {530, 1840, 2480}, {660, 1720, 2410}, {570, 840, 2410}};

}  // namespace

std::vector<int16_t> speech_like(double seconds, int rate, uint32_t seed) {
  Lcg rng(seed);
  const auto total = static_cast<std::size_t>(seconds * rate);
  std::vector<double> x(total, 0.0);
  Resonator formant[3], fric;
  std::size_t n = 0;
  double phase = 0;
  while (n < total) {
    // One segment: voiced vowel (60%), fricative (25%) or pause (15%).
    const double kind = rng.uniform();
    const auto len = static_cast<std::size_t>((0.08 + 0.2 * rng.uniform()) * rate);
    const Vowel& from = kVowels[rng.next() % 6];
    const Vowel& to = kVowels[rng.next() % 6];
    const double f0a = 90 + 130 * rng.uniform(), f0b = 90 + 130 * rng.uniform();
    const double loud = 0.3 + 0.7 * rng.uniform();
    fric.tune(2500 + 1200 * rng.uniform(), 900, rate);
    for (std::size_t k = 0; k < len && n < total; ++k, ++n) {
      const double t = static_cast<double>(k) / static_cast<double>(len);
      const double env = loud * std::sin(kPi * t) * std::min(1.0, 8 * t);
      double s = 0;
      if (kind < 0.6) {
        if (k % 40 == 0)
          for (int i = 0; i < 3; ++i) {
            const double fi[3] = {from.f1 + (to.f1 - from.f1) * t, from.f2 + (to.f2 - from.f2) * t,
                                  from.f3 + (to.f3 - from.f3) * t};
            formant[i].tune(std::min(fi[i], 0.45 * rate), 60 + 40 * i, rate);
          }
        const double f0 = f0a + (f0b - f0a) * t;
        phase += f0 / rate;
        double excitation = 0;
        if (phase >= 1) {
          phase -= 1;
          excitation = 1;  // glottal pulse
        }
        excitation += 0.02 * rng.symmetric();
        const double v =
            formant[0].step(excitation) + 0.5 * formant[1].step(excitation) + 0.25 * formant[2].step(excitation);
        s = env * v * 6;
      } else if (kind < 0.85) {
        s = env * 0.5 * fric.step(rng.symmetric()) * 3;
      } else {
        s = 0.002 * rng.symmetric();
      }
      x[n] = s;
    }
  }
  double peak = 1e-9;
  for (double v : x) peak = std::max(peak, std::fabs(v));
  std::vector<int16_t> out(total);
  const double gain = 16384 / peak;
  for (std::size_t k = 0; k < total; ++k) out[k] = static_cast<int16_t>(std::lround(x[k] * gain));
  return out;
}

std::vector<int16_t> tone_with_reversals(double seconds, int rate, double hz, double amplitude, double reversalMs) {
  const auto total = static_cast<std::size_t>(seconds * rate);
  std::vector<int16_t> out(total);
  const double period = reversalMs > 0 ? reversalMs * rate / 1000.0 : 0;
  for (std::size_t n = 0; n < total; ++n) {
    const double flips = period > 0 ? std::floor(static_cast<double>(n) / period) : 0;
    const double sign = std::fmod(flips, 2.0) == 0 ? 1.0 : -1.0;
    out[n] =
        static_cast<int16_t>(std::lround(sign * amplitude * std::sin(2 * kPi * hz * static_cast<double>(n) / rate)));
  }
  return out;
}

std::vector<int16_t> white_noise(double seconds, int rate, double peak, uint32_t seed) {
  Lcg rng(seed);
  const auto total = static_cast<std::size_t>(seconds * rate);
  std::vector<int16_t> out(total);
  for (auto& v : out) v = static_cast<int16_t>(std::lround(peak * rng.symmetric()));
  return out;
}

}  // namespace vsps::signals
