// legacy90vspsSynthesisFilter_NR_16s_Sfs and legacy90vspsResidualFilter_NR_16s_Sfs:
// the general LP synthesis and residual filters of the speech references.
#include "core/level_ns.h"
#include "speech/filter/lp_filters.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
constexpr int kMaxOrder = 30;
}

VspStatus legacy90vspsSynthesisFilter_NR_16s_Sfs(const Vsp16s* pLpc, int order, const Vsp16s* pSrc, Vsp16s* pDst,
                                                 int len, int scaleFactor, Vsp16s* pSrcDstMem) {
  if (pLpc == nullptr || pSrc == nullptr || pDst == nullptr || pSrcDstMem == nullptr) return vspStsNullPtrErr;
  if (order < 1 || order > kMaxOrder || len < 1) return vspStsSizeErr;
  if (scaleFactor < 0 || scaleFactor > 15) return vspStsRangeErr;
  return speech::synthesis(pLpc, order, pSrc, pDst, len, pSrcDstMem, scaleFactor) ? vspStsOverflow : vspStsNoErr;
}

VspStatus legacy90vspsResidualFilter_NR_16s_Sfs(const Vsp16s* pLpc, int order, const Vsp16s* pSrc, Vsp16s* pDst,
                                                int len, int scaleFactor) {
  if (pLpc == nullptr || pSrc == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (order < 1 || order > kMaxOrder || len < 1) return vspStsSizeErr;
  if (scaleFactor < 0 || scaleFactor > 15) return vspStsRangeErr;
  speech::residual(pLpc, order, pSrc + order, pDst, len, scaleFactor);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS

namespace vsps::VSPS_NS {

VspStatus legacy90vspsConvPartial_NR_16s_Sfs(const Vsp16s* pSrc1, const Vsp16s* pSrc2, Vsp16s* pDst, int len,
                                             int scaleFactor) {
  if (pSrc1 == nullptr || pSrc2 == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (scaleFactor < 0 || scaleFactor > 15) return vspStsRangeErr;
  speech::convolve_sat(pSrc1, pSrc2, pDst, len, scaleFactor);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
