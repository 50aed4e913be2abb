// legacy90vspsInvSqrt_32s_I: 2^30 / sqrt(x) per element, bit-exact with the
// G.729 reference Inv_sqrt.
#include "core/kernel.h"

namespace vsps::VSPS_NS {

namespace {
// One element: x in Q0 (any value), result in Q30.
inline Vsp32s inv_sqrt_q30(Vsp32s x) {
  if (x <= 0) return 0x3FFFFFFF;
  const int n = kernel::normalise32(x);
  uint32_t m = static_cast<uint32_t>(x) << n;  // 0x40000000..0x7FFFFFFF
  const int e = 32 - n;
  if ((e & 1) == 0) m >>= 1;                                   // 0x20000000..0x3FFFFFFF
  const int i = static_cast<int>(m >> 25) - 16;                // table position 0..47
  const int32_t f = static_cast<int32_t>((m >> 10) & 0x7FFF);  // Q15 fraction
  const int32_t y = tables::kInvSqrtBaseQ31[i] - tables::kInvSqrtSlope[i] * f;
  return y >> (e >> 1);
}
}  // namespace

VspStatus legacy90vspsInvSqrt_32s_I(Vsp32s* pSrcDst, int len) {
  if (pSrcDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  for (int k = 0; k < len; ++k) pSrcDst[k] = inv_sqrt_q30(pSrcDst[k]);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
