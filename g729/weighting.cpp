// Perceptual weighting of G.729: the adaptive gammas of the main body
// (clause 3.3, perc_var), A(z/gamma) (Weight_Az) and the Annex A fixed
// weighting with the tilt folded in for the open-loop pitch (clause A.3.3).
#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {
// Log-area ratio of a reflection coefficient, Q11 (piecewise linear).
int16_t lar_of(int16_t rc) {
  const int16_t c = shr(abs_s(rc), 4);
  int16_t lar;
  if (c <= 1299)
    lar = c;
  else if (c <= 1815)
    lar = extract_l(L_shr(L_sub(L_mult(shr(c, 1), 4567), 3271557), 11));
  else if (c <= 1944)
    lar = extract_l(L_shr(L_sub(L_mult(shr(c, 1), 11776), 16357786), 11));
  else
    lar = extract_l(L_shr(L_sub(L_mult(shr(c, 1), 27443), 46808433), 11));
  return rc < 0 ? sub(0, lar) : lar;
}
}  // namespace

VspStatus legacy90vspsWeightingGamma_G729_16s(const Vsp16s* pRc, const Vsp16s* pLsfInt, const Vsp16s* pLsfNew,
                                              Vsp16s* pSrcDstMem, Vsp16s* pDstGamma) {
  if (pRc == nullptr || pLsfInt == nullptr || pLsfNew == nullptr || pSrcDstMem == nullptr || pDstGamma == nullptr)
    return vspStsNullPtrErr;
  if (pSrcDstMem[0] != 0 && pSrcDstMem[0] != 1) return vspStsRangeErr;
  int16_t smooth = pSrcDstMem[0];
  const int16_t larNew[2] = {lar_of(pRc[0]), lar_of(pRc[1])};
  const int16_t lar[4] = {shr(add(larNew[0], pSrcDstMem[1]), 1), shr(add(larNew[1], pSrcDstMem[2]), 1), larNew[0],
                          larNew[1]};
  int16_t gamma[4];
  for (int k = 0; k < 2; ++k) {
    const int16_t l0 = lar[2 * k], l1 = lar[2 * k + 1];
    if (smooth != 0) {
      if (l0 < -3562 && l1 > 1336) smooth = 0;
    } else {
      if (l0 > -3116 || l1 < 890) smooth = 1;
    }
    if (smooth == 0) {
      gamma[2 * k] = 32113;  // 0.98
      const Vsp16s* lsf = k == 0 ? pLsfInt : pLsfNew;
      int16_t dmin = sub(shl(lsf[1], 1), shl(lsf[0], 1));
      for (int i = 1; i < kM - 1; ++i) {
        const int16_t d = sub(shl(lsf[i + 1], 1), shl(lsf[i], 1));
        if (d < dmin) dmin = d;
      }
      int16_t g2 = shl(sub(1024, mult(19302, dmin)), 5);
      if (g2 > 22938) g2 = 22938;
      if (g2 < 13107) g2 = 13107;
      gamma[2 * k + 1] = g2;
    } else {
      gamma[2 * k] = 30802;      // 0.94
      gamma[2 * k + 1] = 19661;  // 0.60
    }
  }
  pSrcDstMem[0] = smooth;
  pSrcDstMem[1] = larNew[0];
  pSrcDstMem[2] = larNew[1];
  for (int i = 0; i < 4; ++i) pDstGamma[i] = gamma[i];
  return vspStsNoErr;
}

VspStatus legacy90vspsWeightLPC_G729_16s(const Vsp16s* pLpc, Vsp16s gamma, Vsp16s* pDst) {
  if (pLpc == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  int16_t ap[kM + 1];
  weight_az(pLpc, gamma, ap);
  for (int i = 0; i <= kM; ++i) pDst[i] = ap[i];
  return vspStsNoErr;
}

VspStatus legacy90vspsWeightLPC_G729A_16s(const Vsp16s* pLpc, Vsp16s* pDstAp, Vsp16s* pDstAp1) {
  if (pLpc == nullptr || pDstAp == nullptr || pDstAp1 == nullptr) return vspStsNullPtrErr;
  int16_t ap[kM + 1], ap1[kM + 1];
  weight_az_a(pLpc, ap, ap1);
  for (int i = 0; i <= kM; ++i) {
    pDstAp[i] = ap[i];
    pDstAp1[i] = ap1[i];
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
