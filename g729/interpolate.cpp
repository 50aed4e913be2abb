// Interpolation of parameter vectors: legacy90vspsInterpolate_G729_16s (the
// mid-frame LSP of G.729 Int_qlpc), legacy90vspsInterpolateC_G729_16s_Sfs and
// legacy90vspsInterpolateC_G729_32f (weighted sums).
#include "core/basic_ops.h"
#include "core/float_canonical.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsInterpolate_G729_16s(const Vsp16s* pSrc1, const Vsp16s* pSrc2, Vsp16s* pDst, int len) {
  if (pSrc1 == nullptr || pSrc2 == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  for (int i = 0; i < len; ++i) pDst[i] = bop::add(bop::shr(pSrc1[i], 1), bop::shr(pSrc2[i], 1));
  return vspStsNoErr;
}

VspStatus legacy90vspsInterpolateC_G729_16s_Sfs(const Vsp16s* pSrc1, Vsp16s val1, const Vsp16s* pSrc2, Vsp16s val2,
                                                Vsp16s* pDst, int len, int scaleFactor) {
  if (pSrc1 == nullptr || pSrc2 == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (scaleFactor < 0) return vspStsOutOfRangeErr;
  if (len < 1) return vspStsSizeErr;
  const int shift = scaleFactor > 31 ? 31 : scaleFactor;  // a 32-bit product shifted by 31 or more is 0 or -1
  for (int i = 0; i < len; ++i) {
    const int32_t p1 = (int32_t(pSrc1[i]) * val1) >> shift;
    const int32_t p2 = (int32_t(pSrc2[i]) * val2) >> shift;
    const int64_t sum = int64_t(p1) + p2;  // up to 2^31: wider than 32 bits
    pDst[i] = static_cast<Vsp16s>(sum > bop::kMax16 ? bop::kMax16 : (sum < bop::kMin16 ? bop::kMin16 : sum));
  }
  return vspStsNoErr;
}

VspStatus legacy90vspsInterpolateC_G729_32f(const Vsp32f* pSrc1, Vsp32f val1, const Vsp32f* pSrc2, Vsp32f val2,
                                            Vsp32f* pDst, int len) {
  if (pSrc1 == nullptr || pSrc2 == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  for (int i = 0; i < len; ++i) pDst[i] = fout::canonical(pSrc1[i] * val1 + pSrc2[i] * val2);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
