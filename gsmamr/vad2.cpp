// GSM-AMR VAD option 2 (TS 26.073 vad2) per half frame: block
// normalisation, pre-emphasis, real FFT, 16 channel energies, voice metric,
// SNR estimate, decision with hangover, long-term spectrum and noise update;
// and its state block.
#include "core/basic_ops.h"
#include "core/dpf.h"
#include "gsmamr/amr_ops.h"
#include "gsmamr/vad2_fft.h"
#include "gsmamr/vad2_state.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

constexpr int kCh = kVad2Channels;
constexpr int kHalf = 80;
// Per shift state (0: energies scaled 22.9 dB, 1: 27.4 dB).
constexpr int32_t kNoiseFloorChan[2] = {512, 16};
constexpr int32_t kMinChanEnrg[2] = {32, 1};
constexpr int32_t kIneNoise[2] = {8192, 256};
constexpr int16_t kFbits[2] = {9, 4};
constexpr int16_t kStateChangeShiftR[2] = {-5, 5};
constexpr int16_t kEnrgNormShift[2] = {10, 5};
constexpr int32_t kIneNoise0 = 8192, kMinNoiseEnrg0 = 32;

int32_t mpy_32_16(int32_t L, int16_t n) { return dpf::Mpy_32_16(dpf::L_Extract(L), n); }

// 10 log10(L / 2^fbits) in Q8.
int16_t fn10log10(int32_t L, int16_t fbits) {
  int16_t e = 0, f = 0;
  log2(L, e, f);
  e = bop::sub(e, fbits);
  return bop::extract_l(bop::L_shr_r(dpf::Mpy_32_16(e, f, 24660), 6));
}

// Scales the 80 samples to 2 bits of headroom; returns the shift.
int16_t block_norm(const int16_t* in, int16_t* out) {
  int16_t max = 0;
  for (int i = 0; i < kHalf; ++i) {
    const int16_t a = bop::abs_s(in[i]);
    if (a > max) max = a;
  }
  if (max == 0) {
    for (int i = 0; i < kHalf; ++i) out[i] = 0;
    return 14;
  }
  const int16_t s = bop::sub(bop::norm_s(max), 2);
  for (int i = 0; i < kHalf; ++i) out[i] = bop::shl(in[i], s);
  return s;
}

// Channel energies of the half frame; returns the peak-to-average flag and
// the total energy.
bool channel_energies(Vad2State& s, const int16_t* in, int32_t& Ltce) {
  int16_t buf[kHalf], data[128];
  const int16_t nb = block_norm(in, buf);
  for (int i = 0; i < 24; ++i) data[i] = 0;
  s.pre_emp_mem = bop::shr_r(s.pre_emp_mem, bop::sub(s.last_normb_shift, nb));
  s.last_normb_shift = nb;
  data[24] = bop::add(buf[0], bop::mult(-26214, s.pre_emp_mem));
  for (int j = 1; j < kHalf; ++j) data[24 + j] = bop::add(buf[j], bop::mult(-26214, buf[j - 1]));
  s.pre_emp_mem = buf[kHalf - 1];
  for (int i = 104; i < 128; ++i) data[i] = 0;
  vad2_r_fft(data);

  bool change = false;
  if (s.shift_state == 0 && nb <= 0) {
    change = true;
    s.shift_state = 1;
  } else if (s.shift_state == 1 && nb >= 3) {
    change = true;
    s.shift_state = 0;
  }
  const int ss = s.shift_state;
  if (change)
    for (int i = 0; i < kCh; ++i) s.Lch_enrg[i] = bop::L_shr(s.Lch_enrg[i], kStateChangeShiftR[ss]);
  const bool first = s.Lframe_cnt == 1;
  const int16_t alpha = first ? int16_t(32767) : int16_t(18022), beta = first ? int16_t(0) : int16_t(14746);
  for (int ch = 0; ch < kCh; ++ch) {
    int32_t E = 0;
    for (int j = gsmamr::kVad2ChTbl[2 * ch]; j <= gsmamr::kVad2ChTbl[2 * ch + 1]; ++j) {
      E = bop::L_mac(E, data[2 * j], data[2 * j]);
      E = bop::L_mac(E, data[2 * j + 1], data[2 * j + 1]);
    }
    E = bop::L_shr_r(E, bop::sub(bop::shl(nb, 1), kEnrgNormShift[ss]));
    const int16_t t = bop::mult(alpha, gsmamr::kVad2ChTblSh[ch]);
    s.Lch_enrg[ch] = bop::L_add(mpy_32_16(E, t), mpy_32_16(s.Lch_enrg[ch], beta));
    if (bop::L_sub(s.Lch_enrg[ch], kMinChanEnrg[ss]) < 0) s.Lch_enrg[ch] = kMinChanEnrg[ss];
  }
  Ltce = 0;
  for (int ch = 0; ch < kCh; ++ch) Ltce = bop::L_add(Ltce, s.Lch_enrg[ch]);
  int32_t Lpeak = 0;
  for (int ch = 2; ch < kCh; ++ch)
    if (bop::L_sub(s.Lch_enrg[ch], Lpeak) > 0) Lpeak = s.Lch_enrg[ch];
  const bool p2a = bop::L_sub(Lpeak, mpy_32_16(Ltce, 20480)) > 0;
  if (s.Lframe_cnt <= 4) {
    for (int ch = 0; ch < kCh; ++ch) {
      if (p2a || bop::L_sub(s.Lch_enrg[ch], kIneNoise[ss]) < 0)
        s.Lch_noise[ch] = kIneNoise0;
      else
        s.Lch_noise[ch] = ss == 1 ? bop::L_shr(s.Lch_enrg[ch], -5) : s.Lch_enrg[ch];
    }
  }
  return p2a;
}

