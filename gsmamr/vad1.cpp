// GSM-AMR VAD option 1 (TS 26.073 vad1): frame power, the 9-band filter
// bank and its levels, the SNR decision with the adaptive threshold, the
// complex-signal detector, the background-noise estimate and the hangover.
#include "core/basic_ops.h"
#include "gsmamr/vad1_state.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

constexpr int kLookahead = 40;
constexpr int16_t kCoeff3 = 13363, kCoeff5_1 = 21955, kCoeff5_2 = 6390;  // filter bank (Q15)
constexpr int16_t kNoiseMin = 40, kNoiseMax = 16000, kNoiseInit = 150;
constexpr int16_t kMinCorr = 13106;                       // 0.4 (Q15), complex-signal floor
constexpr int16_t kAdaptHigh = 19660, kAdaptLow = 16383;  // complex-signal thresholds (Q15)
constexpr int16_t kStatCount = 20;

// Filter-bank stages, in place on the band samples.
void filter5(int16_t& x0, int16_t& x1, int16_t* d) {
  const int16_t t0 = bop::sub(x0, bop::mult(kCoeff5_1, d[0]));
  const int16_t t1 = bop::add(d[0], bop::mult(kCoeff5_1, t0));
  d[0] = t0;
  const int16_t t3 = bop::sub(x1, bop::mult(kCoeff5_2, d[1]));
  const int16_t t2 = bop::add(d[1], bop::mult(kCoeff5_2, t3));
  d[1] = t3;
  x0 = bop::shr(bop::add(t1, t2), 1);
  x1 = bop::shr(bop::sub(t1, t2), 1);
}

void filter3(int16_t& x0, int16_t& x1, int16_t& d) {
  const int16_t t1 = bop::sub(x1, bop::mult(kCoeff3, d));
  const int16_t t2 = bop::add(d, bop::mult(kCoeff3, t1));
  d = t1;
  x1 = bop::shr(bop::sub(x0, t2), 1);
  x0 = bop::shr(bop::add(x0, t2), 1);
}

void first_stage(const int16_t* in, int16_t* out, int16_t* d) {
  int16_t d0 = d[0], d1 = d[1];
  for (int i = 0; i < 40; ++i) {
    const int16_t t0 = bop::sub(bop::shr(in[4 * i], 2), bop::mult(kCoeff5_1, d0));
    int16_t t1 = bop::add(d0, bop::mult(kCoeff5_1, t0));
    const int16_t t3 = bop::sub(bop::shr(in[4 * i + 1], 2), bop::mult(kCoeff5_2, d1));
    int16_t t2 = bop::add(d1, bop::mult(kCoeff5_2, t3));
    out[4 * i] = bop::add(t1, t2);
    out[4 * i + 1] = bop::sub(t1, t2);
    d0 = bop::sub(bop::shr(in[4 * i + 2], 2), bop::mult(kCoeff5_1, t0));
    t1 = bop::add(t0, bop::mult(kCoeff5_1, d0));
    d1 = bop::sub(bop::shr(in[4 * i + 3], 2), bop::mult(kCoeff5_2, t3));
    t2 = bop::add(t3, bop::mult(kCoeff5_2, d1));
    out[4 * i + 2] = bop::add(t1, t2);
    out[4 * i + 3] = bop::sub(t1, t2);
  }
  d[0] = d0;
  d[1] = d1;
}

// Level of one band: samples data[m*i + a]; the samples from c1 on are the
// tail carried into the next frame's level.
int16_t level_calc(const int16_t* data, int16_t& sub_level, int c1, int c2, int m, int a, int16_t scale) {
  int32_t l1 = 0;
  for (int i = c1; i < c2; ++i) l1 = bop::L_mac(l1, 1, bop::abs_s(data[m * i + a]));
  int32_t l2 = bop::L_add(l1, bop::L_shl(sub_level, bop::sub(16, scale)));
  sub_level = bop::extract_h(bop::L_shl(l1, scale));
  for (int i = 0; i < c1; ++i) l2 = bop::L_mac(l2, 1, bop::abs_s(data[m * i + a]));
  return bop::extract_h(bop::L_shl(l2, scale));
}

void filter_bank(Vad1State& s, const int16_t* in, int16_t* level) {
  int16_t t[160];
  first_stage(in, t, s.a_data5[0]);
  for (int i = 0; i < 40; ++i) {
    filter5(t[4 * i], t[4 * i + 2], s.a_data5[1]);
    filter5(t[4 * i + 1], t[4 * i + 3], s.a_data5[2]);
  }
  for (int i = 0; i < 20; ++i) {
    filter3(t[8 * i], t[8 * i + 4], s.a_data3[0]);
    filter3(t[8 * i + 2], t[8 * i + 6], s.a_data3[1]);
    filter3(t[8 * i + 3], t[8 * i + 7], s.a_data3[4]);
  }
  for (int i = 0; i < 10; ++i) {
    filter3(t[16 * i], t[16 * i + 8], s.a_data3[2]);
    filter3(t[16 * i + 4], t[16 * i + 12], s.a_data3[3]);
  }
  int16_t* sl = s.sub_level;
  level[8] = level_calc(t, sl[8], 32, 40, 4, 1, 15);
  level[7] = level_calc(t, sl[7], 16, 20, 8, 7, 16);
  level[6] = level_calc(t, sl[6], 16, 20, 8, 3, 16);
  level[5] = level_calc(t, sl[5], 16, 20, 8, 2, 16);
  level[4] = level_calc(t, sl[4], 16, 20, 8, 6, 16);
  level[3] = level_calc(t, sl[3], 8, 10, 16, 4, 16);
  level[2] = level_calc(t, sl[2], 8, 10, 16, 12, 16);
  level[1] = level_calc(t, sl[1], 8, 10, 16, 8, 16);
  level[0] = level_calc(t, sl[0], 8, 10, 16, 0, 16);
}

