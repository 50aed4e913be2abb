// Vector kernels of the autocorrelations and energies (windowing with
// mult_r, exact sums of squares, cross sums), with scalar forms for the
// levels that do not use them. Per level: include from variant sources only.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/simd/x86.h"

namespace vsps::VSPS_NS::simd {

// y[n] = mult_r(x[n], w[n]) (ITU mult_r: round(x w / 2^15), -32768 x -32768
// saturated to 32767).
inline void window_mult_r(const int16_t* x, const int16_t* w, int16_t* y, int n) {
  int k = 0;
#if defined(VSPS_SIMD256)
  const __m256i minimum = _mm256_set1_epi16(INT16_MIN);
  for (; k + 16 <= n; k += 16) {
    const __m256i r = _mm256_mulhrs_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(x + k)),
                                          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(w + k)));
    // mulhrs wraps the one product that needs saturation to -32768, a value
    // mult_r never gives otherwise.
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(y + k), _mm256_add_epi16(r, _mm256_cmpeq_epi16(r, minimum)));
  }
#elif VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
  const __m128i minimum = _mm_set1_epi16(INT16_MIN);
  for (; k + 8 <= n; k += 8) {
    const __m128i r = _mm_mulhrs_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(x + k)),
                                       _mm_loadu_si128(reinterpret_cast<const __m128i*>(w + k)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + k), _mm_add_epi16(r, _mm_cmpeq_epi16(r, minimum)));
  }
#endif
  for (; k < n; ++k) y[k] = bop::mult_r(x[k], w[k]);
}

// Exact sum of (y[n] >> shift)^2 (arithmetic shifts, shift 0..15), any len
// below 2^31. Each square is at most 2^30, a pair of them at most 2^31 as
// an unsigned 32-bit value; pairs are widened before the 64-bit sum.
inline int64_t energy64_shifted(const int16_t* y, int len, int shift) {
  uint64_t acc = 0;
  int n = 0;
#if defined(VSPS_SIMD256)
  {
    const __m128i s = _mm_cvtsi32_si128(shift);
    __m256i a0 = _mm256_setzero_si256(), a1 = _mm256_setzero_si256();
    for (; n + 16 <= len; n += 16) {
      const __m256i v = _mm256_sra_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(y + n)), s);
      const __m256i pairs = _mm256_madd_epi16(v, v);  // unsigned pairs of squares
      a0 = _mm256_add_epi64(a0, _mm256_cvtepu32_epi64(_mm256_castsi256_si128(pairs)));
      a1 = _mm256_add_epi64(a1, _mm256_cvtepu32_epi64(_mm256_extracti128_si256(pairs, 1)));
    }
    __m128i a = _mm_add_epi64(_mm256_castsi256_si128(a0), _mm256_extracti128_si256(a0, 1));
    a = _mm_add_epi64(a, _mm_add_epi64(_mm256_castsi256_si128(a1), _mm256_extracti128_si256(a1, 1)));
    if (n + 8 <= len) {  // one block of 8 (the 40-sample subframe: 16 + 16 + 8)
      const __m128i v = _mm_sra_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(y + n)), s);
      const __m128i pairs = _mm_madd_epi16(v, v);
      a = _mm_add_epi64(a, _mm_add_epi64(_mm_cvtepu32_epi64(pairs), _mm_cvtepu32_epi64(_mm_srli_si128(pairs, 8))));
      n += 8;
    }
    acc = static_cast<uint64_t>(_mm_cvtsi128_si64(a)) + static_cast<uint64_t>(_mm_extract_epi64(a, 1));
  }
#elif VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
  {
    const __m128i s = _mm_cvtsi32_si128(shift);
    const __m128i zero = _mm_setzero_si128();
    __m128i a0 = zero, a1 = zero;
    for (; n + 8 <= len; n += 8) {
      const __m128i v = _mm_sra_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(y + n)), s);
      const __m128i pairs = _mm_madd_epi16(v, v);
      a0 = _mm_add_epi64(a0, _mm_unpacklo_epi32(pairs, zero));
      a1 = _mm_add_epi64(a1, _mm_unpackhi_epi32(pairs, zero));
    }
    alignas(16) uint64_t lanes[2];
    _mm_store_si128(reinterpret_cast<__m128i*>(lanes), _mm_add_epi64(a0, a1));
    acc = lanes[0] + lanes[1];
  }
