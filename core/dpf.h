// 32-bit double-precision format (DPF) of the ITU-T reference arithmetic: a
// value split into a high word hi and a 15-bit low word lo standing for
// hi * 65536 + lo * 2, and the multiply/divide helpers built on it.
#pragma once

#include "core/basic_ops.h"

namespace vsps::VSPS_NS::dpf {

struct Dpf {
  int16_t hi;  // bits 16..31
  int16_t lo;  // bits 1..15, 0..32767
};

// Canonical split: the DPF value is L with bit 0 cleared.
inline Dpf L_Extract(int32_t L) { return Dpf{static_cast<int16_t>(L >> 16), static_cast<int16_t>((L & 0xFFFF) >> 1)}; }
inline int32_t L_Comp(int16_t hi, int16_t lo) { return bop::L_mac(bop::L_deposit_h(hi), lo, 1); }
inline int32_t L_Comp(Dpf d) { return L_Comp(d.hi, d.lo); }

// Q31 x Q31 -> Q31; lo1 x lo2 dropped, each cross term floor-shifted.
inline int32_t Mpy_32(int16_t hi1, int16_t lo1, int16_t hi2, int16_t lo2) {
  int32_t L = bop::L_mult(hi1, hi2);
  L = bop::L_mac(L, bop::mult(hi1, lo2), 1);
  return bop::L_mac(L, bop::mult(lo1, hi2), 1);
}
inline int32_t Mpy_32(Dpf a, Dpf b) { return Mpy_32(a.hi, a.lo, b.hi, b.lo); }

// Q31 x Q15 -> Q31.
inline int32_t Mpy_32_16(int16_t hi, int16_t lo, int16_t n) {
  return bop::L_mac(bop::L_mult(hi, n), bop::mult(lo, n), 1);
}
inline int32_t Mpy_32_16(Dpf a, int16_t n) { return Mpy_32_16(a.hi, a.lo, n); }

// L_num / (den_hi:den_lo) in Q31, about 24 bits of precision. Requires a
// normalised denominator (den_hi >= 0x3FFF) for the reference result; with a
// smaller den_hi the inner div_s is guarded (never traps) but the result is
// meaningless, so callers check before dividing.
inline int32_t Div_32(int32_t L_num, int16_t den_hi, int16_t den_lo) {
  const int16_t approx = bop::div_s(0x3FFF, den_hi);  // 1/den_hi in Q14
  int32_t L = Mpy_32_16(den_hi, den_lo, approx);      // den*approx, Q30
  L = bop::L_sub(bop::kMax32, L);                     // 2 - den*approx, Q30
  const Dpf t = L_Extract(L);
  L = Mpy_32_16(t, approx);  // 1/den, Q29
  const Dpf inv = L_Extract(L);
  const Dpf num = L_Extract(L_num);
  L = Mpy_32(num, inv);  // Q29
  return bop::L_shl(L, 2);
}

}  // namespace vsps::VSPS_NS::dpf
