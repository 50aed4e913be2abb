// legacy90vspsLevinsonDurbin_G729_32f: single-precision Levinson-Durbin
// recursion (the steps of the G.729 floating-point annex) with its own stop
// rule: never a warning, partial coefficients on a near-unit reflection.
#include "core/float_canonical.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
constexpr float kStopReflection = 0.99945098f;  // bits 0x3F7FDC05
constexpr float kSmallestNormal = 1.1754944e-38f;
inline float fabs32(float x) { return x < 0.0f ? -x : x; }
}  // namespace

VspStatus legacy90vspsLevinsonDurbin_G729_32f(const Vsp32f* pSrcAutoCorr, int order, Vsp32f* pDstLpc, Vsp32f* pDstRc,
                                              Vsp32f* pResultResidualEnergy) {
  if (pSrcAutoCorr == nullptr || pDstLpc == nullptr || pDstRc == nullptr || pResultResidualEnergy == nullptr)
    return vspStsNullPtrErr;
  if (order < 1) return vspStsSizeErr;
  const float* r = pSrcAutoCorr;
  float* a = pDstLpc;  // computed in place; NaNs made canonical when the recursion ends
  const float k1 = -r[1] / r[0];
  const float alpha0 = r[0] + r[1] * k1;
  pDstRc[0] = fout::canonical(k1);
  a[0] = 1.0f;
  a[1] = k1;
  float alpha = alpha0;
  for (int i = 2; i <= order; ++i) {
    float s = 0.0f;
    for (int j = 0; j < i; ++j) s += r[i - j] * a[j];
    const float k = fabs32(alpha) < kSmallestNormal ? 1.0f : -s / alpha;
    pDstRc[i - 1] = fout::canonical(k);
    if (fabs32(k) > kStopReflection) {  // a[0..i-1]: the order i-1 filter
      for (int j = 1; j < i; ++j) a[j] = fout::canonical(a[j]);
      return vspStsNoErr;
    }
    for (int j = 1; j <= i / 2; ++j) {
      const int l = i - j;
      const float at = a[j] + k * a[l];
      a[l] += k * a[j];
      a[j] = at;
    }
    a[i] = k;
    alpha += k * s;
  }
  for (int j = 1; j <= order; ++j) a[j] = fout::canonical(a[j]);
  *pResultResidualEnergy = fout::canonical(alpha);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
