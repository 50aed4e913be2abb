// G.729 pitch search: open-loop lag (clause 3.4, Pitch_ol; Annex A
// Pitch_ol_fast), closed-loop fractional lag (clause 3.7, Pitch_fr3; Annex A
// Pitch_fr3_fast, which also leaves the adaptive vector), lag encoding
// (Enc_lag3) and the pitch gain (clause 3.7.3, G_pitch).
#include "g729/codec_ops.h"
#include "speech/corr/mac_sums.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

constexpr int kOlHistory = kPitMax;  // weighted speech before the frame

// Scaled copy of sig[-143..79] (Pitch_ol, Pitch_ol_fast): step 1 sums every
// sample, 2 every second one from -143.
void scale_for_pitch(const int16_t* wsp, int16_t* sig, int step) {
  bool ovf = false;
  int32_t t0 = 0;
  for (int i = -kPitMax; i < kFrame; i += step) t0 = L_mac_ovf(t0, wsp[i], wsp[i], ovf);
  for (int i = -kPitMax; i < kFrame; ++i) {
    if (ovf)
      sig[i] = shr(wsp[i], 3);
    else if (L_sub(t0, 1048576) < 0)
      sig[i] = shl(wsp[i], 3);
    else
      sig[i] = wsp[i];
  }
}

// True when every correlation chain inside sig[-143..79] is an exact sum
// (its energy below 2^30: Cauchy-Schwarz, speech/corr/mac_sums.h).
bool pitch_sums_exact(const int16_t* sig) {
  return speech::cross_fits(speech::energy(sig - kPitMax, kPitMax + kFrame), 1 << 30);
}

// Lag_max of the main body: lags lagMax down to lagMin, ties to the smaller.
int lag_max(const int16_t* sig, int lagMax, int lagMin, bool exact, int16_t* corMax) {
  int32_t max = kMin32;
  int pMax = lagMax;
  for (int i = lagMax; i >= lagMin; --i) {
    int32_t t = 0;
    if (exact)
      t = speech::mac_cross(sig, sig - i, kFrame);
    else
      for (int j = 0; j < kFrame; ++j) t = L_mac(t, sig[j], sig[j - i]);
    if (L_sub(t, max) >= 0) {
      max = t;
      pMax = i;
    }
  }
  const int32_t e = speech::mac_energy(0, sig - pMax, kFrame);
  *corMax = extract_l(dpf::Mpy_32(dpf::L_Extract(max), dpf::L_Extract(inv_sqrt(e))));
  return pMax;
}

// sig[-143..79] split by parity of the position p = j + 143: odd[m] =
// sig[2m - 142], even[m] = sig[2m - 143]; the decimated sums of Pitch_ol_fast
// read sig[j], j = 0, 2, .. 78 (odd[71 + k]) and sig[j - t] (odd[71 + k -
// t/2] for even t, even[71 + k - (t-1)/2] for odd t).
struct Decimated {
  const int16_t* sig;
  bool exact;  // every decimated chain is an exact sum
  int16_t odd[112], even[112];
  explicit Decimated(const int16_t* s) : sig(s) {
    for (int m = 0; m < 112; ++m) {
      even[m] = sig[2 * m - kPitMax];
      odd[m] = m < 111 ? sig[2 * m + 1 - kPitMax] : 0;
    }
    exact = pitch_sums_exact(sig);
  }
  const int16_t* lagged(int t) const { return t % 2 == 0 ? odd + 71 - t / 2 : even + 71 - (t - 1) / 2; }
};

int32_t corr_even(const Decimated& d, int t) {
  if (d.exact) return speech::mac_cross(d.odd + 71, d.lagged(t), kFrame / 2);
  int32_t c = 0;
  for (int j = 0; j < kFrame; j += 2) c = L_mac(c, d.sig[j], d.sig[j - t]);
  return c;
}

int16_t norm_even(const Decimated& d, int t, int32_t c) {
  const int32_t e = speech::mac_energy(1, d.lagged(t), kFrame / 2);
  return extract_l(dpf::Mpy_32(dpf::L_Extract(c), dpf::L_Extract(inv_sqrt(e))));
}

// The lag of from..to-1 (step) with the largest decimated correlation, the
// first on ties; *max its correlation.
int16_t best_even(const Decimated& sig, int from, int to, int step, int32_t* max) {
  *max = kMin32;
  int16_t best = static_cast<int16_t>(from);
  for (int t = from; t < to; t += step) {
    const int32_t c = corr_even(sig, t);
    if (L_sub(c, *max) > 0) *max = c, best = static_cast<int16_t>(t);
  }
  return best;
}

