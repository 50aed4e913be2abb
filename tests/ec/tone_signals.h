// Synthetic signals for the tone-detector tests: 2100 Hz (or another
// frequency) with phase reversals at given times, gaps of silence or
// noise, added noise.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

namespace ect {

struct ToneSignal {
  int rate = 8000;
  double seconds = 2.0;
  double freq = 2100.0;
  double amplitude = 0.5;               // of full scale
  double firstReversal = 0.45;          // seconds; then every `period`
  double period = 0.45;                 // <= 0: no reversals
  double gapStart = -1, gapLength = 0;  // seconds; a gap instead of the tone
  double gapNoise = 0;                  // RMS of the gap (0: digital silence)
  double noise = 0;                     // RMS of noise added everywhere
  uint32_t seed = 3;
};

// Samples in [-1, 1).
inline std::vector<double> tone_signal(const ToneSignal& s) {
  const auto n = static_cast<std::size_t>(s.seconds * s.rate);
  std::vector<double> x(n);
  std::mt19937 rng(s.seed);
  std::normal_distribution<double> gauss(0.0, 1.0);
  for (std::size_t i = 0; i < n; ++i) {
    const double t = double(i) / s.rate;
    int flips = 0;
    if (s.period > 0 && t >= s.firstReversal) flips = 1 + int((t - s.firstReversal) / s.period);
    double v = s.amplitude * std::sin(2 * std::numbers::pi * s.freq * t + std::numbers::pi * (flips % 2));
    if (s.gapStart >= 0 && t >= s.gapStart && t < s.gapStart + s.gapLength) v = s.gapNoise * gauss(rng);
    x[i] = v + s.noise * gauss(rng);
  }
  return x;
}

}  // namespace ect