// Voice metric, SNR estimate and its class.
int16_t voice_metric(Vad2State& s) {
  const int ss = s.shift_state;
  int16_t vm_sum = 0, ch_snr[kCh];
  for (int ch = 0; ch < kCh; ++ch) {
    s.ch_enrg_db[ch] = fn10log10(s.Lch_enrg[ch], kFbits[ss]);
    ch_snr[ch] = bop::sub(s.ch_enrg_db[ch], fn10log10(s.Lch_noise[ch], 9));
    int16_t q = bop::shr_r(bop::mult(21845, ch_snr[ch]), 6);
    q = q < 0 ? int16_t(0) : (q > 89 ? int16_t(89) : q);
    vm_sum = bop::add(vm_sum, gsmamr::kVad2VmTbl[q]);
  }
  if (s.Lframe_cnt <= 4 || s.fupdate_flag != 0) {
    s.negSNRvar = s.negSNRbias = 0;
    int32_t Ltne = 0;
    for (int ch = 0; ch < kCh; ++ch) Ltne = bop::L_add(Ltne, s.Lch_noise[ch]);
    s.xt = bop::sub(14320, fn10log10(Ltne, 9));
    s.tsnr = s.xt;
  } else {
    int32_t L1 = 0;
    for (int ch = 0; ch < kCh; ++ch) {
      const dpf::Dpf d = dpf::L_Extract(bop::L_shr(bop::L_mult(ch_snr[ch], 10885), 8));
      L1 = bop::L_add(L1, pow2(bop::add(d.hi, 3), d.lo));
    }
    s.xt = fn10log10(L1, 7);
    if (bop::sub(s.xt, s.tsnr) > 0)
      s.tsnr = bop::round(bop::L_add(bop::L_mult(29491, s.tsnr), bop::L_mult(3277, s.xt)));
    else if (bop::sub(s.xt, bop::mult(20480, s.tsnr)) > 0)
      s.tsnr = bop::round(bop::L_add(bop::L_mult(32702, s.tsnr), bop::L_mult(66, s.xt)));
  }
  int16_t q = bop::shr(bop::mult(s.tsnr, 10923), 8);
  s.tsnrq = q < 0 ? int16_t(0) : (q > 19 ? int16_t(19) : q);
  if (s.xt < 0) {
    int16_t t = bop::round(bop::L_shl(bop::L_mult(s.xt, s.xt), 7));
    s.negSNRvar = bop::round(bop::L_add(bop::L_mult(32440, s.negSNRvar), bop::L_mult(328, t)));
    if (bop::sub(s.negSNRvar, 1024) > 0) s.negSNRvar = 1024;
    t = bop::mult_r(bop::shl(bop::sub(s.negSNRvar, 166), 4), 24576);
    s.negSNRbias = t < 0 ? int16_t(0) : bop::shr(t, 8);
  }
  return vm_sum;
}