// Search range of a subframe: around the open-loop lag (subframe 0) or the
// lag of subframe 0 (subframe 1).
void search_range(int refLag, int subframe, int* tMin, int* tMax) {
  if (subframe == 0) {
    *tMin = refLag - 3 < kPitMin ? kPitMin : refLag - 3;
    *tMax = *tMin + 6;
    if (*tMax > kPitMax) {
      *tMax = kPitMax;
      *tMin = kPitMax - 6;
    }
  } else {
    *tMin = refLag - 5 < kPitMin ? kPitMin : refLag - 5;
    *tMax = *tMin + 9;
    if (*tMax > kPitMax) {
      *tMax = kPitMax;
      *tMin = kPitMax - 9;
    }
  }
}

// Convolve: y[n] = extract_h(L_shl(sum_{i<=n} x[i] h[n-i], 3)), h Q12.
void convolve(const int16_t* x, const int16_t* h, int16_t* y) { speech::convolve_sat(x, h, y, kSubfr, 12); }

int16_t interpol_3(const int16_t* x, int frac) {
  if (frac < 0) {
    frac += 3;
    --x;
  }
  int32_t s = 0;
  for (int i = 0, k = 0; i < 4; ++i, k += 3) {
    s = L_mac(s, x[-i], tb::kInter3[frac + k]);
    s = L_mac(s, x[1 + i], tb::kInter3[3 - frac + k]);
  }
  return round(s);
}

bool range_ok(int refLag, int subframe) {
  return subframe >= 0 && subframe <= 1 && refLag >= kLagMin && refLag <= kLagMax;
}

}  // namespace

VspStatus legacy90vspsOpenLoopPitch_G729_16s(const Vsp16s* pSrc, Vsp16s* pDstLag) {
  if (pSrc == nullptr || pDstLag == nullptr) return vspStsNullPtrErr;
  int16_t buf[kOlHistory + kFrame];
  int16_t* sig = buf + kOlHistory;
  scale_for_pitch(pSrc + kOlHistory, sig, 1);
  const bool exact = pitch_sums_exact(sig);
  int16_t max1, max2, max3;
  int t1 = lag_max(sig, kPitMax, 80, exact, &max1);
  const int t2 = lag_max(sig, 79, 40, exact, &max2);
  const int t3 = lag_max(sig, 39, 20, exact, &max3);
  if (sub(mult(max1, 27853), max2) < 0) {
    max1 = max2;
    t1 = t2;
  }
  if (sub(mult(max1, 27853), max3) < 0) t1 = t3;
  *pDstLag = static_cast<Vsp16s>(t1);
  return vspStsNoErr;
}

VspStatus legacy90vspsOpenLoopPitch_G729A_16s(const Vsp16s* pSrc, Vsp16s* pDstLag) {
  if (pSrc == nullptr || pDstLag == nullptr) return vspStsNullPtrErr;
  int16_t buf[kOlHistory + kFrame];
  scale_for_pitch(pSrc + kOlHistory, buf + kOlHistory, 2);
  const Decimated sig(buf + kOlHistory);
  int32_t max = kMin32;
  int16_t t1 = best_even(sig, 20, 40, 1, &max);
  int16_t max1 = norm_even(sig, t1, max);
  int16_t t2 = best_even(sig, 40, 80, 1, &max);
  int16_t max2 = norm_even(sig, t2, max);
  int16_t t3 = best_even(sig, 80, 143, 2, &max);
  {
    const int i = t3;
    int32_t c = corr_even(sig, i + 1);
    if (L_sub(c, max) > 0) max = c, t3 = static_cast<int16_t>(i + 1);
    c = corr_even(sig, i - 1);
    if (L_sub(c, max) > 0) max = c, t3 = static_cast<int16_t>(i - 1);
  }
  const int16_t max3 = norm_even(sig, t3, max);
  int16_t i = sub(shl(t2, 1), t3);
  if (sub(abs_s(i), 5) < 0) max2 = add(max2, shr(max3, 2));
  i = add(i, t2);
  if (sub(abs_s(i), 7) < 0) max2 = add(max2, shr(max3, 2));
  i = sub(shl(t1, 1), t2);
  if (sub(abs_s(i), 5) < 0) max1 = add(max1, mult(max2, 6554));
  i = add(i, t1);
  if (sub(abs_s(i), 7) < 0) max1 = add(max1, mult(max2, 6554));
  if (sub(max1, max2) < 0) {
    max1 = max2;
    t1 = t2;
  }
  if (sub(max1, max3) < 0) t1 = t3;
  *pDstLag = t1;
  return vspStsNoErr;
}

