// Chains of saturating L_mac (the speech references' correlations and
// energies: s = 0; s = L_mac(s, a[j], b[j]) for j in order) computed by the
// vector kernels when the result is provably the exact sum 2 sum a[j] b[j]:
// - sums of squares: every term is non-negative, so the chain saturates once
//   and stays at MAX_32: the result is min(init + 2 sum a^2, MAX_32);
// - cross sums: by Cauchy-Schwarz every partial sum over any subset of the
//   terms is at most sqrt(Ea Eb) in magnitude (Ea, Eb the energies of the
//   operands); when Ea Eb < 2^60, no L_mac saturates and no L_mult meets
//   -32768 x -32768, so the chain equals the plain sum, in any order.
// Variant code only (level namespace).
#pragma once

#include <cstdint>

#include "core/simd/corr.h"

namespace vsps::VSPS_NS::speech {

// Exact sum of a[j]^2, j < n.
inline int64_t energy(const int16_t* a, int n) { return simd::energy64_shifted(a, n, 0); }

// The L_mac chain of a[j] a[j] from init (0 <= init): min(init + 2 E, MAX_32).
inline int32_t mac_energy(int32_t init, const int16_t* a, int n) {
  const int64_t s = init + 2 * energy(a, n);
  return s > INT32_MAX ? INT32_MAX : static_cast<int32_t>(s);
}

// True when every L_mac chain of a cross sum between operands whose
// energies are at most ea and eb is exact (ea eb < 2^60).
inline bool cross_fits(int64_t ea, int64_t eb) {
  constexpr int64_t kLimit = (int64_t{1} << 60) - 1;
  return ea == 0 || eb == 0 || ea <= kLimit / eb;
}

// The L_mac chain of a[j] b[j] from 0, for operands that cross_fits admits
// (|2 sum| < 2^31; the 32-bit lanes may wrap in between, the sum is exact).
inline int32_t mac_cross(const int16_t* a, const int16_t* b, int n) {
  return static_cast<int32_t>(2u * static_cast<uint32_t>(simd::cross32(a, b, n, 0)));
}

}  // namespace vsps::VSPS_NS::speech
