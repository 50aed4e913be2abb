// GSM-AMR pre-emphasis filter 1 - gamma z^-1 (TS 26.073 preemphasis).
#include "core/basic_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsPreemphasize_GSMAMR_16s(Vsp16s gamma, const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pMem) {
  if (pSrc == nullptr || pDst == nullptr || pMem == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  // Forward pass keeping the previous *input* sample, so pDst may equal pSrc.
  int16_t prev = *pMem;
  for (int n = 0; n < len; ++n) {
    const int16_t x = pSrc[n];
    pDst[n] = bop::sub(x, bop::mult(gamma, prev));
    prev = x;
  }
  *pMem = prev;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
