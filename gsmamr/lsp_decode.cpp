// GSM-AMR LSF decoder with bad-frame concealment (TS 26.073 D_plsf_3 and
// D_plsf_5) and the LSP half of the subframe interpolation (Int_lpc_1to3,
// Int_lpc_1and3).
#include "gsmamr/amr_mode.h"
#include "gsmamr/lsf_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int kM = gsmamr::kOrder;
constexpr int16_t kPredFacMr122 = 21299;                    // 0.65, Q15
constexpr int16_t kAlpha3 = 29491, kOneMinusAlpha3 = 3277;  // 0.9, 3-split concealment
constexpr int16_t kAlpha5 = 31128, kOneMinusAlpha5 = 1639;  // 0.95, 12.2 concealment

void copy_row(const int16_t* row, int n, int16_t* dst) {
  for (int k = 0; k < n; ++k) dst[k] = row[k];
}

// D_plsf_3 into lsf (before reordering); updates pastRq.
void decode_split3(const int16_t* idx, int16_t bfi, int mode, const int16_t* pastLsfQ, int16_t* pastRq, int16_t* lsf) {
  int16_t pred[kM];
  for (int i = 0; i < kM; ++i) pred[i] = bop::add(gsmamr::kMeanLsf3[i], bop::mult(pastRq[i], gsmamr::kPredFac3[i]));
  if (bfi != 0) {
    for (int i = 0; i < kM; ++i) {
      lsf[i] = bop::add(bop::mult(pastLsfQ[i], kAlpha3), bop::mult(gsmamr::kMeanLsf3[i], kOneMinusAlpha3));
      pastRq[i] = bop::sub(lsf[i], pred[i]);
    }
    return;
  }
  // Indices are masked to their table's range (see the export's documentation).
  int16_t r[kM];
  if (mode == vspRate7950)
    copy_row(gsmamr::kMr795Lsf1[idx[0] & 511], 3, &r[0]);
  else
    copy_row(gsmamr::kDico1Lsf3[idx[0] & 255], 3, &r[0]);
  if (amr::uses_reduced_tables(mode)) {
    copy_row(gsmamr::kDico2Lsf3[2 * (idx[1] & 255)], 3, &r[3]);
    copy_row(gsmamr::kMr515Lsf3[idx[2] & 127], 4, &r[6]);
  } else {
    copy_row(gsmamr::kDico2Lsf3[idx[1] & 511], 3, &r[3]);
    copy_row(gsmamr::kDico3Lsf3[idx[2] & 511], 4, &r[6]);
  }
  for (int i = 0; i < kM; ++i) {
    lsf[i] = bop::add(r[i], pred[i]);
    pastRq[i] = r[i];
  }
}

// D_plsf_5 into lsf1, lsf2 (before reordering); updates pastRq.
void decode_matrix5(const int16_t* idx, int16_t bfi, const int16_t* pastLsfQ, int16_t* pastRq, int16_t* lsf1,
                    int16_t* lsf2) {
  int16_t pred[kM];
  for (int i = 0; i < kM; ++i) pred[i] = bop::add(gsmamr::kMeanLsf5[i], bop::mult(pastRq[i], kPredFacMr122));
  if (bfi != 0) {
    for (int i = 0; i < kM; ++i) {
      lsf1[i] = bop::add(bop::mult(pastLsfQ[i], kAlpha5), bop::mult(gsmamr::kMeanLsf5[i], kOneMinusAlpha5));
      lsf2[i] = lsf1[i];
      pastRq[i] = bop::sub(lsf2[i], pred[i]);
    }
    return;
  }
  const int16_t* rows[5] = {gsmamr::kDico1Lsf5[idx[0] & 127], gsmamr::kDico2Lsf5[idx[1] & 255],
                            gsmamr::kDico3Lsf5[(idx[2] >> 1) & 255], gsmamr::kDico4Lsf5[idx[3] & 255],
                            gsmamr::kDico5Lsf5[idx[4] & 63]};
  const bool negative = (idx[2] & 1) != 0;
  int16_t r1[kM], r2[kM];
  for (int k = 0; k < 5; ++k) {
    int16_t v[4];
    for (int j = 0; j < 4; ++j) v[j] = k == 2 && negative ? bop::negate(rows[k][j]) : rows[k][j];
    r1[2 * k] = v[0];
    r1[2 * k + 1] = v[1];
    r2[2 * k] = v[2];
    r2[2 * k + 1] = v[3];
  }
  for (int i = 0; i < kM; ++i) {
    lsf1[i] = bop::add(r1[i], pred[i]);
    lsf2[i] = bop::add(r2[i], pred[i]);
    pastRq[i] = r2[i];
  }
}

