// G.729 Annex B discontinuous transmission in the encoder (clause B.4):
// the autocorrelation history kept on every frame (Update_cng), and on
// non-speech frames the comfort-noise coder (Cod_cng): filter and energy of
// the last frames, the SID / no-transmission decision, SID LSF and energy
// quantisation, comfort-noise excitation and the interpolated filter.
#include <cstring>

#include "core/variants.h"
#include "g729/sid_lsf.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

constexpr int kMp1 = kM + 1;
constexpr int16_t kInitSeed = 11111;
constexpr int16_t kFracThresh1 = 4855;
constexpr int16_t kFracThresh2 = 3161;

struct DtxState {
  int16_t acf[2][kMp1], shAcf[2];
  int16_t sumAcf[3][kMp1], shSumAcf[3];
  int16_t frCur;
  int16_t ener[2], shEner[2];
  int16_t curGain, flagChang, countFr0, nbEner, prevEnergy, sidGain;
  int16_t rCoeff[kMp1], shRCoeff;
  int16_t pastCoeff[kMp1];
  int16_t lspSidQ[kM];
  int16_t pastVad, lastVad, seed;
};

// Calc_sum_acf over nb (acf, sh) pairs.
void sum_acf(const int16_t (*acf)[kMp1], const int16_t* sh, int nb, int16_t* sum, int16_t* shSum) {
  int16_t sh0 = sh[0];
  for (int i = 1; i < nb; ++i)
    if (sub(sh[i], sh0) < 0) sh0 = sh[i];
  sh0 = add(sh0, 14);
  int32_t L[kMp1] = {};
  for (int i = 0; i < nb; ++i) {
    const int16_t t = shift_count(sub(sh0, sh[i]));
    for (int j = 0; j < kMp1; ++j) L[j] = L_add(L[j], L_shl(L_deposit_l(acf[i][j]), t));
  }
  const int16_t t = norm_l(L[0]);
  for (int j = 0; j < kMp1; ++j) sum[j] = extract_h(L_shl(L[j], t));
  *shSum = add(sh0, sub(t, 16));
}

void update_sum_acf(DtxState& s) {
  for (int k = 2; k > 0; --k) {
    std::memcpy(s.sumAcf[k], s.sumAcf[k - 1], sizeof s.sumAcf[k]);
    s.shSumAcf[k] = s.shSumAcf[k - 1];
  }
  sum_acf(s.acf, s.shAcf, 2, s.sumAcf[0], &s.shSumAcf[0]);
}

// Levinson on a 16-bit autocorrelation (zero low words) with the shared
// last-good-filter memory; returns true when it completed.
bool levinson(const int16_t* acf, int16_t* lpc, int16_t* err, int16_t* lpcMem, int16_t* rcMem) {
  int32_t r[kMp1];
  for (int j = 0; j < kMp1; ++j) r[j] = L_deposit_h(acf[j]);
  int16_t a[kMp1], rc[kM], e = 0;
  if (legacy90vspsLevinsonDurbin_G729_32s16s(r, kM, a, rc, &e) != vspStsNoErr) {
    std::memcpy(lpc, lpcMem, sizeof a);
    return false;
  }
  std::memcpy(lpcMem, a, sizeof a);
  std::memcpy(rcMem, rc, sizeof rc);
  std::memcpy(lpc, a, sizeof a);
  *err = e;
  return true;
}

void calc_rcoeff(const int16_t* c, int16_t* R, int16_t* shR) {
  int32_t L = 0;
  for (int j = 0; j < kMp1; ++j) L = L_mac(L, c[j], c[j]);
  const int16_t sh = norm_l(L);
  R[0] = round(L_shl(L, sh));
  for (int i = 1; i < kMp1; ++i) {
    L = 0;
    for (int j = 0; j < kMp1 - i; ++j) L = L_mac(L, c[j], c[j + i]);
    R[i] = round(L_shl(L, sh));
  }
  *shR = sh;
}

bool cmp_filt(const int16_t* R, int16_t shR, const int16_t* acf, int16_t alpha, int16_t thr) {
  int16_t s[2] = {0, 0};
  int ind = 1;
  int32_t L;
  for (;;) {
    bool ovf = false;
    L = L_shr(L_mult_ovf(shr(R[0], s[0]), shr(acf[0], s[1]), ovf), 1);
    for (int i = 1; i < kMp1; ++i) L = L_mac_ovf(L, shr(R[i], s[0]), shr(acf[i], s[1]), ovf);
    if (!ovf) break;
    s[ind] = add(s[ind], 1);
    ind = 1 - ind;
  }
  int32_t Lt = L_add(L_deposit_l(mult_r(alpha, thr)), L_deposit_l(alpha));
  Lt = L_shl(Lt, shift_count(sub(add(shR, 9), add(s[0], s[1]))));
  return L_sub(L, Lt) > 0;
}

