// GSM-AMR weighted speech of a half frame (TS 26.073 pre_big): per subframe
// the residual of the speech through A(z/g1) and its synthesis through
// 1/A(z/g2), with the filter memory carried over.
#include "gsmamr/enc_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsWeightedSpeech_GSMAMR_16s(const Vsp16s* pSrcSpeech, const Vsp16s* pSrcLpc, Vsp16s* pDstWsp,
                                                Vsp16s* pMemW, int mode) {
  using namespace amr;
  if (pSrcSpeech == nullptr || pSrcLpc == nullptr || pDstWsp == nullptr || pMemW == nullptr) return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0) return vspStsRangeErr;
  int16_t wsp[2 * kSubfr];
  int16_t mem[kM];
  for (int i = 0; i < kM; ++i) mem[i] = pMemW[i];
  for (int k = 0; k < 2; ++k) {
    int16_t ap1[kMp1], ap2[kMp1];  // Q12
    weight_ai(pSrcLpc + kMp1 * k, gamma1_of(m), ap1);
    weight_ai(pSrcLpc + kMp1 * k, gsmamr::kGamma2, ap2);
    residu(ap1, pSrcSpeech + kM + kSubfr * k, wsp + kSubfr * k, kSubfr);
    speech::synthesis(ap2, kM, wsp + kSubfr * k, wsp + kSubfr * k, kSubfr, mem, 12);
  }
  for (int i = 0; i < 2 * kSubfr; ++i) pDstWsp[i] = wsp[i];
  for (int i = 0; i < kM; ++i) pMemW[i] = mem[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
