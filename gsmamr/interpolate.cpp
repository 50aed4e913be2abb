// GSM-AMR first-subframe LSP interpolation (TS 26.073 Int_lpc_1to3):
// 3/4 of the previous vector plus 1/4 of the current one.
#include "core/basic_ops.h"
#include "core/simd/x86.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsInterpolate_GSMAMR_16s(const Vsp16s* pSrcCur, const Vsp16s* pSrcPrev, Vsp16s* pDst, int len) {
  if (pSrcCur == nullptr || pSrcPrev == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  // Element-wise, so pDst may equal either source.
  int i = 0;
#if defined(VSPS_SIMD256)
  const std::size_t bytes = static_cast<std::size_t>(len) * sizeof(Vsp16s);
  if (simd::same_or_disjoint(pDst, pSrcCur, bytes) && simd::same_or_disjoint(pDst, pSrcPrev, bytes))
    for (; i + 16 <= len; i += 16) {
      const __m256i cur = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pSrcCur + i));
      const __m256i prev = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pSrcPrev + i));
      const __m256i r =
          _mm256_adds_epi16(_mm256_srai_epi16(cur, 2), _mm256_subs_epi16(prev, _mm256_srai_epi16(prev, 2)));
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(pDst + i), r);
    }
#endif
#if VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)  // levels 2-5, and the remaining blocks of 8 at level 6
  const std::size_t bytes8 = static_cast<std::size_t>(len) * sizeof(Vsp16s);
  if (simd::same_or_disjoint(pDst, pSrcCur, bytes8) && simd::same_or_disjoint(pDst, pSrcPrev, bytes8))
    for (; i + 8 <= len; i += 8) {
      const __m128i cur = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pSrcCur + i));
      const __m128i prev = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pSrcPrev + i));
      const __m128i r = _mm_adds_epi16(_mm_srai_epi16(cur, 2), _mm_subs_epi16(prev, _mm_srai_epi16(prev, 2)));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(pDst + i), r);
    }
#endif
  for (; i < len; ++i) {
    const int16_t prev = pSrcPrev[i];
    pDst[i] = bop::add(bop::shr(pSrcCur[i], 2), bop::sub(prev, bop::shr(prev, 2)));
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
