// GSM-AMR conversions between LP coefficients and LSPs: TS 26.073 Az_lsp on
// the root search shared with G.729 (Q10 polynomials, the AMR Chebyshev
// evaluation in Q24, 60-point grid, 4 bisections), and Lsp_Az, which is the
// G.729 routine itself.
#include "core/variants.h"
#include "g729/lsp_root_search.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLPCToLSP_GSMAMR_16s(const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp) {
  if (pSrcLpc == nullptr || pSrcPrevLsp == nullptr || pDstLsp == nullptr) return vspStsNullPtrErr;
  int16_t f1[lsp::kPolyOrder + 1], f2[lsp::kPolyOrder + 1];  // Q10
  lsp::sum_diff_polys_q10(pSrcLpc, f1, f2);
  int16_t lspQ15[lsp::kLpOrder];
  if (lsp::find_roots(f1, f2, lsp::kChebyshevAmrQ10, lsp::kGridG729, lspQ15) < lsp::kLpOrder)
    for (int i = 0; i < lsp::kLpOrder; ++i) lspQ15[i] = pSrcPrevLsp[i];  // fewer than 10 roots: keep the old LSPs
  for (int i = 0; i < lsp::kLpOrder; ++i) pDstLsp[i] = lspQ15[i];
  return vspStsNoErr;
}

VspStatus legacy90vspsLSPToLPC_GSMAMR_16s(const Vsp16s* pSrcLsp, Vsp16s* pDstLpc) {
  return legacy90vspsLSPToLPC_G729_16s(pSrcLsp, pDstLpc);
}

}  // namespace vsps::VSPS_NS
