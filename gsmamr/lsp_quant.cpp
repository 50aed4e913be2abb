// GSM-AMR LSF quantisers: the 3-split quantiser with first-order MA
// prediction (TS 26.073 Q_plsf_3) and the 12.2 kbit/s split-matrix quantiser
// of two LSP vectors (Q_plsf_5).
#include "gsmamr/amr_mode.h"
#include "gsmamr/lsf_ops.h"
#include "gsmamr/lsf_vq.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int kLspOrder = gsmamr::kOrder;  // LP order
constexpr int16_t kPredFacMr122 = 21299;   // 0.65, Q15

// Q_plsf_3: one LSP vector, three indices; updates pastRq.
void quant_split3(const int16_t* lspQ15, int16_t* pastRq, int16_t* qLspQ15, int16_t* idx, int mode) {
  int16_t lsf[kLspOrder], wf[kLspOrder], pred[kLspOrder], r[kLspOrder];
  amr::lsp_to_lsf(lspQ15, lsf);
  amr::lsf_weights(lsf, wf);
  for (int i = 0; i < kLspOrder; ++i) {
    pred[i] = bop::add(gsmamr::kMeanLsf3[i], bop::mult(pastRq[i], gsmamr::kPredFac3[i]));
    r[i] = bop::sub(lsf[i], pred[i]);
  }
  if (amr::uses_reduced_tables(mode)) {
    idx[0] = amr::vq_search<3>(&r[0], &wf[0], gsmamr::kDico1Lsf3Pad4, 256, 1);
    idx[1] = amr::vq_search<3>(&r[3], &wf[3], gsmamr::kDico2Lsf3Pad4, 256, 2);  // even rows, halved index
    idx[2] = amr::vq_search<4>(&r[6], &wf[6], gsmamr::kMr515Lsf3, 128, 1);
  } else {
    const auto* first = mode == vspRate7950 ? gsmamr::kMr795Lsf1Pad4 : gsmamr::kDico1Lsf3Pad4;
    idx[0] = amr::vq_search<3>(&r[0], &wf[0], first, mode == vspRate7950 ? 512 : 256, 1);
    idx[1] = amr::vq_search<3>(&r[3], &wf[3], gsmamr::kDico2Lsf3Pad4, 512, 1);
    idx[2] = amr::vq_search<4>(&r[6], &wf[6], gsmamr::kDico3Lsf3, 512, 1);
  }
  int16_t lsfQ[kLspOrder];
  for (int i = 0; i < kLspOrder; ++i) {
    lsfQ[i] = bop::add(r[i], pred[i]);
    pastRq[i] = r[i];
  }
  amr::reorder_lsf(lsfQ);
  amr::lsf_to_lsp(lsfQ, qLspQ15);
}

// Q_plsf_5: the LSP vectors of subframes 2 and 4, one shared prediction, five
// indices over coefficient pairs of both vectors; updates pastRq.
void quant_matrix5(const int16_t* lspQ15, int16_t* pastRq, int16_t* qLspQ15, int16_t* idx) {
  int16_t lsf1[kLspOrder], lsf2[kLspOrder], wf1[kLspOrder], wf2[kLspOrder], pred[kLspOrder], r1[kLspOrder],
      r2[kLspOrder];
  amr::lsp_to_lsf(lspQ15, lsf1);
  amr::lsp_to_lsf(lspQ15 + kLspOrder, lsf2);
  amr::lsf_weights(lsf1, wf1);
  amr::lsf_weights(lsf2, wf2);
  for (int i = 0; i < kLspOrder; ++i) {
    pred[i] = bop::add(gsmamr::kMeanLsf5[i], bop::mult(pastRq[i], kPredFacMr122));
    r1[i] = bop::sub(lsf1[i], pred[i]);
    r2[i] = bop::sub(lsf2[i], pred[i]);
  }
  const int16_t(*const tables[5])[4] = {gsmamr::kDico1Lsf5, gsmamr::kDico2Lsf5, gsmamr::kDico3Lsf5, gsmamr::kDico4Lsf5,
                                        gsmamr::kDico5Lsf5};
  const int sizes[5] = {128, 256, 256, 256, 64};
  for (int k = 0; k < 5; ++k) {
    int16_t target[4] = {r1[2 * k], r1[2 * k + 1], r2[2 * k], r2[2 * k + 1]};
    const int16_t w[4] = {wf1[2 * k], wf1[2 * k + 1], wf2[2 * k], wf2[2 * k + 1]};
    idx[k] = k == 2 ? amr::vq_search_signed(target, w, tables[k], sizes[k])
                    : amr::vq_search<4>(target, w, tables[k], sizes[k], 1);
    r1[2 * k] = target[0];
    r1[2 * k + 1] = target[1];
    r2[2 * k] = target[2];
    r2[2 * k + 1] = target[3];
  }
  int16_t lsfQ1[kLspOrder], lsfQ2[kLspOrder];
  for (int i = 0; i < kLspOrder; ++i) {
    lsfQ1[i] = bop::add(r1[i], pred[i]);
    lsfQ2[i] = bop::add(r2[i], pred[i]);
    pastRq[i] = r2[i];
  }
  amr::reorder_lsf(lsfQ1);
  amr::reorder_lsf(lsfQ2);
  amr::lsf_to_lsp(lsfQ1, qLspQ15);
  amr::lsf_to_lsp(lsfQ2, qLspQ15 + kLspOrder);
}

}  // namespace

VspStatus legacy90vspsLSPQuant_GSMAMR_16s(const Vsp16s* pSrcLsp, Vsp16s* pPastRq, Vsp16s* pDstQLsp, Vsp16s* pDstIdx,
                                          int mode) {
  if (pSrcLsp == nullptr || pPastRq == nullptr || pDstQLsp == nullptr || pDstIdx == nullptr) return vspStsNullPtrErr;
  if (!amr::mode_is_valid(mode)) return vspStsRangeErr;
  // Work on copies so that any aliasing of the arrays is harmless.
  int16_t lsp[2 * kLspOrder], pastRq[kLspOrder], qLsp[2 * kLspOrder], idx[5];
  const int vectors = amr::is_mr122(mode) ? 2 : 1;
  for (int i = 0; i < vectors * kLspOrder; ++i) lsp[i] = pSrcLsp[i];
  for (int i = 0; i < kLspOrder; ++i) pastRq[i] = pPastRq[i];
  if (vectors == 2)
    quant_matrix5(lsp, pastRq, qLsp, idx);
  else
    quant_split3(lsp, pastRq, qLsp, idx, mode);
  for (int i = 0; i < vectors * kLspOrder; ++i) pDstQLsp[i] = qLsp[i];
  for (int i = 0; i < (vectors == 2 ? 5 : 3); ++i) pDstIdx[i] = idx[i];
  for (int i = 0; i < kLspOrder; ++i) pPastRq[i] = pastRq[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
