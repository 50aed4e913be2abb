// Vector forms of the float real transform's steps (ec/rfft.h), per level:
// SSE3 at levels 1-4 (two complex values per register), AVX at levels 5-6
// (four) for the butterfly stages (the first two stages on two blocks of
// four points at a time). Level 0 runs the scalar code.
//
// Why the bits are the scalar ones: the data stay interleaved (re, im) and
// every lane computes one scalar expression with the same operands in the
// same order, one rounding per operation, no fused multiply-add. The complex
// product y w (scalar: yr*wr - yi*wi, yr*wi + yi*wr) is
//   addsub((yr, yr) * (wr, wi), (yi, yi) * (wi, wr))
// so that even the first operand of each multiplication, subtraction and
// addition is the one of the scalar source (which decides the NaN that
// propagates when both operands are NaN; the compiler may still commute the
// operands of the scalar code, so only NaN of one kind, such as the ones
// the processor produces, are certain to come out alike at every level). Where the scalar code computes a - b in one
// lane and b - a in the other, both differences are formed and a bit mask picks the lanes (never a + (-b), which
// differs from a - b in the sign of a NaN). The conjugate twiddles of the inverse flip the sign bit of the table's
// imaginary parts, as the scalar negation does.
// Variant code: included by ec/rfft.h.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/level_ns.h"
#include "core/simd/x86.h"
#include "vsps.h"

#if defined(__SSE3__)
#include "core/simd/intrinsics.h"

#define VSPS_EC_RFFT32F_VECTOR 1

namespace vsps::VSPS_NS::ec {

// y * w for the two complex values of a register.
inline __m128 cmul2(__m128 y, __m128 w) {
  return _mm_addsub_ps(_mm_mul_ps(_mm_moveldup_ps(y), w), _mm_mul_ps(_mm_movehdup_ps(y), _mm_shuffle_ps(w, w, 0xB1)));
}

// Lanes re from a, lanes im from b.
inline __m128 re_im(__m128 a, __m128 b) {
  const __m128 reMask = _mm_castsi128_ps(_mm_setr_epi32(-1, 0, -1, 0));
  return _mm_or_ps(_mm_and_ps(reMask, a), _mm_andnot_ps(reMask, b));
}

// Swaps the two complex values of a register.
inline __m128 swap_halves(__m128 v) { return _mm_shuffle_ps(v, v, 0x4E); }

template <bool kInverse>
inline __m128 twiddles2(const Vsp32fc* w) {
  const __m128 v = _mm_loadu_ps(&w->re);
  return kInverse ? _mm_xor_ps(v, _mm_setr_ps(0.0f, -0.0f, 0.0f, -0.0f)) : v;
}

#if defined(__AVX__)
inline __m256 cmul4(__m256 y, __m256 w) {
  return _mm256_addsub_ps(_mm256_mul_ps(_mm256_moveldup_ps(y), w),
                          _mm256_mul_ps(_mm256_movehdup_ps(y), _mm256_permute_ps(w, 0xB1)));
}

template <bool kInverse>
inline __m256 twiddles4(const Vsp32fc* w) {
  const __m256 v = _mm256_loadu_ps(&w->re);
  return kInverse ? _mm256_xor_ps(v, _mm256_setr_ps(0.0f, -0.0f, 0.0f, -0.0f, 0.0f, -0.0f, 0.0f, -0.0f)) : v;
}
#endif

// The complex values at p and q in one register. The first stages read
// their input in 8-byte pieces: the bit reversal and the unpacking before
// them store 8-byte pieces, and a wider load over narrower stores waits for
// them to retire instead of taking their data.
inline __m128 pair_of(const float* p, const float* q) {
  return _mm_loadh_pi(_mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(p))),
                      reinterpret_cast<const __m64*>(q));
}

// The radix-2 stages of cfft_32f for m >= 4 (a power of two): the stages of
// half-size 1 and 2 together on each block of four points (in registers),
// then the stages of half-size 4 and more across j.
template <bool kInverse>
inline void cfft_32f_vector(Vsp32fc* a, const Vsp32fc* stage, int m) {
  float* p = &a->re;
  const __m128 w2 = twiddles2<kInverse>(stage + 1);
  int b0 = 0;
#if defined(__AVX__)
  // Two blocks of four points per iteration, one block per 128-bit half,
  // stored 32 bytes at a time: the stage of half-size 4 then loads whole
  // stores (a 32-byte load over two 16-byte stores waits for them).
  const __m256 w2x2 = _mm256_set_m128(w2, w2);
  for (; b0 + 16 <= 2 * m; b0 += 16) {
    const __m256 x = _mm256_set_m128(pair_of(p + b0 + 8, p + b0 + 12), pair_of(p + b0, p + b0 + 4));
    const __m256 y = _mm256_set_m128(pair_of(p + b0 + 10, p + b0 + 14), pair_of(p + b0 + 2, p + b0 + 6));
    const __m256 s = _mm256_add_ps(x, y), d = _mm256_sub_ps(x, y);
    const __m256 lo = _mm256_shuffle_ps(s, d, 0x44), hi = _mm256_shuffle_ps(s, d, 0xEE);
    const __m256 t = cmul4(hi, w2x2);
    const __m256 sum = _mm256_add_ps(lo, t), dif = _mm256_sub_ps(lo, t);
    _mm256_storeu_ps(p + b0, _mm256_permute2f128_ps(sum, dif, 0x20));
    _mm256_storeu_ps(p + b0 + 8, _mm256_permute2f128_ps(sum, dif, 0x31));
  }
#endif
  for (int b = b0; b < 2 * m; b += 8) {
    const __m128 x = pair_of(p + b, p + b + 4), y = pair_of(p + b + 2, p + b + 6);  // (a0, a2), (a1, a3)
    const __m128 s = _mm_add_ps(x, y), d = _mm_sub_ps(x, y);
    const __m128 lo = _mm_movelh_ps(s, d), hi = _mm_movehl_ps(d, s);  // (a0', a1'), (a2', a3')
    const __m128 t = cmul2(hi, w2);
    _mm_storeu_ps(p + b, _mm_add_ps(lo, t));
    _mm_storeu_ps(p + b + 4, _mm_sub_ps(lo, t));
  }
  for (int h = 4; h < m; h *= 2) {
    const Vsp32fc* w = stage + (h - 1);
    for (int b = 0; b < m; b += 2 * h) {
      float* x = p + 2 * b;
      float* y = p + 2 * (b + h);
#if defined(__AVX__)
      for (int j = 0; j < 2 * h; j += 8) {
        const __m256 t = cmul4(_mm256_loadu_ps(y + j), twiddles4<kInverse>(w + j / 2));
        const __m256 xv = _mm256_loadu_ps(x + j);
        _mm256_storeu_ps(y + j, _mm256_sub_ps(xv, t));
        _mm256_storeu_ps(x + j, _mm256_add_ps(xv, t));
      }
#else
      for (int j = 0; j < 2 * h; j += 4) {
        const __m128 t = cmul2(_mm_loadu_ps(y + j), twiddles2<kInverse>(w + j / 2));
        const __m128 xv = _mm_loadu_ps(x + j);
        _mm_storeu_ps(y + j, _mm_sub_ps(xv, t));
        _mm_storeu_ps(x + j, _mm_add_ps(xv, t));
      }
#endif
    }
  }
}

