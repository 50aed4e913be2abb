// GSM-AMR closed-loop fractional pitch search (TS 26.073 Pitch_fr with
// getRange, Norm_Corr, searchFrac, Enc_lag3 / Enc_lag6) and the adaptive
// codebook vector with its filtered form (Pred_lt_3or6, Convolve).
#include "core/dpf.h"
#include "gsmamr/enc_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

constexpr int kCorrLen = kPitMax + 5;  // corr[t] for t = t_min..t_max <= 147

void get_range(int16_t T, int16_t low, int16_t range, int16_t pmin, int16_t& t0_min, int16_t& t0_max) {
  t0_min = bop::sub(T, low);
  if (t0_min < pmin) t0_min = pmin;
  t0_max = bop::add(t0_min, range);
  if (t0_max > kPitMax) {
    t0_max = kPitMax;
    t0_min = bop::sub(t0_max, range);
  }
}

// Norm_Corr: normalised correlation of the target with the filtered past
// excitation for lags t_min..t_max; exc points to the subframe start.
void norm_corr(const int16_t* exc, const int16_t* xn, const int16_t* h, int t_min, int t_max, int16_t* corr) {
  using namespace bop;
  int16_t excf[kSubfr];
  int k = -t_min;
  convolve(&exc[k], h, excf);
  int32_t s = 0;
  for (int j = 0; j < kSubfr; ++j) s = L_mac(s, excf[j], excf[j]);
  int16_t h_fac = 3, scaling = 0;
  if (L_sub(s, 67108864) > 0) {
    for (int j = 0; j < kSubfr; ++j) excf[j] = shr(excf[j], 2);
    h_fac = 1;
    scaling = 2;
  }
  for (int i = t_min; i <= t_max; ++i) {
    s = 0;
    for (int j = 0; j < kSubfr; ++j) s = L_mac(s, excf[j], excf[j]);
    const dpf::Dpf norm = dpf::L_Extract(inv_sqrt(s));
    s = 0;
    for (int j = 0; j < kSubfr; ++j) s = L_mac(s, xn[j], excf[j]);
    s = dpf::Mpy_32(dpf::L_Extract(s), norm);
    corr[i] = extract_h(L_shl(s, 16));
    if (i != t_max) {
      --k;
      for (int j = kSubfr - 1; j > 0; --j) excf[j] = add(extract_h(L_shl(L_mult(exc[k], h[j]), h_fac)), excf[j - 1]);
      excf[0] = shr(exc[k], scaling);
    }
  }
}

void search_frac(int16_t& lag, int16_t& frac, int16_t last, const int16_t* corr, bool flag3) {
  int16_t max = interpol_3or6(&corr[lag], frac, flag3);
  for (int16_t i = static_cast<int16_t>(frac + 1); i <= last; ++i) {
    const int16_t c = interpol_3or6(&corr[lag], i, flag3);
    if (bop::sub(c, max) > 0) {
      max = c;
      frac = i;
    }
  }
  if (!flag3) {
    if (frac == -3) {
      frac = 3;
      --lag;
    }
  } else {
    if (frac == -2) {
      frac = 1;
      --lag;
    }
    if (frac == 2) {
      frac = -1;
      ++lag;
    }
  }
}

int16_t enc_lag3(int16_t T0, int16_t frac, int16_t T0_prev, int16_t t0_min, int16_t t0_max, bool delta, bool flag4) {
  using namespace bop;
  if (!delta) {
    if (sub(T0, 85) <= 0) return add(sub(add(add(T0, T0), T0), 58), frac);
    return add(T0, 112);
  }
  if (!flag4) return add(add(extract_l(L_shr(L_mult(3, sub(T0, t0_min)), 1)), 2), frac);
  const int16_t tmp_lag = centre_lag(T0_prev, t0_min, t0_max);
  const int16_t uplag = add(add(add(T0, T0), T0), frac);
  const int16_t i = sub(tmp_lag, 2);
  const int16_t tmp_ind = add(add(i, i), i);
  if (sub(tmp_ind, uplag) >= 0) return add(sub(T0, tmp_lag), 5);
  const int16_t j = add(tmp_lag, 1);
  if (sub(add(add(j, j), j), uplag) > 0) return add(sub(uplag, tmp_ind), 3);
  return add(sub(T0, tmp_lag), 11);
}

int16_t enc_lag6(int16_t T0, int16_t frac, int16_t t0_min, bool delta) {
  using namespace bop;
  if (!delta) {
    if (sub(T0, 94) <= 0) return add(sub(extract_l(L_shr(L_mult(6, T0), 1)), 105), frac);
    return add(T0, 368);
  }
  return add(add(extract_l(L_shr(L_mult(6, sub(T0, t0_min)), 1)), 3), frac);
}

}  // namespace

// Pred_lt_3or6 on exc (subframe start, 154 samples of history) and
// Convolve with h into y1.
void adaptive_vector(int16_t* exc, const int16_t* h, int16_t T0, int16_t frac, bool flag3, int16_t* y1) {
  pred_lt_3or6(exc, T0, frac, kSubfr, flag3);
  convolve(exc, h, y1);
}

}  // namespace amr

