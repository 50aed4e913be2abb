// The two codebook searches of the G.729 LSF quantiser (reference
// Lsp_pre_select, Lsp_select_1, Lsp_select_2), scalar and per-level vector
// forms that choose the same rows.
//
// Why the vector forms are exact: every term of both distance sums is
// non-negative (stage 1: e*e; stage 2: mult(w, e)*e with w >= 0, so the
// floor quotient has the sign of e), so the reference's saturating L_mac
// chain equals min(2 * sum, MAX_32), which saturates exactly when the plain
// sum reaches 2^30. A key min(sum, 2^30), accumulated in unsigned 32-bit
// lanes with a clamp after each pair of terms (each pair is below 2^31),
// orders the rows as the reference's distances do, and a lane-wise first
// minimum followed by the smallest index among equal minima is the
// reference's "strictly smaller wins" scan. No L_mult saturates: |e| <= 32768
// only in stage 1, where e*e is not doubled in the key, and in stage 2
// mult(w, e) >= -32767.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/simd/x86.h"
#include "g729/g729_tables.h"

namespace vsps::VSPS_NS::lsfsearch {

namespace t = tables::g729;
inline constexpr int M = t::kOrder;
inline constexpr int32_t kKeyCap = int32_t(1) << 30;

// Scalar forms (level 0 and 1): the reference loops.
inline int stage1_scalar(const int16_t* target) {
  int best = 0;
  int32_t dmin = bop::kMax32;
  for (int i = 0; i < t::kCb1Size; ++i) {
    const int16_t* row = t::kLspCb1Q13 + i * M;
    int32_t d = 0;
    for (int j = 0; j < M; ++j) {
      const int16_t e = bop::sub(target[j], row[j]);
      d = bop::L_mac(d, e, e);
    }
    if (d < dmin) {
      dmin = d;
      best = i;
    }
  }
  return best;
}

inline void stage2_scalar(const int16_t* rest, const int16_t* w, int* best) {
  int32_t dmin[2] = {bop::kMax32, bop::kMax32};
  best[0] = best[1] = 0;
  for (int i = 0; i < t::kCb2Size; ++i) {
    const int16_t* row = t::kLspCb2Q13 + i * M;
    for (int half = 0; half < 2; ++half) {
      int32_t d = 0;
      for (int j = 5 * half; j < 5 * half + 5; ++j) {
        const int16_t e = bop::sub(rest[j], row[j]);
        d = bop::L_mac(d, bop::mult(w[j], e), e);
      }
      if (d < dmin[half]) {
        dmin[half] = d;
        best[half] = i;
      }
    }
  }
}

#if VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
inline int32_t pair_word(const int16_t* v) {
  return static_cast<int32_t>(static_cast<uint16_t>(v[0]) | static_cast<uint32_t>(static_cast<uint16_t>(v[1])) << 16);
}
#endif

#if defined(VSPS_SIMD256)
#include "g729/lsf_search_avx2.inl"
#elif VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
#include "g729/lsf_search_ssse3.inl"
#else
// First stage: the first row of the smallest unweighted squared error.
inline int stage1(const int16_t* target) { return stage1_scalar(target); }
// Second stage: the first rows of the smallest weighted errors of the low
// and high halves (w: the normalised weights, all in 0..32767).
inline void stage2(const int16_t* rest, const int16_t* w, int* best) { stage2_scalar(rest, w, best); }
#endif

}  // namespace vsps::VSPS_NS::lsfsearch
