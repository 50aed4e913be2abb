// GSM-AMR decoder subframe steps (TS 26.073 Decoder_amr subframe loop):
// lag decoding with concealment and the adaptive vector, the fixed codebook
// with pitch sharpening, gain decoding and concealment (Dec_gain,
// d_gain_pitch, d_gain_code, ec_gain_*), code-gain averaging, phase
// dispersion and excitation control; then the synthesis with the overflow
// rescaling of the excitation memory.
#include "gsmamr/dec_codebook.h"
#include "gsmamr/dec_gain.h"
#include "gsmamr/dec_state.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

bool low_rate(int16_t m) { return m == MR475 || m == MR515 || m == MR59; }

// Cb_gain_average: code gain smoothed in stationary background noise.
int16_t cb_gain_average(DecState& s, int16_t m, int16_t gain_code, const int16_t* lsf) {
  int16_t mix = gain_code;
  for (int i = 0; i < 6; ++i) s.cbGainHistory[i] = s.cbGainHistory[i + 1];
  s.cbGainHistory[6] = gain_code;
  int16_t diff = 0;
  for (int i = 0; i < kM; ++i) {
    int16_t t1 = bop::abs_s(bop::sub(s.lsp_meanSave[i], lsf[i]));
    int16_t s1 = bop::sub(bop::norm_s(t1), 1);
    t1 = bop::shl(t1, s1);
    const int16_t s2 = bop::norm_s(s.lsp_meanSave[i]);
    const int16_t t2 = bop::shl(s.lsp_meanSave[i], s2);
    int16_t t = bop::div_s(t1, t2);
    s1 = bop::sub(bop::add(2, s1), s2);
    t = s1 >= 0 ? bop::shr(t, s1) : bop::shl(t, bop::negate(s1));
    diff = i == 0 ? t : bop::add(diff, t);
  }
  if (bop::sub(diff, 5325) > 0)
    s.hangVar = bop::add(s.hangVar, 1);
  else
    s.hangVar = 0;
  if (bop::sub(s.hangVar, 10) > 0) s.hangCount = 0;
  if (m <= MR67 || m == MR102) {
    const bool errors = (s.pdfi != 0 && s.prev_pdf != 0) || s.bfi != 0 || s.prev_bf != 0;
    const int16_t tmp_diff = (errors && bop::sub(s.voicedHangover, 1) > 0 && s.inBackgroundNoise != 0 && low_rate(m))
                                 ? bop::sub(diff, 4506)
                                 : bop::sub(diff, 3277);
    const int16_t t1 = tmp_diff > 0 ? tmp_diff : int16_t(0);
    int16_t bgMix = bop::sub(2048, t1) < 0 ? int16_t(8192) : bop::shl(t1, 2);
    if (bop::sub(s.hangCount, 40) < 0 || bop::sub(diff, 5325) > 0) bgMix = 8192;
    int32_t L = bop::L_mult(6554, s.cbGainHistory[2]);
    for (int i = 3; i < 7; ++i) L = bop::L_mac(L, 6554, s.cbGainHistory[i]);
    int16_t mean = bop::round(L);
    if ((s.bfi != 0 || s.prev_bf != 0) && s.inBackgroundNoise != 0 && low_rate(m)) {
      L = bop::L_mult(4681, s.cbGainHistory[0]);
      for (int i = 1; i < 7; ++i) L = bop::L_mac(L, 4681, s.cbGainHistory[i]);
      mean = bop::round(L);
    }
    L = bop::L_mult(bgMix, mix);
    L = bop::L_mac(L, 8192, mean);
    L = bop::L_msu(L, bgMix, mean);
    mix = bop::round(bop::L_shl(L, 2));
  }
  s.hangCount = bop::add(s.hangCount, 1);
  return mix;
}

