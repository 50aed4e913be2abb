// GSM-AMR Levinson-Durbin recursion, order 10 (TS 26.073 Levinson), without
// the reference's memory of the previous filter: an unusable input or an
// unstable filter returns vspStsLPCUnstable with nothing written.
#include "core/basic_ops.h"
#include "core/dpf.h"
#include "gsmamr/amr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int kM = gsmamr::kOrder;

// Reflection coefficient -num/alpha in Q31 (num and alpha Q31 values).
int32_t reflection(int32_t num, dpf::Dpf alpha) {
  const int32_t k = dpf::Div_32(bop::L_abs(num), alpha.hi, alpha.lo);
  return num > 0 ? bop::L_negate(k) : k;
}

// alpha * (1 - k^2), normalised; the shift count is added to *exp.
dpf::Dpf update_alpha(dpf::Dpf alpha, dpf::Dpf k, int16_t* exp) {
  const int32_t oneMinusK2 = bop::L_sub(bop::kMax32, bop::L_abs(dpf::Mpy_32(k, k)));
  int32_t t = dpf::Mpy_32(alpha, dpf::L_Extract(oneMinusK2));
  const int16_t j = bop::norm_l(t);
  t = bop::L_shl(t, j);
  *exp = static_cast<int16_t>(*exp + j);
  return dpf::L_Extract(t);
}

}  // namespace

VspStatus legacy90vspsLevinsonDurbin_GSMAMR_32s16s(const Vsp32s* pSrcAutoCorr, Vsp16s* pDstLpc) {
  if (pSrcAutoCorr == nullptr || pDstLpc == nullptr) return vspStsNullPtrErr;
  if (bop::L_abs(pSrcAutoCorr[0]) < 65536) return vspStsLPCUnstable;

  dpf::Dpf R[kM + 1];
  for (int i = 0; i <= kM; ++i) R[i] = dpf::L_Extract(pSrcAutoCorr[i]);
  dpf::Dpf A[kM + 1];   // Q27
  dpf::Dpf An[kM + 1];  // next order, Q27

  // Order 1 (no stability test on K here, as in the reference).
  int32_t t = reflection(dpf::L_Comp(R[1]), R[0]);
  dpf::Dpf K = dpf::L_Extract(t);
  A[1] = dpf::L_Extract(bop::L_shr(t, 4));
  int16_t alphaExp = 0;
  dpf::Dpf alpha = update_alpha(R[0], K, &alphaExp);

  for (int i = 2; i <= kM; ++i) {
    // A normalised non-zero alpha is at least 2^30 in magnitude.
    if (alpha.hi == 0) return vspStsLPCUnstable;
    int32_t s = 0;
    for (int j = 1; j < i; ++j) s = bop::L_add(s, dpf::Mpy_32(R[j], A[i - j]));
    s = bop::L_add(bop::L_shl(s, 4), dpf::L_Comp(R[i]));  // Q27 -> Q31, + r[i]
    t = bop::L_shl(reflection(s, alpha), alphaExp);
    K = dpf::L_Extract(t);
    if (bop::abs_s(K.hi) > 32750) return vspStsLPCUnstable;
    for (int j = 1; j < i; ++j) An[j] = dpf::L_Extract(bop::L_add(dpf::Mpy_32(K, A[i - j]), dpf::L_Comp(A[j])));
    An[i] = dpf::L_Extract(bop::L_shr(t, 4));
    alpha = update_alpha(alpha, K, &alphaExp);
    for (int j = 1; j <= i; ++j) A[j] = An[j];
  }

  pDstLpc[0] = 4096;
  for (int i = 1; i <= kM; ++i) pDstLpc[i] = bop::round(bop::L_shl(dpf::L_Comp(A[i]), 1));  // Q27 -> Q12
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
