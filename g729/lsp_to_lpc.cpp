// legacy90vspsLSPToLPC_G729_16s: LSP (Q15) to LP coefficients (Q12),
// bit-exact with the G.729 reference Lsp_Az.
#include "speech/lpc/lsp_to_lpc.h"

#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLSPToLPC_G729_16s(const Vsp16s* pSrcLsp, Vsp16s* pDstLpc) {
  if (pSrcLsp == nullptr || pDstLpc == nullptr) return vspStsNullPtrErr;
  int16_t lpcQ12[11];
  lsp::lsp_to_lpc_q12(pSrcLsp, lpcQ12);  // local copy: the buffers may overlap
  for (int i = 0; i < 11; ++i) pDstLpc[i] = lpcQ12[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
