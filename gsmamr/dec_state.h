// State block of the GSM-AMR decoder steps (TS 26.073 Decoder_amr with its
// concealment, background-noise and comfort-noise sub-states) and the
// mapping of the rate selector to the standard's mode numbers. The block is
// plain 16- and 32-bit words; every step validates the words it uses as
// indices, so a corrupted block gives wrong but bounded results.
#pragma once

#include <cstdint>
#include <cstring>

#include "gsmamr/amr_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS::amr {

// The standard's mode numbers (MR475 = 0 .. MR122 = 7, MRDTX = 8).
enum AmrMode : int16_t { MR475 = 0, MR515, MR59, MR67, MR74, MR795, MR102, MR122, MRDTX };

// VspSpeechBitRate -> standard mode, -1 for a rate outside the set.
inline int16_t ref_mode(int rate) {
  switch (rate) {
    case vspRate4750:
      return MR475;
    case vspRate5150:
      return MR515;
    case vspRate5900:
      return MR59;
    case vspRate6700:
      return MR67;
    case vspRate7400:
      return MR74;
    case vspRate7950:
      return MR795;
    case vspRate10200:
      return MR102;
    case vspRate12200:
      return MR122;
    case vspRateDTX:
      return MRDTX;
    default:
      return -1;
  }
}

// Receive frame types (TS 26.073 RXFrameType order).
enum RxType : int16_t {
  kRxSpeechGood = 0,
  kRxSpeechDegraded,
  kRxOnset,
  kRxSpeechBad,
  kRxSidFirst,
  kRxSidUpdate,
  kRxSidBad,
  kRxNoData
};
enum DtxState : int16_t { kDtxSpeech = 0, kDtxActive = 1, kDtxMute = 2 };

struct DecState {
  int16_t old_exc[kExcHist + kSubfr];  // past excitation, then the current subframe
  int16_t lsp_old[kM];
  int16_t mem_syn[kM];
  int16_t sharp, old_T0, prev_bf, prev_pdf, state, T0_lagBuff, inBackgroundNoise, voicedHangover;
  int16_t ltpGainHistory[9];
  int16_t excEnergyHist[9];
  int16_t nodataSeed;
  // LSF decoder (D_plsf_3 / D_plsf_5)
  int16_t past_rq[kM], past_lsf_q[kM];
  // code-gain predictor
  int16_t past_qua_en[4], past_qua_en_MR122[4];
  // gain concealment
  int16_t pbuf[5], past_gain_pit, prev_gp;
  int16_t gbuf[5], past_gain_code, prev_gc;
  // code-gain averaging
  int16_t cbGainHistory[7], hangVar, hangCount;
  int16_t lsp_meanSave[kM];
  // background-noise detector
  int16_t frameEnergyHist[60], bgHangover;
  // phase dispersion
  int16_t gainMem[5], prevState, prevCbGain, lockFull, onset;
  // the current frame
  int16_t prev_lsf[kM];
  int16_t bfi, pdfi, newDtxState, index_mr475;
  int16_t exc_enhanced[kSubfr];  // synthesis input before the pitch enhancement
  // comfort-noise decoder (dtx_dec)
  int16_t since_last_sid, true_sid_period_inv, log_en, old_log_en;
  int32_t L_pn_seed_rx;
  int16_t cn_lsp[kM], cn_lsp_old[kM];
  int16_t lsf_hist[80], lsf_hist_ptr, lsf_hist_mean[80], log_pg_mean;
  int16_t log_en_hist[8], log_en_hist_ptr, log_en_adjust;
  int16_t dtxHangoverCount, decAnaElapsedCount, sid_frame, valid_data, dtxHangoverAdded;
  int16_t dtxGlobalState, data_updated;
};

inline DecState* dec_state(Vsp8u* p) { return reinterpret_cast<DecState*>(p); }

// Loads and stores of the block at any alignment.
inline void load_state(const Vsp8u* p, DecState& s) { std::memcpy(&s, p, sizeof s); }
inline void store_state(const DecState& s, Vsp8u* p) { std::memcpy(p, &s, sizeof s); }

// Decoder_amr_reset(mode): the partial reset of comfort-noise frames
// (full = false) or the full reset.
void decoder_reset(DecState& s, bool full);

// lsp_avg: the slow average of the decoded LSFs (factor 0.16), end of frame.
inline void lsp_avg(DecState& s) {
  for (int i = 0; i < kM; ++i) {
    int32_t t = bop::L_deposit_h(s.lsp_meanSave[i]);
    t = bop::L_msu(t, 5243, s.lsp_meanSave[i]);
    t = bop::L_mac(t, 5243, s.past_lsf_q[i]);
    s.lsp_meanSave[i] = bop::round(t);
  }
}

// Fields used as table indices or loop bounds, clamped into their range so
// that a corrupted block cannot read outside a table.
inline void sanitize(DecState& s) {
  if (s.old_T0 < 10 || s.old_T0 > kPitMax + 1) s.old_T0 = 40;  // valid lags: 15..144
  if (s.state < 0 || s.state > 6) s.state = 0;
  if (s.lsf_hist_ptr < 0 || s.lsf_hist_ptr > 70 || s.lsf_hist_ptr % 10 != 0) s.lsf_hist_ptr = 0;
  if (s.log_en_hist_ptr < 0 || s.log_en_hist_ptr > 7) s.log_en_hist_ptr = 0;
  if (s.dtxGlobalState < 0 || s.dtxGlobalState > 2) s.dtxGlobalState = kDtxSpeech;
  if (s.newDtxState < 0 || s.newDtxState > 2) s.newDtxState = kDtxSpeech;
}

}  // namespace vsps::VSPS_NS::amr