// ph_disp: adaptive phase dispersion of the innovation, then the total
// excitation x = pitch_fac * x + cbGain * inno.
void ph_disp(DecState& s, int16_t m, int16_t* x, int16_t cbGain, int16_t ltpGain, int16_t* inno, int16_t pitch_fac,
             int16_t tmp_shift) {
  for (int i = 4; i > 0; --i) s.gainMem[i] = s.gainMem[i - 1];
  s.gainMem[0] = ltpGain;
  int16_t impNr = bop::sub(ltpGain, 14746) < 0 ? (bop::sub(ltpGain, 9830) > 0 ? int16_t(1) : int16_t(0)) : int16_t(2);
  const int16_t t1 = bop::round(bop::L_shl(bop::L_mult(s.prevCbGain, 16384), 2));
  if (bop::sub(cbGain, t1) > 0)
    s.onset = 2;
  else if (s.onset > 0)
    s.onset = bop::sub(s.onset, 1);
  if (s.onset == 0) {
    int16_t i1 = 0;
    for (int16_t g : s.gainMem)
      if (bop::sub(g, 9830) < 0) i1 = bop::add(i1, 1);
    if (bop::sub(i1, 2) > 0) impNr = 0;
  }
  if (bop::sub(impNr, bop::add(s.prevState, 1)) > 0 && s.onset == 0) impNr = bop::sub(impNr, 1);
  if (bop::sub(impNr, 2) < 0 && s.onset > 0) impNr = bop::add(impNr, 1);
  if (bop::sub(cbGain, 10) < 0) impNr = 2;
  if (bop::sub(s.lockFull, 1) == 0) impNr = 0;
  s.prevState = impNr;
  s.prevCbGain = cbGain;
  if (m != MR122 && m != MR102 && m != MR74 && bop::sub(impNr, 2) < 0) {
    int16_t sav[kSubfr];
    int16_t poss[kSubfr];
    int nze = 0;
    for (int i = 0; i < kSubfr; ++i) {
      if (inno[i] != 0) poss[nze++] = static_cast<int16_t>(i);
      sav[i] = inno[i];
      inno[i] = 0;
    }
    const int16_t* h = m == MR795 ? (impNr == 0 ? gsmamr::kPhImpLowMr795 : gsmamr::kPhImpMidMr795)
                                  : (impNr == 0 ? gsmamr::kPhImpLow : gsmamr::kPhImpMid);
    for (int k = 0; k < nze; ++k) {
      const int p = poss[k];
      int j = 0;
      for (int i = p; i < kSubfr; ++i) inno[i] = bop::add(inno[i], bop::mult(sav[p], h[j++]));
      for (int i = 0; i < p; ++i) inno[i] = bop::add(inno[i], bop::mult(sav[p], h[j++]));
    }
  }
  for (int i = 0; i < kSubfr; ++i) {
    int32_t L = bop::L_mult(x[i], pitch_fac);
    L = bop::L_mac(L, inno[i], cbGain);
    x[i] = bop::round(bop::L_shl(L, tmp_shift));
  }
}

// Ex_ctrl: limits energy rises of the excitation after errors in noise.
void ex_ctrl(int16_t* exc, int16_t excEnergy, const int16_t* hist, int16_t voicedHangover, int16_t prevBFI,
             bool careful) {
  int16_t avg = gmed_n(hist, 9);
  int16_t prev = bop::shr(bop::add(hist[7], hist[8]), 1);
  if (bop::sub(hist[8], prev) < 0) prev = hist[8];
  if (bop::sub(excEnergy, avg) < 0 && bop::sub(excEnergy, 5) > 0) {
    int16_t test = bop::shl(prev, 2);
    if (bop::sub(voicedHangover, 7) < 0 || prevBFI != 0) test = bop::sub(test, prev);
    if (bop::sub(avg, test) > 0) avg = test;
    const int16_t e = bop::norm_s(excEnergy);
    const int16_t d = bop::div_s(16383, bop::shl(excEnergy, e));
    int32_t t = bop::L_shr(bop::L_mult(avg, d), bop::sub(20, e));
    if (bop::L_sub(t, 32767) > 0) t = 32767;
    int16_t scale = bop::extract_l(t);
    if (careful && bop::sub(scale, 3072) > 0) scale = 3072;
    for (int i = 0; i < kSubfr; ++i) exc[i] = bop::extract_l(bop::L_shr(bop::L_mult(scale, exc[i]), 11));
  }
}

