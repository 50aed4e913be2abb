// GSM-AMR decoder frame steps (TS 26.073 Decoder_amr outside the subframe
// loop): state block, reset, receive-type handling with the DTX state
// machine (rx_dtx_handler), bad-frame state, random parameters of lost
// frames (build_CN_param), LSF decoding and LP interpolation; the end of frame
// (Bgn_scd, dtx_dec_activity_update, lsp_avg); the decoder homing test.
#include "gsmamr/amr_tables.h"
#include "gsmamr/dec_state.h"
#include "gsmamr/lsf_ops.h"
#include "speech/lpc/lsp_to_lpc.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace amr {

void decoder_reset(DecState& s, bool full) {
  for (auto& v : s.old_exc) v = 0;
  s.sharp = 0;
  s.old_T0 = 40;
  s.prev_bf = s.prev_pdf = s.state = 0;
  s.T0_lagBuff = 40;
  s.inBackgroundNoise = s.voicedHangover = 0;
  for (auto& v : s.ltpGainHistory) v = 0;
  for (auto& v : s.cbGainHistory) v = 0;
  s.hangVar = s.hangCount = 0;
  for (int i = 0; i < kM; ++i) {
    s.past_rq[i] = 0;
    s.past_lsf_q[i] = gsmamr::kMeanLsf5[i];
  }
  for (auto& v : s.pbuf) v = 1640;
  s.past_gain_pit = 0;
  s.prev_gp = 16384;
  for (auto& v : s.gbuf) v = 1;
  s.past_gain_code = 0;
  s.prev_gc = 1;
  for (auto& v : s.frameEnergyHist) v = 0;
  s.bgHangover = 0;
  s.nodataSeed = 21845;
  for (auto& v : s.gainMem) v = 0;
  s.prevState = s.prevCbGain = s.lockFull = s.onset = 0;
  if (!full) return;
  for (auto& v : s.mem_syn) v = 0;
  for (int i = 0; i < kM; ++i) s.lsp_old[i] = gsmamr::kLspInit[i];
  for (auto& v : s.excEnergyHist) v = 0;
  for (int i = 0; i < kM; ++i) s.lsp_meanSave[i] = gsmamr::kMeanLsf5[i];
  for (int i = 0; i < 4; ++i) {
    s.past_qua_en[i] = -14336;
    s.past_qua_en_MR122[i] = -2381;
  }
  // comfort-noise decoder
  s.since_last_sid = 0;
  s.true_sid_period_inv = 8192;
  s.log_en = s.old_log_en = 3500;
  s.L_pn_seed_rx = 0x70816958;
  for (int i = 0; i < kM; ++i) s.cn_lsp[i] = s.cn_lsp_old[i] = gsmamr::kLspInit[i];
  s.lsf_hist_ptr = 0;
  s.log_pg_mean = 0;
  s.log_en_hist_ptr = 0;
  for (int i = 0; i < 80; ++i) {
    s.lsf_hist[i] = gsmamr::kMeanLsf5[i % kM];
    s.lsf_hist_mean[i] = 0;
  }
  for (auto& v : s.log_en_hist) v = 3500;
  s.log_en_adjust = 0;
  s.dtxHangoverCount = 7;
  s.decAnaElapsedCount = 32767;
  s.sid_frame = s.valid_data = s.dtxHangoverAdded = 0;
  s.dtxGlobalState = kDtxActive;
  s.data_updated = 0;
  s.bfi = s.pdfi = 0;
  s.newDtxState = kDtxSpeech;
  s.index_mr475 = 0;
  for (auto& v : s.prev_lsf) v = 0;
  for (auto& v : s.exc_enhanced) v = 0;
}

