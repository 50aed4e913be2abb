// GSM-AMR open-loop pitch search (TS 26.073 Pitch_ol with Lag_max, comp_corr
// and hp_max; Pitch_ol_wgh with gmed_n at 10.2 kbit/s) on the weighted speech,
// with the values the voice activity detectors take from it.
#include "core/dpf.h"
#include "gsmamr/enc_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

constexpr int kVadWords = 9;  // section (max, energy) x 3, chosen (max, energy), hp_max
constexpr int kMaxLen = kFrame;

struct OlSignal {
  int16_t buf[kPitMax + kMaxLen];  // scaled weighted speech, buf[kPitMax] = sample 0
  int32_t corr[kPitMax + 1];       // corr[T] for T = pit_min..pit_max
  int16_t scal_fac;
  int len;
  const int16_t* x() const { return buf + kPitMax; }
};

// Scaling of the signal (by the energy of pit_max + len samples) and the
// correlations of lags pit_min..pit_max.
void prepare(const int16_t* sig, int len, int pit_min, OlSignal& s) {
  using namespace bop;
  s.len = len;
  int32_t t0 = 0;
  for (int i = -kPitMax; i < len; ++i) t0 = L_mac(t0, sig[i], sig[i]);
  for (int i = -kPitMax; i < len; ++i) {
    if (t0 == kMax32)
      s.buf[kPitMax + i] = shr(sig[i], 3);
    else if (t0 < 1048576)
      s.buf[kPitMax + i] = shl(sig[i], 3);
    else
      s.buf[kPitMax + i] = sig[i];
  }
  s.scal_fac = t0 == kMax32 ? 3 : (t0 < 1048576 ? -3 : 0);
  const int16_t* x = s.x();
  for (int T = kPitMax; T >= pit_min; --T) {
    int32_t c = 0;
    for (int j = 0; j < len; ++j) c = L_mac(c, x[j], x[j - T]);
    s.corr[T] = c;
  }
}

int32_t energy_at(const OlSignal& s, int lag) {
  int32_t t0 = 0;
  const int16_t* x = s.x();
  for (int j = 0; j < s.len; ++j) t0 = bop::L_mac(t0, x[j - lag], x[j - lag]);
  return t0;
}

// Lag_max over lag_max down to lag_min: the lag, its normalised correlation
// and the VAD pair (max correlation, energy).
int16_t lag_max(const OlSignal& s, int lag_hi, int lag_lo, bool scal_flag, int16_t& cor_max, int32_t* vad) {
  using namespace bop;
  int32_t max = kMin32;
  int p_max = lag_hi;
  for (int T = lag_hi; T >= lag_lo; --T)
    if (L_sub(s.corr[T], max) >= 0) {
      max = s.corr[T];
      p_max = T;
    }
  int32_t t0 = energy_at(s, p_max);
  vad[0] = max;
  vad[1] = t0;
  t0 = inv_sqrt(t0);
  if (scal_flag) t0 = L_shl(t0, 1);
  t0 = dpf::Mpy_32(dpf::L_Extract(max), dpf::L_Extract(t0));
  if (scal_flag) {
    t0 = L_shr(t0, s.scal_fac);
    cor_max = extract_h(L_shl(t0, 15));
  } else {
    cor_max = extract_l(t0);
  }
  return static_cast<int16_t>(p_max);
}

// hp_max: the high-pass-filtered correlation maximum relative to the
// energy (the complex-signal input of VAD option 1).
int16_t hp_max(const OlSignal& s, int pit_min) {
  using namespace bop;
  int32_t max = kMin32;
  for (int i = kPitMax - 1; i > pit_min; --i) {
    const int32_t t = L_abs(L_sub(L_sub(L_shl(s.corr[i], 1), s.corr[i + 1]), s.corr[i - 1]));
    if (L_sub(t, max) >= 0) max = t;
  }
  const int16_t* x = s.x();
  int32_t t0 = 0, t1 = 0;
  for (int i = 0; i < s.len; ++i) {
    t0 = L_mac(t0, x[i], x[i]);
    t1 = L_mac(t1, x[i], x[i - 1]);
  }
  t0 = L_abs(L_sub(L_shl(t0, 1), L_shl(t1, 1)));
  const int16_t shift1 = sub(norm_l(max), 1);
  const int16_t max16 = extract_h(L_shl(max, shift1));
  const int16_t shift2 = norm_l(t0);
  const int16_t t016 = extract_h(L_shl(t0, shift2));
  const int16_t cor = t016 != 0 ? div_s(max16, t016) : int16_t(0);
  const int16_t shift = sub(shift1, shift2);
  return shift >= 0 ? shr(cor, shift) : shl(cor, negate(shift));
}