#endif
  for (; n < len; ++n) {
    const int32_t v = y[n] >> shift;
    acc += static_cast<uint32_t>(v * v);
  }
  return static_cast<int64_t>(acc);
}

// sum of (a[n] >> shift) (b[n] >> shift), n < len, modulo 2^32 (two's
// complement): exact whenever the caller knows that every partial sum over
// any subset of the terms fits 32 bits (for instance by Cauchy-Schwarz from
// an energy below 2^30).
inline int32_t cross32(const int16_t* a, const int16_t* b, int len, int shift) {
  uint32_t acc = 0;
  int n = 0;
#if defined(VSPS_SIMD256)
  {
    const __m128i s = _mm_cvtsi32_si128(shift);
    __m256i a0 = _mm256_setzero_si256(), a1 = _mm256_setzero_si256();
    for (; n + 32 <= len; n += 32) {
      const __m256i x0 = _mm256_sra_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + n)), s);
      const __m256i y0 = _mm256_sra_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + n)), s);
      const __m256i x1 = _mm256_sra_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + n + 16)), s);
      const __m256i y1 = _mm256_sra_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + n + 16)), s);
      a0 = _mm256_add_epi32(a0, _mm256_madd_epi16(x0, y0));
      a1 = _mm256_add_epi32(a1, _mm256_madd_epi16(x1, y1));
    }
    for (; n + 16 <= len; n += 16) {
      const __m256i x0 = _mm256_sra_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + n)), s);
      const __m256i y0 = _mm256_sra_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + n)), s);
      a0 = _mm256_add_epi32(a0, _mm256_madd_epi16(x0, y0));
    }
    acc = static_cast<uint32_t>(hsum_i32(_mm256_add_epi32(a0, a1)));
  }
#elif VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
  {
    const __m128i s = _mm_cvtsi32_si128(shift);
    __m128i a0 = _mm_setzero_si128();
    for (; n + 8 <= len; n += 8) {
      const __m128i x0 = _mm_sra_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a + n)), s);
      const __m128i y0 = _mm_sra_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(b + n)), s);
      a0 = _mm_add_epi32(a0, _mm_madd_epi16(x0, y0));
    }
    acc = static_cast<uint32_t>(hsum_i32(a0));
  }
#endif
  for (; n < len; ++n) acc += static_cast<uint32_t>(int32_t(a[n] >> shift) * (b[n] >> shift));
  return static_cast<int32_t>(acc);
}

// As cross32 with shift 0 for operands that may be read up to the next
// multiple of 16 elements beyond len, where b holds zeros (a buffer padded
// with 16 zeros past its end, b = a + lag): whole vectors, no scalar tail.
inline constexpr int kCrossPad = 16;
inline int32_t cross32_padded(const int16_t* a, const int16_t* b, int len) {
#if defined(VSPS_SIMD256)
  __m256i a0 = _mm256_setzero_si256(), a1 = _mm256_setzero_si256();
  int n = 0;
  for (; n + 16 < len; n += 32) {
    a0 = _mm256_add_epi32(a0, _mm256_madd_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + n)),
                                                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + n))));
    a1 = _mm256_add_epi32(a1, _mm256_madd_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + n + 16)),
                                                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + n + 16))));
  }
  if (n < len)
    a0 = _mm256_add_epi32(a0, _mm256_madd_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(a + n)),
                                                _mm256_loadu_si256(reinterpret_cast<const __m256i*>(b + n))));
  return hsum_i32(_mm256_add_epi32(a0, a1));
#elif VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
  __m128i a0 = _mm_setzero_si128(), a1 = _mm_setzero_si128();
  for (int n = 0; n < len; n += 16) {
    a0 = _mm_add_epi32(a0, _mm_madd_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a + n)),
                                          _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + n))));
    a1 = _mm_add_epi32(a1, _mm_madd_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(a + n + 8)),
                                          _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + n + 8))));
  }
  return hsum_i32(_mm_add_epi32(a0, a1));
#else
  return cross32(a, b, len, 0);
#endif
}

}  // namespace vsps::VSPS_NS::simd