// lsfq_noise: SID LSF quantisation of lsp; indices {mode, i1, i2}; lspq.
void lsfq_noise(const int16_t* lspIn, int16_t* prev, int16_t* idx, int16_t* lspq) {
  int16_t lsf[kM], w[kM], err[2][kM];
  lsp::lsp_to_lsf_radian(lspIn, lsf);
  if (lsf[0] < 40) lsf[0] = 40;
  for (int i = 0; i < kM - 1; ++i)
    if (sub(lsf[i + 1], lsf[i]) < 642) lsf[i + 1] = add(lsf[i], 642);
  if (lsf[kM - 1] > 25681) lsf[kM - 1] = 25681;
  if (lsf[kM - 1] < lsf[kM - 2]) lsf[kM - 2] = sub(lsf[kM - 1], 321);
  lsfvq::weights(lsf, w);
  for (int p = 0; p < 2; ++p)
    for (int j = 0; j < kM; ++j) {
      int32_t L = L_deposit_h(lsf[j]);
      for (int k = 0; k < 4; ++k) L = L_msu(L, prev[k * kM + j], sid::noise_fg(p, k, j));
      err[p][j] = extract_h(L_shl(L_mult(extract_h(L), tb::kSidNoiseFgSumInv[p * kM + j]), 3));
    }
  int16_t dist1[2][32];
  for (int p = 0; p < 2; ++p)
    for (int m = 0; m < 32; ++m) {
      const int16_t* row = lsfvq::cb1_row(tb::kSidPtrTab1[m]);
      int32_t L = 0;
      for (int l = 0; l < kM; ++l) {
        const int16_t d = sub(err[p][l], row[l]);
        L = L_mac(L, d, d);
      }
      dist1[p][m] = mult(extract_h(L), tb::kSidMp[p]);
    }
  int pred[4], idx1[4];
  int16_t d1[4][kM];
  for (int q = 0; q < 4; ++q) {
    int16_t best = 32767;
    int bp = 0, bm = 0;
    for (int p = 0; p < 2; ++p)
      for (int m = 0; m < 32; ++m)
        if (sub(dist1[p][m], best) < 0) best = dist1[p][m], bp = p, bm = m;
    dist1[bp][bm] = 32767;
    pred[q] = bp;
    idx1[q] = bm;
    const int16_t* row = lsfvq::cb1_row(tb::kSidPtrTab1[bm]);
    for (int l = 0; l < kM; ++l) d1[q][l] = sub(err[bp][l], row[l]);
  }
  int16_t best = 32767;
  int bq = 0, bm2 = 0;
  for (int q = 0; q < 4; ++q)
    for (int m = 0; m < 16; ++m) {
      int32_t L = 0;
      for (int l = 0; l < kM; ++l) {
        const int16_t* row = lsfvq::cb2_row(l < 5 ? tb::kSidPtrTab2[m] : tb::kSidPtrTab2[16 + m]);
        const int16_t v = tb::kSidNoiseFgSum[pred[q] * kM + l];
        int16_t t = mult(extract_h(L_shl(L_mult(v, v), 2)), w[l]);
        const int16_t d = sub(d1[q][l], row[l]);
        t = extract_h(L_shl(L_mult(t, d), 3));
        L = L_mac(L, t, d);
      }
      const int16_t dist = extract_h(L);
      if (sub(dist, best) < 0) best = dist, bq = q, bm2 = m;
    }
  idx[0] = static_cast<int16_t>(pred[bq]);
  idx[1] = static_cast<int16_t>(idx1[bq]);
  idx[2] = static_cast<int16_t>(bm2);
  sid::reconstruct(idx[0], idx[1], idx[2], prev, lspq);
}

}  // namespace

VspStatus legacy90vspsDTXGetStateSize_G729B(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(DtxState));
  return vspStsNoErr;
}

VspStatus legacy90vspsDTXInit_G729B(Vsp8u* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  DtxState s{};
  s.shAcf[0] = s.shAcf[1] = 40;
  s.shSumAcf[0] = s.shSumAcf[1] = s.shSumAcf[2] = 40;
  s.shEner[0] = s.shEner[1] = 40;
  s.pastVad = s.lastVad = 1;
  s.seed = kInitSeed;
  std::memcpy(pState, &s, sizeof s);
  return vspStsNoErr;
}