VspStatus legacy90vspsClosedLoopPitch_G729_16s(const Vsp16s* pExc, const Vsp16s* pTarget, const Vsp16s* pImp,
                                               Vsp16s refLag, int subframe, Vsp16s* pDstT0, Vsp16s* pDstFrac) {
  if (pExc == nullptr || pTarget == nullptr || pImp == nullptr || pDstT0 == nullptr || pDstFrac == nullptr)
    return vspStsNullPtrErr;
  if (!range_ok(refLag, subframe)) return vspStsRangeErr;
  const int16_t* exc = pExc + kExcHistory;
  int t0Min, t0Max;
  search_range(refLag, subframe, &t0Min, &t0Max);
  const int tMin = t0Min - 4, tMax = t0Max + 4;
  int16_t corrBuf[20];
  int16_t* corr = corrBuf;  // corr[t - tMin], t = tMin..tMax
  // Norm_Corr
  int16_t excf[kSubfr], sExcf[kSubfr];
  int k = -tMin;
  convolve(exc + k, pImp, excf);
  int32_t s = speech::mac_energy(0, excf, kSubfr);
  int16_t hFac, scaling;
  if (L_sub(s, 67108864) <= 0) {
    for (int j = 0; j < kSubfr; ++j) sExcf[j] = excf[j];
    hFac = 3;
    scaling = 0;
  } else {
    for (int j = 0; j < kSubfr; ++j) sExcf[j] = shr(excf[j], 2);
    hFac = 1;
    scaling = 2;
  }
  const int64_t eTarget = speech::energy(pTarget, kSubfr);
  for (int t = tMin; t <= tMax; ++t) {
    const int64_t eExcf = speech::energy(sExcf, kSubfr);
    s = eExcf * 2 > kMax32 ? kMax32 : static_cast<int32_t>(eExcf * 2);  // the L_mac chain of squares
    const dpf::Dpf norm = dpf::L_Extract(inv_sqrt(s));
    if (speech::cross_fits(eTarget, eExcf)) {
      s = speech::mac_cross(pTarget, sExcf, kSubfr);
    } else {
      s = 0;
      for (int j = 0; j < kSubfr; ++j) s = L_mac(s, pTarget[j], sExcf[j]);
    }
    corr[t - tMin] = extract_h(L_shl(dpf::Mpy_32(dpf::L_Extract(s), norm), 16));
    if (t != tMax) {
      --k;
      for (int j = kSubfr - 1; j > 0; --j)
        sExcf[j] = add(extract_h(L_shl(L_mult(exc[k], pImp[j]), hFac)), sExcf[j - 1]);
      sExcf[0] = shr(exc[k], scaling);
    }
  }
  int16_t max = corr[t0Min - tMin];
  int lag = t0Min;
  for (int t = t0Min + 1; t <= t0Max; ++t)
    if (sub(corr[t - tMin], max) >= 0) {
      max = corr[t - tMin];
      lag = t;
    }
  int frac = 0;
  if (!(subframe == 0 && lag > 84)) {
    max = interpol_3(&corr[lag - tMin], -2);
    frac = -2;
    for (int f = -1; f <= 2; ++f) {
      const int16_t c = interpol_3(&corr[lag - tMin], f);
      if (sub(c, max) > 0) {
        max = c;
        frac = f;
      }
    }
    if (frac == -2) {
      frac = 1;
      --lag;
    }
    if (frac == 2) {
      frac = -1;
      ++lag;
    }
  }
  *pDstT0 = static_cast<Vsp16s>(lag);
  *pDstFrac = static_cast<Vsp16s>(frac);
  return vspStsNoErr;
}

