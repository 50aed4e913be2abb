// G.729 main-body post-filter (clause 4.2: long-term filter with 1/8
// resolution, short-term filter A(z/0.55)/A(z/0.70), tilt compensation and
// adaptive gain control), one subframe per call, with its state block.
#include <cstring>

#include "g729/codec_ops.h"
#include "g729/postfilter_state.h"
#include "speech/corr/mac_sums.h"
#include "speech/filter/lp_filters.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

constexpr int kMemRes = PostFilterState::kMemRes;  // 152 = PIT_MAX + 1 + 8
constexpr int16_t kGamma1Pst = 22938;              // 0.70, denominator
constexpr int16_t kGamma2Pst = 18022;              // 0.55, numerator
constexpr int kLongH = 20;                         // LONG_H_ST

struct Ltp {
  int16_t num = 0, den = 1, shNum = 0, shDen = 0;
  int ltpdel = 0, phase = 0;
};

// The L_mac chain of the interpolation sum h[i] s[base - i], i < taps,
// rounded; `exact` when max|s| sum|h| < 2^30 (no partial sum saturates).
inline int16_t interp_round(const int16_t* h, const int16_t* s, int taps, bool exact) {
  if (exact) {
    int32_t a = 0;
    for (int i = 0; i < taps; ++i) a += int32_t{h[i]} * s[-i];
    return round(2 * a);  // |2a| < 2^31; the rounding may saturate
  }
  int32_t a = 0;
  for (int i = 0; i < taps; ++i) a = L_mac(a, h[i], s[-i]);
  return round(a);
}

// The L_mac chain of a[n] b[n], n < 40, by the vector kernel when the
// operands' energies admit it (speech/corr/mac_sums.h).
inline int32_t corr40(const int16_t* a, const int16_t* b, int64_t ea, int64_t eb) {
  if (speech::cross_fits(ea, eb)) return speech::mac_cross(a, b, kSubfr);
  int32_t c = 0;
  for (int n = 0; n < kSubfr; ++n) c = L_mac(c, a[n], b[n]);
  return c;
}

