// Cross-level checks of vector kernels on adversarial inputs: full-scale
// values that make the saturating arithmetic saturate, mixed with ordinary
// ones, and a helper that runs a computation at every supported level and
// compares its result with level 0's.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

#include "tests/support/levels.h"

namespace vt {

// One 16-bit value: a quarter of the draws each -32768, 32767, a uniform
// full-range value, and a value in -spread..spread.
inline int16_t adversarial16(std::mt19937& rng, int spread = 2000) {
  switch (rng() % 4) {
    case 0:
      return INT16_MIN;
    case 1:
      return INT16_MAX;
    case 2:
      return static_cast<int16_t>(rng());
    default:
      return static_cast<int16_t>(static_cast<int>(rng() % (2 * spread + 1)) - spread);
  }
}

inline std::vector<int16_t> adversarial16(std::mt19937& rng, std::size_t n, int spread = 2000) {
  std::vector<int16_t> v(n);
  for (auto& x : v) x = adversarial16(rng, spread);
  return v;
}

// Runs f() (returning a comparable value) at every supported level and
// expects the same value as at level 0. Returns level 0's value.
template <class F>
auto expect_levels_agree(F&& f, const std::string& what) {
  decltype(f()) reference;
  {
    ScopedLevel forced(0);
    reference = f();
  }
  for (int level : supported_levels()) {
    if (level == 0) continue;
    ScopedLevel forced(level);
    EXPECT_TRUE(f() == reference) << what << " differs at " << level_name(level);
  }
  return reference;
}

}  // namespace vt