namespace {

// rx_dtx_handler: the new DTX state of the decoder from the receive type.
int16_t rx_dtx_handler(DecState& s, int16_t type) {
  int16_t next;
  const bool sid = type == kRxSidFirst || type == kRxSidUpdate || type == kRxSidBad;
  if (sid || ((s.dtxGlobalState == kDtxActive || s.dtxGlobalState == kDtxMute) &&
              (type == kRxNoData || type == kRxSpeechBad || type == kRxOnset))) {
    next = kDtxActive;
    if (s.dtxGlobalState == kDtxMute &&
        (type == kRxSidBad || type == kRxSidFirst || type == kRxOnset || type == kRxNoData))
      next = kDtxMute;
    s.since_last_sid = bop::add(s.since_last_sid, 1);
    if (type != kRxSidUpdate && s.since_last_sid > 50) next = kDtxMute;
  } else {
    next = kDtxSpeech;
    s.since_last_sid = 0;
  }
  if (s.data_updated == 0 && type == kRxSidUpdate) s.decAnaElapsedCount = 0;
  s.decAnaElapsedCount = bop::add(s.decAnaElapsedCount, 1);
  s.dtxHangoverAdded = 0;
  int16_t enc = (sid || type == kRxOnset || type == kRxNoData) ? kDtxActive : kDtxSpeech;
  if (type == kRxNoData && next == kDtxSpeech) enc = kDtxSpeech;
  if (enc == kDtxSpeech) {
    s.dtxHangoverCount = 7;
  } else if (bop::sub(s.decAnaElapsedCount, 30) > 0) {
    s.dtxHangoverAdded = 1;
    s.decAnaElapsedCount = 0;
    s.dtxHangoverCount = 0;
  } else if (s.dtxHangoverCount == 0) {
    s.decAnaElapsedCount = 0;
  } else {
    s.dtxHangoverCount = bop::sub(s.dtxHangoverCount, 1);
  }
  if (next != kDtxSpeech) {
    s.sid_frame = s.valid_data = 0;
    if (type == kRxSidFirst) s.sid_frame = 1;
    if (type == kRxSidUpdate) s.sid_frame = s.valid_data = 1;
    if (type == kRxSidBad) {
      s.sid_frame = 1;
      s.dtxHangoverAdded = 0;
    }
  }
  return next;
}

const int16_t* bitno_of(int16_t m) {
  static const int16_t* const t[] = {gsmamr::kBitNoMr475, gsmamr::kBitNoMr515, gsmamr::kBitNoMr59,
                                     gsmamr::kBitNoMr67,  gsmamr::kBitNoMr74,  gsmamr::kBitNoMr795,
                                     gsmamr::kBitNoMr102, gsmamr::kBitNoMr122};
  return t[m];
}

const int16_t* dhf_of(int16_t m) {
  static const int16_t* const t[] = {gsmamr::kDhfMr475, gsmamr::kDhfMr515, gsmamr::kDhfMr59,  gsmamr::kDhfMr67,
                                     gsmamr::kDhfMr74,  gsmamr::kDhfMr795, gsmamr::kDhfMr102, gsmamr::kDhfMr122};
  return t[m];
}

// build_CN_param: pseudo-random parameters for lost frames decoded as speech.
void build_cn_param(int16_t& seed, int16_t m, int16_t* prm) {
  seed = bop::extract_l(bop::L_add(bop::L_shr(bop::L_mult(seed, 31821), 1), 13849));
  const int16_t* bitno = bitno_of(m);
  const int base = seed & 0x7F;
  for (int i = 0; i < gsmamr::kPrmNo[m]; ++i)
    prm[i] = static_cast<int16_t>(gsmamr::kWindow200_40[base + i] & ~(0xFFFF << bitno[i]));
}

void lsp_to_a4(const int16_t* l0, const int16_t* l1, const int16_t* l2, const int16_t* l3, int16_t* a) {
  const int16_t* l[4] = {l0, l1, l2, l3};
  for (int k = 0; k < 4; ++k) lsp::lsp_to_lpc_q12(l[k], a + kMp1 * k);
}

}  // namespace
}  // namespace amr

VspStatus legacy90vspsDecoderStateSize_GSMAMR(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(amr::DecState));
  return vspStsNoErr;
}

VspStatus legacy90vspsDecoderInit_GSMAMR(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  amr::DecState s{};
  amr::decoder_reset(s, true);
  amr::store_state(s, pState);
  return vspStsNoErr;
}

