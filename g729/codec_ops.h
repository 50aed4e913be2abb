// Operators of the G.729 codec steps beyond the basic set: Log2, Pow2,
// Inv_sqrt (ITU-T G.729 basic-operator tables), the Q12 LP filters of the
// reference (Syn_filt, Residu, Weight_Az) and the 1/3-resolution adaptive
// vector (Pred_lt_3). Variant code only: everything is in the level namespace.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/dpf.h"
#include "g729/codec_tables.h"
#include "speech/corr/mac_sums.h"
#include "speech/filter/lp_filters.h"

namespace vsps::VSPS_NS::g729c {

namespace tb = vsps::tables::g729c;
using namespace bop;

inline constexpr int kSubfr = 40;    // L_SUBFR
inline constexpr int kFrame = 80;    // L_FRAME
inline constexpr int kM = 10;        // LP order
inline constexpr int kPitMin = 20;   // PIT_MIN
inline constexpr int kPitMax = 143;  // PIT_MAX
// Range of decoded integer lags: index 0 of subframe 0 decodes to 19 + 1/3,
// index 31 of subframe 1 next to the top to 144 - 1/3.
inline constexpr int kLagMin = 19;
inline constexpr int kLagMax = 144;
inline constexpr int kInterpol = 10;     // L_INTERPOL - 1: taps each side of Pred_lt_3
inline constexpr int kExcHistory = 154;  // PIT_MAX + L_INTERPOL: past excitation the adaptive vector reads

// A 32-bit shift count brought into -32..32: the same result for L_shl and
// L_shr (everything beyond saturates or empties), and never the count
// -32768 whose negation the shift operators cannot represent.
inline int16_t shift_count(int v) { return static_cast<int16_t>(v < -32 ? -32 : (v > 32 ? 32 : v)); }

// Linear interpolation in a Q15 table: t[i] - (t[i] - t[i+1]) a, a the Q15
// fraction, as a 32-bit value (the reference's L_msu form).
inline int32_t table_interp(const int16_t* t, int16_t i, int16_t a) {
  return L_msu(L_deposit_h(t[i]), sub(t[i], t[i + 1]), a);
}

// Splits a normalised value shifted right by 9: table index (high word)
// and 15-bit fraction (the bits below it).
inline void table_position(int32_t L, int16_t* i, int16_t* a) {
  L = L_shr(L, 9);
  *i = extract_h(L);
  L = L_shr(L, 1);
  *a = static_cast<int16_t>(extract_l(L) & 0x7fff);
}

// Log2 of a positive 32-bit value: exponent (0..30) and Q15 fraction.
inline void log2_q15(int32_t L, int16_t* e, int16_t* f) {
  if (L <= 0) {
    *e = 0;
    *f = 0;
    return;
  }
  const int16_t n = norm_l(L);
  L = L_shl(L, n);
  *e = sub(30, n);
  int16_t i, a;
  table_position(L, &i, &a);
  *f = extract_h(table_interp(tb::kTabLog, sub(i, 32), a));
}

// 2^(exponent + fraction), fraction Q15.
inline int32_t pow2_q15(int16_t exponent, int16_t fraction) {
  int32_t L = L_mult(fraction, 32);
  const int16_t i = extract_h(L);
  L = L_shr(L, 1);
  const int16_t a = static_cast<int16_t>(extract_l(L) & 0x7fff);
  return L_shr_r(table_interp(tb::kTabPow, i, a), sub(30, exponent));
}

// 1/sqrt(L) in Q30 (L > 0; 0x3fffffff otherwise).
inline int32_t inv_sqrt(int32_t L) {
  if (L <= 0) return 0x3fffffff;
  int16_t e = norm_l(L);
  L = L_shl(L, e);
  e = sub(30, e);
  if ((e & 1) == 0) L = L_shr(L, 1);
  e = add(shr(e, 1), 1);
  int16_t i, a;
  table_position(L, &i, &a);
  return L_shr(table_interp(tb::kTabSqr, sub(i, 16), a), e);
}

// Weight_Az: ap[i] = a[i] g^i (Q12), g^i by repeated rounding.
inline void weight_az(const int16_t* a, int16_t g, int16_t* ap) {
  ap[0] = a[0];
  int16_t fac = g;
  for (int i = 1; i < kM; ++i) {
    ap[i] = round(L_mult(a[i], fac));
    fac = round(L_mult(fac, g));
  }
  ap[kM] = round(L_mult(a[kM], fac));
}

// Cor_h_X: backward-filtered target d[i] = sum_{j>=i} x[j] h[j-i], scaled so
// that the largest |d| has about 13 bits.
inline void cor_h_x(const int16_t* h, const int16_t* x, int16_t* dn) {
  int32_t y32[kSubfr];
  int32_t mx = 0;
  const bool exact = speech::cross_fits(speech::energy(h, kSubfr), speech::energy(x, kSubfr));
  for (int i = 0; i < kSubfr; ++i) {
    int32_t s = 0;
    if (exact)
      s = speech::mac_cross(x + i, h, kSubfr - i);
    else
      for (int j = i; j < kSubfr; ++j) s = L_mac(s, x[j], h[j - i]);
    y32[i] = s;
    if (L_sub(L_abs(s), mx) > 0) mx = L_abs(s);
  }
  int16_t k = norm_l(mx);
  if (k > 16) k = 16;
  k = sub(18, k);
  for (int i = 0; i < kSubfr; ++i) dn[i] = extract_l(L_shr(y32[i], k));
}

// Annex A weighting: ap = A(z/0.75), ap1 = ap (1 - 0.7 z^-1) truncated to 11 words.
inline void weight_az_a(const int16_t* a, int16_t* ap, int16_t* ap1) {
  weight_az(a, 24576, ap);
  ap1[0] = 4096;
  for (int i = 1; i <= kM; ++i) ap1[i] = sub(ap[i], mult(ap[i - 1], 22938));
}

// Syn_filt: 1/A(z) with Q12 coefficients over len samples; mem = y[-10..-1]
// (oldest first) is read and, when update is set, replaced by the last 10
// outputs. x and y may be the same array. Returns true when an operator
// saturated (the reference's Overflow flag).
inline bool syn_filt(const int16_t* a, const int16_t* x, int16_t* y, int len, int16_t* mem, bool update) {
  int16_t m[kM];
  for (int i = 0; i < kM; ++i) m[i] = mem[i];
  const bool ovf = speech::synthesis(a, kM, x, y, len, m, 12);
  if (update)
    for (int i = 0; i < kM; ++i) mem[i] = m[i];
  return ovf;
}

// Residu: y[n] = A(z) x[n], Q12 coefficients; x[-10..-1] are read.
inline void residu(const int16_t* a, const int16_t* x, int16_t* y, int len) { speech::residual(a, kM, x, y, len, 12); }

// Pred_lt_3: adaptive-codebook vector of 1/3 resolution written over
// exc[0..len-1]; exc[-T0-10..] is read (for T0 < len its own output).
//
// When max|x| sum|c| < 2^30 over the samples read (the outputs among them
// counted as 32768), no L_mac of the chain saturates and the taps are summed
// as plain products.
inline void pred_lt_3(int16_t* exc, int T0, int frac, int len) {
  const int16_t* x0 = exc - T0;
  frac = -frac;
  if (frac < 0) {
    frac += 3;
    --x0;
  }
  int16_t c1[kInterpol], c2[kInterpol];
  int64_t sumC = 0;
  for (int i = 0, k = 0; i < kInterpol; ++i, k += 3) {
    c1[i] = tb::kInter3l[frac + k];
    c2[i] = tb::kInter3l[3 - frac + k];
    sumC += (c1[i] < 0 ? -c1[i] : c1[i]) + (c2[i] < 0 ? -c2[i] : c2[i]);
  }
  const int16_t* first = x0 - (kInterpol - 1);  // x1[-9] of output 0
  const int16_t* last = x0 + len + kInterpol;   // one past x2[9] of the last output
  const bool readsOutputs = last > exc;
  const int32_t maxX = readsOutputs ? 32768 : speech::max_abs(first, static_cast<int>(last - first));
  if (maxX * sumC < (int64_t{1} << 30)) {
    for (int j = 0; j < len; ++j) {
      const int16_t* x1 = x0 + j;
      const int16_t* x2 = x1 + 1;
      int32_t s = 0;
      for (int i = 0; i < kInterpol; ++i) s += int32_t{x1[-i]} * c1[i] + int32_t{x2[i]} * c2[i];
      exc[j] = round(2 * s);
    }
    return;
  }
  for (int j = 0; j < len; ++j) {
    const int16_t* x1 = x0 + j;
    const int16_t* x2 = x1 + 1;
    int32_t s = 0;
    for (int i = 0, k = 0; i < kInterpol; ++i, k += 3) {
      s = L_mac(s, x1[-i], tb::kInter3l[frac + k]);
      s = L_mac(s, x2[i], tb::kInter3l[3 - frac + k]);
    }
    exc[j] = round(s);
  }
}

// Gain_predict (clause 3.9.1): predicted fixed-codebook gain gcode0 *
// 2^-exp from the code energy and the MA memory past_qua_en (Q10, 4 words).
inline void gain_predict(const int16_t* pastQuaEn, const int16_t* code, int16_t* gcode0, int16_t* expGcode0) {
  int32_t L = 0;
  for (int i = 0; i < kSubfr; ++i) L = L_mac(L, code[i], code[i]);
  int16_t e, f;
  log2_q15(L, &e, &f);
  L = dpf::Mpy_32_16(e, f, -24660);
  L = L_mac(L, 32588, 32);
  L = L_shl(L, 10);
  for (int i = 0; i < 4; ++i) L = L_mac(L, tb::kGainPred[i], pastQuaEn[i]);
  const int16_t g = extract_h(L);
  L = L_shr(L_mult(g, 5439), 8);
  const dpf::Dpf d = dpf::L_Extract(L);
  *gcode0 = extract_l(pow2_q15(14, d.lo));
  *expGcode0 = sub(14, d.hi);
}

// Gain_update: shifts past_qua_en and stores 20log10 of the correction factor L_gbk12 (Q13).
inline void gain_update(int16_t* pastQuaEn, int32_t gbk12) {
  for (int i = 3; i > 0; --i) pastQuaEn[i] = pastQuaEn[i - 1];
  int16_t e, f;
  log2_q15(gbk12, &e, &f);
  const int32_t L = dpf::L_Comp(sub(e, 13), f);
  pastQuaEn[0] = mult(extract_h(L_shl(L, 13)), 24660);
}

// Gain_update_erasure: the mean of the memory minus 4 dB, floored at -14 dB.
inline void gain_update_erasure(int16_t* pastQuaEn) {
  int32_t L = 0;
  for (int i = 0; i < 4; ++i) L = L_add(L, L_deposit_l(pastQuaEn[i]));
  int16_t av = sub(extract_l(L_shr(L, 2)), 4096);
  if (sub(av, -14336) < 0) av = -14336;
  for (int i = 3; i > 0; --i) pastQuaEn[i] = pastQuaEn[i - 1];
  pastQuaEn[0] = av;
}

// gain_code (Q1) of the joint codebook entry L_gbk12 (Q13) and the predicted gain.
inline int16_t code_gain(int32_t gbk12, int16_t gcode0, int16_t expGcode0) {
  return extract_h(L_shl(L_mult(extract_l(L_shr(gbk12, 1)), gcode0), sub(4, expGcode0)));
}

// update_exc_err (taming): the worst excitation error over the zones the
// integer lag t0 reaches, propagated through the pitch gain gp (Q14), becomes
// the newest of the four entries (Q14).
inline void taming_update(int16_t gp, int t0, int32_t* err) {
  auto e = [&](int32_t x) { return L_add(0x4000, L_shl(dpf::Mpy_32_16(dpf::L_Extract(x), gp), 1)); };
  int32_t worst = -1;
  if (t0 < kSubfr) {
    int32_t t = e(err[0]);
    if (L_sub(t, worst) > 0) worst = t;
    t = e(t);
    if (L_sub(t, worst) > 0) worst = t;
  } else {
    for (int i = tb::kTabZone[t0 - kSubfr]; i <= tb::kTabZone[t0 - 1]; ++i) {
      const int32_t t = e(err[i]);
      if (L_sub(t, worst) > 0) worst = t;
    }
  }
  for (int i = 3; i > 0; --i) err[i] = err[i - 1];
  err[0] = worst;
}

}  // namespace vsps::VSPS_NS::g729c
