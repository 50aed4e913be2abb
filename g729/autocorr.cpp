// legacy90vspsAutoCorr_NormE_G729_16s32s: the G.729 240-sample analysis
// window, then the shared autocorrelation normalised by energy, bit-exact
// with the G.729 reference Autocorr.
#include "core/simd/corr.h"
#include "g729/g729_tables.h"
#include "speech/corr/autocorr_norm.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsAutoCorr_NormE_G729_16s32s(const Vsp16s* pSrc, Vsp32s* pDst, int lenDst, int* pNorm) {
  constexpr int kLen = tables::g729::kWindowLen;
  if (pSrc == nullptr || pDst == nullptr || pNorm == nullptr) return vspStsNullPtrErr;
  if (lenDst < 1 || lenDst > kLen) return vspStsSizeErr;
  Vsp16s y[kLen + simd::kCrossPad] = {};
  simd::window_mult_r(pSrc, tables::g729::kHammingWindowQ15, y, kLen);
  corr::autocorr_norm(y, kLen, pDst, lenDst, pNorm, true);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