// Int_lsf: LSF vector of subframe sf between the previous and this frame's.
void int_lsf(const int16_t* old, const int16_t* cur, int sf, int16_t* out) {
  for (int i = 0; i < kM; ++i) {
    switch (sf) {
      case 0:
        out[i] = bop::add(bop::sub(old[i], bop::shr(old[i], 2)), bop::shr(cur[i], 2));
        break;
      case 1:
        out[i] = bop::add(bop::shr(old[i], 1), bop::shr(cur[i], 1));
        break;
      case 2:
        out[i] = bop::add(bop::shr(old[i], 2), bop::sub(cur[i], bop::shr(cur[i], 2)));
        break;
      default:
        out[i] = cur[i];
        break;
    }
  }
}

void decode_subframe(DecState& s, int16_t m, const int16_t* prm, int sf, int16_t* out) {
  const int16_t* p = prm + subframe_prm_offset(m, sf);
  int16_t* exc = s.old_exc + kExcHist;
  const bool bfi = s.bfi != 0;
  const bool even = (sf & 1) == 0;
  // lag
  const bool relative = !(sf == 0 || (sf == 2 && m != MR475 && m != MR515));
  const int16_t index = *p++;
  int16_t T0 = 0, T0_frac = 0;
  if (m != MR122) {
    const bool flag4 = m == MR475 || m == MR515 || m == MR59 || m == MR67;
    const int16_t low = m == MR795 ? 10 : 5, range = m == MR795 ? 19 : 9;
    int16_t t0_min = bop::sub(s.old_T0, low);
    if (bop::sub(t0_min, 20) < 0) t0_min = 20;
    int16_t t0_max = bop::add(t0_min, range);
    if (bop::sub(t0_max, kPitMax) > 0) {
      t0_max = kPitMax;
      t0_min = bop::sub(t0_max, range);
    }
    dec_lag3(index, t0_min, t0_max, relative, s.old_T0, T0, T0_frac, flag4);
    s.T0_lagBuff = T0;
    if (bfi) {
      if (bop::sub(s.old_T0, kPitMax) < 0) s.old_T0 = bop::add(s.old_T0, 1);
      T0 = s.old_T0;
      T0_frac = 0;
      if (s.inBackgroundNoise != 0 && bop::sub(s.voicedHangover, 4) > 0 && low_rate(m)) T0 = s.T0_lagBuff;
    }
  } else {
    T0 = s.old_T0;
    dec_lag6(index, relative, T0, T0_frac);
    if (!(!bfi && (!relative || bop::sub(index, 61) < 0))) {
      s.T0_lagBuff = T0;
      T0 = s.old_T0;
      T0_frac = 0;
    }
  }
  // Parameters wider than their bit fields could give lags outside the
  // buffer's reach; every lag of valid parameters lies in 15..144 (144 - 1/3
  // and 144 + 1/3 from relative indices at the top of the range).
  if (T0 < 10 || T0 > kPitMax + 1) T0 = T0 < 10 ? int16_t(10) : int16_t(kPitMax + 1);
  if (T0_frac < -3 || T0_frac > 3) T0_frac = 0;  // only from parameters wider than their fields
  pred_lt_3or6(exc, T0, T0_frac, kSubfr, m != MR122);
  // codebook (and the 12.2 pitch gain)
  int16_t code[kSubfr];
  int16_t gain_pit = 0, gain_code = 0, pit_sharp;
  if (m == MR122) {
    const int16_t gidx = *p++;
    gain_pit = bfi ? ec_gain_pitch(s) : static_cast<int16_t>(gsmamr::kQuaGainPitch[gidx & 15] & 0xFFFC);
    ec_gain_pitch_update(s, &gain_pit);
    decode_codebook(m, sf, p, code);
    p += 10;
    pit_sharp = bop::shl(gain_pit, 1);
  } else {
    decode_codebook(m, sf, p, code);
    p += m == MR102 ? 7 : 2;
    pit_sharp = bop::shl(s.sharp, 1);
  }
  for (int i = T0; i < kSubfr; ++i) code[i] = bop::add(code[i], bop::mult(code[i - T0], pit_sharp));
  // gains
  if (m == MR122) {
    const int16_t gidx = *p++;
    gain_code = bfi ? ec_gain_code(s) : d_gain_code(s, m, gidx, code);
    ec_gain_code_update(s, &gain_code);
    pit_sharp = gain_pit;
  } else if (m == MR795) {
    const int16_t pidx = *p++;
    gain_pit = bfi ? ec_gain_pitch(s) : gsmamr::kQuaGainPitch[pidx & 15];
    ec_gain_pitch_update(s, &gain_pit);
    const int16_t cidx = *p++;
    gain_code = bfi ? ec_gain_code(s) : d_gain_code(s, m, cidx, code);
    ec_gain_code_update(s, &gain_code);
    pit_sharp = gain_pit > 13017 ? int16_t(13017) : gain_pit;
  } else {
    int16_t gidx;
    if (m == MR475) {
      if (even) s.index_mr475 = *p;
      gidx = s.index_mr475;
    } else {
      gidx = *p;
    }
    if (!bfi) {
      dec_gain(s, m, gidx, code, even, gain_pit, gain_code);
    } else {
      gain_pit = ec_gain_pitch(s);
      gain_code = ec_gain_code(s);
    }
    ec_gain_pitch_update(s, &gain_pit);
    ec_gain_code_update(s, &gain_code);
    pit_sharp = gain_pit > 13017 ? int16_t(13017) : gain_pit;
    if (m == MR102 && bop::sub(s.old_T0, 45) > 0) pit_sharp = bop::shr(pit_sharp, 2);
  }
  if (m != MR475 || !even) s.sharp = gain_pit > 13017 ? int16_t(13017) : gain_pit;
  pit_sharp = bop::shl(pit_sharp, 1);
  int16_t excp[kSubfr];
  const bool enhance = bop::sub(pit_sharp, 16384) > 0;
  if (enhance)
    for (int i = 0; i < kSubfr; ++i) {
      int32_t L = bop::L_mult(bop::mult(exc[i], pit_sharp), gain_pit);
      if (m == MR122) L = bop::L_shr(L, 1);
      excp[i] = bop::round(L);
    }
  if (!bfi) {
    for (int i = 0; i < 8; ++i) s.ltpGainHistory[i] = s.ltpGainHistory[i + 1];
    s.ltpGainHistory[8] = gain_pit;
  }
  if ((s.prev_bf != 0 || bfi) && s.inBackgroundNoise != 0 && low_rate(m)) {
    if (bop::sub(gain_pit, 12288) > 0) gain_pit = bop::add(bop::shr(bop::sub(gain_pit, 12288), 1), 12288);
    if (bop::sub(gain_pit, 14745) > 0) gain_pit = 14745;
  }
  int16_t lsf_i[kM];
  int_lsf(s.prev_lsf, s.past_lsf_q, sf, lsf_i);
  int16_t gain_code_mix = cb_gain_average(s, m, gain_code, lsf_i);
  if (m > MR67 && m != MR102) gain_code_mix = gain_code;
  const int16_t pitch_fac = m <= MR102 ? gain_pit : bop::shr(gain_pit, 1);
  const int16_t tmp_shift = m <= MR102 ? 1 : 2;
  int16_t* ee = s.exc_enhanced;
  for (int i = 0; i < kSubfr; ++i) {
    ee[i] = exc[i];
    int32_t L = bop::L_mult(exc[i], pitch_fac);
    L = bop::L_mac(L, code[i], gain_code);
    exc[i] = bop::round(bop::L_shl(L, tmp_shift));
  }
  s.lockFull = 0;
  if (low_rate(m) && bop::sub(s.voicedHangover, 3) > 0 && s.inBackgroundNoise != 0 && bfi) s.lockFull = 1;
  ph_disp(s, m, ee, gain_code_mix, gain_pit, code, pitch_fac, tmp_shift);
  int32_t L = 0;
  for (int i = 0; i < kSubfr; ++i) L = bop::L_mac(L, ee[i], ee[i]);
  L = bop::L_shr(L, 1);
  int16_t e;
  L = sqrt_l_exp(L, e);
  L = bop::L_shr(L, bop::add(bop::shr(e, 1), 15));
  const int16_t excEnergy = bop::extract_l(bop::L_shr(L, 2));
  if (low_rate(m) && bop::sub(s.voicedHangover, 5) > 0 && s.inBackgroundNoise != 0 && bop::sub(s.state, 4) < 0 &&
      ((s.pdfi != 0 && s.prev_pdf != 0) || bfi || s.prev_bf != 0))
    ex_ctrl(ee, excEnergy, s.excEnergyHist, s.voicedHangover, s.prev_bf, s.pdfi != 0 && !bfi);
  if (!(s.inBackgroundNoise != 0 && (bfi || s.prev_bf != 0) && bop::sub(s.state, 4) < 0)) {
    for (int i = 0; i < 8; ++i) s.excEnergyHist[i] = s.excEnergyHist[i + 1];
    s.excEnergyHist[8] = excEnergy;
  }
  if (enhance) {
    for (int i = 0; i < kSubfr; ++i) excp[i] = bop::add(excp[i], ee[i]);
    agc2(ee, excp, kSubfr);
    for (int i = 0; i < kSubfr; ++i) out[i] = excp[i];
  } else {
    for (int i = 0; i < kSubfr; ++i) out[i] = ee[i];
  }
  s.old_T0 = T0;
}

}  // namespace
}  // namespace amr

