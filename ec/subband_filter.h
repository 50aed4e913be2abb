// 64-bit helpers of the integer sub-band filters and updates. Per level.
#pragma once

#include <cstdint>

#include "core/level_ns.h"

namespace vsps::VSPS_NS::ec {

inline constexpr int kMaxSubbands = 4097;
inline constexpr int kMaxSegments = 255;

inline int64_t add_sat64(int64_t a, int64_t b) {
  int64_t r;
  if (__builtin_add_overflow(a, b, &r)) return a < 0 ? INT64_MIN : INT64_MAX;
  return r;
}
inline int64_t sub_sat64(int64_t a, int64_t b) {
  int64_t r;
  if (__builtin_sub_overflow(a, b, &r)) return a < 0 ? INT64_MIN : INT64_MAX;
  return r;
}
inline int32_t sat32(int64_t x) { return x > INT32_MAX ? INT32_MAX : (x < INT32_MIN ? INT32_MIN : int32_t(x)); }
// Wrapping 64-bit arithmetic (defined through unsigned values).
inline int64_t wrap_add64(int64_t a, int64_t b) { return int64_t(uint64_t(a) + uint64_t(b)); }
inline int64_t wrap_sub64(int64_t a, int64_t b) { return int64_t(uint64_t(a) - uint64_t(b)); }

// x * 2^-count: arithmetic right shift (floor) for count > 0, left shift
// saturated to 64 bits for count < 0.
inline int64_t shift_sat64(int64_t x, int64_t count) {
  if (count >= 0) return x >> (count > 63 ? 63 : count);
  if (x == 0) return 0;
  const int64_t l = -count;
  if (l >= 63) return x > 0 ? INT64_MAX : INT64_MIN;
  const int64_t lim = INT64_MAX >> l;
  if (x > lim) return INT64_MAX;
  if (x < -lim - 1) return INT64_MIN;
  return int64_t(uint64_t(x) << l);
}

}  // namespace vsps::VSPS_NS::ec