VspStatus legacy90vspsClosedLoopPitch_G729A_16s_I(Vsp16s* pSrcDstExc, const Vsp16s* pTarget, const Vsp16s* pImp,
                                                  Vsp16s refLag, int subframe, Vsp16s* pDstT0, Vsp16s* pDstFrac) {
  if (pSrcDstExc == nullptr || pTarget == nullptr || pImp == nullptr || pDstT0 == nullptr || pDstFrac == nullptr)
    return vspStsNullPtrErr;
  if (!range_ok(refLag, subframe)) return vspStsRangeErr;
  int16_t* exc = pSrcDstExc + kExcHistory;
  int t0Min, t0Max;
  search_range(refLag, subframe, &t0Min, &t0Max);
  int16_t dn[kSubfr];
  cor_h_x(pImp, pTarget, dn);  // h without sharpening
  int32_t max = kMin32;
  int t0 = t0Min;
  for (int t = t0Min; t <= t0Max; ++t) {
    int32_t c = 0;
    for (int i = 0; i < kSubfr; ++i) c = L_mac(c, dn[i], exc[i - t]);
    if (L_sub(c, max) > 0) {
      max = c;
      t0 = t;
    }
  }
  auto corr_dn = [&]() {
    int32_t c = 0;
    for (int i = 0; i < kSubfr; ++i) c = L_mac(c, dn[i], exc[i]);
    return c;
  };
  pred_lt_3(exc, t0, 0, kSubfr);
  max = corr_dn();
  int frac = 0;
  if (!(subframe == 0 && t0 > 84)) {
    int16_t tmp[kSubfr];
    for (int i = 0; i < kSubfr; ++i) tmp[i] = exc[i];
    pred_lt_3(exc, t0, -1, kSubfr);
    int32_t c = corr_dn();
    if (L_sub(c, max) > 0) {
      max = c;
      frac = -1;
      for (int i = 0; i < kSubfr; ++i) tmp[i] = exc[i];
    }
    pred_lt_3(exc, t0, 1, kSubfr);
    c = corr_dn();
    if (L_sub(c, max) > 0)
      frac = 1;
    else
      for (int i = 0; i < kSubfr; ++i) exc[i] = tmp[i];
  }
  *pDstT0 = static_cast<Vsp16s>(t0);
  *pDstFrac = static_cast<Vsp16s>(frac);
  return vspStsNoErr;
}

VspStatus legacy90vspsEncodePitchLag_G729_16s(Vsp16s T0, Vsp16s frac, Vsp16s refLag, int subframe, Vsp16s* pDstIndex) {
  if (pDstIndex == nullptr) return vspStsNullPtrErr;
  if (subframe < 0 || subframe > 1 || frac < -1 || frac > 1 || T0 < kLagMin || T0 > kLagMax) return vspStsRangeErr;
  if (subframe == 1 && (refLag < kLagMin || refLag > kLagMax)) return vspStsRangeErr;
  int16_t index;
  if (subframe == 0) {
    index = T0 <= 85 ? add(sub(add(add(T0, T0), T0), 58), frac) : add(T0, 112);
  } else {
    int tMin, tMax;
    search_range(refLag, 1, &tMin, &tMax);
    index = add(add(static_cast<int16_t>(3 * (T0 - tMin)), 2), frac);
  }
  *pDstIndex = index;
  return vspStsNoErr;
}

VspStatus legacy90vspsPitchGain_G729_16s(const Vsp16s* pTarget, const Vsp16s* pFiltAdapt, int taming, Vsp16s* pDstGain,
                                         Vsp16s* pDstCoeff, Vsp16s* pDstTarget2) {
  if (pTarget == nullptr || pFiltAdapt == nullptr || pDstGain == nullptr || pDstCoeff == nullptr ||
      pDstTarget2 == nullptr)
    return vspStsNullPtrErr;
  const int16_t* y1 = pFiltAdapt;
  bool ovf = false;
  int32_t s = 1;
  for (int i = 0; i < kSubfr; ++i) s = L_mac_ovf(s, y1[i], y1[i], ovf);
  int16_t expYy, yy;
  if (!ovf) {
    expYy = norm_l(s);
    yy = round(L_shl(s, expYy));
  } else {
    s = 1;
    for (int i = 0; i < kSubfr; ++i) s = L_mac(s, shr(y1[i], 2), shr(y1[i], 2));
    expYy = norm_l(s);
    yy = round(L_shl(s, expYy));
    expYy = sub(expYy, 4);
  }
  ovf = false;
  s = 0;
  for (int i = 0; i < kSubfr; ++i) s = L_mac_ovf(s, pTarget[i], y1[i], ovf);
  int16_t expXy, xy;
  if (!ovf) {
    expXy = norm_l(s);
    xy = round(L_shl(s, expXy));
  } else {
    s = 0;
    for (int i = 0; i < kSubfr; ++i) s = L_mac(s, pTarget[i], shr(y1[i], 2));
    expXy = norm_l(s);
    xy = round(L_shl(s, expXy));
    expXy = sub(expXy, 2);
  }
  int16_t coeff[4] = {yy, sub(15, expYy), xy, sub(15, expXy)};
  int16_t gain;
  if (xy <= 0) {
    coeff[3] = -15;
    gain = 0;
  } else {
    gain = shr(div_s(shr(xy, 1), yy), sub(expXy, expYy));
    if (gain > 19661) gain = 19661;  // 1.2, Q14
  }
  if (taming && gain > 15564) gain = 15564;  // GPCLIP 0.95
  for (int i = 0; i < kSubfr; ++i) pDstTarget2[i] = sub(pTarget[i], extract_h(L_shl(L_mult(y1[i], gain), 1)));
  for (int i = 0; i < 4; ++i) pDstCoeff[i] = coeff[i];
  *pDstGain = gain;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
