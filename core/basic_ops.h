// Saturating 16/32-bit basic operators of the ITU-T speech-coding reference
// arithmetic (basic-operator set v3.3, shared by G.729 and, with the
// differences noted, by GSM-AMR), bit-exact, as inline functions.
//
// Included by variant sources only: everything lives in the level namespace
// so that no copy is shared between processor levels.
//
// The reference keeps a global overflow flag; the few places that read it
// use the *_ovf forms, which carry a caller-owned flag with the exact
// set/reset behaviour of the reference (add/sub/mult/mult_r clear it when
// they do not saturate; the 32-bit operators only ever set it).
#pragma once

#include <cstdint>

#include "core/level_ns.h"

namespace vsps::VSPS_NS::bop {

inline constexpr int32_t kMax16 = 32767;
inline constexpr int32_t kMin16 = -32768;
inline constexpr int32_t kMax32 = INT32_MAX;
inline constexpr int32_t kMin32 = INT32_MIN;

// ---- saturation helpers -------------------------------------------------
inline int16_t sat16(int32_t x) { return static_cast<int16_t>(x > kMax16 ? kMax16 : (x < kMin16 ? kMin16 : x)); }
inline int32_t sat32(int64_t x) { return static_cast<int32_t>(x > kMax32 ? kMax32 : (x < kMin32 ? kMin32 : x)); }
inline int16_t sat16_ovf(int32_t x, bool& ovf) {
  ovf = x > kMax16 || x < kMin16;  // the v3.3 saturator also clears the flag
  return sat16(x);
}
inline int32_t sat32_ovf(int64_t x, bool& ovf) {
  if (x > kMax32 || x < kMin32) ovf = true;  // 32-bit operators only set it
  return sat32(x);
}

// ---- 16-bit operators -----------------------------------------------------
inline int16_t add(int16_t a, int16_t b) { return sat16(a + b); }
inline int16_t sub(int16_t a, int16_t b) { return sat16(a - b); }
inline int16_t add_ovf(int16_t a, int16_t b, bool& ovf) { return sat16_ovf(a + b, ovf); }
inline int16_t sub_ovf(int16_t a, int16_t b, bool& ovf) { return sat16_ovf(a - b, ovf); }
inline int16_t abs_s(int16_t a) { return a == kMin16 ? int16_t(kMax16) : int16_t(a < 0 ? -a : a); }
inline int16_t negate(int16_t a) { return a == kMin16 ? int16_t(kMax16) : int16_t(-a); }
// Q15 x Q15 -> Q15, floor; only -32768 x -32768 saturates.
inline int16_t mult(int16_t a, int16_t b) { return sat16((int32_t(a) * b) >> 15); }
inline int16_t mult_r(int16_t a, int16_t b) { return sat16((int32_t(a) * b + 0x4000) >> 15); }

inline int16_t shl(int16_t a, int16_t n);
inline int16_t shr(int16_t a, int16_t n) {
  if (n < 0) return shl(a, static_cast<int16_t>(-n));
  if (n >= 15) return static_cast<int16_t>(a < 0 ? -1 : 0);
  return static_cast<int16_t>(a >> n);
}
inline int16_t shl(int16_t a, int16_t n) {
  if (n < 0) return shr(a, static_cast<int16_t>(-n));
  if (a == 0) return 0;
  if (n > 15) return static_cast<int16_t>(a > 0 ? kMax16 : kMin16);
  const int32_t r = int32_t(a) * (int32_t(1) << n);
  if (r > kMax16 || r < kMin16) return static_cast<int16_t>(a > 0 ? kMax16 : kMin16);
  return static_cast<int16_t>(r);
}
inline int16_t shr_r(int16_t a, int16_t n) {
  if (n > 15) return 0;
  if (n <= 0) return shr(a, n);
  return static_cast<int16_t>(shr(a, n) + ((a >> (n - 1)) & 1));
}

inline int16_t extract_h(int32_t L) { return static_cast<int16_t>(L >> 16); }
inline int16_t extract_l(int32_t L) { return static_cast<int16_t>(L); }  // wraps
inline int32_t L_deposit_h(int16_t a) { return int32_t(a) * 65536; }
inline int32_t L_deposit_l(int16_t a) { return a; }

// ---- 32-bit operators -----------------------------------------------------
inline int32_t L_mult(int16_t a, int16_t b) {
  if (a == kMin16 && b == kMin16) return kMax32;
  return int32_t(a) * b * 2;
}
inline int32_t L_add(int32_t A, int32_t B) { return sat32(int64_t(A) + B); }
inline int32_t L_sub(int32_t A, int32_t B) { return sat32(int64_t(A) - B); }
inline int32_t L_mac(int32_t A, int16_t a, int16_t b) { return L_add(A, L_mult(a, b)); }
inline int32_t L_msu(int32_t A, int16_t a, int16_t b) { return L_sub(A, L_mult(a, b)); }
inline int32_t L_negate(int32_t A) { return A == kMin32 ? kMax32 : -A; }
inline int32_t L_abs(int32_t A) { return A == kMin32 ? kMax32 : (A < 0 ? -A : A); }

// Flag-carrying forms of the 32-bit operators (set only).
inline int32_t L_mult_ovf(int16_t a, int16_t b, bool& ovf) {
  if (a == kMin16 && b == kMin16) {
    ovf = true;
    return kMax32;
  }
  return int32_t(a) * b * 2;
}
inline int32_t L_add_ovf(int32_t A, int32_t B, bool& ovf) { return sat32_ovf(int64_t(A) + B, ovf); }
inline int32_t L_sub_ovf(int32_t A, int32_t B, bool& ovf) { return sat32_ovf(int64_t(A) - B, ovf); }
inline int32_t L_mac_ovf(int32_t A, int16_t a, int16_t b, bool& ovf) {
  return L_add_ovf(A, L_mult_ovf(a, b, ovf), ovf);
}
inline int32_t L_msu_ovf(int32_t A, int16_t a, int16_t b, bool& ovf) {
  return L_sub_ovf(A, L_mult_ovf(a, b, ovf), ovf);
}

inline int32_t L_shl(int32_t A, int16_t n);
inline int32_t L_shr(int32_t A, int16_t n) {
  if (n < 0) return L_shl(A, static_cast<int16_t>(-n));
  if (n >= 31) return A < 0 ? -1 : 0;
  return A >> n;
}
// sat32(A * 2^n), computed exactly.
inline int32_t L_shl(int32_t A, int16_t n) {
  if (n <= 0) return L_shr(A, static_cast<int16_t>(-n));
  if (A == 0) return 0;
  if (n >= 32) return A > 0 ? kMax32 : kMin32;
  return sat32(int64_t(A) * (int64_t(1) << n));
}
inline int32_t L_shl_ovf(int32_t A, int16_t n, bool& ovf) {
  if (n <= 0) return L_shr(A, static_cast<int16_t>(-n));
  if (A == 0) return 0;
  if (n >= 32) {
    ovf = true;
    return A > 0 ? kMax32 : kMin32;
  }
  return sat32_ovf(int64_t(A) * (int64_t(1) << n), ovf);
}
inline int32_t L_shr_r(int32_t A, int16_t n) {
  if (n > 31) return 0;
  if (n <= 0) return L_shr(A, n);
  return static_cast<int32_t>((int64_t(A) + (int64_t(1) << (n - 1))) >> n);
}

inline int16_t round(int32_t L) { return extract_h(L_add(L, 0x8000)); }
inline int16_t mac_r(int32_t A, int16_t a, int16_t b) { return round(L_mac(A, a, b)); }
inline int16_t msu_r(int32_t A, int16_t a, int16_t b) { return round(L_msu(A, a, b)); }

// ---- normalisation and division -------------------------------------------
// Left shifts that bring a into 0x4000..0x7FFF (a > 0) or 0x8000..0xBFFF (a < 0).
inline int16_t norm_s(int16_t a) {
  if (a == 0) return 0;
  if (a == -1) return 15;
  const uint32_t v = static_cast<uint16_t>(a < 0 ? ~a : a);  // 1..0x7FFF
  return static_cast<int16_t>(__builtin_clz(v) - 17);
}
// Left shifts that bring A into 0x40000000..0x7FFFFFFF (A > 0) or
// 0x80000000..0xBFFFFFFF (A < 0).
inline int16_t norm_l(int32_t A) {
  if (A == 0) return 0;
  if (A == -1) return 31;
  const uint32_t v = static_cast<uint32_t>(A < 0 ? ~A : A);
  return static_cast<int16_t>(__builtin_clz(v) - 1);
}

// floor(num * 32768 / den) for 0 <= num <= den, den > 0 (num == den gives
// 32767). The reference aborts outside these preconditions; callers guard
// every call. Outside them this returns 32767 for num >= den and 0 for a
// non-positive num or den, so that a guard failure can never trap.
inline int16_t div_s(int16_t num, int16_t den) {
  if (num <= 0 || den <= 0) return 0;
  if (num >= den) return kMax16;
  return static_cast<int16_t>((int32_t(num) << 15) / den);
}

}  // namespace vsps::VSPS_NS::bop
