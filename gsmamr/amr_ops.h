// TS 26.073 helper routines shared by the GSM-AMR decoder steps: Log2, Pow2,
// Inv_sqrt, sqrt_l_exp, gmed_n, Weight_Ai, Residu and Syn_filt (on the
// shared LP filters, with the reference's overflow flag), Pred_lt_3or6,
// energy_new, agc2 and the pre-emphasis of the post-filter, in the
// reference's saturating arithmetic.
// Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/dpf.h"
#include "gsmamr/amr_codec_tables.h"
#include "speech/filter/lp_filters.h"

namespace vsps::VSPS_NS::amr {

inline constexpr int kM = 10;      // LP order
inline constexpr int kMp1 = 11;    // LP coefficients per subframe
inline constexpr int kSubfr = 40;  // subframe length
inline constexpr int kFrame = 160;
inline constexpr int kPitMax = 143;
inline constexpr int kInterpol = 11;                  // L_INTERPOL
inline constexpr int kExcHist = kPitMax + kInterpol;  // 154 past excitation samples

// Table interpolation common to Log2, Inv_sqrt and sqrt_l_exp: L normalised,
// index from bits 25..30 minus `base`, 15-bit fraction from bits 10..24.
inline int32_t table_interp(const int16_t* table, int32_t L, int base) {
  L = bop::L_shr(L, 9);
  const int i = bop::extract_h(L) - base;
  const int16_t a = static_cast<int16_t>(bop::extract_l(bop::L_shr(L, 1)) & 0x7FFF);
  const int32_t y = bop::L_deposit_h(table[i]);
  return bop::L_msu(y, bop::sub(table[i], table[i + 1]), a);
}

// Log2 of an already normalised L (norm_l(L) == e before the shift).
inline void log2_norm(int32_t L, int16_t e, int16_t& exponent, int16_t& fraction) {
  if (L <= 0) {
    exponent = 0;
    fraction = 0;
    return;
  }
  exponent = bop::sub(30, e);
  fraction = bop::extract_h(table_interp(gsmamr::kLog2Tab, L, 32));
}
inline void log2(int32_t L, int16_t& exponent, int16_t& fraction) {
  const int16_t e = bop::norm_l(L);
  log2_norm(bop::L_shl(L, e), e, exponent, fraction);
}

// 2^(exponent + fraction/32768), fraction Q15.
inline int32_t pow2(int16_t exponent, int16_t fraction) {
  int32_t L = bop::L_mult(fraction, 32);
  const int i = bop::extract_h(L);
  L = bop::L_shr(L, 1);
  const int16_t a = static_cast<int16_t>(bop::extract_l(L) & 0x7FFF);
  L = bop::L_deposit_h(gsmamr::kPow2Tab[i]);
  L = bop::L_msu(L, bop::sub(gsmamr::kPow2Tab[i], gsmamr::kPow2Tab[i + 1]), a);
  return bop::L_shr_r(L, bop::sub(30, exponent));
}

// 1/sqrt(L) in Q30 form of the reference (0x3FFFFFFF for L <= 0).
inline int32_t inv_sqrt(int32_t L) {
  if (L <= 0) return 0x3FFFFFFF;
  int16_t e = bop::norm_l(L);
  L = bop::L_shl(L, e);
  e = bop::sub(30, e);
  if ((e & 1) == 0) L = bop::L_shr(L, 1);
  e = bop::add(bop::shr(e, 1), 1);
  return bop::L_shr(table_interp(gsmamr::kInvSqrtTab, L, 16), e);
}

// sqrt of L scaled by the even shift e (reference sqrt_l_exp).
inline int32_t sqrt_l_exp(int32_t L, int16_t& e) {
  if (L <= 0) {
    e = 0;
    return 0;
  }
  e = static_cast<int16_t>(bop::norm_l(L) & 0xFFFE);
  return table_interp(gsmamr::kSqrtLTab, bop::L_shl(L, e), 16);
}

// Median of n (odd, <= 9) values: n passes picking the largest remaining
// (">=", so the last of equal values), the pick of pass n/2 is the median.
inline int16_t gmed_n(const int16_t* v, int n) {
  int16_t tmp[9];
  int16_t order[9];
  for (int i = 0; i < n; ++i) tmp[i] = v[i];
  int16_t ix = 0;
  for (int i = 0; i < n; ++i) {
    int16_t max = -32767;
    for (int j = 0; j < n; ++j)
      if (bop::sub(tmp[j], max) >= 0) {
        max = tmp[j];
        ix = static_cast<int16_t>(j);
      }
    tmp[ix] = -32768;
    order[i] = ix;
  }
  return v[order[n >> 1]];
}

// ap[i] = round(a[i] * fac[i-1]), ap[0] = a[0].
inline void weight_ai(const int16_t* a, const int16_t* fac, int16_t* ap) {
  ap[0] = a[0];
  for (int i = 1; i <= kM; ++i) ap[i] = bop::round(bop::L_mult(a[i], fac[i - 1]));
}

// Residual through A(z) (Q12): x[-10..-1] is the history.
inline void residu(const int16_t* a, const int16_t* x, int16_t* y, int len) { speech::residual(a, kM, x, y, len, 12); }

// Synthesis through 1/A(z) (Q12) with memory mem[10]; y may equal x; the
// memory is left as it was unless `update`. Returns whether any operator
// saturated (the reference's Overflow flag).
inline bool syn_filt(const int16_t* a, const int16_t* x, int16_t* y, int len, int16_t* mem, bool update) {
  if (update) return speech::synthesis(a, kM, x, y, len, mem, 12);
  int16_t kept[kM];
  for (int i = 0; i < kM; ++i) kept[i] = mem[i];
  return speech::synthesis(a, kM, x, y, len, kept, 12);
}

// Adaptive codebook vector (Pred_lt_3or6): exc[0..len-1] from the past
// excitation exc[-T0-10..] with the 1/6-resolution interpolation filter;
// frac in thirds (flag3) or sixths. Writes in place sample by sample.
inline void pred_lt_3or6(int16_t* exc, int16_t T0, int16_t frac, int len, bool flag3) {
  const int16_t* t = gsmamr::kInter6PredLt;
  int16_t* x0 = exc - T0;
  frac = bop::negate(frac);
  if (flag3) frac = bop::shl(frac, 1);
  if (frac < 0) {
    frac = bop::add(frac, 6);
    --x0;
  }
  for (int j = 0; j < len; ++j) {
    const int16_t* x1 = x0 + j;
    const int16_t* x2 = x0 + j + 1;
    int32_t s = 0;
    for (int i = 0, k = 0; i < 10; ++i, k += 6) {
      s = bop::L_mac(s, x1[-i], t[frac + k]);
      s = bop::L_mac(s, x2[i], t[6 - frac + k]);
    }
    exc[j] = bop::round(s);
  }
}

// Energy of 40 samples as the AGC computes it: sum of squares / 16, or of
// the samples / 4 when the sum saturates.
inline int32_t energy_new(const int16_t* x, int len) {
  int32_t s = bop::L_mult(x[0], x[0]);
  for (int i = 1; i < len; ++i) s = bop::L_mac(s, x[i], x[i]);
  if (s != bop::kMax32) return bop::L_shr(s, 4);
  s = 0;
  for (int i = 0; i < len; ++i) {
    const int16_t t = bop::shr(x[i], 2);
    s = bop::L_mac(s, t, t);
  }
  return s;
}

// sqrt(energy(in) / energy(out)) in Q12 form of the AGC (0 when in is silent);
// returns false when out is silent (nothing to scale).
inline bool agc_gain(const int16_t* in, const int16_t* out, int len, int16_t& g0) {
  int32_t s = energy_new(out, len);
  if (s == 0) return false;
  int16_t e = bop::sub(bop::norm_l(s), 1);
  const int16_t gain_out = bop::round(bop::L_shl(s, e));
  s = energy_new(in, len);
  if (s == 0) {
    g0 = 0;
    return true;
  }
  const int16_t i = bop::norm_l(s);
  const int16_t gain_in = bop::round(bop::L_shl(s, i));
  e = bop::sub(e, i);
  s = bop::L_deposit_l(bop::div_s(gain_out, gain_in));
  s = bop::L_shr(bop::L_shl(s, 7), e);
  g0 = bop::round(bop::L_shl(inv_sqrt(s), 9));
  return true;
}

// agc2: scales out[] to the energy of in[] (no memory).
inline void agc2(const int16_t* in, int16_t* out, int len) {
  int16_t g0 = 0;
  if (!agc_gain(in, out, len, g0)) return;
  for (int i = 0; i < len; ++i) out[i] = bop::extract_h(bop::L_shl(bop::L_mult(out[i], g0), 3));
}

// Interpolation of the LP filters of the four subframes from LSP vectors
// (Int_lpc_1to3 / Int_lpc_1and3 without the final conversion).
inline void lsp_interp_quarter(const int16_t* old, const int16_t* cur, int16_t* out) {
  for (int i = 0; i < kM; ++i) out[i] = bop::add(bop::sub(old[i], bop::shr(old[i], 2)), bop::shr(cur[i], 2));
}
inline void lsp_interp_half(const int16_t* a, const int16_t* b, int16_t* out) {
  for (int i = 0; i < kM; ++i) out[i] = bop::add(bop::shr(a[i], 1), bop::shr(b[i], 1));
}

}  // namespace vsps::VSPS_NS::amr