// Long-term post-filter (pst_ltp): res points at R[0] with R[-152..39]
// valid; writes x[0..39]; returns the chosen delay (0 when off).
int pst_ltp(int16_t t0, const int16_t* res, int16_t* x) {
  int16_t sbuf[kMemRes + kSubfr];
  int16_t* s = sbuf + kMemRes;
  int16_t m = 0;
  for (int i = -kMemRes; i < kSubfr; ++i) m = static_cast<int16_t>(m | abs_s(res[i]));
  const int16_t nb = sub(3, norm_s(m));
  for (int i = -kMemRes; i < kSubfr; ++i) s[i] = shr(res[i], nb);
  // Energy of the whole scaled residual: bounds every correlation of two of
  // its 40-sample windows (Cauchy-Schwarz).
  const int64_t eS = speech::energy(s - kMemRes, kMemRes + kSubfr);
  const int32_t maxS = speech::max_abs(s - kMemRes, kMemRes + kSubfr);

  Ltp r;
  int16_t y[8][kSubfr + 1];
  int32_t d0[8], d1[8];
  int16_t ener = 0, shEner = 0;
  int16_t hm = 0, lm = 0;
  bool off = false;
  // search_del
  int32_t L = speech::mac_energy(0, s, kSubfr);
  if (L == 0) off = true;
  int lam = t0 - 1;
  int32_t lnum = -1, lden = 0;
  if (!off) {
    shEner = sub(16, norm_l(L));
    if (shEner > 0)
      ener = extract_l(L_shr(L, shEner));
    else {
      shEner = 0;
      ener = extract_l(L);
    }
    int imax = 0;
    for (int i = 0; i < 3; ++i) {
      int32_t c = corr40(s, s - lam - i, eS, eS);
      if (c < 0) c = 0;
      if (L_sub(c, lnum) > 0) {
        lnum = c;
        imax = i;
      }
    }
    if (lnum == 0) off = true;
    lam += imax;
  }
  if (!off) {
    lden = speech::mac_energy(0, s - lam, kSubfr);
    if (lden == 0) off = true;
  }
  int16_t shDen = 0, shNum = 0;
  int16_t denMax = 0, numMax = 0;
  int ioff = 1, phiMax = 0;
  if (!off) {
    int32_t ldmax = lden;
    for (int phi = 1; phi < 8; ++phi) {
      const int16_t* h = tb::kTabHupS + 4 * (phi - 1);
      const bool exact = maxS * speech::sum_abs(h, 4) < (int64_t{1} << 30);
      for (int n = 0; n <= kSubfr; ++n) y[phi][n] = interp_round(h, s + n - lam + 1, 4, exact);
      const int32_t e = speech::mac_energy(0, y[phi] + 1, kSubfr - 1);
      d0[phi] = L_mac(e, y[phi][0], y[phi][0]);
      d1[phi] = L_mac(e, y[phi][kSubfr], y[phi][kSubfr]);
      if (sub(abs_s(y[phi][0]), abs_s(y[phi][kSubfr])) > 0) {
        if (L_sub(d0[phi], ldmax) > 0) ldmax = d0[phi];
      } else {
        if (L_sub(d1[phi], ldmax) > 0) ldmax = d1[phi];
      }
    }
    if (ldmax == 0) off = true;
    if (!off) {
      shDen = sub(16, norm_l(ldmax));
      if (shDen <= 0) off = true;
    }
    if (!off) {
      shNum = shDen >= shEner ? shDen : shEner;
      denMax = extract_l(L_shr(lden, shDen));
      numMax = extract_l(L_shr(lnum, shNum));
      const dpf::Dpf pm = dpf::L_Extract(L_mult(numMax, numMax));
      hm = pm.hi;
      lm = pm.lo;
      for (int phi = 1; phi < 8; ++phi) {
        for (int o = 0; o < 2; ++o) {
          int32_t c = corr40(s, y[phi] + o, eS, speech::energy(y[phi] + o, kSubfr));
          c = L_shr(c, shNum);
          const int16_t num = c < 0 ? int16_t(0) : extract_l(c);
          const dpf::Dpf p = dpf::L_Extract(L_mult(num, num));
          const int16_t den = extract_l(L_shr(o == 0 ? d0[phi] : d1[phi], shDen));
          if (L_sub(dpf::Mpy_32_16(p.hi, p.lo, denMax), dpf::Mpy_32_16(hm, lm, den)) > 0) {
            numMax = num;
            hm = p.hi;
            lm = p.lo;
            denMax = den;
            ioff = o;
            phiMax = phi;
          }
        }
      }
      if (numMax == 0 || sub(denMax, 1) <= 0) off = true;
    }
    if (!off) {
      int32_t L1 = L_mult(denMax, ener);
      int32_t L0 = dpf::L_Comp(hm, lm);
      const int16_t t = add(sub(sub(shl(shNum, 1), shDen), shEner), 1);
      if (t < 0)
        L0 = L_shr(L0, negate(t));
      else if (t > 0)
        L1 = L_shr(L1, t);
      if (L_sub(L0, L1) < 0) off = true;
    }
  }
  if (off) {
    for (int n = 0; n < kSubfr; ++n) x[n] = res[n];
    return 0;
  }
  r.ltpdel = lam + 1 - ioff;
  r.phase = phiMax;
  r.num = numMax;
  r.den = denMax;
  r.shNum = shNum;
  r.shDen = shDen;
  int16_t yref[kSubfr];
  if (r.phase == 0) {
    for (int n = 0; n < kSubfr; ++n) yref[n] = res[n - r.ltpdel];
  } else {
    int16_t yl[kSubfr];
    const int16_t* h = tb::kTabHupL + 16 * (r.phase - 1);
    const bool exact = maxS * speech::sum_abs(h, 16) < (int64_t{1} << 30);
    for (int n = 0; n < kSubfr; ++n) yl[n] = interp_round(h, s + n - r.ltpdel + 8, 16, exact);
    int16_t num2, shNum2, den2, shDen2;
    const int64_t eYl = speech::energy(yl, kSubfr);
    int32_t a = corr40(yl, s, eYl, eS);
    if (a < 0) {
      num2 = 0;
      shNum2 = 0;
    } else {
      int16_t t = sub(16, norm_l(a));
      if (t < 0) t = 0;
      num2 = extract_l(L_shr(a, t));
      shNum2 = t;
    }
    a = eYl * 2 > kMax32 ? kMax32 : static_cast<int32_t>(eYl * 2);  // the L_mac chain of squares
    {
      int16_t t = sub(16, norm_l(a));
      if (t < 0) t = 0;
      den2 = extract_l(L_shr(a, t));
      shDen2 = t;
    }
    bool useLong = false;
    if (den2 != 0) {
      const dpf::Dpf p1 = dpf::L_Extract(L_mult(r.num, r.num));
      int32_t L1 = dpf::Mpy_32_16(p1.hi, p1.lo, den2);
      const dpf::Dpf p2 = dpf::L_Extract(L_mult(num2, num2));
      int32_t L2 = dpf::Mpy_32_16(p2.hi, p2.lo, r.den);
      const int16_t t1 = add(shl(r.shNum, 1), shDen2);
      const int16_t t2 = add(shl(shNum2, 1), r.shDen);
      if (t2 > t1)
        L1 = L_shr(L1, sub(t2, t1));
      else if (t1 > t2)
        L2 = L_shr(L2, sub(t1, t2));
      useLong = L_sub(L2, L1) > 0;
    }
    if (useLong) {
      for (int n = 0; n < kSubfr; ++n) yref[n] = yl[n];
      r.num = num2;
      r.den = den2;
      r.shNum = shNum2;
      r.shDen = shDen2;
    } else {
      for (int n = 0; n < kSubfr; ++n) yref[n] = y[r.phase][n + ioff];
    }
    for (int n = 0; n < kSubfr; ++n) yref[n] = shl(yref[n], nb);
  }
  int16_t num = r.num, den = r.den;
  const int16_t t = sub(r.shNum, r.shDen);
  if (t >= 0)
    den = shr(den, t);
  else
    num = shl(num, t);
  int16_t g;
  if (sub(num, den) >= 0) {
    g = 21845;  // MIN_GPLT = 1/(1 + 0.5)
  } else {
    num = shr(num, 2);
    den = shr(den, 1);
    g = div_s(den, add(den, num));
  }
  const int16_t g1 = add(sub(32767, g), 1);
  for (int n = 0; n < kSubfr; ++n) x[n] = round(L_mac(L_mult(g, res[n]), g1, yref[n]));
  return r.ltpdel;
}

}  // namespace

