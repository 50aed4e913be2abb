// GSM-AMR conversions between LP coefficients and LSPs: TS 26.073 Az_lsp on
// the shared root search (Q10 polynomials, the AMR Chebyshev evaluation in
// Q24, 60-point grid, 4 bisections), and Lsp_Az, the shared LSP to LP
// conversion (the same arithmetic as G.729's).
#include "gsmamr/amr_tables.h"
#include "speech/lpc/lsp_root_search.h"
#include "speech/lpc/lsp_to_lpc.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
constexpr lsp::SearchGrid kGrid{gsmamr::kChebyshevGrid, 60, 4};
}  // namespace

VspStatus legacy90vspsLPCToLSP_GSMAMR_16s(const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp) {
  if (pSrcLpc == nullptr || pSrcPrevLsp == nullptr || pDstLsp == nullptr) return vspStsNullPtrErr;
  int16_t f1[lsp::kPolyOrder + 1], f2[lsp::kPolyOrder + 1];  // Q10
  lsp::sum_diff_polys_q10(pSrcLpc, f1, f2);
  int16_t lspQ15[lsp::kLpOrder];
  if (lsp::find_roots(f1, f2, lsp::kChebyshevAmrQ10, kGrid, lspQ15) < lsp::kLpOrder)
    for (int i = 0; i < lsp::kLpOrder; ++i) lspQ15[i] = pSrcPrevLsp[i];  // fewer than 10 roots: keep the old LSPs
  for (int i = 0; i < lsp::kLpOrder; ++i) pDstLsp[i] = lspQ15[i];
  return vspStsNoErr;
}

VspStatus legacy90vspsLSPToLPC_GSMAMR_16s(const Vsp16s* pSrcLsp, Vsp16s* pDstLpc) {
  if (pSrcLsp == nullptr || pDstLpc == nullptr) return vspStsNullPtrErr;
  int16_t lpcQ12[lsp::kLpOrder + 1];
  lsp::lsp_to_lpc_q12(pSrcLsp, lpcQ12);  // local copy: the buffers may overlap
  for (int i = 0; i <= lsp::kLpOrder; ++i) pDstLpc[i] = lpcQ12[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