int16_t decide(Vad2State& s) {
  const int q = s.tsnrq;
  if (bop::sub(s.vm_sum, bop::add(gsmamr::kVad2VmThresholdTable[q], s.negSNRbias)) > 0) {
    s.burstcount = bop::add(s.burstcount, 1);
    if (bop::sub(s.burstcount, gsmamr::kVad2BurstcountTable[q]) > 0) s.hangover = gsmamr::kVad2HangoverTable[q];
    return 1;
  }
  s.burstcount = 0;
  s.hangover = bop::sub(s.hangover, 1);
  if (s.hangover <= 0) {
    s.hangover = 0;
    return 0;
  }
  return 1;
}

void noise_update(Vad2State& s, bool p2a, int32_t Ltce) {
  int16_t dev = 0;
  if (s.Lframe_cnt == 1) {
    for (int ch = 0; ch < kCh; ++ch) s.ch_enrg_long_db[ch] = s.ch_enrg_db[ch];
  } else {
    for (int ch = 0; ch < kCh; ++ch) dev = bop::add(dev, bop::abs_s(bop::sub(s.ch_enrg_long_db[ch], s.ch_enrg_db[ch])));
  }
  const int16_t t = bop::sub(s.tsnr, s.xt);
  int16_t alpha, beta;
  if (t <= 0 || s.tsnr <= 0) {
    alpha = 29491;
    beta = 3277;
  } else if (bop::sub(t, s.tsnr) > 0) {
    alpha = 22938;
    beta = 9830;
  } else {
    alpha = bop::sub(29491, bop::mult(6553, bop::div_s(t, s.tsnr)));
    beta = bop::sub(32767, alpha);
  }
  for (int ch = 0; ch < kCh; ++ch)
    s.ch_enrg_long_db[ch] =
        bop::round(bop::L_add(bop::L_mult(beta, s.ch_enrg_db[ch]), bop::L_mult(alpha, s.ch_enrg_long_db[ch])));
  s.update_flag = 0;
  s.fupdate_flag = 0;
  if (bop::sub(s.vm_sum, 35) <= 0) {
    if (s.burstcount == 0) {
      s.update_flag = 1;
      s.update_cnt = 0;
    }
  } else if (bop::L_sub(Ltce, kNoiseFloorChan[s.shift_state]) > 0 && bop::sub(dev, 7168) < 0 && !p2a &&
             s.LTP_flag == 0) {
    s.update_cnt = bop::add(s.update_cnt, 1);
    if (bop::sub(s.update_cnt, 50) >= 0) {
      s.update_flag = 1;
      s.fupdate_flag = 1;
    }
  }
  s.hyster_cnt = s.update_cnt == s.last_update_cnt ? bop::add(s.hyster_cnt, 1) : int16_t(0);
  s.last_update_cnt = s.update_cnt;
  if (bop::sub(s.hyster_cnt, 6) > 0) s.update_cnt = 0;
  if (s.update_flag != 0) {
    const int16_t sh = s.shift_state == 1 ? kStateChangeShiftR[0] : int16_t(0);
    for (int ch = 0; ch < kCh; ++ch) {
      s.Lch_noise[ch] = bop::L_add(mpy_32_16(bop::L_shr(s.Lch_enrg[ch], sh), 3277), mpy_32_16(s.Lch_noise[ch], 29491));
      if (bop::L_sub(s.Lch_noise[ch], kMinNoiseEnrg0) < 0) s.Lch_noise[ch] = kMinNoiseEnrg0;
    }
  }
}

}  // namespace
}  // namespace amr

VspStatus legacy90vspsVAD2StateSize_GSMAMR(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(amr::Vad2State));
  return vspStsNoErr;
}

VspStatus legacy90vspsVAD2Init_GSMAMR(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  amr::store_state(amr::Vad2State{}, pState);
  return vspStsNoErr;
}

VspStatus legacy90vspsVAD2_GSMAMR_16s(const Vsp16s* pSrc, Vsp8u* pState, int* pDstVad) {
  using namespace amr;
  if (pSrc == nullptr || pState == nullptr || pDstVad == nullptr) return vspStsNullPtrErr;
  Vad2State s;
  load_state(pState, s);
  s.shift_state = s.shift_state != 0 ? 1 : 0;
  s.Lframe_cnt = bop::L_add(s.Lframe_cnt, 1);
  int32_t Ltce = 0;
  const bool p2a = channel_energies(s, pSrc, Ltce);
  s.vm_sum = voice_metric(s);
  const int16_t vad = decide(s);
  noise_update(s, p2a, Ltce);
  store_state(s, pState);
  *pDstVad = vad;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
