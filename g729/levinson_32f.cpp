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

// The recursion on a[0..order] and rc[0..order-1]. Returns order + 1 when
// it completes (*alphaOut = the residual energy), otherwise the order i at
// which |k| passed the stop value: rc[0..i-1] and a[0..i-1] are then valid.
// kOrder > 0: the order as a constant (the compiler unrolls the G.729 order).
// GCC would vectorise the products of the dot product (reversed r, then
// shuffles) only to add them one by one in order; the scalar loop is faster.
#if defined(__GNUC__) && !defined(__clang__)
#define VSPS_SCALAR_LOOPS __attribute__((optimize("no-tree-vectorize")))
#else
#define VSPS_SCALAR_LOOPS
#endif
template <int kOrder>
VSPS_SCALAR_LOOPS int recurse(const float* r, int runtimeOrder, float* a, float* rc, float* alphaOut) {
  const int order = kOrder > 0 ? kOrder : runtimeOrder;
  const float k1 = -r[1] / r[0];
  const float alpha0 = r[0] + r[1] * k1;
  rc[0] = k1;
  a[0] = 1.0f;
  a[1] = k1;
  float alpha = alpha0;
  for (int i = 2; i <= order; ++i) {
    float s = 0.0f;
    for (int j = 0; j < i; ++j) s += r[i - j] * a[j];
    const float k = fabs32(alpha) < kSmallestNormal ? 1.0f : -s / alpha;
    rc[i - 1] = k;
    if (fabs32(k) > kStopReflection) return i;  // a[0..i-1]: the order i-1 filter
    for (int j = 1; j <= i / 2; ++j) {
      const int l = i - j;
      const float at = a[j] + k * a[l];
      a[l] += k * a[j];
      a[j] = at;
    }
    a[i] = k;
    alpha += k * s;
  }
  *alphaOut = alpha;
  return order + 1;
}

// The results the recursion reached, NaNs made canonical.
void store(const float* a, const float* rc, int reached, int order, float alpha, float* pDstLpc, float* pDstRc,
           float* pResultResidualEnergy) {
  const int n = reached > order ? order : reached;  // rc count; a count n + (reached > order)
  for (int j = 0; j < n; ++j) pDstRc[j] = fout::canonical(rc[j]);
  const int na = reached > order ? order + 1 : reached;
  for (int j = 0; j < na; ++j) pDstLpc[j] = fout::canonical(a[j]);
  if (reached > order) *pResultResidualEnergy = fout::canonical(alpha);
}
}  // namespace

VspStatus legacy90vspsLevinsonDurbin_G729_32f(const Vsp32f* pSrcAutoCorr, int order, Vsp32f* pDstLpc, Vsp32f* pDstRc,
                                              Vsp32f* pResultResidualEnergy) {
  if (pSrcAutoCorr == nullptr || pDstLpc == nullptr || pDstRc == nullptr || pResultResidualEnergy == nullptr)
    return vspStsNullPtrErr;
  if (order < 1) return vspStsSizeErr;
  float alpha = 0.0f;
  constexpr int kLocalOrder = 30;  // local arrays (no aliasing with the outputs) up to this order
  if (order <= kLocalOrder) {
    float a[kLocalOrder + 1], rc[kLocalOrder];
    const float* r = pSrcAutoCorr;
    const int reached = order == 10 ? recurse<10>(r, order, a, rc, &alpha) : recurse<0>(r, order, a, rc, &alpha);
    store(a, rc, reached, order, alpha, pDstLpc, pDstRc, pResultResidualEnergy);
  } else {  // in place in the outputs
    const int reached = recurse<0>(pSrcAutoCorr, order, pDstLpc, pDstRc, &alpha);
    store(pDstLpc, pDstRc, reached, order, alpha, pDstLpc, pDstRc, pResultResidualEnergy);
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