VspStatus legacy90vspsDecodeExcitation_GSMAMR_16s(const Vsp16s* pSrcPrm, Vsp8u* pState, Vsp16s* pDstExc, int subfr,
                                                  int mode) {
  using namespace amr;
  if (pSrcPrm == nullptr || pState == nullptr || pDstExc == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if (subfr < 0 || subfr > 3 || m < 0 || m == MRDTX) return vspStsRangeErr;
  DecState s;
  load_state(pState, s);
  sanitize(s);
  int16_t out[kSubfr];
  decode_subframe(s, m, pSrcPrm, subfr, out);
  for (int i = 0; i < kSubfr; ++i) pDstExc[i] = out[i];
  store_state(s, pState);
  return vspStsNoErr;
}

VspStatus legacy90vspsDecoderSynthesis_GSMAMR_16s(const Vsp16s* pSrcLpc, const Vsp16s* pSrcExc, Vsp8u* pState,
                                                  Vsp16s* pDstSynth) {
  using namespace amr;
  if (pSrcLpc == nullptr || pSrcExc == nullptr || pState == nullptr || pDstSynth == nullptr) return vspStsNullPtrErr;
  DecState s;
  load_state(pState, s);
  int16_t syn[kSubfr];
  if (syn_filt(pSrcLpc, pSrcExc, syn, kSubfr, s.mem_syn, false)) {
    // Overflow: the excitation memory and this subframe's excitation / 4,
    // synthesis again from the (unenhanced) excitation.
    for (auto& v : s.old_exc) v = bop::shr(v, 2);
    for (auto& v : s.exc_enhanced) v = bop::shr(v, 2);
    syn_filt(pSrcLpc, s.exc_enhanced, syn, kSubfr, s.mem_syn, true);
  } else {
    for (int i = 0; i < kM; ++i) s.mem_syn[i] = syn[kSubfr - kM + i];
  }
  for (int i = 0; i < kExcHist; ++i) s.old_exc[i] = s.old_exc[i + kSubfr];
  for (int i = 0; i < kSubfr; ++i) pDstSynth[i] = syn[i];
  store_state(s, pState);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