void complex_estimate_adapt(Vad1State& s, bool low_power) {
  int16_t alpha;
  if (bop::sub(s.best_corr_hp, s.corr_hp_fast) < 0)
    alpha = bop::sub(s.corr_hp_fast, kAdaptHigh) < 0 ? 2621 : 6553;  // fast / really fast
  else
    alpha = bop::sub(s.corr_hp_fast, kAdaptHigh) < 0 ? 2621 : 655;  // fast / slow
  int32_t L = bop::L_deposit_h(s.corr_hp_fast);
  L = bop::L_msu(L, alpha, s.corr_hp_fast);
  L = bop::L_mac(L, alpha, s.best_corr_hp);
  s.corr_hp_fast = bop::round(L);
  if (bop::sub(s.corr_hp_fast, kMinCorr) < 0) s.corr_hp_fast = kMinCorr;
  if (low_power) s.corr_hp_fast = kMinCorr;
}

int16_t complex_vad(Vad1State& s, bool low_power) {
  s.complex_high = bop::shr(s.complex_high, 1);
  s.complex_low = bop::shr(s.complex_low, 1);
  if (!low_power) {
    if (bop::sub(s.corr_hp_fast, kAdaptHigh) > 0) s.complex_high |= 0x4000;
    if (bop::sub(s.corr_hp_fast, kAdaptLow) > 0) s.complex_low |= 0x4000;
  }
  s.complex_hang_timer = bop::sub(s.corr_hp_fast, 22936) > 0 ? bop::add(s.complex_hang_timer, 1) : int16_t(0);
  return ((s.complex_high & 0x7F80) == 0x7F80 || (s.complex_low & 0x7FFF) == 0x7FFF) ? 1 : 0;
}

// Stationarity counter and the averaged levels.
void update_cntrl(Vad1State& s, const int16_t* level) {
  if (s.complex_warning != 0 && bop::sub(s.stat_count, 5) < 0) s.stat_count = 5;
  if ((s.pitch & 0x6000) == 0x6000 || (s.tone & 0x7C00) == 0x7C00) {
    s.stat_count = kStatCount;
  } else if ((s.vadreg & 0x7F80) == 0) {
    s.stat_count = kStatCount;
  } else {
    int16_t stat_rat = 0;
    for (int i = 0; i < kVad1Bands; ++i) {
      int16_t num = level[i], denom = s.ave_level[i];
      if (bop::sub(level[i], s.ave_level[i]) <= 0) {
        num = s.ave_level[i];
        denom = level[i];
      }
      if (bop::sub(num, 184) < 0) num = 184;
      if (bop::sub(denom, 184) < 0) denom = 184;
      const int16_t e = bop::norm_s(denom);
      denom = bop::shl(denom, e);
      stat_rat = bop::add(stat_rat, bop::shr(bop::div_s(bop::shr(num, 1), denom), bop::sub(8, e)));
    }
    if (bop::sub(stat_rat, 1000) > 0)
      s.stat_count = kStatCount;
    else if ((s.vadreg & 0x4000) != 0 && s.stat_count != 0)
      s.stat_count = bop::sub(s.stat_count, 1);
  }
  int16_t alpha = 3276;
  if (s.stat_count == kStatCount)
    alpha = 32767;
  else if ((s.vadreg & 0x4000) == 0)
    alpha = 16383;
  for (int i = 0; i < kVad1Bands; ++i)
    s.ave_level[i] = bop::add(s.ave_level[i], bop::mult_r(alpha, bop::sub(level[i], s.ave_level[i])));
}

// Background estimate from the previous frame's levels; then old_level = level.
void noise_estimate_update(Vad1State& s, const int16_t* level) {
  update_cntrl(s, level);
  int16_t add = 2, up, down;
  if ((s.vadreg & 0x7800) == 0 && (s.pitch & 0x7800) == 0 && s.complex_hang_count == 0) {
    up = 1638;
    down = 2097;
  } else if (s.stat_count == 0 && s.complex_hang_count == 0) {
    up = 491;
    down = 1867;
  } else {
    up = 0;
    down = 1638;
    add = 0;
  }
  for (int i = 0; i < kVad1Bands; ++i) {
    const int16_t t = bop::sub(s.old_level[i], s.bckr_est[i]);
    if (t < 0) {
      s.bckr_est[i] = bop::add(-2, bop::add(s.bckr_est[i], bop::mult_r(down, t)));
      if (bop::sub(s.bckr_est[i], kNoiseMin) < 0) s.bckr_est[i] = kNoiseMin;
    } else {
      s.bckr_est[i] = bop::add(add, bop::add(s.bckr_est[i], bop::mult_r(up, t)));
      if (bop::sub(s.bckr_est[i], kNoiseMax) > 0) s.bckr_est[i] = kNoiseMax;
    }
  }
  for (int i = 0; i < kVad1Bands; ++i) s.old_level[i] = level[i];
}

