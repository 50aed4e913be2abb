// Small integer helpers of the vector kernels, per level (SSSE3 at levels
// 2-5 with SSE4.1 forms where the level has them, AVX2 at level 6). Every
// helper computes exactly what its comment says for every input; the
// kernels use them only where their own bounds hold.
#pragma once

#if defined(__SSSE3__)
#include "core/simd/intrinsics.h"
#endif

#include <cstddef>
#include <cstdint>

#include "core/level_ns.h"

namespace vsps::VSPS_NS::simd {

#if defined(__SSSE3__)
#define VSPS_SIMD128 1

// Unsigned 32-bit minimum per lane.
inline __m128i min_u32(__m128i a, __m128i b) {
#if defined(__SSE4_1__)
  return _mm_min_epu32(a, b);
#else
  const __m128i s = _mm_set1_epi32(INT32_MIN);
  const __m128i aGreater = _mm_cmpgt_epi32(_mm_xor_si128(a, s), _mm_xor_si128(b, s));
  return _mm_or_si128(_mm_and_si128(aGreater, b), _mm_andnot_si128(aGreater, a));
#endif
}

// mask ? b : a, per byte (mask lanes all ones or all zeros).
inline __m128i select(__m128i mask, __m128i a, __m128i b) {
#if defined(__SSE4_1__)
  return _mm_blendv_epi8(a, b, mask);
#else
  return _mm_or_si128(_mm_and_si128(mask, b), _mm_andnot_si128(mask, a));
#endif
}

// ITU mult(a, b) per 16-bit lane: floor(a * b / 2^15), -32768 x -32768
// saturated to 32767 (the one product whose quotient needs 17 bits).
inline __m128i mult_q15(__m128i a, __m128i b) {
  const __m128i hi = _mm_mulhi_epi16(a, b);
  const __m128i lo = _mm_mullo_epi16(a, b);
  const __m128i q = _mm_or_si128(_mm_slli_epi16(hi, 1), _mm_srli_epi16(lo, 15));
  return _mm_add_epi16(q, _mm_cmpeq_epi16(q, _mm_set1_epi16(INT16_MIN)));  // 0x8000 - 1 = 0x7FFF
}

// Running first-minimum per lane: where key < best (signed), best = key and
// bestIdx = idx.
inline void keep_min(__m128i key, __m128i idx, __m128i& best, __m128i& bestIdx) {
  const __m128i less = _mm_cmpgt_epi32(best, key);
  best = select(less, best, key);
  bestIdx = select(less, bestIdx, idx);
}

// Horizontal 32-bit sum.
inline int32_t hsum_i32(__m128i v) {
  v = _mm_add_epi32(v, _mm_shuffle_epi32(v, 0x4E));
  v = _mm_add_epi32(v, _mm_shuffle_epi32(v, 0xB1));
  return _mm_cvtsi128_si32(v);
}
#endif

#if defined(__AVX2__)
#define VSPS_SIMD256 1

inline __m256i mult_q15(__m256i a, __m256i b) {
  const __m256i hi = _mm256_mulhi_epi16(a, b);
  const __m256i lo = _mm256_mullo_epi16(a, b);
  const __m256i q = _mm256_or_si256(_mm256_slli_epi16(hi, 1), _mm256_srli_epi16(lo, 15));
  return _mm256_add_epi16(q, _mm256_cmpeq_epi16(q, _mm256_set1_epi16(INT16_MIN)));
}

inline void keep_min(__m256i key, __m256i idx, __m256i& best, __m256i& bestIdx) {
  const __m256i less = _mm256_cmpgt_epi32(best, key);
  best = _mm256_blendv_epi8(best, key, less);
  bestIdx = _mm256_blendv_epi8(bestIdx, idx, less);
}

inline int32_t hsum_i32(__m256i v) {
  return hsum_i32(_mm_add_epi32(_mm256_castsi256_si128(v), _mm256_extracti128_si256(v, 1)));
}
#endif

// True when the byte ranges [a, a + bytes) and [b, b + bytes) are the same
// or do not overlap: element-wise vector loops that load before they store
// then give the scalar results (a partial overlap takes the scalar loop).
inline bool same_or_disjoint(const void* a, const void* b, std::size_t bytes) {
  const auto x = reinterpret_cast<std::uintptr_t>(a), y = reinterpret_cast<std::uintptr_t>(b);
  return x == y || x + bytes <= y || y + bytes <= x;
}

// True when [a, a + aBytes) and [b, b + bBytes) do not overlap.
inline bool disjoint(const void* a, std::size_t aBytes, const void* b, std::size_t bBytes) {
  const auto x = reinterpret_cast<std::uintptr_t>(a), y = reinterpret_cast<std::uintptr_t>(b);
  return x + aBytes <= y || y + bBytes <= x;
}

// The lane holding the smallest key; among equal keys the smallest index
// (the first minimum of a sequential search).
inline int32_t first_min_index(const int32_t* keys, const int32_t* idx, int lanes) {
  int32_t bestKey = keys[0];
  int32_t bestIdx = idx[0];
  for (int k = 1; k < lanes; ++k)
    if (keys[k] < bestKey || (keys[k] == bestKey && idx[k] < bestIdx)) {
      bestKey = keys[k];
      bestIdx = idx[k];
    }
  return bestIdx;
}

}  // namespace vsps::VSPS_NS::simd
