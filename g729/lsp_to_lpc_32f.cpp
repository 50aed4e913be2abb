// legacy90vspsLSPToLPC_G729_32f: LSP to LP in single precision (the
// floating-point annex's lsp_az with get_lsp_pol).
#include "core/float_canonical.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
// Product of the factors 1 - 2q z^-1 + z^-2 for q = lsp[0], lsp[2], .. lsp[8].
inline void lsp_polynomial(const float* lsp, float* f) {
  f[0] = 1.0f;
  f[1] = -2.0f * lsp[0];
  for (int i = 2; i <= 5; ++i) {
    const float b = -2.0f * lsp[2 * (i - 1)];
    f[i] = b * f[i - 1] + 2.0f * f[i - 2];
    for (int j = i - 1; j >= 2; --j) f[j] += b * f[j - 1] + f[j - 2];
    f[1] += b;
  }
}
}  // namespace

VspStatus legacy90vspsLSPToLPC_G729_32f(const Vsp32f* pSrcLsp, Vsp32f* pDstLpc) {
  if (pSrcLsp == nullptr || pDstLpc == nullptr) return vspStsNullPtrErr;
  float f1[6];
  float f2[6];
  lsp_polynomial(pSrcLsp, f1);
  lsp_polynomial(pSrcLsp + 1, f2);
  for (int i = 5; i > 0; --i) {
    f1[i] += f1[i - 1];
    f2[i] -= f2[i - 1];
  }
  pDstLpc[0] = 1.0f;
  for (int i = 1; i <= 5; ++i) {
    pDstLpc[i] = fout::canonical(0.5f * (f1[i] + f2[i]));
    pDstLpc[11 - i] = fout::canonical(0.5f * (f1[i] - f2[i]));
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