VspStatus legacy90vspsDTXUpdate_G729B(const Vsp32s* pAutoCorr, int norm, int vad, Vsp8u* pState) {
  if (pAutoCorr == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (norm < -64 || norm > 64 || vad < 0 || vad > 1) return vspStsRangeErr;
  DtxState s;
  std::memcpy(&s, pState, sizeof s);
  s.pastVad = s.lastVad;
  s.lastVad = static_cast<int16_t>(vad);
  if (vad) s.seed = kInitSeed;
  std::memcpy(s.acf[1], s.acf[0], sizeof s.acf[0]);
  s.shAcf[1] = s.shAcf[0];
  for (int j = 0; j < kMp1; ++j) s.acf[0][j] = extract_h(pAutoCorr[j]);
  s.shAcf[0] = negate(add(16, static_cast<int16_t>(1 - norm)));
  s.frCur = add(s.frCur, 1);
  if (s.frCur == 2) {
    s.frCur = 0;
    if (vad != 0) update_sum_acf(s);
  }
  std::memcpy(pState, &s, sizeof s);
  return vspStsNoErr;
}

VspStatus legacy90vspsDTXEncode_G729B_16s(int annexA, Vsp16s* pSrcDstPrevFreq, Vsp16s* pSrcDstLpcMem,
                                          Vsp16s* pSrcDstRcMem, Vsp16s* pSrcDstLspOldQ, Vsp16s* pSrcDstExc,
                                          Vsp32s* pSrcDstExcErr, Vsp16s* pDstLpcQ, Vsp16s* pDstPrm, Vsp8u* pState) {
  if (pSrcDstPrevFreq == nullptr || pSrcDstLpcMem == nullptr || pSrcDstRcMem == nullptr || pSrcDstLspOldQ == nullptr ||
      pSrcDstExc == nullptr || pSrcDstExcErr == nullptr || pDstLpcQ == nullptr || pDstPrm == nullptr ||
      pState == nullptr)
    return vspStsNullPtrErr;
  DtxState s;
  std::memcpy(&s, pState, sizeof s);
  s.ener[1] = s.ener[0];
  s.shEner[1] = s.shEner[0];
  int16_t curAcf[kMp1], curCoeff[kMp1] = {4096};
  sum_acf(s.acf, s.shAcf, 2, curAcf, &s.shEner[0]);
  if (curAcf[0] == 0)
    s.ener[0] = 0;
  else
    levinson(curAcf, curCoeff, &s.ener[0], pSrcDstLpcMem, pSrcDstRcMem);
  int16_t energyq = 0, igain = 0, type;
  if (s.pastVad != 0) {
    type = 2;
    s.countFr0 = 0;
    s.nbEner = 1;
    legacy90vspsQuantSidEnergy_G729B_16s(s.ener, s.shEner, 1, &energyq, &igain);
  } else {
    s.nbEner = add(s.nbEner, 1);
    if (s.nbEner > 2 || s.nbEner < 1) s.nbEner = 2;  // (below 1 only in a block not formatted by Init)
    legacy90vspsQuantSidEnergy_G729B_16s(s.ener, s.shEner, s.nbEner, &energyq, &igain);
    if (cmp_filt(s.rCoeff, s.shRCoeff, curAcf, s.ener[0], kFracThresh1)) s.flagChang = 1;
    if (sub(abs_s(sub(s.prevEnergy, energyq)), 2) > 0) s.flagChang = 1;
    s.countFr0 = add(s.countFr0, 1);
    if (s.countFr0 < 3) {
      type = 0;
    } else {
      type = s.flagChang != 0 ? int16_t(2) : int16_t(0);
      s.countFr0 = 3;
    }
  }
  int16_t prm[5] = {type, 0, 0, 0, 0};
  if (type == 2) {
    s.countFr0 = 0;
    s.flagChang = 0;
    int16_t sum[kMp1], shSum;
    sum_acf(s.sumAcf, s.shSumAcf, 3, sum, &shSum);
    if (sum[0] == 0) {
      std::memset(s.pastCoeff, 0, sizeof s.pastCoeff);
      s.pastCoeff[0] = 4096;
    } else {
      int16_t e = 0;
      levinson(sum, s.pastCoeff, &e, pSrcDstLpcMem, pSrcDstRcMem);
    }
    calc_rcoeff(s.pastCoeff, s.rCoeff, &s.shRCoeff);
    const int16_t* lpc = s.pastCoeff;
    if (cmp_filt(s.rCoeff, s.shRCoeff, curAcf, s.ener[0], kFracThresh2)) {
      lpc = curCoeff;
      calc_rcoeff(curCoeff, s.rCoeff, &s.shRCoeff);
    }
    int16_t lspNew[kM];
    if (annexA)
      legacy90vspsLPCToLSP_G729A_16s(lpc, pSrcDstLspOldQ, lspNew);
    else
      legacy90vspsLPCToLSP_G729_16s(lpc, pSrcDstLspOldQ, lspNew);
    lsfq_noise(lspNew, pSrcDstPrevFreq, prm + 1, s.lspSidQ);
    s.prevEnergy = energyq;
    prm[4] = igain;
    s.sidGain = tb::kSidGain[igain];
  }
  legacy90vspsComfortNoiseExcitation_G729B_16s(s.sidGain, s.pastVad != 0, &s.curGain, &s.seed, pSrcDstExc,
                                               pSrcDstExcErr);
  int16_t mid[kM];
  legacy90vspsInterpolate_G729_16s(pSrcDstLspOldQ, s.lspSidQ, mid, kM);
  legacy90vspsLSPToLPC_G729_16s(mid, pDstLpcQ);
  legacy90vspsLSPToLPC_G729_16s(s.lspSidQ, pDstLpcQ + kMp1);
  std::memcpy(pSrcDstLspOldQ, s.lspSidQ, sizeof s.lspSidQ);
  if (s.frCur == 0) update_sum_acf(s);
  for (int i = 0; i < 5; ++i) pDstPrm[i] = prm[i];
  std::memcpy(pState, &s, sizeof s);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
