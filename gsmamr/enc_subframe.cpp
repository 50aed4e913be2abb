// GSM-AMR encoder subframe pre- and post-processing (TS 26.073
// subframePreProc, subframePostProc): impulse response of the weighted
// synthesis filter, LP residual and target; total excitation, local
// synthesis and the memories of the error and weighted-error filters.
#include "gsmamr/enc_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsSubframePreProc_GSMAMR_16s(const Vsp16s* pSrcLpc, const Vsp16s* pSrcQLpc,
                                                 const Vsp16s* pSrcSpeech, const Vsp16s* pSrcMemErr,
                                                 const Vsp16s* pSrcMemW0, Vsp16s* pDstImp, Vsp16s* pDstRes,
                                                 Vsp16s* pDstTarget, int mode) {
  using namespace amr;
  if (pSrcLpc == nullptr || pSrcQLpc == nullptr || pSrcSpeech == nullptr || pSrcMemErr == nullptr ||
      pSrcMemW0 == nullptr || pDstImp == nullptr || pDstRes == nullptr || pDstTarget == nullptr)
    return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0) return vspStsRangeErr;
  int16_t ap1[kMp1], ap2[kMp1];  // Q12
  weight_ai(pSrcLpc, gamma1_of(m), ap1);
  weight_ai(pSrcLpc, gsmamr::kGamma2, ap2);
  // Impulse response of A(z/g1) / (Aq(z) A(z/g2)), Q12.
  int16_t ai_zero[kSubfr] = {};
  for (int i = 0; i < kMp1; ++i) ai_zero[i] = ap1[i];
  int16_t zeros[kM] = {};
  int16_t h1[kSubfr];
  syn_filt(pSrcQLpc, ai_zero, h1, kSubfr, zeros, false);
  syn_filt(ap2, h1, h1, kSubfr, zeros, false);
  // LP residual, then the target through the error and weighting filters.
  int16_t res[kSubfr];
  residu(pSrcQLpc, pSrcSpeech + kM, res, kSubfr);
  int16_t error[kM + kSubfr];
  int16_t mem[kM];
  for (int i = 0; i < kM; ++i) mem[i] = error[i] = pSrcMemErr[i];
  syn_filt(pSrcQLpc, res, error + kM, kSubfr, mem, false);
  int16_t xn[kSubfr];
  residu(ap1, error + kM, xn, kSubfr);
  for (int i = 0; i < kM; ++i) mem[i] = pSrcMemW0[i];
  syn_filt(ap2, xn, xn, kSubfr, mem, false);
  for (int i = 0; i < kSubfr; ++i) {
    pDstImp[i] = h1[i];
    pDstRes[i] = res[i];
    pDstTarget[i] = xn[i];
  }
  return vspStsNoErr;
}

VspStatus legacy90vspsSubframePostProc_GSMAMR_16s(const Vsp16s* pSrcSpeech, const Vsp16s* pSrcQLpc,
                                                  const Vsp16s* pSrcTarget, const Vsp16s* pSrcCode,
                                                  const Vsp16s* pSrcFltAdapt, const Vsp16s* pSrcFltCode,
                                                  const Vsp16s* pSrcGain, Vsp16s* pSrcDstExc, Vsp16s* pMemSyn,
                                                  Vsp16s* pMemErr, Vsp16s* pMemW0, Vsp16s* pDstSynth, Vsp16s* pDstSharp,
                                                  int mode) {
  using namespace amr;
  using namespace bop;
  if (pSrcSpeech == nullptr || pSrcQLpc == nullptr || pSrcTarget == nullptr || pSrcCode == nullptr ||
      pSrcFltAdapt == nullptr || pSrcFltCode == nullptr || pSrcGain == nullptr || pSrcDstExc == nullptr ||
      pMemSyn == nullptr || pMemErr == nullptr || pMemW0 == nullptr || pDstSynth == nullptr || pDstSharp == nullptr)
    return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0) return vspStsRangeErr;
  const int16_t gain_pit = pSrcGain[0], gain_code = pSrcGain[1];  // Q14, Q1
  const bool mr122 = m == MR122;
  const int16_t tempShift = mr122 ? 2 : 1, kShift = mr122 ? 4 : 2;
  const int16_t pitch_fac = mr122 ? shr(gain_pit, 1) : gain_pit;
  int16_t exc[kSubfr], synth[kSubfr];
  for (int i = 0; i < kSubfr; ++i) {
    int32_t L = L_mult(pSrcDstExc[i], pitch_fac);
    L = L_mac(L, pSrcCode[i], gain_code);
    exc[i] = round(L_shl(L, tempShift));
  }
  int16_t mem_syn[kM];
  for (int i = 0; i < kM; ++i) mem_syn[i] = pMemSyn[i];
  syn_filt(pSrcQLpc, exc, synth, kSubfr, mem_syn, true);
  for (int j = 0; j < kM; ++j) {
    const int i = kSubfr - kM + j;
    pMemErr[j] = sub(pSrcSpeech[i], synth[i]);
    const int16_t temp = extract_h(L_shl(L_mult(pSrcFltAdapt[i], gain_pit), 1));
    const int16_t k = extract_h(L_shl(L_mult(pSrcFltCode[i], gain_code), kShift));
    pMemW0[j] = sub(pSrcTarget[i], add(temp, k));
  }
  for (int i = 0; i < kM; ++i) pMemSyn[i] = mem_syn[i];
  for (int i = 0; i < kSubfr; ++i) {
    pSrcDstExc[i] = exc[i];
    pDstSynth[i] = synth[i];
  }
  *pDstSharp = sub(gain_pit, 13017) > 0 ? int16_t(13017) : gain_pit;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