int16_t hangover_addition(Vad1State& s, int16_t noise_level, bool low_power) {
  const bool high_noise = bop::sub(noise_level, 100) > 0;
  const int16_t burst_len = high_noise ? 4 : 5, hang_len = high_noise ? 7 : 4;
  if (low_power) {
    s.burst_count = s.hang_count = s.complex_hang_count = s.complex_hang_timer = 0;
    return 0;
  }
  if (bop::sub(s.complex_hang_timer, 100) > 0 && bop::sub(s.complex_hang_count, 250) < 0) s.complex_hang_count = 250;
  if (s.complex_hang_count != 0) {
    s.burst_count = 4;
    s.complex_hang_count = bop::sub(s.complex_hang_count, 1);
    return 1;
  }
  if ((s.vadreg & 0x3FF0) == 0 && bop::sub(s.corr_hp_fast, 21298) > 0) return 1;
  if ((s.vadreg & 0x4000) != 0) {
    s.burst_count = bop::add(s.burst_count, 1);
    if (bop::sub(s.burst_count, burst_len) >= 0) s.hang_count = hang_len;
    return 1;
  }
  s.burst_count = 0;
  if (s.hang_count > 0) {
    s.hang_count = bop::sub(s.hang_count, 1);
    return 1;
  }
  return 0;
}

int16_t vad_decision(Vad1State& s, const int16_t* level, int32_t pow_sum) {
  int32_t L = 0;
  for (int i = 0; i < kVad1Bands; ++i) {
    const int16_t e = bop::norm_s(s.bckr_est[i]);
    int16_t t = bop::div_s(bop::shr(level[i], 1), bop::shl(s.bckr_est[i], e));
    t = bop::shl(t, bop::sub(e, 5));
    L = bop::L_mac(L, t, t);
  }
  s.snr_sum = bop::mult(bop::extract_h(bop::L_shl(L, 6)), 3641);
  L = 0;
  for (int i = 0; i < kVad1Bands; ++i) L = bop::L_add(L, s.bckr_est[i]);
  s.noise_level = bop::extract_h(bop::L_shl(L, 13));
  s.vad_thr = bop::add(bop::mult(-2808, s.noise_level), 1260);
  if (bop::sub(s.vad_thr, 720) < 0) s.vad_thr = 720;
  s.vadreg = bop::shr(s.vadreg, 1);
  if (bop::sub(s.snr_sum, s.vad_thr) > 0) s.vadreg |= 0x4000;
  const bool low_power = bop::L_sub(pow_sum, 15000) < 0;
  complex_estimate_adapt(s, low_power);
  s.complex_warning = complex_vad(s, low_power);
  noise_estimate_update(s, level);
  s.speech_vad_decision = hangover_addition(s, s.noise_level, low_power);
  return s.speech_vad_decision;
}

}  // namespace

void vad1_reset(Vad1State& s) {
  s = Vad1State{};
  for (int i = 0; i < kVad1Bands; ++i) s.bckr_est[i] = s.old_level[i] = s.ave_level[i] = kNoiseInit;
  s.best_corr_hp = s.corr_hp_fast = kMinCorr;
}

}  // namespace amr

VspStatus legacy90vspsVAD1StateSize_GSMAMR(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(amr::Vad1State));
  return vspStsNoErr;
}

VspStatus legacy90vspsVAD1Init_GSMAMR(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  amr::Vad1State s;
  amr::vad1_reset(s);
  amr::store_state(s, pState);
  return vspStsNoErr;
}

VspStatus legacy90vspsVAD1_GSMAMR_16s(const Vsp16s* pSrc, Vsp8u* pState, int* pDstVad) {
  using namespace amr;
  if (pSrc == nullptr || pState == nullptr || pDstVad == nullptr) return vspStsNullPtrErr;
  Vad1State s;
  load_state(pState, s);
  s.pow_sum = 0;
  for (int i = 0; i < 160; ++i) s.pow_sum = bop::L_mac(s.pow_sum, pSrc[i], pSrc[i]);
  if (bop::L_sub(s.pow_sum, 343040) < 0) s.pitch &= 0x3FFF;
  if (bop::L_sub(s.pow_sum, 15000) < 0) s.complex_low &= 0x3FFF;
  int16_t level[kVad1Bands];
  filter_bank(s, pSrc + kLookahead, level);
  const int16_t vad = vad_decision(s, level, s.pow_sum);
  store_state(s, pState);
  *pDstVad = vad;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