VspStatus legacy90vspsPostFilterGetStateSize_G729(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(PostFilterState));
  return vspStsNoErr;
}

VspStatus legacy90vspsPostFilterInit_G729(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  PostFilterState st{};
  st.gainPrec = 16384;
  std::memcpy(pState, &st, sizeof st);
  return vspStsNoErr;
}

VspStatus legacy90vspsPostFilter_G729_16s(const Vsp16s* pLpc, const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s T0, int vad,
                                          Vsp16s* pDstVoicing, Vsp8u* pState) {
  if (pLpc == nullptr || pSrc == nullptr || pDst == nullptr || pDstVoicing == nullptr || pState == nullptr)
    return vspStsNullPtrErr;
  if (T0 < kLagMin || T0 > kPitMax || vad < 0 || vad > 1) return vspStsRangeErr;
  PostFilterState st;
  std::memcpy(&st, pState, sizeof st);
  int16_t ap1[kM + 1], ap2[kM + 1];
  weight_az(pLpc, kGamma1Pst, ap1);
  weight_az(pLpc, kGamma2Pst, ap2);
  int16_t syn[kM + kSubfr];
  for (int i = 0; i < kM; ++i) syn[i] = st.synMem[i];
  for (int i = 0; i < kSubfr; ++i) syn[kM + i] = pSrc[i];
  int16_t* res = st.res + kMemRes;
  residu(ap2, syn + kM, res, kSubfr);
  int16_t xbuf[kSubfr + 1];
  int16_t* x = xbuf + 1;
  int vo = 0;
  if (vad == 1)
    vo = pst_ltp(T0, res, x);
  else
    for (int n = 0; n < kSubfr; ++n) x[n] = res[n];
  xbuf[0] = st.memStp[kM - 1];
  // calc_st_filt: response of ap2/ap1, its first parcor and its gain
  int16_t hh[kLongH], hin[kLongH] = {};
  for (int i = 0; i <= kM; ++i) hin[i] = ap2[i];
  int16_t zero[kM] = {};
  syn_filt(ap1, hin, hh, kLongH, zero, false);
  int32_t L = 0;
  for (int i = 0; i < kLongH; ++i) L = L_mac(L, hh[i], hh[i]);
  const int16_t sh = norm_l(L);
  const int16_t acf0 = extract_h(L_shl(L, sh));
  L = 0;
  for (int i = 0; i < kLongH - 1; ++i) L = L_mac(L, hh[i], hh[i + 1]);
  const int16_t acf1 = extract_h(L_shl(L, sh));
  int16_t parcor0;
  if (sub(acf0, abs_s(acf1)) < 0) {
    parcor0 = 0;
  } else {
    parcor0 = div_s(abs_s(acf1), acf0);
    if (acf1 > 0) parcor0 = negate(parcor0);
  }
  int32_t lg = 0;
  for (int i = 0; i < kLongH; ++i) lg = L_add(lg, abs_s(hh[i]));
  const int16_t g0h = extract_h(L_shl(lg, 14));
  if (sub(g0h, 1024) > 0) {
    const int16_t t = div_s(1024, g0h);
    for (int n = 0; n < kSubfr; ++n) x[n] = mult_r(x[n], t);
  }
  syn_filt(ap1, x, x, kSubfr, st.memStp, true);
  // filt_mu: tilt compensation
  int16_t mu, sh1, fact;
  if (parcor0 > 0) {
    mu = mult_r(parcor0, 6554);
    sh1 = 15;
    fact = 0x4000;
  } else {
    mu = mult_r(parcor0, 29491);
    sh1 = 12;
    fact = 0x0800;
  }
  const int16_t ga = div_s(fact, add(32767, sub(1, abs_s(mu))));
  mu = shr(mu, 1);
  int16_t out[kSubfr];
  for (int n = 0; n < kSubfr; ++n) {
    int32_t a = L_add(L_mac(L_shl(L_deposit_l(xbuf[n + 1]), 15), mu, xbuf[n]), 0x4000);
    const int16_t t = extract_l(L_shr(a, 15));
    out[n] = sat16(L_shr(L_add(L_mult(t, ga), fact), sh1));
  }
  // scale_st: adaptive gain control
  L = 0;
  for (int n = 0; n < kSubfr; ++n) L = L_add(L, L_abs(L_deposit_l(pSrc[n])));
  int16_t g0 = 0;
  bool stop = false;
  if (L != 0) {
    const int16_t si = norm_l(L);
    const int16_t gi = extract_h(L_shl(L, si));
    L = 0;
    for (int n = 0; n < kSubfr; ++n) L = L_add(L, L_abs(L_deposit_l(out[n])));
    if (L == 0) {
      st.gainPrec = 0;
      stop = true;
    } else {
      const int16_t so = norm_l(L);
      const int16_t go = extract_h(L_shl(L, so));
      int16_t shg = sub(add(si, 1), so);
      if (sub(gi, go) < 0) {
        g0 = div_s(gi, go);
      } else {
        g0 = add(shr(div_s(sub(gi, go), go), 1), 0x4000);
        shg = sub(shg, 1);
      }
      g0 = mult_r(shr(g0, shg), 410);
    }
  }
  if (!stop) {
    int16_t g = st.gainPrec;
    for (int n = 0; n < kSubfr; ++n) {
      g = add(mult_r(32358, g), g0);
      out[n] = round(L_shl(L_mult(g, out[n]), 1));
    }
    st.gainPrec = g;
  }
  std::memmove(st.res, st.res + kSubfr, sizeof(int16_t) * kMemRes);
  for (int i = 0; i < kM; ++i) st.synMem[i] = pSrc[kSubfr - kM + i];
  for (int n = 0; n < kSubfr; ++n) pDst[n] = out[n];
  *pDstVoicing = static_cast<Vsp16s>(vo);
  std::memcpy(pState, &st, sizeof st);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
