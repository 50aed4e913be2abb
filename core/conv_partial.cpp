// legacy90vspsConvPartial_16s_Sfs: causal partial convolution, wrapped
// 32-bit accumulation, floor shift, low 16 bits stored.
#include "core/level_ns.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsConvPartial_16s_Sfs(const Vsp16s* pSrc1, const Vsp16s* pSrc2, Vsp16s* pDst, int len,
                                          int scaleFactor) {
  if (pSrc1 == nullptr || pSrc2 == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (scaleFactor < 0) return vspStsBadArgErr;
  if (len < 1) return vspStsSizeErr;
  // Shifts of 32 or more leave the sign (floor of a 32-bit value).
  const int shift = scaleFactor > 31 ? 31 : scaleFactor;
  for (int n = 0; n < len; ++n) {
    uint32_t acc = 0;  // two's-complement wrap-around
    for (int k = 0; k <= n; ++k) acc += static_cast<uint32_t>(int32_t(pSrc1[k]) * pSrc2[n - k]);
    pDst[n] = static_cast<Vsp16s>(static_cast<int32_t>(acc) >> shift);
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
