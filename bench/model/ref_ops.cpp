// Out-of-line basic operators of the plain scalar model (see ref_ops.h).
#include "bench/model/ref_ops.h"

namespace model {

int Overflow = 0;

namespace {
constexpr int32_t kMax32 = 0x7FFFFFFF;
constexpr int32_t kMin32 = static_cast<int32_t>(0x80000000u);
int16_t saturate(int32_t x) {
  if (x > 32767) {
    Overflow = 1;
    return 32767;
  }
  if (x < -32768) {
    Overflow = 1;
    return -32768;
  }
  Overflow = 0;
  return static_cast<int16_t>(x);
}
}  // namespace

int16_t add(int16_t a, int16_t b) { return saturate(int32_t(a) + b); }
int16_t sub(int16_t a, int16_t b) { return saturate(int32_t(a) - b); }
int16_t abs_s(int16_t a) { return a == -32768 ? int16_t(32767) : int16_t(a < 0 ? -a : a); }
int16_t negate(int16_t a) { return a == -32768 ? int16_t(32767) : int16_t(-a); }
int16_t mult(int16_t a, int16_t b) {
  int32_t p = int32_t(a) * b;
  p = (p & static_cast<int32_t>(0xFFFF8000u)) >> 15;
  if (p & 0x00010000) p |= static_cast<int32_t>(0xFFFF0000u);
  return saturate(p);
}
int16_t mult_r(int16_t a, int16_t b) {
  int32_t p = int32_t(a) * b + 0x4000;
  p = (p & static_cast<int32_t>(0xFFFF8000u)) >> 15;
  if (p & 0x00010000) p |= static_cast<int32_t>(0xFFFF0000u);
  return saturate(p);
}
int16_t shl(int16_t a, int16_t n) {
  if (n < 0) return shr(a, static_cast<int16_t>(-n));
  const int32_t r = int32_t(a) * (int32_t(1) << (n > 16 ? 16 : n));
  if ((n > 15 && a != 0) || r != static_cast<int16_t>(r)) {
    Overflow = 1;
    return static_cast<int16_t>(a > 0 ? 32767 : -32768);
  }
  return static_cast<int16_t>(r);
}
int16_t shr(int16_t a, int16_t n) {
  if (n < 0) return shl(a, static_cast<int16_t>(-n));
  if (n >= 15) return static_cast<int16_t>(a < 0 ? -1 : 0);
  return static_cast<int16_t>(a >> n);
}
int16_t extract_h(int32_t L) { return static_cast<int16_t>(L >> 16); }
int16_t extract_l(int32_t L) { return static_cast<int16_t>(L); }
int16_t round_l(int32_t L) { return extract_h(L_add(L, 0x8000)); }
int16_t norm_s(int16_t a) {
  if (a == 0) return 0;
  if (a == -1) return 15;
  int16_t v = a < 0 ? static_cast<int16_t>(~a) : a;
  int16_t n = 0;
  for (; v < 0x4000; ++n) v = static_cast<int16_t>(v << 1);
  return n;
}
int16_t norm_l(int32_t L) {
  if (L == 0) return 0;
  if (L == -1) return 31;
  int32_t v = L < 0 ? ~L : L;
  int16_t n = 0;
  for (; v < 0x40000000; ++n) v <<= 1;
  return n;
}
int16_t div_s(int16_t num, int16_t den) {
  if (num <= 0 || den <= 0) return 0;
  if (num >= den) return 32767;
  int32_t L_num = num, L_den = den;
  int16_t out = 0;
  for (int i = 0; i < 15; ++i) {
    out = static_cast<int16_t>(out << 1);
    L_num <<= 1;
    if (L_num >= L_den) {
      L_num = L_sub(L_num, L_den);
      out = add(out, 1);
    }
  }
  return out;
}
int32_t L_mult(int16_t a, int16_t b) {
  const int32_t p = int32_t(a) * b;
  if (p == 0x40000000) {
    Overflow = 1;
    return kMax32;
  }
  return p * 2;
}
int32_t L_add(int32_t A, int32_t B) {
  const int32_t s = static_cast<int32_t>(static_cast<uint32_t>(A) + static_cast<uint32_t>(B));
  if (((A ^ B) & kMin32) == 0 && ((s ^ A) & kMin32) != 0) {
    Overflow = 1;
    return A < 0 ? kMin32 : kMax32;
  }
  return s;
}
int32_t L_sub(int32_t A, int32_t B) {
  const int32_t d = static_cast<int32_t>(static_cast<uint32_t>(A) - static_cast<uint32_t>(B));
  if (((A ^ B) & kMin32) != 0 && ((d ^ A) & kMin32) != 0) {
    Overflow = 1;
    return A < 0 ? kMin32 : kMax32;
  }
  return d;
}
int32_t L_mac(int32_t A, int16_t a, int16_t b) { return L_add(A, L_mult(a, b)); }
int32_t L_msu(int32_t A, int16_t a, int16_t b) { return L_sub(A, L_mult(a, b)); }
int32_t L_shl(int32_t A, int16_t n) {
  if (n <= 0) return L_shr(A, static_cast<int16_t>(-n));
  for (; n > 0; --n) {
    if (A > 0x3FFFFFFF) {
      Overflow = 1;
      return kMax32;
    }
    if (A < static_cast<int32_t>(0xC0000000u)) {
      Overflow = 1;
      return kMin32;
    }
    A *= 2;
  }
  return A;
}
int32_t L_shr(int32_t A, int16_t n) {
  if (n < 0) return L_shl(A, static_cast<int16_t>(-n));
  if (n >= 31) return A < 0 ? -1 : 0;
  return A >> n;
}
int32_t L_shr_r(int32_t A, int16_t n) {
  if (n > 31) return 0;
  int32_t r = L_shr(A, n);
  if (n > 0 && (A & (int32_t(1) << (n - 1))) != 0) r++;
  return r;
}
int32_t L_abs(int32_t A) { return A == kMin32 ? kMax32 : (A < 0 ? -A : A); }
int32_t L_negate(int32_t A) { return A == kMin32 ? kMax32 : -A; }
int32_t L_deposit_h(int16_t a) { return int32_t(a) * 65536; }
int32_t L_deposit_l(int16_t a) { return a; }

void L_Extract(int32_t L, int16_t* hi, int16_t* lo) {
  *hi = extract_h(L);
  *lo = extract_l(L_msu(L_shr(L, 1), *hi, 16384));
}
int32_t L_Comp(int16_t hi, int16_t lo) { return L_mac(L_deposit_h(hi), lo, 1); }
int32_t Mpy_32(int16_t hi1, int16_t lo1, int16_t hi2, int16_t lo2) {
  int32_t L = L_mult(hi1, hi2);
  L = L_mac(L, mult(hi1, lo2), 1);
  return L_mac(L, mult(lo1, hi2), 1);
}
int32_t Mpy_32_16(int16_t hi, int16_t lo, int16_t n) { return L_mac(L_mult(hi, n), mult(lo, n), 1); }
int32_t Div_32(int32_t L_num, int16_t denom_hi, int16_t denom_lo) {
  const int16_t approx = div_s(0x3FFF, denom_hi);
  int32_t L = Mpy_32_16(denom_hi, denom_lo, approx);
  L = L_sub(kMax32, L);
  int16_t hi, lo, n_hi, n_lo;
  L_Extract(L, &hi, &lo);
  L = Mpy_32_16(hi, lo, approx);
  L_Extract(L, &hi, &lo);
  L_Extract(L_num, &n_hi, &n_lo);
  L = Mpy_32(n_hi, n_lo, hi, lo);
  return L_shl(L, 2);
}

}  // namespace model