int16_t pitch_ol(const OlSignal& s, int pit_min, bool scal_flag, int32_t* vad) {
  using namespace bop;
  int16_t max1 = 0, max2 = 0, max3 = 0;
  int16_t p1 = lag_max(s, kPitMax, 4 * pit_min, scal_flag, max1, vad);
  const int16_t p2 = lag_max(s, 4 * pit_min - 1, 2 * pit_min, scal_flag, max2, vad + 2);
  const int16_t p3 = lag_max(s, 2 * pit_min - 1, pit_min, scal_flag, max3, vad + 4);
  vad[6] = vad[0];
  vad[7] = vad[1];
  if (sub(mult(max1, 27853), max2) < 0) {
    max1 = max2;
    p1 = p2;
    vad[6] = vad[2];
    vad[7] = vad[3];
  }
  if (sub(mult(max1, 27853), max3) < 0) {
    p1 = p3;
    vad[6] = vad[4];
    vad[7] = vad[5];
  }
  return p1;
}

// Pitch_ol_wgh. State: old_T0_med, ada_w, wght_flg, old_lags[5],
// ol_gain_flg[2].
int16_t pitch_ol_wgh(const OlSignal& s, int16_t* st, int idx, int32_t* vad) {
  using namespace bop;
  int32_t max = kMin32;
  int p_max = kPitMax;
  int ww = 250, we = 123 + kPitMax - st[0];
  for (int T = kPitMax; T >= 20; --T) {
    int32_t t = dpf::Mpy_32_16(dpf::L_Extract(s.corr[T]), gsmamr::kCorrWeight[ww--]);
    if (st[2] > 0) t = dpf::Mpy_32_16(dpf::L_Extract(t), gsmamr::kCorrWeight[we--]);
    if (L_sub(t, max) >= 0) {
      max = t;
      p_max = T;
    }
  }
  int32_t t0 = 0, t1 = 0;
  const int16_t* x = s.x();
  for (int j = 0; j < s.len; ++j) {
    t0 = L_mac(t0, x[j], x[j - p_max]);
    t1 = L_mac(t1, x[j - p_max], x[j - p_max]);
  }
  vad[0] = vad[6] = t0;
  vad[1] = vad[7] = t1;
  int16_t* lags = st + 3;
  st[8 + idx] = round(L_msu(t0, round(t1), 13107));
  if (st[8 + idx] > 0) {
    for (int i = 4; i > 0; --i) lags[i] = lags[i - 1];
    lags[0] = static_cast<int16_t>(p_max);
    st[0] = gmed_n(lags, 5);
    st[1] = 32767;
  } else {
    st[0] = static_cast<int16_t>(p_max);
    st[1] = mult(st[1], 29491);
  }
  st[2] = sub(st[1], 9830) < 0 ? int16_t(0) : int16_t(1);
  return static_cast<int16_t>(p_max);
}

}  // namespace
}  // namespace amr

VspStatus legacy90vspsOpenLoopPitch_GSMAMR_16s(const Vsp16s* pSrcWsp, Vsp16s* pSrcDstState, Vsp32s* pDstVad,
                                               Vsp16s* pDstLag, int half, int mode) {
  using namespace amr;
  if (pSrcWsp == nullptr || pSrcDstState == nullptr || pDstVad == nullptr || pDstLag == nullptr)
    return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0 || half < 0 || half > 1) return vspStsRangeErr;
  if (m == MR102 && pSrcDstState[2] > 0 && (pSrcDstState[0] < 16 || pSrcDstState[0] > kPitMax)) return vspStsRangeErr;
  const bool whole = m == MR475 || m == MR515;
  const int len = whole ? kFrame : kFrame / 2;
  const int pit_min = m == MR122 ? 18 : 20;
  const int16_t* sig = pSrcWsp + kPitMax + (whole ? 0 : half * (kFrame / 2));
  OlSignal s;
  prepare(sig, len, pit_min, s);
  int32_t vad[kVadWords] = {};
  int16_t st[10];
  for (int i = 0; i < 10; ++i) st[i] = pSrcDstState[i];
  int16_t lag;
  if (m == MR102) {
    lag = pitch_ol_wgh(s, st, half, vad);
  } else {
    lag = pitch_ol(s, pit_min, m == MR122, vad);
    st[8 + half] = 0;
    if (whole) st[8] = st[9] = 0;
  }
  vad[8] = hp_max(s, pit_min);
  for (int i = 0; i < 10; ++i) pSrcDstState[i] = st[i];
  for (int i = 0; i < kVadWords; ++i) pDstVad[i] = vad[i];
  *pDstLag = lag;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
