// GSM-AMR first-subframe LSP interpolation (TS 26.073 Int_lpc_1to3):
// 3/4 of the previous vector plus 1/4 of the current one.
#include "core/basic_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsInterpolate_GSMAMR_16s(const Vsp16s* pSrcCur, const Vsp16s* pSrcPrev, Vsp16s* pDst, int len) {
  if (pSrcCur == nullptr || pSrcPrev == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  // Element-wise, so pDst may equal either source.
  for (int i = 0; i < len; ++i) {
    const int16_t prev = pSrcPrev[i];
    pDst[i] = bop::add(bop::shr(pSrcCur[i], 2), bop::sub(prev, bop::shr(prev, 2)));
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
