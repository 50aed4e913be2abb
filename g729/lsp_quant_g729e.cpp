// G.729 Annex E forward LSP quantiser (reference Qua_lspe):
// legacy90vspsLSPQuant_G729E_16s. The quantisation is the main body's; the MA
// memory is only read, and the rearranged residual of the frame is returned
// so that the caller can push it into the memory when the frame is coded in
// forward mode.
#include "g729/lsf_vq.h"
#include "g729/lsp_lsf.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLSPQuant_G729E_16s(const Vsp16s* pSrcLsp, const Vsp16s* pSrcPrevFreq, Vsp16s* pDstQLsp,
                                         Vsp16s* pDstFreqCur, Vsp16s* pDstQuantIndex) {
  if (pSrcLsp == nullptr || pSrcPrevFreq == nullptr || pDstQLsp == nullptr || pDstFreqCur == nullptr ||
      pDstQuantIndex == nullptr)
    return vspStsNullPtrErr;
  int16_t lsf[lsfvq::M];
  lsp::lsp_to_lsf_radian(pSrcLsp, lsf);
  int codes[4];
  lsfvq::quantise(lsf, pSrcPrevFreq, codes);
  int16_t buf[lsfvq::M];
  lsfvq::residual(codes[1], codes[2], codes[3], buf);
  int16_t q[lsfvq::M];
  lsfvq::prev_compose(buf, codes[0], pSrcPrevFreq, q);
  lsfvq::stability(q);
  for (int j = 0; j < lsfvq::M; ++j) pDstQLsp[j] = lsp::lsf_to_lsp_radian(q[j]);
  for (int j = 0; j < lsfvq::M; ++j) pDstFreqCur[j] = buf[j];
  pDstQuantIndex[0] = static_cast<Vsp16s>(codes[0] << 7 | codes[1]);
  pDstQuantIndex[1] = static_cast<Vsp16s>(codes[2] << 5 | codes[3]);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
