// GSM-AMR SID parameters (TS 26.073 dtx_enc): averaged LSP and energy of
// the DTX history, the energy index, the code-gain predictor memories, and
// the SID path of the 3-split LSF quantiser (Q_plsf_3 with MRDTX).
#include "core/basic_ops.h"
#include "gsmamr/amr_codec_tables.h"
#include "gsmamr/dtx_enc_state.h"
#include "gsmamr/lsf_ops.h"
#include "gsmamr/lsf_vq.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int kM = 10;

// Q_plsf_3, SID path: the row j of past_rq_init nearest to lsf - mean in
// plain squared error (strict <, first wins) is the prediction, then the
// weighted 3-split search with the full tables.
void quant_sid(const int16_t* lsp, int16_t* idx, int16_t& init) {
  int16_t lsf[kM], wf[kM], r[kM];
  amr::lsp_to_lsf(lsp, lsf);
  amr::lsf_weights(lsf, wf);
  int32_t best = bop::kMax32;
  int j_best = 0;
  for (int j = 0; j < 8; ++j) {
    int32_t e = 0;
    for (int i = 0; i < kM; ++i) {
      const int16_t t = bop::sub(lsf[i], bop::add(gsmamr::kMeanLsf3[i], gsmamr::kPastRqInit[kM * j + i]));
      e = bop::L_mac(e, t, t);
    }
    if (bop::L_sub(e, best) < 0) {
      best = e;
      j_best = j;
    }
  }
  init = static_cast<int16_t>(j_best);
  for (int i = 0; i < kM; ++i)
    r[i] = bop::sub(lsf[i], bop::add(gsmamr::kMeanLsf3[i], gsmamr::kPastRqInit[kM * j_best + i]));
  idx[0] = amr::vq_search<3>(&r[0], &wf[0], gsmamr::kDico1Lsf3Pad4, 256, 1);
  idx[1] = amr::vq_search<3>(&r[3], &wf[3], gsmamr::kDico2Lsf3Pad4, 512, 1);
  idx[2] = amr::vq_search<4>(&r[6], &wf[6], gsmamr::kDico3Lsf3, 512, 1);
}

}  // namespace

VspStatus legacy90vspsDTXEncode_GSMAMR_16s(int computeSid, Vsp16s* pSrcDstPastQuaEn, Vsp16s* pDstPrm, Vsp8u* pState) {
  using namespace amr;
  if (pSrcDstPastQuaEn == nullptr || pDstPrm == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (computeSid != 0 && computeSid != 1) return vspStsRangeErr;
  DtxEncState s;
  load_state(pState, s);
  if (computeSid != 0 || s.log_en_index == 0) {
    int16_t log_en = 0, lsp[kM];
    int32_t L_lsp[kM] = {};
    for (int i = 0; i < kDtxHist; ++i) {
      log_en = bop::add(log_en, bop::shr(s.log_en_hist[i], 2));
      for (int j = 0; j < kM; ++j) L_lsp[j] = bop::L_add(L_lsp[j], s.lsp_hist[kM * i + j]);
    }
    log_en = bop::shr(log_en, 1);
    for (int j = 0; j < kM; ++j) lsp[j] = bop::extract_l(bop::L_shr(L_lsp[j], 3));
    int16_t idx = bop::shr(bop::add(bop::add(log_en, 2560), 128), 8);
    s.log_en_index = idx < 0 ? int16_t(0) : (idx > 63 ? int16_t(63) : idx);
    // Code-gain predictor memories from the SID energy (Q10 log2; the 12.2 kbit/s ones times 5443, Q15).
    int16_t g = bop::sub(bop::sub(bop::shl(s.log_en_index, 8), 2560), 9000);
    g = g > 0 ? int16_t(0) : (g < -14436 ? int16_t(-14436) : g);
    for (int i = 0; i < 4; ++i) {
      pSrcDstPastQuaEn[i] = g;
      pSrcDstPastQuaEn[4 + i] = bop::mult(5443, g);
    }
    int16_t lsf[kM];
    lsp_to_lsf(lsp, lsf);
    reorder_lsf(lsf);
    lsf_to_lsp(lsf, lsp);
    quant_sid(lsp, s.lsp_index, s.init_lsf_vq_index);
  }
  store_state(s, pState);
  pDstPrm[0] = s.init_lsf_vq_index;
  for (int i = 0; i < 3; ++i) pDstPrm[1 + i] = s.lsp_index[i];
  pDstPrm[4] = s.log_en_index;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
