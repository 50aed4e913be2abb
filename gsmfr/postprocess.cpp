// GSM 06.10 clauses 4.3.5 to 4.3.7: de-emphasis, upscaling and truncation
// of one decoded frame to 13 bits.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsPostprocess_GSMFR_16s(const Vsp16s* pSrc, Vsp16s* pDst, Vsp16s* pMem) {
  if (pSrc == nullptr || pDst == nullptr || pMem == nullptr) return vspStsNullPtrErr;
  int16_t msr = *pMem;
  for (int k = 0; k < vsps::gsmfr::kFrame; ++k) {
    msr = bop::add(pSrc[k], bop::mult_r(msr, 28180));
    pDst[k] = static_cast<int16_t>(bop::add(msr, msr) & 0xFFF8);
  }
  *pMem = msr;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
