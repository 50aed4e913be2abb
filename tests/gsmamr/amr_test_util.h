// Test helpers of the GSM-AMR family: rate values, reset vectors and
// realistic random inputs.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "vsps.h"

namespace amrt {

inline constexpr std::array<int, 9> kValidModes = {0, 1, 3, 6, 7, 8, 11, 12, 25};
inline constexpr std::array<int, 11> kInvalidModes = {2, 4, 5, 9, 10, 13, 24, 26, -1, INT32_MIN, INT32_MAX};

// Decoder reset of TS 26.073: past_lsf_q = the 12.2 kbit/s mean vector,
// previous LSP = the standard's initial LSP vector.
inline constexpr std::array<int16_t, 10> kResetPastLsfQ = {1384, 2077, 3420,  5108,  6742,
                                                           8122, 9863, 11092, 12714, 13701};
inline constexpr std::array<int16_t, 10> kResetLsp = {30000, 26000, 21000,  15000,  8000,
                                                      0,     -8000, -15000, -21000, -26000};

inline int random_mode(std::mt19937& rng) { return kValidModes[rng() % kValidModes.size()]; }

// Second-order resonator driven by noise, random level (speech-like).
inline std::vector<int16_t> random_speech(std::mt19937& rng, std::size_t n) {
  std::normal_distribution<double> noise(0.0, 1.0);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  const double radius = 0.7 + 0.29 * u(rng), angle = 3.1 * u(rng);
  const double gain = std::pow(10.0, 4.5 * u(rng));  // 1 .. ~30000
  const double a1 = 2 * radius * std::cos(angle), a2 = -radius * radius;
  double y1 = 0, y2 = 0;
  std::vector<int16_t> out(n);
  for (auto& s : out) {
    const double y = noise(rng) + a1 * y1 + a2 * y2;
    y2 = y1;
    y1 = y;
    const double v = std::round(y * gain * (1 - radius) * 0.5);
    s = static_cast<int16_t>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v));
  }
  return out;
}

// Ten ordered LSFs (normalised Q15, at least 120 apart) as Q15 LSPs.
inline std::vector<int16_t> random_lsp(std::mt19937& rng) {
  std::uniform_int_distribution<int> u(60, 16300);
  std::vector<int> f(10);
  for (;;) {
    for (int& v : f) v = u(rng);
    std::sort(f.begin(), f.end());
    bool ok = true;
    for (int i = 1; i < 10; ++i) ok = ok && f[i] - f[i - 1] >= 120;
    if (ok) break;
  }
  std::vector<int16_t> lsp(10);
  for (int i = 0; i < 10; ++i)
    lsp[i] = static_cast<int16_t>(std::lround(32767.0 * std::cos(3.141592653589793 * f[i] / 32768.0)));
  return lsp;
}

// The two LSP vectors of a 12.2 kbit/s frame (20 values).
inline std::vector<int16_t> random_lsp_pair(std::mt19937& rng) {
  auto lsp = random_lsp(rng);
  const auto second = random_lsp(rng);
  lsp.insert(lsp.end(), second.begin(), second.end());
  return lsp;
}

}  // namespace amrt
