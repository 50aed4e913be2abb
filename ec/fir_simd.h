// Vector forms of the full-band filters of ec/fir.cpp, per level. Each gives
// the scalar results exactly:
// - float FIR: eight (AVX, levels 5-6) or four (SSE, levels 2-4) outputs per
//   vector, each lane summing its taps in increasing k, products and sums
//   rounded as in the scalar loop (no fused multiply-add);
// - Q15 FIR and LMS: with at most kMaxExactTaps taps every rounded term lies
//   in -32768..32768, so no partial sum of any subset of terms leaves the
//   32-bit range: the saturating chain never saturates and the terms may be
//   added in any order (AVX2, level 6). Longer filters take the scalar loop.
// Variant code: include inside namespace vsps::<level> from ec/fir.cpp.
#pragma once

#include <cstdint>

#include "core/simd/x86.h"

namespace vsps::VSPS_NS::ecfir {

inline constexpr int kMaxExactTaps = 65535;  // 65535 * 32768 < 2^31

// The blocks compute several outputs before storing them: only when the
// outputs are apart from the samples read (reference[-(taps-1) .. len-1]);
// an error block over the reference takes the scalar order.
template <class T>
inline bool outputs_apart(const T* reference, const T* error, int len, int taps) {
  return simd::disjoint(error, sizeof(T) * static_cast<std::size_t>(len), reference - (taps - 1),
                        sizeof(T) * (static_cast<std::size_t>(len) + static_cast<std::size_t>(taps) - 1));
}

#if defined(__AVX__)
// error[n] for n in [0, len rounded down to 8); returns the count done.
inline int fir32f_blocks(const float* reference, const float* nearEnd, float* error, int len, const float* h,
                         int taps) {
  int n = 0;
  for (; n + 8 <= len; n += 8) {
    __m256 y = _mm256_setzero_ps();
    for (int k = 0; k < taps; ++k)
      y = _mm256_add_ps(y, _mm256_mul_ps(_mm256_set1_ps(h[k]), _mm256_loadu_ps(reference + n - k)));
    _mm256_storeu_ps(error + n, _mm256_sub_ps(_mm256_loadu_ps(nearEnd + n), y));
  }
  return n;
}
#elif VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
inline int fir32f_blocks(const float* reference, const float* nearEnd, float* error, int len, const float* h,
                         int taps) {
  int n = 0;
  for (; n + 4 <= len; n += 4) {
    __m128 y = _mm_setzero_ps();
    for (int k = 0; k < taps; ++k) y = _mm_add_ps(y, _mm_mul_ps(_mm_set1_ps(h[k]), _mm_loadu_ps(reference + n - k)));
    _mm_storeu_ps(error + n, _mm_sub_ps(_mm_loadu_ps(nearEnd + n), y));
  }
  return n;
}
#endif

#if defined(VSPS_SIMD256)
#define VSPS_EC_FIR16_VECTOR 1

// Sign-extends the two halves of 16 terms and adds them to two accumulators.
inline void add_terms(__m256i t, __m256i& lo, __m256i& hi) {
  lo = _mm256_add_epi32(lo, _mm256_cvtepi16_epi32(_mm256_castsi256_si128(t)));
  hi = _mm256_add_epi32(hi, _mm256_cvtepi16_epi32(_mm256_extracti128_si256(t, 1)));
}

// Q15 FIR, 16 outputs per block: term (x h + 16384) >> 15 is mulhrs, except
// for x = h = -32768 (mulhrs gives -32768, the term is +32768), which can
// only happen for a tap h[k] = -32768 and is then corrected.
inline int fir16s_blocks(const int16_t* reference, const int16_t* nearEnd, int16_t* error, int len, const int16_t* h,
                         int taps) {
  const __m256i minimum = _mm256_set1_epi16(INT16_MIN);
  int n = 0;
  for (; n + 16 <= len; n += 16) {
    __m256i lo = _mm256_setzero_si256(), hi = _mm256_setzero_si256();
    for (int k = 0; k < taps; ++k) {
      const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(reference + n - k));
      const __m256i t = _mm256_mulhrs_epi16(x, _mm256_set1_epi16(h[k]));
      add_terms(t, lo, hi);
      if (h[k] == INT16_MIN) {  // +65536 where the term wrapped
        const __m256i wrapped = _mm256_cmpeq_epi16(x, minimum);
        const __m256i big = _mm256_set1_epi32(65536);
        lo = _mm256_add_epi32(lo, _mm256_and_si256(_mm256_cvtepi16_epi32(_mm256_castsi256_si128(wrapped)), big));
        hi = _mm256_add_epi32(hi, _mm256_and_si256(_mm256_cvtepi16_epi32(_mm256_extracti128_si256(wrapped, 1)), big));
      }
    }
    // error = sat16(nearEnd - y); |y| <= 65535 * 32768, so nearEnd - y fits 32 bits.
    const __m256i d = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(nearEnd + n));
    const __m256i elo = _mm256_sub_epi32(_mm256_cvtepi16_epi32(_mm256_castsi256_si128(d)), lo);
    const __m256i ehi = _mm256_sub_epi32(_mm256_cvtepi16_epi32(_mm256_extracti128_si256(d, 1)), hi);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(error + n),
                        _mm256_permute4x64_epi64(_mm256_packs_epi32(elo, ehi), 0xD8));
  }
  return n;
}

