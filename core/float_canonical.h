// Stores of floating-point results that are identical at every processor
// level. When two different NaNs meet in an arithmetic operation the result
// keeps one of them, and which one depends on the operand order each
// level's code generator picks; so every NaN a float function stores (its
// outputs, its state, its work buffer) is the one quiet NaN 0x7FC00000
// (0x7FF8000000000000 in double precision). Finite values and infinities
// pass unchanged, and NaN payloads never steer control flow (comparisons
// with any NaN are false), so canonical stores make the bytes identical.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/level_ns.h"

namespace vsps::VSPS_NS::fout {

inline float canonical(float x) {
  if (x == x) return x;
  const uint32_t bits = 0x7FC00000u;
  float q;
  std::memcpy(&q, &bits, sizeof q);
  return q;
}

inline double canonical(double x) {
  if (x == x) return x;
  const uint64_t bits = 0x7FF8000000000000ull;
  double q;
  std::memcpy(&q, &bits, sizeof q);
  return q;
}

// Makes every NaN among n floats canonical, in place.
inline void canonicalise(float* p, std::size_t n) {
  for (std::size_t i = 0; i < n; ++i) p[i] = canonical(p[i]);
}

}  // namespace vsps::VSPS_NS::fout
