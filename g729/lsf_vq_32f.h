// Single-precision building blocks of the G.729 LSF quantiser and decoder
// (the floating-point annex's lsp_expand_1_2, lsp_prev_extract,
// lsp_prev_compose, lsp_prev_update and lsp_stability). Radian LSFs; the MA
// memory is 4 x 10 floats, newest row first.
#pragma once

#include <cstring>

#include "core/level_ns.h"
#include "g729/g729_tables.h"

namespace vsps::VSPS_NS::lsfvq32f {

namespace t = tables::g729;
inline constexpr int M = t::kOrder;
inline constexpr float kGap1 = 0.0012f;
inline constexpr float kGap2 = 0.0006f;
inline constexpr float kGap3 = 0.0392f;
inline constexpr float kLowLimit = 0.005f;
inline constexpr float kHighLimit = 3.135f;

inline const float* cb1(int i) { return t::kLspCb1F + i * M; }
inline const float* cb2(int i) { return t::kLspCb2F + i * M; }
inline const float* ma_pred(int mode, int k) { return t::kMaPredF + (mode * t::kMaOrder + k) * M; }
inline const float* ma_sum(int mode) { return t::kMaPredSumF + mode * M; }
inline const float* ma_sum_inv(int mode) { return t::kMaPredSumInvF + mode * M; }

// Pushes adjacent coefficients apart to a minimum distance of `gap`.
inline void expand(float* buf, float gap) {
  for (int j = 1; j < M; ++j) {
    const float tmp = (buf[j - 1] - buf[j] + gap) * 0.5f;
    if (tmp > 0.0f) {
      buf[j - 1] -= tmp;
      buf[j] += tmp;
    }
  }
}

// Residual of stage-1 row l1 and stage-2 rows l2 (low half), l3 (high half), rearranged.
inline void residual(int l1, int l2, int l3, float* buf) {
  for (int j = 0; j < M; ++j) buf[j] = cb1(l1)[j] + cb2(j < 5 ? l2 : l3)[j];
  expand(buf, kGap1);
  expand(buf, kGap2);
}

// (lsf - MA prediction) x fg_sum_inv of `mode`.
inline void prev_extract(const float* lsf, int mode, const float* prev, float* res) {
  for (int j = 0; j < M; ++j) {
    float tmp = lsf[j];
    for (int k = 0; k < t::kMaOrder; ++k) tmp -= prev[k * M + j] * ma_pred(mode, k)[j];
    res[j] = tmp * ma_sum_inv(mode)[j];
  }
}

// residual x fg_sum + MA prediction (accumulated in that order).
inline void prev_compose(const float* buf, int mode, const float* prev, float* lsf) {
  for (int j = 0; j < M; ++j) {
    lsf[j] = buf[j] * ma_sum(mode)[j];
    for (int k = 0; k < t::kMaOrder; ++k) lsf[j] += prev[k * M + j] * ma_pred(mode, k)[j];
  }
}

inline void prev_update(const float* buf, float* prev) {
  // One overlapping move of the three newer rows (the row-by-row copies
  // compiled to 256-bit moves at 40-byte offsets were slower at levels 5-6).
  std::memmove(prev + M, prev, sizeof(float) * M * (t::kMaOrder - 1));
  for (int j = 0; j < M; ++j) prev[j] = buf[j];
}

// One swap pass, low clamp, minimum gap, high clamp (no status).
inline void stability(float* lsf) {
  for (int j = 0; j < M - 1; ++j) {
    if (lsf[j + 1] - lsf[j] < 0.0f) {
      const float tmp = lsf[j + 1];
      lsf[j + 1] = lsf[j];
      lsf[j] = tmp;
    }
  }
  if (lsf[0] < kLowLimit) lsf[0] = kLowLimit;
  for (int j = 0; j < M - 1; ++j)
    if (lsf[j + 1] - lsf[j] < kGap3) lsf[j + 1] = lsf[j] + kGap3;
  if (lsf[M - 1] > kHighLimit) lsf[M - 1] = kHighLimit;
}

}  // namespace vsps::VSPS_NS::lsfvq32f