VspStatus legacy90vspsDecoderFrameStart_GSMAMR_16s(Vsp16s* pSrcDstPrm, int rxType, Vsp8u* pState, Vsp16s* pDstLpc,
                                                   int* pDtxState, int mode) {
  using namespace amr;
  if (pSrcDstPrm == nullptr || pState == nullptr || pDstLpc == nullptr || pDtxState == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if (rxType < kRxSpeechGood || rxType > kRxNoData || m < 0 || m == MRDTX) return vspStsRangeErr;
  DecState s;
  load_state(pState, s);
  sanitize(s);
  const auto type = static_cast<int16_t>(rxType);
  s.newDtxState = rx_dtx_handler(s, type);
  *pDtxState = s.newDtxState;
  if (s.newDtxState != kDtxSpeech) {
    store_state(s, pState);
    return vspStsNoErr;
  }
  s.bfi = s.pdfi = 0;
  if (type == kRxSpeechBad || type == kRxNoData || type == kRxOnset) {
    s.bfi = 1;
    if (type == kRxNoData || type == kRxOnset) build_cn_param(s.nodataSeed, m, pSrcDstPrm);
  } else if (type == kRxSpeechDegraded) {
    s.pdfi = 1;
  }
  if (s.bfi != 0)
    s.state = bop::add(s.state, 1);
  else if (s.state == 6)
    s.state = 5;
  else
    s.state = 0;
  if (s.state > 6) s.state = 6;
  if (s.dtxGlobalState == kDtxActive) {
    s.state = 5;
    s.prev_bf = 0;
  } else if (s.dtxGlobalState == kDtxMute) {
    s.state = 5;
    s.prev_bf = 1;
  }
  for (int i = 0; i < kM; ++i) s.prev_lsf[i] = s.past_lsf_q[i];
  int16_t sub[4 * kM];
  legacy90vspsQuantLSPDecode_GSMAMR_16s(pSrcDstPrm, s.past_rq, s.past_lsf_q, s.lsp_old, sub, s.bfi, mode);
  lsp_to_a4(sub, sub + kM, sub + 2 * kM, sub + 3 * kM, pDstLpc);
  store_state(s, pState);
  return vspStsNoErr;
}

VspStatus legacy90vspsDecoderFrameEnd_GSMAMR_16s(const Vsp16s* pSrcSynth, Vsp8u* pState) {
  using namespace amr;
  if (pSrcSynth == nullptr || pState == nullptr) return vspStsNullPtrErr;
  DecState s;
  load_state(pState, s);
  sanitize(s);
  // Bgn_scd: background-noise detector on the synthesis
  int32_t e = 0;
  for (int i = 0; i < kFrame; ++i) e = bop::L_mac(e, pSrcSynth[i], pSrcSynth[i]);
  const int16_t cur = bop::extract_h(bop::L_shl(e, 2));
  int16_t emin = 32767;
  for (int16_t v : s.frameEnergyHist)
    if (bop::sub(v, emin) < 0) emin = v;
  const int16_t floor = bop::shl(emin, 4);
  int16_t emax = s.frameEnergyHist[0];
  for (int i = 1; i < 56; ++i)
    if (bop::sub(emax, s.frameEnergyHist[i]) < 0) emax = s.frameEnergyHist[i];
  int16_t emaxLast = s.frameEnergyHist[40];
  for (int i = 41; i < 60; ++i)
    if (bop::sub(emaxLast, s.frameEnergyHist[i]) < 0) emaxLast = s.frameEnergyHist[i];
  if (bop::sub(emax, 20) > 0 && bop::sub(cur, 17578) < 0 && bop::sub(cur, 20) > 0 &&
      (bop::sub(cur, floor) < 0 || bop::sub(emaxLast, 1953) < 0))
    s.bgHangover = bop::sub(bop::add(s.bgHangover, 1), 30) > 0 ? int16_t(30) : bop::add(s.bgHangover, 1);
  else
    s.bgHangover = 0;
  const int16_t inbg = bop::sub(s.bgHangover, 1) > 0 ? 1 : 0;
  for (int i = 0; i < 59; ++i) s.frameEnergyHist[i] = s.frameEnergyHist[i + 1];
  s.frameEnergyHist[59] = cur;
  int16_t ltpLimit = 13926;
  if (bop::sub(s.bgHangover, 8) > 0) ltpLimit = 15565;
  if (bop::sub(s.bgHangover, 15) > 0) ltpLimit = 16383;
  bool voiced = bop::sub(gmed_n(&s.ltpGainHistory[4], 5), ltpLimit) > 0;
  if (bop::sub(s.bgHangover, 20) > 0) voiced = bop::sub(gmed_n(s.ltpGainHistory, 9), ltpLimit) > 0;
  if (voiced) {
    s.voicedHangover = 0;
  } else {
    const int16_t t = bop::add(s.voicedHangover, 1);
    s.voicedHangover = bop::sub(t, 10) > 0 ? int16_t(10) : t;
  }
  s.inBackgroundNoise = inbg;
  // dtx_dec_activity_update
  s.lsf_hist_ptr = static_cast<int16_t>(s.lsf_hist_ptr + 10 == 80 ? 0 : s.lsf_hist_ptr + 10);
  for (int i = 0; i < kM; ++i) s.lsf_hist[s.lsf_hist_ptr + i] = s.past_lsf_q[i];
  e = 0;
  for (int i = 0; i < kFrame; ++i) e = bop::L_mac(e, pSrcSynth[i], pSrcSynth[i]);
  int16_t le, lm;
  log2(e, le, lm);
  s.log_en_hist_ptr = static_cast<int16_t>(s.log_en_hist_ptr + 1 == 8 ? 0 : s.log_en_hist_ptr + 1);
  s.log_en_hist[s.log_en_hist_ptr] = bop::sub(bop::add(bop::shl(le, 10), bop::shr(lm, 5)), 8521);
  s.prev_bf = s.bfi;
  s.prev_pdf = s.pdfi;
  lsp_avg(s);
  s.dtxGlobalState = s.newDtxState;
  store_state(s, pState);
  return vspStsNoErr;
}

VspStatus legacy90vspsHomingFrameTest_GSMAMR_16s(const Vsp16s* pSrcPrm, int firstSubframe, int* pResult, int mode) {
  using namespace amr;
  if (pSrcPrm == nullptr || pResult == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if (m < 0 || m == MRDTX) return vspStsRangeErr;
  const int n = firstSubframe != 0 ? gsmamr::kPrmNoFsf[m] : gsmamr::kPrmNo[m];
  const int16_t* dhf = dhf_of(m);
  int equal = 1;
  for (int i = 0; i < n; ++i)
    if (pSrcPrm[i] != dhf[i]) {
      equal = 0;
      break;
    }
  *pResult = equal;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
