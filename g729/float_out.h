// Stores of single-precision results that are identical at every processor
// level: a NaN (possible only from non-finite intermediate values, e.g. a
// zero r[0]) is stored as the one quiet NaN 0x7FC00000, since the sign and
// payload of a propagated NaN depend on the operand order each level's
// code generator picks.
#pragma once

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

}  // namespace vsps::VSPS_NS::fout
