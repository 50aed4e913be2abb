// legacy90vspsLPCToLSP_G729_16s and legacy90vspsLPCToLSP_G729A_16s: LP
// coefficients (Q12) to LSP (Q15), bit-exact with the G.729 reference Az_lsp
// (main body: 60-point grid, 4 bisections; Annex A: 50 points, 2 bisections).
#include "g729/g729_tables.h"
#include "speech/lpc/lsp_root_search.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
// Main body: 60 intervals, 4 bisections; Annex A: 50 intervals, 2 bisections.
constexpr lsp::SearchGrid kGridG729{tables::g729::kGrid60Q15, 60, 4};
constexpr lsp::SearchGrid kGridG729A{tables::g729::kGrid50Q15, 50, 2};

VspStatus lpc_to_lsp(const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp, const lsp::SearchGrid& grid) {
  if (pSrcLpc == nullptr || pSrcPrevLsp == nullptr || pDstLsp == nullptr) return vspStsNullPtrErr;
  int16_t f1[6];
  int16_t f2[6];
  lsp::ChebyshevForm form = lsp::kChebyshevQ11;
  if (lsp::sum_diff_polys_q11(pSrcLpc, f1, f2)) {  // a coefficient saturated in Q11
    lsp::sum_diff_polys_q10(pSrcLpc, f1, f2);
    form = lsp::kChebyshevQ10;
  }
  int16_t lspQ15[10];
  const int16_t* result = lspQ15;
  if (lsp::find_roots(f1, f2, form, grid, lspQ15) < 10) result = pSrcPrevLsp;
  for (int i = 0; i < 10; ++i) lspQ15[i] = result[i];  // via the local copy: buffers may overlap
  for (int i = 0; i < 10; ++i) pDstLsp[i] = lspQ15[i];
  return vspStsNoErr;
}
}  // namespace

VspStatus legacy90vspsLPCToLSP_G729_16s(const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp) {
  return lpc_to_lsp(pSrcLpc, pSrcPrevLsp, pDstLsp, kGridG729);
}

VspStatus legacy90vspsLPCToLSP_G729A_16s(const Vsp16s* pSrcLpc, const Vsp16s* pSrcPrevLsp, Vsp16s* pDstLsp) {
  return lpc_to_lsp(pSrcLpc, pSrcPrevLsp, pDstLsp, kGridG729A);
}

}  // namespace vsps::VSPS_NS
