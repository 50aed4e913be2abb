// Excitation steps of G.729 shared by the encoder and the decoder: the
// adaptive-codebook vector (Pred_lt_3, clause 3.7.1), the algebraic code
// vector from its indices (clause 4.1.4), pitch sharpening (clause 3.8),
// the reference's random generator, the total excitation (clause 3.10) and
// the decoder's synthesis with overflow rescaling (clause 4.1.6).
#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

VspStatus legacy90vspsDecodeAdaptiveVector_G729_16s_I(Vsp16s T0, Vsp16s frac, Vsp16s* pSrcDstExc) {
  if (pSrcDstExc == nullptr) return vspStsNullPtrErr;
  if (T0 < kLagMin || T0 > kLagMax || frac < -1 || frac > 1) return vspStsRangeErr;
  pred_lt_3(pSrcDstExc + kExcHistory, T0, frac, kSubfr);
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodeFixedCodebook_G729_16s(Vsp16s index, Vsp16s signs, Vsp16s* pDstCode) {
  if (pDstCode == nullptr) return vspStsNullPtrErr;
  if (index < 0 || index > 8191 || signs < 0 || signs > 15) return vspStsRangeErr;
  int pos[4];
  int i = index;
  pos[0] = (i & 7) * 5;
  i >>= 3;
  pos[1] = (i & 7) * 5 + 1;
  i >>= 3;
  pos[2] = (i & 7) * 5 + 2;
  i >>= 3;
  pos[3] = ((i >> 1) & 7) * 5 + 3 + (i & 1);
  for (int n = 0; n < kSubfr; ++n) pDstCode[n] = 0;
  for (int k = 0; k < 4; ++k) pDstCode[pos[k]] = ((signs >> k) & 1) ? int16_t(8191) : int16_t(-8192);
  return vspStsNoErr;
}

VspStatus legacy90vspsPitchSharpening_G729_16s_I(Vsp16s* pSrcDst, Vsp16s T0, Vsp16s prevGainPitch) {
  if (pSrcDst == nullptr) return vspStsNullPtrErr;
  if (T0 < kLagMin || T0 > kLagMax) return vspStsRangeErr;
  int16_t sharp = prevGainPitch;
  if (sharp > 13017) sharp = 13017;  // SHARPMAX 0.8, Q14
  if (sharp < 3277) sharp = 3277;    // SHARPMIN 0.2, Q14
  const int16_t g = shl(sharp, 1);
  for (int i = T0; i < kSubfr; ++i) pSrcDst[i] = add(pSrcDst[i], mult(pSrcDst[i - T0], g));
  return vspStsNoErr;
}

VspStatus legacy90vspsRandom_G729_16s(Vsp16s* pSrcDstSeed, Vsp16s* pDst, int len) {
  if (pSrcDstSeed == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  int16_t seed = *pSrcDstSeed;
  for (int n = 0; n < len; ++n) {
    seed = extract_l(L_add(L_shr(L_mult(seed, 31821), 1), 13849));
    pDst[n] = seed;
  }
  *pSrcDstSeed = seed;
  return vspStsNoErr;
}

VspStatus legacy90vspsBuildExcitation_G729_16s_I(const Vsp16s* pCode, Vsp16s gainPitch, Vsp16s gainCode,
                                                 Vsp16s* pSrcDstExc, int len) {
  if (pCode == nullptr || pSrcDstExc == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  for (int i = 0; i < len; ++i)
    pSrcDstExc[i] = round(L_shl(L_mac(L_mult(pSrcDstExc[i], gainPitch), pCode[i], gainCode), 1));
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodeSynthesis_G729_16s(const Vsp16s* pLpc, Vsp16s* pSrcDstExc, int excLen, Vsp16s* pDstSyn,
                                               Vsp16s* pSrcDstMem) {
  if (pLpc == nullptr || pSrcDstExc == nullptr || pDstSyn == nullptr || pSrcDstMem == nullptr) return vspStsNullPtrErr;
  if (excLen < kSubfr) return vspStsSizeErr;
  const int16_t* exc = pSrcDstExc + excLen - kSubfr;
  int16_t syn[kSubfr];
  if (!syn_filt(pLpc, exc, syn, kSubfr, pSrcDstMem, false)) {
    for (int i = 0; i < kSubfr; ++i) pDstSyn[i] = syn[i];
    for (int i = 0; i < kM; ++i) pSrcDstMem[i] = syn[kSubfr - kM + i];
    return vspStsNoErr;
  }
  for (int i = 0; i < excLen; ++i) pSrcDstExc[i] = shr(pSrcDstExc[i], 2);
  syn_filt(pLpc, exc, pDstSyn, kSubfr, pSrcDstMem, true);
  return vspStsOverflow;
}

}  // namespace vsps::VSPS_NS
