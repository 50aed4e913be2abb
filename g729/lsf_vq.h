// Building blocks of the G.729 switched-MA predictive LSF quantiser and its
// decoder (ITU-T G.729 clauses 3.2.4 and 4.4.1; reference Get_wegt,
// Lsp_prev_extract, Lsp_pre_select, Lsp_select_1/2, Lsp_expand_1_2,
// Lsp_get_tdist, Lsp_prev_compose, Lsp_prev_update, Lsp_stability).
// All LSF values are radian Q13; the MA memory is 4 rows of 10, newest first.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/level_ns.h"
#include "g729/g729_tables.h"
#include "g729/lsf_search.h"
#include "vsps.h"

namespace vsps::VSPS_NS::lsfvq {

namespace t = tables::g729;
inline constexpr int M = t::kOrder;
inline constexpr int16_t kGap1 = 10;
inline constexpr int16_t kGap2 = 5;
inline constexpr int16_t kGap3 = 321;
inline constexpr int16_t kLowLimit = 40;
inline constexpr int16_t kHighLimit = 25681;

inline const int16_t* cb1_row(int i) { return t::kLspCb1Q13 + i * M; }
inline const int16_t* cb2_row(int i) { return t::kLspCb2Q13 + i * M; }
inline const int16_t* ma_pred(int mode, int k) { return t::kMaPredQ15 + (mode * t::kMaOrder + k) * M; }
inline const int16_t* ma_sum(int mode) { return t::kMaPredSumQ15 + mode * M; }
inline const int16_t* ma_sum_inv(int mode) { return t::kMaPredSumInvQ12 + mode * M; }

// Weights of the quantisation error (Q11, then normalised by a common shift).
inline void weights(const int16_t* lsf, int16_t* w) {
  int16_t buf[M];
  buf[0] = bop::sub(lsf[1], 1029 + 8192);  // lsf[1] - pi*0.04 - 1
  for (int i = 1; i < M - 1; ++i) buf[i] = bop::sub(bop::sub(lsf[i + 1], lsf[i - 1]), 8192);
  buf[M - 1] = bop::sub(23677 - 8192, lsf[M - 2]);  // pi*0.92 - 1 - lsf[8]
  for (int i = 0; i < M; ++i) {
    if (buf[i] > 0) {
      w[i] = 2048;
    } else {
      int16_t tmp = bop::extract_h(bop::L_shl(bop::L_mult(buf[i], buf[i]), 2));  // Q13
      tmp = bop::extract_h(bop::L_shl(bop::L_mult(tmp, 20480), 2));              // x 10, Q11
      w[i] = bop::add(tmp, 2048);
    }
  }
  w[4] = bop::extract_h(bop::L_shl(bop::L_mult(w[4], 19661), 1));  // x 1.2
  w[5] = bop::extract_h(bop::L_shl(bop::L_mult(w[5], 19661), 1));
  int16_t mx = 0;
  for (int i = 0; i < M; ++i)
    if (bop::sub(w[i], mx) > 0) mx = w[i];
  const int16_t s = bop::norm_s(mx);
  for (int i = 0; i < M; ++i) w[i] = bop::shl(w[i], s);
}

// Target residual of `mode`: (lsf - MA prediction) / (1 - sum of the MA coefficients).
inline void prev_extract(const int16_t* lsf, int mode, const int16_t* prev, int16_t* res) {
  const int16_t* inv = ma_sum_inv(mode);
  for (int j = 0; j < M; ++j) {
    int32_t L = bop::L_deposit_h(lsf[j]);
    for (int k = 0; k < t::kMaOrder; ++k) L = bop::L_msu(L, prev[k * M + j], ma_pred(mode, k)[j]);
    const int16_t tmp = bop::extract_h(L);
    res[j] = bop::extract_h(bop::L_shl(bop::L_mult(tmp, inv[j]), 3));
  }
}

// Rearrangement: pushes adjacent coefficients j-1, j (j = 1..9) apart to a
// minimum distance of `gap`.
inline void expand(int16_t* buf, int16_t gap) {
  for (int j = 1; j < M; ++j) {
    const int16_t diff = bop::sub(buf[j - 1], buf[j]);
    const int16_t tmp = bop::shr(bop::add(diff, gap), 1);
    if (tmp > 0) {
      buf[j - 1] = bop::sub(buf[j - 1], tmp);
      buf[j] = bop::add(buf[j], tmp);
    }
  }
}

// Residual of the codes L1 (stage 1), L2 (low half), L3 (high half), rearranged.
inline void residual(int l1, int l2, int l3, int16_t* buf) {
  for (int j = 0; j < 5; ++j) buf[j] = bop::add(cb1_row(l1)[j], cb2_row(l2)[j]);
  for (int j = 5; j < M; ++j) buf[j] = bop::add(cb1_row(l1)[j], cb2_row(l3)[j]);
  expand(buf, kGap1);
  expand(buf, kGap2);
}

// lsf = residual x (1 - sum fg) + sum_k fg[k] prev[k] (mode's coefficient set).
inline void prev_compose(const int16_t* buf, int mode, const int16_t* prev, int16_t* lsf) {
  const int16_t* sum = ma_sum(mode);
  for (int j = 0; j < M; ++j) {
    int32_t L = bop::L_mult(buf[j], sum[j]);
    for (int k = 0; k < t::kMaOrder; ++k) L = bop::L_mac(L, prev[k * M + j], ma_pred(mode, k)[j]);
    lsf[j] = bop::extract_h(L);
  }
}

// Pushes buf as the newest memory row; the oldest falls out.
inline void prev_update(const int16_t* buf, int16_t* prev) {
  for (int k = t::kMaOrder - 1; k > 0; --k)
    for (int j = 0; j < M; ++j) prev[k * M + j] = prev[(k - 1) * M + j];
  for (int j = 0; j < M; ++j) prev[j] = buf[j];
}

// Stability rule: one pass of adjacent swaps, low clamp 40, minimum distance
// 321, high clamp 25681. Returns the clamp status (0, 13, 14 or 15).
inline VspStatus stability(int16_t* lsf) {
  for (int j = 0; j < M - 1; ++j) {
    if (int32_t(lsf[j + 1]) - lsf[j] < 0) {
      const int16_t tmp = lsf[j + 1];
      lsf[j + 1] = lsf[j];
      lsf[j] = tmp;
    }
  }
  bool low = false;
  bool high = false;
  if (bop::sub(lsf[0], kLowLimit) < 0) {
    lsf[0] = kLowLimit;
    low = true;
  }
  for (int j = 0; j < M - 1; ++j)
    if (int32_t(lsf[j + 1]) - lsf[j] < kGap3) lsf[j + 1] = bop::add(lsf[j], kGap3);
  if (bop::sub(lsf[M - 1], kHighLimit) > 0) {
    lsf[M - 1] = kHighLimit;
    high = true;
  }
  if (low && high) return vspStsLsfBothClamped;
  if (low) return vspStsLsfLowClamped;
  if (high) return vspStsLsfHighClamped;
  return vspStsNoErr;
}

// Decodes valid codes {L0, L1, L2, L3}: residual, composition with the
// memory (before its update), memory update, stability. Returns the clamp status.
inline VspStatus decode(const int* codes, int16_t* prev, int16_t* lsf) {
  int16_t buf[M];
  residual(codes[1], codes[2], codes[3], buf);
  prev_compose(buf, codes[0], prev, lsf);
  prev_update(buf, prev);
  return stability(lsf);
}

// Encoder: chooses the codes {L0, L1, L2, L3} of an LSF vector (Q13) with
// the memory prev (not changed).
inline void quantise(const int16_t* lsf, const int16_t* prev, int* codes) {
  int16_t w[M];
  weights(lsf, w);
  int32_t dist[2];
  int cand[2][3];
  for (int mode = 0; mode < 2; ++mode) {
    int16_t target[M];
    prev_extract(lsf, mode, prev, target);
    // First stage over all ten coefficients, second stage per half.
    const int best1 = lsfsearch::stage1(target);
    int16_t rest[M];
    for (int j = 0; j < M; ++j) rest[j] = bop::sub(target[j], cb1_row(best1)[j]);
    int best2[2];
    lsfsearch::stage2(rest, w, best2);
    cand[mode][0] = best1;
    cand[mode][1] = best2[0];
    cand[mode][2] = best2[1];
    // Weighted distortion of the rearranged candidate against the target.
    int16_t buf[M];
    residual(best1, best2[0], best2[1], buf);
    int32_t D = 0;
    for (int j = 0; j < M; ++j) {
      const int16_t e = bop::mult(bop::sub(buf[j], target[j]), ma_sum(mode)[j]);
      const int16_t we = bop::extract_h(bop::L_shl(bop::L_mult(w[j], e), 4));
      D = bop::L_mac(D, we, e);
    }
    dist[mode] = D;
  }
  const int mode = bop::L_sub(dist[1], dist[0]) < 0 ? 1 : 0;
  codes[0] = mode;
  codes[1] = cand[mode][0];
  codes[2] = cand[mode][1];
  codes[3] = cand[mode][2];
}

}  // namespace vsps::VSPS_NS::lsfvq
