// GSM 06.10 clauses 4.2.16 to 4.2.17 on the receive side: APCM inverse
// quantisation and placement of the 13 pulses on the received grid.
#include "gsmfr/gsmfr_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsRPEDecode_GSMFR_16s(const Vsp16s* pSrcPulses, Vsp16s* pDst, int xmaxc, int grid) {
  if (pSrcPulses == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (xmaxc < 0 || xmaxc > 63 || grid < 0 || grid > 3) return vspStsRangeErr;
  for (int i = 0; i < vsps::gsmfr::kPulses; ++i)
    if (pSrcPulses[i] < 0 || pSrcPulses[i] > 7) return vspStsRangeErr;
  int16_t ep[vsps::gsmfr::kSubframe];
  gsmfr::rpe_decode(xmaxc, grid, pSrcPulses, ep);
  for (int k = 0; k < vsps::gsmfr::kSubframe; ++k) pDst[k] = ep[k];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
