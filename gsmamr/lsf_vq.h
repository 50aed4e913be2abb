// Weighted vector searches of the GSM-AMR LSF quantisers (TS 26.073
// Vq_subvec3, Vq_subvec4, Vq_subvec and Vq_subvec_s). The error of a
// candidate c is the saturating sum over the components of
// (mult(w, sub(target, c)))^2 formed with L_mult/L_mac; a candidate replaces
// the best one only when its error is strictly smaller (first minimum wins).
// Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"

namespace vsps::VSPS_NS::amr {

template <int kDim>
inline int32_t weighted_error(const int16_t* target, const int16_t* wf, const int16_t* c) {
  int32_t e = 0;
  for (int k = 0; k < kDim; ++k) {
    const int16_t t = bop::mult(wf[k], bop::sub(target[k], c[k]));
    e = bop::L_mac(e, t, t);
  }
  return e;
}

// Searches rows 0, step, 2*step, ... (count candidates) of a kDim-column
// table; replaces target by the chosen row and returns the candidate number
// (the row divided by step).
template <int kDim>
inline int16_t vq_search(int16_t* target, const int16_t* wf, const int16_t (*table)[kDim], int count, int step) {
  int32_t best = bop::kMax32;
  int bestIdx = 0;
  for (int i = 0; i < count; ++i) {
    const int32_t e = weighted_error<kDim>(target, wf, table[i * step]);
    if (e < best) {
      best = e;
      bestIdx = i;
    }
  }
  for (int k = 0; k < kDim; ++k) target[k] = table[bestIdx * step][k];
  return static_cast<int16_t>(bestIdx);
}

// The 12.2 kbit/s signed search: each row is tried as it is, then negated
// (target + row, saturating). target holds (r1[2k], r1[2k+1], r2[2k],
// r2[2k+1]) and is replaced by the chosen (signed) row; returns
// 2*row + sign.
inline int16_t vq_search_signed(int16_t* target, const int16_t* wf, const int16_t (*table)[4], int count) {
  int32_t best = bop::kMax32;
  int bestIdx = 0;
  int bestSign = 0;
  for (int i = 0; i < count; ++i) {
    const int32_t ePos = weighted_error<4>(target, wf, table[i]);
    if (ePos < best) {
      best = ePos;
      bestIdx = i;
      bestSign = 0;
    }
    int32_t eNeg = 0;
    for (int k = 0; k < 4; ++k) {
      const int16_t t = bop::mult(wf[k], bop::add(target[k], table[i][k]));
      eNeg = bop::L_mac(eNeg, t, t);
    }
    if (eNeg < best) {
      best = eNeg;
      bestIdx = i;
      bestSign = 1;
    }
  }
  for (int k = 0; k < 4; ++k) target[k] = bestSign ? bop::negate(table[bestIdx][k]) : table[bestIdx][k];
  return static_cast<int16_t>(2 * bestIdx + bestSign);
}

}  // namespace vsps::VSPS_NS::amr
