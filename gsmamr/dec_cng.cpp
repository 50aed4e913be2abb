// GSM-AMR comfort-noise decoder (TS 26.073 dtx_dec with A_Refl,
// pseudonoise, build_CN_code and the SID LSF decoding), run for frames the
// DTX receive state machine marks as comfort noise.
#include "gsmamr/amr_tables.h"
#include "gsmamr/dec_state.h"
#include "gsmamr/lsf_ops.h"
#include "speech/lpc/lsp_to_lpc.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace amr {
namespace {

int16_t pseudonoise(int32_t& seed, int n) {
  int16_t bits = 0;
  for (int i = 0; i < n; ++i) {
    const int16_t sn = static_cast<int16_t>((seed & 1) ^ ((seed >> 28) & 1));
    bits = static_cast<int16_t>((bop::shl(bits, 1)) | (seed & 1));
    seed = bop::L_shr(seed, 1);
    if (sn != 0) seed |= 0x40000000;
  }
  return bits;
}

void build_cn_code(int32_t& seed, int16_t* cod) {
  for (int i = 0; i < kSubfr; ++i) cod[i] = 0;
  for (int k = 0; k < 10; ++k) {
    const int16_t i =
        bop::add(bop::shr(bop::extract_l(bop::L_mult(pseudonoise(seed, 2), 10)), 1), static_cast<int16_t>(k));
    cod[i] = pseudonoise(seed, 1) != 0 ? int16_t(4096) : int16_t(-4096);
  }
}

// A_Refl: reflection coefficients (Q15) of a[1..10] (Q12); all zero when
// the filter is unstable.
void a_refl(const int16_t* a, int16_t* refl) {
  int16_t aS[kM], bS[kM];
  for (int i = 0; i < kM; ++i) aS[i] = a[i];
  for (int i = kM - 1; i >= 0; --i) {
    if (bop::sub(bop::abs_s(aS[i]), 4096) >= 0) {
      for (int j = 0; j < kM; ++j) refl[j] = 0;
      return;
    }
    refl[i] = bop::shl(aS[i], 3);
    int32_t L = bop::L_sub(bop::kMax32, bop::L_mult(refl[i], refl[i]));
    const int16_t n = bop::norm_l(L);
    const int16_t scale = bop::sub(15, n);
    const int16_t mult = bop::div_s(16384, bop::round(bop::L_shl(L, n)));
    for (int j = 0; j < i; ++j) {
      const int16_t t = bop::round(bop::L_msu(bop::L_deposit_h(aS[j]), refl[i], aS[i - j - 1]));
      L = bop::L_shr_r(bop::L_mult(mult, t), scale);
      if (bop::L_sub(bop::L_abs(L), 32767) > 0) {
        for (int k = 0; k < kM; ++k) refl[k] = 0;
        return;
      }
      bS[j] = bop::extract_l(L);
    }
    for (int j = 0; j < i; ++j) aS[j] = bS[j];
  }
}

// D_plsf_3 of SID frames: prediction mean + past_rq (the row init of
// past_rq_init), full 3-split tables.
void sid_lsp(const int16_t* prm, int16_t* lsp, int16_t* past_lsf_q) {
  const int16_t* rq = &gsmamr::kPastRqInit[10 * (prm[0] & 7)];
  int16_t r[kM];
  const int16_t* d1 = gsmamr::kDico1Lsf3[prm[1] & 255];
  const int16_t* d2 = gsmamr::kDico2Lsf3[prm[2] & 511];
  const int16_t* d3 = gsmamr::kDico3Lsf3[prm[3] & 511];
  for (int i = 0; i < 3; ++i) r[i] = d1[i];
  for (int i = 0; i < 3; ++i) r[3 + i] = d2[i];
  for (int i = 0; i < 4; ++i) r[6 + i] = d3[i];
  int16_t lsf[kM];
  for (int i = 0; i < kM; ++i) lsf[i] = bop::add(r[i], bop::add(gsmamr::kMeanLsf3[i], rq[i]));
  reorder_lsf(lsf);
  for (int i = 0; i < kM; ++i) past_lsf_q[i] = lsf[i];
  lsf_to_lsp(lsf, lsp);
}

void dtx_dec(DecState& s, int16_t m, const int16_t* prm, int16_t* A, int16_t* synth) {
  if (s.dtxHangoverAdded != 0 && s.sid_frame != 0) {
    s.log_en_adjust = gsmamr::kDtxLogEnAdjust[m];
    int ptr = s.lsf_hist_ptr + kM == 80 ? 0 : s.lsf_hist_ptr + kM;
    for (int i = 0; i < kM; ++i) s.lsf_hist[ptr + i] = s.lsf_hist[s.lsf_hist_ptr + i];
    ptr = s.log_en_hist_ptr + 1 == 8 ? 0 : s.log_en_hist_ptr + 1;
    s.log_en_hist[ptr] = s.log_en_hist[s.log_en_hist_ptr];
    s.log_en = 0;
    int32_t L_lsf[kM] = {};
    for (int i = 0; i < 8; ++i) {
      s.log_en = bop::add(s.log_en, bop::shr(s.log_en_hist[i], 3));
      for (int j = 0; j < kM; ++j) L_lsf[j] = bop::L_add(L_lsf[j], s.lsf_hist[i * kM + j]);
    }
    int16_t lsf[kM];
    for (int j = 0; j < kM; ++j) lsf[j] = bop::extract_l(bop::L_shr(L_lsf[j], 3));
    for (int j = 0; j < kM; ++j) s.cn_lsp[j] = lsf_to_lsp_one(lsf[j] < 0 ? int16_t(0) : lsf[j]);
    s.log_en = bop::sub(s.log_en, s.log_en_adjust);
    for (int i = 0; i < 80; ++i) s.lsf_hist_mean[i] = s.lsf_hist[i];
    for (int i = 0; i < kM; ++i) {
      int32_t L = 0;
      for (int j = 0; j < 8; ++j) L = bop::L_add(L, s.lsf_hist_mean[i + j * kM]);
      const int16_t mean = bop::extract_l(bop::L_shr(L, 3));
      for (int j = 0; j < 8; ++j) {
        int16_t& v = s.lsf_hist_mean[i + j * kM];
        v = bop::mult(bop::sub(v, mean), gsmamr::kLsfHistMeanScale[i]);
        const bool neg = v < 0;
        v = bop::abs_s(v);
        if (bop::sub(v, 655) > 0) v = bop::add(655, bop::shr(bop::sub(v, 655), 2));
        if (bop::sub(v, 1310) > 0) v = 1310;
        if (neg) v = static_cast<int16_t>(-v);
      }
    }
  }
  if (s.sid_frame != 0) {
    for (int i = 0; i < kM; ++i) s.cn_lsp_old[i] = s.cn_lsp[i];
    s.old_log_en = s.log_en;
    if (s.valid_data != 0) {
      int16_t t = s.since_last_sid;
      s.since_last_sid = 0;
      if (bop::sub(t, 32) > 0) t = 32;
      s.true_sid_period_inv = bop::sub(t, 2) >= 0 ? bop::div_s(1024, bop::shl(t, 10)) : int16_t(16384);
      sid_lsp(prm, s.cn_lsp, s.past_lsf_q);
      for (auto& v : s.past_rq) v = 0;
      const int16_t idx = static_cast<int16_t>(prm[4] & 63);
      s.log_en = bop::sub(bop::shl(idx, 9), 5120);
      if (idx == 0) s.log_en = bop::kMin16;
      if (s.data_updated == 0 || s.dtxGlobalState == kDtxSpeech) {
        for (int i = 0; i < kM; ++i) s.cn_lsp_old[i] = s.cn_lsp[i];
        s.old_log_en = s.log_en;
      }
    }
    int16_t g = bop::sub(bop::shr(s.log_en, 1), 9000);
    if (g > 0) g = 0;
    if (bop::sub(g, -14436) < 0) g = -14436;
    for (int i = 0; i < 4; ++i) {
      s.past_qua_en[i] = g;
      s.past_qua_en_MR122[i] = bop::mult(5443, g);
    }
  }
  s.log_en_adjust = bop::add(bop::mult(s.log_en_adjust, 29491),
                             bop::shr(bop::mult(bop::shl(gsmamr::kDtxLogEnAdjust[m], 5), 3277), 5));
  int16_t f = bop::mult(bop::shl(bop::add(1, s.since_last_sid), 10), s.true_sid_period_inv);
  if (bop::sub(f, 1024) > 0) f = 1024;
  f = bop::shl(f, 4);
  int32_t L_e = bop::L_mult(f, s.log_en);
  int16_t lsp_int[kM];
  for (int i = 0; i < kM; ++i) lsp_int[i] = bop::mult(f, s.cn_lsp[i]);
  f = bop::sub(16384, f);
  L_e = bop::L_mac(L_e, f, s.old_log_en);
  for (int i = 0; i < kM; ++i) lsp_int[i] = bop::shl(bop::add(lsp_int[i], bop::mult(f, s.cn_lsp_old[i])), 1);
  int16_t v = bop::sub(4096, bop::mult(bop::sub(s.log_pg_mean, 2457), 9830));
  if (bop::sub(v, 4096) > 0) v = 4096;
  if (v < 0) v = 0;
  v = bop::shl(v, 3);
  const int16_t k = pseudonoise(s.L_pn_seed_rx, 3);
  int16_t lsf_int[kM], lsf_var[kM];
  lsp_to_lsf(lsp_int, lsf_int);
  for (int i = 0; i < kM; ++i) lsf_var[i] = bop::add(lsf_int[i], bop::mult(v, s.lsf_hist_mean[i + k * kM]));
  reorder_lsf(lsf_int);
  reorder_lsf(lsf_var);
  for (int i = 0; i < kM; ++i) s.past_lsf_q[i] = lsf_int[i];
  int16_t lsp_var[kM];
  lsf_to_lsp(lsf_int, lsp_int);
  lsf_to_lsp(lsf_var, lsp_var);
  int16_t acoeff[kMp1], acoeff_var[kMp1];
  lsp::lsp_to_lpc_q12(lsp_int, acoeff);
  lsp::lsp_to_lpc_q12(lsp_var, acoeff_var);
  for (int sf = 0; sf < 4; ++sf)
    for (int i = 0; i < kMp1; ++i) A[kMp1 * sf + i] = acoeff[i];
  int16_t refl[kM];
  a_refl(&acoeff[1], refl);
  int16_t pred_err = 32767;
  for (int i = 0; i < kM; ++i) pred_err = bop::mult(pred_err, bop::sub(32767, bop::mult(refl[i], refl[i])));
  int16_t le, lm;
  log2(bop::L_deposit_l(pred_err), le, lm);
  int16_t lg = bop::shl(bop::sub(le, 15), 12);
  lg = bop::shr(bop::sub(0, bop::add(lg, bop::shr(lm, 3))), 1);
  s.log_pg_mean = bop::add(bop::mult(29491, s.log_pg_mean), bop::mult(3277, lg));
  L_e = bop::L_shr(L_e, 10);
  L_e = bop::L_add(L_e, 4 * 65536);
  L_e = bop::L_sub(L_e, bop::L_shl(bop::L_deposit_l(lg), 4));
  L_e = bop::L_add(L_e, bop::L_shl(bop::L_deposit_l(s.log_en_adjust), 5));
  const int16_t ee = bop::extract_h(L_e);
  const int16_t em = bop::extract_l(bop::L_shr(bop::L_sub(L_e, bop::L_deposit_h(ee)), 1));
  const int16_t level = bop::extract_l(pow2(ee, em));
  for (int sf = 0; sf < 4; ++sf) {
    int16_t ex[kSubfr];
    build_cn_code(s.L_pn_seed_rx, ex);
    for (int j = 0; j < kSubfr; ++j) ex[j] = bop::mult(level, ex[j]);
    syn_filt(acoeff_var, ex, &synth[kSubfr * sf], kSubfr, s.mem_syn, true);
  }
  s.hangVar = 20;
  s.hangCount = 0;
  if (s.newDtxState == kDtxMute) {
    int16_t t = s.since_last_sid;
    if (bop::sub(t, 32) > 0) t = 32;
    if (t <= 0) t = 8;
    s.true_sid_period_inv = bop::div_s(1024, bop::shl(t, 10));
    s.since_last_sid = 0;
    for (int i = 0; i < kM; ++i) s.cn_lsp_old[i] = s.cn_lsp[i];
    s.old_log_en = s.log_en;
    s.log_en = bop::sub(s.log_en, 256);
  }
  if (s.sid_frame != 0 && (s.valid_data != 0 || s.dtxHangoverAdded != 0)) {
    s.since_last_sid = 0;
    s.data_updated = 1;
  }
}

}  // namespace
}  // namespace amr

VspStatus legacy90vspsComfortNoise_GSMAMR_16s(const Vsp16s* pSrcSid, Vsp8u* pState, Vsp16s* pDstLpc, Vsp16s* pDstSynth,
                                              int mode) {
  using namespace amr;
  if (pSrcSid == nullptr || pState == nullptr || pDstLpc == nullptr || pDstSynth == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if (m < 0 || m == MRDTX) return vspStsRangeErr;
  DecState s;
  load_state(pState, s);
  sanitize(s);
  if (s.newDtxState == kDtxSpeech) s.newDtxState = kDtxActive;
  decoder_reset(s, false);
  int16_t A[4 * kMp1], synth[kFrame];
  dtx_dec(s, m, pSrcSid, A, synth);
  lsf_to_lsp(s.past_lsf_q, s.lsp_old);
  lsp_avg(s);
  s.dtxGlobalState = s.newDtxState;
  for (int i = 0; i < 4 * kMp1; ++i) pDstLpc[i] = A[i];
  for (int i = 0; i < kFrame; ++i) pDstSynth[i] = synth[i];
  store_state(s, pState);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
