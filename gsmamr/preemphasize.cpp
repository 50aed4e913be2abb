// GSM-AMR pre-emphasis filter 1 - gamma z^-1 (TS 26.073 preemphasis).
#include "core/basic_ops.h"
#include "core/simd/x86.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsPreemphasize_GSMAMR_16s(Vsp16s gamma, const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pMem) {
  if (pSrc == nullptr || pDst == nullptr || pMem == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  // Forward pass keeping the previous *input* sample, so pDst may equal pSrc:
  // every block of inputs is loaded before its outputs are stored, and the
  // vector forms take x[n-1] from registers, never from memory written before.
  int16_t prev = *pMem;
  int n = 0;
#if defined(VSPS_SIMD256)
  if (len >= 16) {
    const __m256i g = _mm256_set1_epi16(gamma);
    __m256i last = _mm256_set1_epi16(prev);  // element 15: x[-1]
    for (; n + 16 <= len; n += 16) {
      const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pSrc + n));
      // x[n-1 .. n+14]: element 15 of the previous block, then x[n .. n+14].
      const __m256i shifted = _mm256_alignr_epi8(x, _mm256_permute2x128_si256(last, x, 0x21), 14);
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(pDst + n), _mm256_subs_epi16(x, simd::mult_q15(g, shifted)));
      last = x;
    }
    prev = static_cast<int16_t>(_mm256_extract_epi16(last, 15));
  }
#endif
#if VSPS_LEVEL >= 2 && defined(VSPS_SIMD128)
  if (len - n >= 8) {  // levels 2-5, and the remaining block of 8 at level 6
    const __m128i g = _mm_set1_epi16(gamma);
    __m128i last = _mm_set1_epi16(prev);  // element 7: x[-1]
    for (; n + 8 <= len; n += 8) {
      const __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pSrc + n));
      const __m128i shifted = _mm_alignr_epi8(x, last, 14);  // x[n-1 .. n+6]
      _mm_storeu_si128(reinterpret_cast<__m128i*>(pDst + n), _mm_subs_epi16(x, simd::mult_q15(g, shifted)));
      last = x;
    }
    prev = static_cast<int16_t>(_mm_extract_epi16(last, 7));
  }
#endif
  for (; n < len; ++n) {
    const int16_t x = pSrc[n];
    pDst[n] = bop::sub(x, bop::mult(gamma, prev));
    prev = x;
  }
  *pMem = prev;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