// pack_forward_32f for k in [1, m/2) two at a time (k and k + 1 against
// m - k and m - k - 1); returns the first k left to the scalar loop.
inline int pack_forward_32f_vector(const Vsp32fc* z, const Vsp32fc* pack, int m, Vsp32fc* dst) {
  const __m128 half = _mm_set1_ps(0.5f);
  int k = 1;
  for (; k + 1 < m / 2; k += 2) {
    const __m128 av = _mm_loadu_ps(&z[k].re);
    const __m128 cv = swap_halves(_mm_loadu_ps(&z[m - k - 1].re));
    const __m128 sum = _mm_add_ps(av, cv), dif = _mm_sub_ps(av, cv), rdif = _mm_sub_ps(cv, av);
    // (er, ei) = (a.re + c.re, a.im - c.im) / 2; (orr, oi) = (a.im + c.im, c.re - a.re) / 2.
    const __m128 e = _mm_mul_ps(re_im(sum, dif), half);
    const __m128 o = _mm_mul_ps(re_im(_mm_shuffle_ps(sum, sum, 0xB1), _mm_shuffle_ps(rdif, rdif, 0xB1)), half);
    const __m128 t = cmul2(_mm_loadu_ps(&pack[k].re), o);  // (w.re*orr - w.im*oi, w.re*oi + w.im*orr)
    _mm_storeu_ps(&dst[k].re, _mm_add_ps(e, t));
    // (er - tr, ti - ei)
    _mm_storeu_ps(&dst[m - k - 1].re, swap_halves(re_im(_mm_sub_ps(e, t), _mm_sub_ps(t, e))));
  }
  return k;
}

// unpack_inverse_32f for k in [1, m/2) two at a time; returns the first k
// left to the scalar loop.
inline int unpack_inverse_32f_vector(const Vsp32fc* src, const Vsp32fc* pack, const uint16_t* rev, int m, Vsp32fc* a) {
  int k = 1;
  for (; k + 1 < m / 2; k += 2) {
    const __m128 xv = _mm_loadu_ps(&src[k].re);
    const __m128 cv = swap_halves(_mm_loadu_ps(&src[m - k - 1].re));
    const __m128 sum = _mm_add_ps(xv, cv), dif = _mm_sub_ps(xv, cv);
    const __m128 e = re_im(sum, dif);  // (x.re + c.re, x.im - c.im)
    const __m128 d = re_im(dif, sum);  // (x.re - c.re, x.im + c.im)
    // (dr*w.re + di*w.im, di*w.re - dr*w.im)
    const __m128 w = _mm_loadu_ps(&pack[k].re);
    const __m128 p = _mm_mul_ps(d, _mm_moveldup_ps(w));
    const __m128 q = _mm_mul_ps(_mm_shuffle_ps(d, d, 0xB1), _mm_movehdup_ps(w));
    const __m128 o = re_im(_mm_add_ps(p, q), _mm_sub_ps(p, q));
    const __m128 os = _mm_shuffle_ps(o, o, 0xB1);                       // (oi, orr)
    const __m128 first = _mm_addsub_ps(e, os);                          // (er - oi, ei + orr)
    const __m128 second = re_im(_mm_add_ps(e, os), _mm_sub_ps(os, e));  // (er + oi, orr - ei)
    _mm_storel_pi(reinterpret_cast<__m64*>(&a[rev[k]].re), first);
    _mm_storeh_pi(reinterpret_cast<__m64*>(&a[rev[k + 1]].re), first);
    _mm_storel_pi(reinterpret_cast<__m64*>(&a[rev[m - k]].re), second);
    _mm_storeh_pi(reinterpret_cast<__m64*>(&a[rev[m - k - 1]].re), second);
  }
  return k;
}
}  // namespace vsps::VSPS_NS::ec
#endif
