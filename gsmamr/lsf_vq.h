// Weighted vector searches of the GSM-AMR LSF quantisers (TS 26.073
// Vq_subvec3, Vq_subvec4, Vq_subvec and Vq_subvec_s). The error of a
// candidate c is the saturating sum over the components of
// (mult(w, sub(target, c)))^2 formed with L_mult/L_mac; a candidate replaces
// the best one only when its error is strictly smaller (first minimum wins).
//
// The searches run on 4-column tables (the 3-column codebooks in their
// zero-padded copies, with a zero target and weight in the fourth column, so
// that the fourth term is exactly 0). Vector forms (vq_search_*.inl): every
// term t^2 is non-negative and below 2^30 (|mult(w, e)| <= 32767), so the
// saturating sum equals min(2 * sum, MAX_32), which saturates exactly when
// the plain sum reaches 2^30; keys min(sum, 2^30) (four squares fit an
// unsigned 32-bit lane) order the candidates as the reference's errors do,
// and the lane-wise first minimum with the smallest index among equal
// minima is the reference's scan.
// Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/simd/x86.h"

namespace vsps::VSPS_NS::amr {

using Row4 = int16_t[4];

inline int32_t weighted_error4(const int16_t* target, const int16_t* wf, const int16_t* c) {
  int32_t e = 0;
  for (int k = 0; k < 4; ++k) {
    const int16_t t = bop::mult(wf[k], bop::sub(target[k], c[k]));
    e = bop::L_mac(e, t, t);
  }
  return e;
}

// Scalar scans (levels 0 and 1). target and wf have 4 entries.
inline int search_scalar(const int16_t* target, const int16_t* wf, const Row4* table, int count, int step) {
  int32_t best = bop::kMax32;
  int bestIdx = 0;
  for (int i = 0; i < count; ++i) {
    const int32_t e = weighted_error4(target, wf, table[i * step]);
    if (e < best) {
      best = e;
      bestIdx = i;
    }
  }
  return bestIdx;
}

// Returns 2 * row + sign (sign 1: the negated row).
inline int search_signed_scalar(const int16_t* target, const int16_t* wf, const Row4* table, int count) {
  int32_t best = bop::kMax32;
  int bestCand = 0;
  for (int i = 0; i < count; ++i) {
    const int32_t ePos = weighted_error4(target, wf, table[i]);
    if (ePos < best) {
      best = ePos;
      bestCand = 2 * i;
    }
    int32_t eNeg = 0;
    for (int k = 0; k < 4; ++k) {
      const int16_t t = bop::mult(wf[k], bop::add(target[k], table[i][k]));
      eNeg = bop::L_mac(eNeg, t, t);
    }
    if (eNeg < best) {
      best = eNeg;
      bestCand = 2 * i + 1;
    }
  }
  return bestCand;
}

inline constexpr int32_t kKeyCap = int32_t(1) << 30;

#if defined(VSPS_SIMD256)
#include "gsmamr/vq_search_avx2.inl"
#elif VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
#include "gsmamr/vq_search_ssse3.inl"
#else
// count (a multiple of 8) candidates: rows 0, step, 2 step, ... (step 1 or 2).
inline int search(const int16_t* target, const int16_t* wf, const Row4* table, int count, int step) {
  return search_scalar(target, wf, table, count, step);
}
inline int search_signed(const int16_t* target, const int16_t* wf, const Row4* table, int count) {
  return search_signed_scalar(target, wf, table, count);
}
#endif

// Searches rows 0, step, 2*step, ... (count candidates) of a 4-column table
// whose first kDim columns are the codebook; replaces target[0..kDim-1] by
// the chosen row and returns the candidate number (the row divided by step).
template <int kDim>
inline int16_t vq_search(int16_t* target, const int16_t* wf, const Row4* table, int count, int step) {
  int16_t t4[4] = {0, 0, 0, 0}, w4[4] = {0, 0, 0, 0};
  for (int k = 0; k < kDim; ++k) {
    t4[k] = target[k];
    w4[k] = wf[k];
  }
  const int bestIdx = search(t4, w4, table, count, step);
  for (int k = 0; k < kDim; ++k) target[k] = table[bestIdx * step][k];
  return static_cast<int16_t>(bestIdx);
}

// The 12.2 kbit/s signed search: each row is tried as it is, then negated
// (target + row, saturating). target holds (r1[2k], r1[2k+1], r2[2k],
// r2[2k+1]) and is replaced by the chosen (signed) row; returns
// 2*row + sign.
inline int16_t vq_search_signed(int16_t* target, const int16_t* wf, const Row4* table, int count) {
  const int cand = search_signed(target, wf, table, count);
  const int row = cand >> 1;
  for (int k = 0; k < 4; ++k) target[k] = (cand & 1) ? bop::negate(table[row][k]) : table[row][k];
  return static_cast<int16_t>(cand);
}

}  // namespace vsps::VSPS_NS::amr