// Reverses the 16 elements of v.
inline __m256i reverse16(__m256i v) {
  const __m256i inLane = _mm256_shuffle_epi8(v, _mm256_setr_epi8(14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1,
                                                                 14, 15, 12, 13, 10, 11, 8, 9, 6, 7, 4, 5, 2, 3, 0, 1));
  return _mm256_permute2x128_si256(inLane, inLane, 0x01);
}

// One sample of the Q15 LMS over taps k in [0, taps rounded down to 16):
// the coefficient update with the carried c and the echo estimate's terms;
// returns the sum of those terms (x points at reference[n]).
inline int32_t lms16s_taps(const int16_t* x, int16_t* h, int taps, int32_t c, int* done) {
  const __m256i cv = _mm256_set1_epi32(c);
  const __m256i round13 = _mm256_set1_epi32(4096);
  const __m256i ones = _mm256_set1_epi16(1);
  const __m256i minimum = _mm256_set1_epi16(INT16_MIN);
  const __m256i half = _mm256_set1_epi16(INT16_MIN);  // madd with the wrap mask gives 32768 per wrapped term
  __m256i acc = _mm256_setzero_si256();
  int k = 0;
  for (; k + 16 <= taps; k += 16) {
    // x[n-k] and x[n-1-k] for k .. k+15 (reversed loads).
    const __m256i xk = reverse16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(x - k - 15)));
    const __m256i xk1 = reverse16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(x - k - 16)));
    // h + ((x[n-1-k] c + 4096) >> 13) in wrapping 32-bit products, saturated to 16 bits.
    const __m256i hv = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(h + k));
    const __m256i plo = _mm256_srai_epi32(
        _mm256_add_epi32(_mm256_mullo_epi32(_mm256_cvtepi16_epi32(_mm256_castsi256_si128(xk1)), cv), round13), 13);
    const __m256i phi = _mm256_srai_epi32(
        _mm256_add_epi32(_mm256_mullo_epi32(_mm256_cvtepi16_epi32(_mm256_extracti128_si256(xk1, 1)), cv), round13), 13);
    const __m256i slo = _mm256_add_epi32(_mm256_cvtepi16_epi32(_mm256_castsi256_si128(hv)), plo);
    const __m256i shi = _mm256_add_epi32(_mm256_cvtepi16_epi32(_mm256_extracti128_si256(hv, 1)), phi);
    const __m256i hn = _mm256_permute4x64_epi64(_mm256_packs_epi32(slo, shi), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(h + k), hn);
    // (h x + 16384) >> 15 per tap, pairs summed in 32 bits; the wrapped
    // -32768 x -32768 terms corrected by 2 x 32768.
    const __m256i t = _mm256_mulhrs_epi16(hn, xk);
    const __m256i wrapped = _mm256_cmpeq_epi16(t, minimum);
    const __m256i fix = _mm256_madd_epi16(wrapped, half);
    acc = _mm256_add_epi32(acc, _mm256_add_epi32(_mm256_madd_epi16(t, ones), _mm256_add_epi32(fix, fix)));
  }
  *done = k;
  return simd::hsum_i32(acc);
}
#endif

}  // namespace vsps::VSPS_NS::ecfir
