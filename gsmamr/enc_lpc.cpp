// GSM-AMR encoder LP filters of the four subframes (TS 26.073 Int_lpc_1to3
// and Int_lpc_1and3): LSP interpolation and Lsp_Az per subframe.
#include "gsmamr/enc_ops.h"
#include "speech/lpc/lsp_to_lpc.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsInterpolateLPC_GSMAMR_16s(const Vsp16s* pSrcPrevLsp, const Vsp16s* pSrcLsp, Vsp16s* pDstLpc,
                                                int mode) {
  using namespace amr;
  if (pSrcPrevLsp == nullptr || pSrcLsp == nullptr || pDstLpc == nullptr) return vspStsNullPtrErr;
  const int16_t m = speech_mode(mode);
  if (m < 0) return vspStsRangeErr;
  int16_t lsp[4][kM];  // Q15, one vector per subframe
  if (m == MR122) {
    const int16_t* mid = pSrcLsp;
    const int16_t* cur = pSrcLsp + kM;
    lsp_interp_half(mid, pSrcPrevLsp, lsp[0]);
    for (int i = 0; i < kM; ++i) lsp[1][i] = mid[i];
    lsp_interp_half(mid, cur, lsp[2]);
    for (int i = 0; i < kM; ++i) lsp[3][i] = cur[i];
  } else {
    lsp_interp_quarter(pSrcPrevLsp, pSrcLsp, lsp[0]);
    lsp_interp_half(pSrcPrevLsp, pSrcLsp, lsp[1]);
    lsp_interp_quarter(pSrcLsp, pSrcPrevLsp, lsp[2]);
    for (int i = 0; i < kM; ++i) lsp[3][i] = pSrcLsp[i];
  }
  int16_t a[4 * kMp1];
  for (int k = 0; k < 4; ++k) lsp::lsp_to_lpc_q12(lsp[k], a + kMp1 * k);
  for (int i = 0; i < 4 * kMp1; ++i) pDstLpc[i] = a[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
