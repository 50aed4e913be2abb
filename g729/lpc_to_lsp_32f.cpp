// legacy90vspsLPCToLSP_G729_32f and legacy90vspsLPCToLSP_G729A_32f: LP to
// LSP in single precision (the floating-point annex's az_lsp: 60 points and
// 4 bisections, or 50 and 2).
#include "core/float_canonical.h"
#include "g729/g729_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
// C(x) = T5 + f1 T4 + f2 T3 + f3 T2 + f4 T1 + f5 / 2 by the Chebyshev recursion.
inline float chebyshev(float x, const float* f) {
  const float x2 = 2.0f * x;
  float b2 = 1.0f;
  float b1 = x2 + f[1];
  for (int i = 2; i < 5; ++i) {
    const float b0 = x2 * b1 - b2 + f[i];
    b2 = b1;
    b1 = b0;
  }
  return x * b1 - b2 + 0.5f * f[5];
}

VspStatus lpc_to_lsp(const Vsp32f* a, const Vsp32f* prev, Vsp32f* dst, const float* grid, int intervals,
                     int bisections) {
  if (a == nullptr || prev == nullptr || dst == nullptr) return vspStsNullPtrErr;
  float f1[6];
  float f2[6];
  f1[0] = 1.0f;
  f2[0] = 1.0f;
  for (int i = 1; i <= 5; ++i) {
    f1[i] = a[i] + a[11 - i] - f1[i - 1];
    f2[i] = a[i] - a[11 - i] + f2[i - 1];
  }
  float lsp[10];
  int nf = 0;
  bool onF1 = true;
  const float* coef = f1;
  float xlow = grid[0];
  float ylow = chebyshev(xlow, coef);
  int j = 0;
  while (nf < 10 && j < intervals) {
    ++j;
    float xhigh = xlow;
    float yhigh = ylow;
    xlow = grid[j];
    ylow = chebyshev(xlow, coef);
    if (ylow * yhigh > 0.0f) continue;
    for (int b = 0; b < bisections; ++b) {
      const float xmid = 0.5f * (xlow + xhigh);
      const float ymid = chebyshev(xmid, coef);
      if (ylow * ymid <= 0.0f) {
        yhigh = ymid;
        xhigh = xmid;
      } else {
        ylow = ymid;
        xlow = xmid;
      }
    }
    // Decision: equal end values (a zero on both ends) take xlow instead of
    // dividing by zero.
    const float dy = yhigh - ylow;
    const float xint = dy == 0.0f ? xlow : xlow - ylow * (xhigh - xlow) / dy;
    lsp[nf++] = xint;
    xlow = xint;
    onF1 = !onF1;
    coef = onF1 ? f1 : f2;
    ylow = chebyshev(xlow, coef);
    --j;  // the rest of this grid interval is searched again with the other polynomial
  }
  const float* result = nf < 10 ? prev : lsp;
  for (int i = 0; i < 10; ++i) lsp[i] = result[i];  // via the local copy: buffers may overlap
  for (int i = 0; i < 10; ++i) dst[i] = fout::canonical(lsp[i]);
  return vspStsNoErr;
}
}  // namespace

VspStatus legacy90vspsLPCToLSP_G729_32f(const Vsp32f* pSrcLpc, const Vsp32f* pSrcPrevLsp, Vsp32f* pDstLsp) {
  return lpc_to_lsp(pSrcLpc, pSrcPrevLsp, pDstLsp, tables::g729::kGrid60F, 60, 4);
}

VspStatus legacy90vspsLPCToLSP_G729A_32f(const Vsp32f* pSrcLpc, const Vsp32f* pSrcPrevLsp, Vsp32f* pDstLsp) {
  return lpc_to_lsp(pSrcLpc, pSrcPrevLsp, pDstLsp, tables::g729::kGrid50F, 50, 2);
}

}  // namespace vsps::VSPS_NS
