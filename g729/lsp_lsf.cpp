// LSP <-> LSF conversion exports: legacy90vspsLSPToLSF_G729_16s (radian),
// legacy90vspsLSPToLSF_Norm_G729_16s (normalised) and
// legacy90vspsLSFToLSP_G729_16s.
#include "g729/lsp_lsf.h"

#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLSPToLSF_G729_16s(const Vsp16s* pSrcLsp, Vsp16s* pDstLsf) {
  if (pSrcLsp == nullptr || pDstLsf == nullptr) return vspStsNullPtrErr;
  int16_t lsfQ13[10];
  lsp::lsp_to_lsf_radian(pSrcLsp, lsfQ13);
  for (int i = 0; i < 10; ++i) pDstLsf[i] = lsfQ13[i];
  return vspStsNoErr;
}

VspStatus legacy90vspsLSPToLSF_Norm_G729_16s(const Vsp16s* pSrcLsp, Vsp16s* pDstLsf) {
  if (pSrcLsp == nullptr || pDstLsf == nullptr) return vspStsNullPtrErr;
  int16_t lsfQ15[10];
  lsp::lsp_to_lsf_norm(pSrcLsp, lsfQ15);
  for (int i = 0; i < 10; ++i) pDstLsf[i] = lsfQ15[i];
  return vspStsNoErr;
}

VspStatus legacy90vspsLSFToLSP_G729_16s(const Vsp16s* pSrcLsf, Vsp16s* pDstLsp) {
  if (pSrcLsf == nullptr || pDstLsp == nullptr) return vspStsNullPtrErr;
  for (int i = 0; i < 10; ++i) pDstLsp[i] = lsp::lsf_to_lsp_radian(pSrcLsf[i]);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