VspStatus legacy90vspsAdaptiveCodebookSearch_GSMAMR_16s(const Vsp16s* pSrcTarget, const Vsp16s* pSrcImp,
                                                        Vsp16s* pSrcDstExc, const Vsp16s* pSrcOpenLoopLag,
                                                        Vsp16s* pSrcDstPrevLag, Vsp16s* pDstLag, Vsp16s* pDstFltAdapt,
                                                        int subfr, int mode) {
  using namespace amr;
  if (pSrcTarget == nullptr || pSrcImp == nullptr || pSrcDstExc == nullptr || pSrcOpenLoopLag == nullptr ||
      pSrcDstPrevLag == nullptr || pDstLag == nullptr || pDstFltAdapt == nullptr)
    return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0 || subfr < 0 || subfr > 3) return vspStsRangeErr;
  const PitchParams p = pitch_params(m);
  // Absolute search in subframe 0 and 2 (2 is relative at 4.75/5.15 kbit/s)
  // around the open-loop lag, else relative to the previous subframe's lag.
  const bool delta = !(subfr == 0 || (subfr == 2 && m != MR475 && m != MR515));
  int16_t t0_min = 0, t0_max = 0;
  if (!delta)
    get_range(pSrcOpenLoopLag[subfr == 0 ? 0 : 1], p.delta_int_low, p.delta_int_range, p.pit_min, t0_min, t0_max);
  else
    get_range(*pSrcDstPrevLag, p.delta_frc_low, p.delta_frc_range, p.pit_min, t0_min, t0_max);
  const int t_min = t0_min - 4, t_max = t0_max + 4;
  int16_t exc[kExcHist + kSubfr];
  for (int i = 0; i < kExcHist + kSubfr; ++i) exc[i] = pSrcDstExc[i];
  int16_t* cur = exc + kExcHist;
  int16_t corr[kCorrLen];
  norm_corr(cur, pSrcTarget, pSrcImp, t_min, t_max, corr);
  // Integer lag: the maximum (ties to the larger lag).
  int16_t max = corr[t0_min], lag = t0_min;
  for (int i = t0_min + 1; i <= t0_max; ++i)
    if (bop::sub(corr[i], max) >= 0) {
      max = corr[i];
      lag = static_cast<int16_t>(i);
    }
  int16_t frac = p.first_frac, last = p.last_frac;
  const bool flag3 = p.flag3 != 0;
  const bool flag4 = m == MR475 || m == MR515 || m == MR59 || m == MR67;
  if (!delta && bop::sub(lag, p.max_frac_lag) > 0) {
    frac = 0;
  } else if (delta && flag4) {
    const int16_t tmp_lag = centre_lag(*pSrcDstPrevLag, t0_min, t0_max);
    if (lag == tmp_lag || lag == tmp_lag - 1) {
      search_frac(lag, frac, last, corr, flag3);
    } else if (lag == tmp_lag - 2) {
      frac = 0;
      search_frac(lag, frac, last, corr, flag3);
    } else if (lag == tmp_lag + 1) {
      last = 0;
      search_frac(lag, frac, last, corr, flag3);
    } else {
      frac = 0;
    }
  } else {
    search_frac(lag, frac, last, corr, flag3);
  }
  const int16_t index =
      flag3 ? enc_lag3(lag, frac, *pSrcDstPrevLag, t0_min, t0_max, delta, flag4) : enc_lag6(lag, frac, t0_min, delta);
  int16_t y1[kSubfr];
  adaptive_vector(cur, pSrcImp, lag, frac, flag3, y1);
  for (int i = 0; i < kSubfr; ++i) {
    pSrcDstExc[kExcHist + i] = cur[i];
    pDstFltAdapt[i] = y1[i];
  }
  pDstLag[0] = lag;
  pDstLag[1] = frac;
  pDstLag[2] = index;
  *pSrcDstPrevLag = lag;
  return vspStsNoErr;
}

VspStatus legacy90vspsAdaptiveVector_GSMAMR_16s(Vsp16s* pSrcDstExc, const Vsp16s* pSrcImp, const Vsp16s* pSrcLag,
                                                Vsp16s* pDstFltAdapt, int mode) {
  using namespace amr;
  if (pSrcDstExc == nullptr || pSrcImp == nullptr || pSrcLag == nullptr || pDstFltAdapt == nullptr)
    return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0) return vspStsRangeErr;
  const bool flag3 = m != MR122;
  const int16_t T0 = pSrcLag[0], frac = pSrcLag[1];
  if (T0 < (flag3 ? 19 : 17) || T0 > (flag3 ? kPitMax + 1 : kPitMax) || frac < (flag3 ? -1 : -2) ||
      frac > (flag3 ? 1 : 3))
    return vspStsRangeErr;
  int16_t exc[kExcHist + kSubfr];
  for (int i = 0; i < kExcHist + kSubfr; ++i) exc[i] = pSrcDstExc[i];
  int16_t y1[kSubfr];
  adaptive_vector(exc + kExcHist, pSrcImp, T0, frac, flag3, y1);
  for (int i = 0; i < kSubfr; ++i) {
    pSrcDstExc[kExcHist + i] = exc[kExcHist + i];
    pDstFltAdapt[i] = y1[i];
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
