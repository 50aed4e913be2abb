// legacy90vspsConvPartial_16s_Sfs: causal partial convolution, wrapped
// 32-bit accumulation, floor shift, low 16 bits stored.
#if defined(__AVX2__)
#include "core/simd/intrinsics.h"
#endif

#include <cstdint>

#include "core/level_ns.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

#if defined(__AVX2__)
namespace {
// Outputs 0 .. 16 * (len / 16) - 1 in blocks of 16 (level 6); returns the
// first output left to the scalar loop. The sums wrap modulo 2^32 as the
// scalar ones do, so the order of the products does not matter. Per block
// n0, term k adds a[k] * b[n0 - k .. n0 + 15 - k]; for k > n0 the missing
// b[negative] are read from a copy of b[0..15] behind 16 zeros.
bool overlaps(const Vsp16s* p, const Vsp16s* q, int len) {
  const auto a = reinterpret_cast<uintptr_t>(p), b = reinterpret_cast<uintptr_t>(q);
  const uintptr_t bytes = static_cast<uintptr_t>(len) * sizeof(Vsp16s);
  return a < b + bytes && b < a + bytes;
}

int conv_blocks(const Vsp16s* a, const Vsp16s* b, Vsp16s* dst, int len, int shift) {
  int16_t head[48] = {};
  for (int k = 0; k < 16 && k < len; ++k) head[16 + k] = b[k];
  const __m128i count = _mm_cvtsi32_si128(shift);
  int n0 = 0;
  for (; n0 + 16 <= len; n0 += 16) {
    __m256i lo = _mm256_setzero_si256(), hi = _mm256_setzero_si256();  // outputs n0+0..3, 8..11 | 4..7, 12..15
    for (int k = 0; k < n0 + 16; ++k) {
      const int16_t* src = k <= n0 ? b + (n0 - k) : head + 16 + (n0 - k);
      const __m256i bv = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src));
      const __m256i av = _mm256_set1_epi16(a[k]);
      const __m256i pl = _mm256_mullo_epi16(av, bv);
      const __m256i ph = _mm256_mulhi_epi16(av, bv);
      lo = _mm256_add_epi32(lo, _mm256_unpacklo_epi16(pl, ph));
      hi = _mm256_add_epi32(hi, _mm256_unpackhi_epi16(pl, ph));
    }
    // Low 16 bits of each shifted sum; packus of values masked to 16 bits is exact and restores the order.
    const __m256i mask = _mm256_set1_epi32(0xFFFF);
    const __m256i r = _mm256_packus_epi32(_mm256_and_si256(_mm256_sra_epi32(lo, count), mask),
                                          _mm256_and_si256(_mm256_sra_epi32(hi, count), mask));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + n0), r);
  }
  return n0;
}
}  // namespace
#endif

VspStatus legacy90vspsConvPartial_16s_Sfs(const Vsp16s* pSrc1, const Vsp16s* pSrc2, Vsp16s* pDst, int len,
                                          int scaleFactor) {
  if (pSrc1 == nullptr || pSrc2 == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (scaleFactor < 0) return vspStsBadArgErr;
  if (len < 1) return vspStsSizeErr;
  // Shifts of 32 or more leave the sign (floor of a 32-bit value).
  const int shift = scaleFactor > 31 ? 31 : scaleFactor;
  int n = 0;
#if defined(__AVX2__)
  // The blocks read ahead of what they write: only when pDst overlaps
  // neither source (an overlapping call gets the scalar order everywhere).
  if (!overlaps(pDst, pSrc1, len) && !overlaps(pDst, pSrc2, len)) n = conv_blocks(pSrc1, pSrc2, pDst, len, shift);
#endif
  for (; n < len; ++n) {
    uint32_t acc = 0;  // two's-complement wrap-around
    for (int k = 0; k <= n; ++k) acc += static_cast<uint32_t>(int32_t(pSrc1[k]) * pSrc2[n - k]);
    pDst[n] = static_cast<Vsp16s>(static_cast<int32_t>(acc) >> shift);
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