// 3/4 a + 1/4 b with the reference's floor shifts.
inline int16_t three_quarter(int16_t a, int16_t b) { return bop::add(bop::shr(b, 2), bop::sub(a, bop::shr(a, 2))); }
inline int16_t half(int16_t a, int16_t b) { return bop::add(bop::shr(a, 1), bop::shr(b, 1)); }

}  // namespace

VspStatus legacy90vspsQuantLSPDecode_GSMAMR_16s(const Vsp16s* pIdx, Vsp16s* pPastRq, Vsp16s* pPastLsfQ, Vsp16s* pLsp,
                                                Vsp16s* pDstLspSubfr, Vsp16s bfi, int mode) {
  if (pIdx == nullptr || pPastRq == nullptr || pPastLsfQ == nullptr || pLsp == nullptr || pDstLspSubfr == nullptr)
    return vspStsNullPtrErr;
  if (!amr::mode_is_valid(mode)) return vspStsRangeErr;

  int16_t pastRq[kM], pastLsfQ[kM], oldLsp[kM];
  for (int i = 0; i < kM; ++i) {
    pastRq[i] = pPastRq[i];
    pastLsfQ[i] = pPastLsfQ[i];
    oldLsp[i] = pLsp[i];
  }
  int16_t sub[4][kM];
  if (amr::is_mr122(mode)) {
    int16_t idx[5] = {0, 0, 0, 0, 0};
    if (bfi == 0)
      for (int k = 0; k < 5; ++k) idx[k] = pIdx[k];
    int16_t lsf1[kM], lsf2[kM];
    decode_matrix5(idx, bfi, pastLsfQ, pastRq, lsf1, lsf2);
    amr::reorder_lsf(lsf1);
    amr::reorder_lsf(lsf2);
    for (int i = 0; i < kM; ++i) pastLsfQ[i] = lsf2[i];
    amr::lsf_to_lsp(lsf1, sub[1]);  // subframe 2
    amr::lsf_to_lsp(lsf2, sub[3]);  // subframe 4
    for (int i = 0; i < kM; ++i) {
      sub[0][i] = half(sub[1][i], oldLsp[i]);
      sub[2][i] = half(sub[1][i], sub[3][i]);
    }
  } else {
    int16_t idx[3] = {0, 0, 0};
    if (bfi == 0)
      for (int k = 0; k < 3; ++k) idx[k] = pIdx[k];
    int16_t lsf[kM];
    decode_split3(idx, bfi, mode, pastLsfQ, pastRq, lsf);
    amr::reorder_lsf(lsf);
    for (int i = 0; i < kM; ++i) pastLsfQ[i] = lsf[i];
    amr::lsf_to_lsp(lsf, sub[3]);
    for (int i = 0; i < kM; ++i) {
      sub[0][i] = three_quarter(oldLsp[i], sub[3][i]);
      sub[1][i] = half(oldLsp[i], sub[3][i]);
      sub[2][i] = three_quarter(sub[3][i], oldLsp[i]);
    }
  }
  for (int s = 0; s < 4; ++s)
    for (int i = 0; i < kM; ++i) pDstLspSubfr[s * kM + i] = sub[s][i];
  for (int i = 0; i < kM; ++i) {
    pPastRq[i] = pastRq[i];
    pPastLsfQ[i] = pastLsfQ[i];
    pLsp[i] = sub[3][i];
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
