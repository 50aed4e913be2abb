// G.729 Annex B encoder memory update on a non-speech frame (clause B.4.4):
// the synthesis, error and weighting filter memories follow the comfort
// noise the decoder will produce (main body, and the Annex A form that also
// gives the weighted speech of the pitch history).
#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

VspStatus legacy90vspsNoiseMemoryUpdate_G729B_16s(const Vsp16s* pLpcQ, const Vsp16s* pAp1, const Vsp16s* pAp2,
                                                  const Vsp16s* pSpeech, const Vsp16s* pExc, Vsp16s* pSrcDstMemSyn,
                                                  Vsp16s* pSrcDstMemErr, Vsp16s* pSrcDstMemW0) {
  if (pLpcQ == nullptr || pAp1 == nullptr || pAp2 == nullptr || pSpeech == nullptr || pExc == nullptr ||
      pSrcDstMemSyn == nullptr || pSrcDstMemErr == nullptr || pSrcDstMemW0 == nullptr)
    return vspStsNullPtrErr;
  int16_t synth[kSubfr], err[kM + kSubfr], xn[kSubfr];
  syn_filt(pLpcQ, pExc, synth, kSubfr, pSrcDstMemSyn, true);
  for (int i = 0; i < kM; ++i) err[i] = pSrcDstMemErr[i];
  for (int i = 0; i < kSubfr; ++i) err[kM + i] = sub(pSpeech[i], synth[i]);
  residu(pAp1, err + kM, xn, kSubfr);
  syn_filt(pAp2, xn, xn, kSubfr, pSrcDstMemW0, true);
  for (int i = 0; i < kM; ++i) pSrcDstMemErr[i] = err[kSubfr + i];
  return vspStsNoErr;
}

VspStatus legacy90vspsNoiseMemoryUpdate_G729AB_16s(const Vsp16s* pLpcQ, const Vsp16s* pSpeech, const Vsp16s* pExc,
                                                   Vsp16s* pDstWsp, Vsp16s* pSrcDstMemW, Vsp16s* pSrcDstMemW0) {
  if (pLpcQ == nullptr || pSpeech == nullptr || pExc == nullptr || pDstWsp == nullptr || pSrcDstMemW == nullptr ||
      pSrcDstMemW0 == nullptr)
    return vspStsNullPtrErr;
  int16_t xn[kSubfr], ap[kM + 1], ap1[kM + 1];
  residu(pLpcQ, pSpeech + kM, xn, kSubfr);
  weight_az_a(pLpcQ, ap, ap1);
  syn_filt(ap1, xn, pDstWsp, kSubfr, pSrcDstMemW, true);
  for (int i = 0; i < kSubfr; ++i) xn[i] = sub(xn[i], pExc[i]);
  syn_filt(ap, xn, xn, kSubfr, pSrcDstMemW0, true);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
