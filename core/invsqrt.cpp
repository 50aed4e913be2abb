// legacy90vspsInvSqrt_32s_I: 2^30 / sqrt(x) per element, bit-exact with the
// G.729 reference Inv_sqrt.
#if defined(__AVX2__)
#include "core/simd/intrinsics.h"
#endif

#include "core/kernel.h"

namespace vsps::VSPS_NS {

namespace {
// One element: x in Q0 (any value), result in Q30.
inline Vsp32s inv_sqrt_q30(Vsp32s x) {
  if (x <= 0) return 0x3FFFFFFF;
  const int n = kernel::normalise32(x);
  uint32_t m = static_cast<uint32_t>(x) << n;  // 0x40000000..0x7FFFFFFF
  const int e = 32 - n;
  if ((e & 1) == 0) m >>= 1;                                   // 0x20000000..0x3FFFFFFF
  const int i = static_cast<int>(m >> 25) - 16;                // table position 0..47
  const int32_t f = static_cast<int32_t>((m >> 10) & 0x7FFF);  // Q15 fraction
  const int32_t y = tables::kInvSqrtBaseQ31[i] - tables::kInvSqrtSlope[i] * f;
  return y >> (e >> 1);
}

#if defined(__AVX2__)
// The 48 table entries, each value (Q31, low 16 bits zero) with its slope
// in the low 16 bits, in six registers, looked up by in-register permutes
// (faster than gathers here).
struct InvSqrtTable {
  __m256i r[6];
  InvSqrtTable() {
    for (int k = 0; k < 6; ++k) {
      const __m256i base = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(tables::kInvSqrtBaseQ31.data() + 8 * k));
      const __m256i slope = _mm256_cvtepu16_epi32(
          _mm_loadu_si128(reinterpret_cast<const __m128i*>(tables::kInvSqrtSlope.data() + 8 * k)));
      r[k] = _mm256_or_si256(base, slope);
    }
  }
  // Entry j (0..47) per lane.
  __m256i lookup(__m256i j) const {
    const __m256i hi = _mm256_srli_epi32(j, 3);
    __m256i v = _mm256_permutevar8x32_epi32(r[0], j);
    for (int k = 1; k < 6; ++k)
      v = _mm256_blendv_epi8(v, _mm256_permutevar8x32_epi32(r[k], j), _mm256_cmpgt_epi32(hi, _mm256_set1_epi32(k - 1)));
    return v;
  }
};

// Eight elements of inv_sqrt_q30 (level 6): the same steps per lane, the
// normalisation from the float exponent (corrected where the conversion
// rounded up to the next power of two).
inline void inv_sqrt_q30_x8(Vsp32s* p, const InvSqrtTable& table) {
  const __m256i one = _mm256_set1_epi32(1);
  const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
  const __m256i positive = _mm256_cmpgt_epi32(x, _mm256_setzero_si256());
  const __m256i xs = _mm256_max_epi32(x, one);
  __m256i lg =
      _mm256_sub_epi32(_mm256_srli_epi32(_mm256_castps_si256(_mm256_cvtepi32_ps(xs)), 23), _mm256_set1_epi32(127));
  lg = _mm256_add_epi32(lg, _mm256_cmpeq_epi32(_mm256_srlv_epi32(xs, lg), _mm256_setzero_si256()));  // floor(log2 x)
  const __m256i e = _mm256_add_epi32(lg, _mm256_set1_epi32(2));  // 32 - normalise32(x)
  __m256i m = _mm256_sllv_epi32(xs, _mm256_sub_epi32(_mm256_set1_epi32(30), lg));
  m = _mm256_srlv_epi32(m, _mm256_xor_si256(_mm256_and_si256(e, one), one));  // halved for an even e
  const __m256i i = _mm256_sub_epi32(_mm256_srli_epi32(m, 25), _mm256_set1_epi32(16));
  const __m256i f = _mm256_and_si256(_mm256_srli_epi32(m, 10), _mm256_set1_epi32(0x7FFF));
  const __m256i entry = table.lookup(i);
  const __m256i b0 = _mm256_andnot_si256(_mm256_set1_epi32(0xFFFF), entry);
  const __m256i slope = _mm256_and_si256(entry, _mm256_set1_epi32(0xFFFF));  // 0..32767
  const __m256i y = _mm256_srav_epi32(_mm256_sub_epi32(b0, _mm256_mullo_epi32(slope, f)), _mm256_srli_epi32(e, 1));
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm256_blendv_epi8(_mm256_set1_epi32(0x3FFFFFFF), y, positive));
}
#endif
}  // namespace

VspStatus legacy90vspsInvSqrt_32s_I(Vsp32s* pSrcDst, int len) {
  if (pSrcDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  int k = 0;
#if defined(__AVX2__)
  if (len >= 8) {
    const InvSqrtTable table;
    for (; k + 8 <= len; k += 8) inv_sqrt_q30_x8(pSrcDst + k, table);
  }
#endif
  for (; k < len; ++k) pSrcDst[k] = inv_sqrt_q30(pSrcDst[k]);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
