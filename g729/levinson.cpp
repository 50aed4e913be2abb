// legacy90vspsLevinsonDurbin_G729_32s16s: the Levinson-Durbin recursion of
// ITU-T G.729 clause 3.2.2 (reference Levinson, DPF arithmetic) for orders
// 1..30, all-or-nothing: on an unusable input or an unstable filter nothing
// is written and vspStsLPCUnstable is returned.
#include "core/basic_ops.h"
#include "core/dpf.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
constexpr int kMaxOrder = 30;
constexpr int16_t kMaxReflectionQ15 = 32750;  // |k| above this: unstable

// 1 - K^2 (Q31) as a DPF pair.
inline dpf::Dpf one_minus_square(dpf::Dpf k) {
  const int32_t sq = bop::L_abs(dpf::Mpy_32(k, k));
  return dpf::L_Extract(bop::L_sub(bop::kMax32, sq));
}
}  // namespace

VspStatus legacy90vspsLevinsonDurbin_G729_32s16s(const Vsp32s* pSrcAutoCorr, int order, Vsp16s* pDstLpc, Vsp16s* pDstRc,
                                                 Vsp16s* pResultResidualEnergy) {
  if (pSrcAutoCorr == nullptr || pDstLpc == nullptr || pDstRc == nullptr || pResultResidualEnergy == nullptr)
    return vspStsNullPtrErr;
  if (order < 1 || order > kMaxOrder) return vspStsSizeErr;
  const int32_t r0 = pSrcAutoCorr[0];
  if (r0 < 65536) return vspStsLPCUnstable;  // also every negative r[0]

  // Decision: an r[0] below 2^30 is normalised here (all r[k] shifted left
  // by the same count, saturating) so that the divisions see a normalised
  // denominator; the residual energy is shifted back by that count.
  const int16_t inShift = bop::norm_l(r0);
  dpf::Dpf r[kMaxOrder + 1];
  for (int k = 0; k <= order; ++k) r[k] = dpf::L_Extract(bop::L_shl(pSrcAutoCorr[k], inShift));

  dpf::Dpf a[kMaxOrder + 1];  // Q27
  dpf::Dpf an[kMaxOrder + 1];
  int16_t rc[kMaxOrder];

  // Order 1: K = -r[1] / r[0].
  int32_t t1 = dpf::L_Comp(r[1]);
  int32_t t0 = dpf::Div_32(bop::L_abs(t1), r[0].hi, r[0].lo);
  if (t1 > 0) t0 = bop::L_negate(t0);
  dpf::Dpf k = dpf::L_Extract(t0);
  rc[0] = k.hi;
  a[1] = dpf::L_Extract(bop::L_shr(t0, 4));
  // alpha = r[0] (1 - K^2), normalised.
  t0 = dpf::Mpy_32(r[0], one_minus_square(k));
  int16_t alpExp = bop::norm_l(t0);
  dpf::Dpf alpha = dpf::L_Extract(bop::L_shl(t0, alpExp));

  for (int i = 2; i <= order; ++i) {
    if (bop::L_abs(dpf::L_Comp(alpha)) < 65536) return vspStsLPCUnstable;  // alpha vanished
    // t = sum_{j=1..i-1} r[j] a[i-j] (Q27 -> Q31) + r[i]
    t0 = 0;
    for (int j = 1; j < i; ++j) t0 = bop::L_add(t0, dpf::Mpy_32(r[j], a[i - j]));
    t0 = bop::L_add(bop::L_shl(t0, 4), dpf::L_Comp(r[i]));
    // K = -t / alpha, de-normalised with saturation.
    int32_t t2 = dpf::Div_32(bop::L_abs(t0), alpha.hi, alpha.lo);
    if (t0 > 0) t2 = bop::L_negate(t2);
    t2 = bop::L_shl(t2, alpExp);
    k = dpf::L_Extract(t2);
    rc[i - 1] = k.hi;
    if (bop::abs_s(k.hi) > kMaxReflectionQ15) return vspStsLPCUnstable;
    for (int j = 1; j < i; ++j) an[j] = dpf::L_Extract(bop::L_add(dpf::Mpy_32(k, a[i - j]), dpf::L_Comp(a[j])));
    an[i] = dpf::L_Extract(bop::L_shr(t2, 4));
    t0 = dpf::Mpy_32(alpha, one_minus_square(k));
    const int16_t j = bop::norm_l(t0);
    alpha = dpf::L_Extract(bop::L_shl(t0, j));
    alpExp = bop::add(alpExp, j);
    for (int m = 1; m <= i; ++m) a[m] = an[m];
  }

  // Success: residual energy in the scale of r[0], LP coefficients Q27 -> Q12.
  *pResultResidualEnergy = bop::shr(alpha.hi, bop::add(alpExp, inShift));
  pDstLpc[0] = 4096;
  for (int i = 1; i <= order; ++i) pDstLpc[i] = bop::round(bop::L_shl(dpf::L_Comp(a[i]), 1));
  for (int i = 0; i < order; ++i) pDstRc[i] = rc[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
