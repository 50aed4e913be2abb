// legacy90vspsAutoCorr_NormE_16s32s: autocorrelation normalised by energy of
// caller-windowed samples, bit-exact with the G.729 reference Autocorr after
// its window.
#include "speech/corr/autocorr_norm.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsAutoCorr_NormE_16s32s(const Vsp16s* pSrc, int len, Vsp32s* pDst, int lenDst, int* pNorm) {
  if (pSrc == nullptr || pDst == nullptr || pNorm == nullptr) return vspStsNullPtrErr;
  if (len < 1 || len >= (1 << 29)) return vspStsSizeErr;
  if (lenDst < 1 || lenDst > len) return vspStsSizeErr;
  corr::autocorr_norm(pSrc, len, pDst, lenDst, pNorm, false);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
