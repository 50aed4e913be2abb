// GSM-AMR LSF to LSP conversion (TS 26.073 Lsf_lsp) with range handling.
#include "gsmamr/lsf_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLSFToLSP_GSMAMR_16s(const Vsp16s* pSrcLsf, Vsp16s* pDstLsp) {
  if (pSrcLsf == nullptr || pDstLsp == nullptr) return vspStsNullPtrErr;
  for (int i = 0; i < gsmamr::kOrder; ++i) {
    if (pSrcLsf[i] < 0) return vspStsLSFRangeErr;  // earlier values stay written
    pDstLsp[i] = amr::lsf_to_lsp_one(pSrcLsf[i]);
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
