// Single-precision LSF decoders: legacy90vspsLSFDecode_G729_32f and
// legacy90vspsLSFDecodeErased_G729_32f (the floating-point annex's
// lsp_get_quant and the erasure branch of lsp_iqua_cs).
#if defined(__AVX__)
#include "core/simd/intrinsics.h"
#endif

#include "core/float_canonical.h"
#include "g729/lsf_vq_32f.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

#if defined(__AVX__)
namespace {

// The erasure step at levels 5-6 in 128-bit registers: every row of the MA
// memory read as lanes 0-3, 4-7 and 8-9 before anything is stored, the
// residual formed per lane in the order of lsfvq32f::prev_extract
// (lsf - row0*ma0 - row1*ma1 - row2*ma2 - row3*ma3, times the inverse sum),
// NaN lanes made canonical as fout::canonical does, and the rows written
// back one place older with the residual as the newest. Each row is stored
// in the same three pieces it is loaded in, so the next call's loads take
// their data straight from these stores (the compiler's form used 32-byte
// loads across narrower stores and a memmove call: slower than level 0).
struct Row {
  __m128 lo, mid, hi;  // lanes 0-3, 4-7, 8-9 (hi: two lanes)
};

inline __m128 load2(const float* p) { return _mm_castpd_ps(_mm_load_sd(reinterpret_cast<const double*>(p))); }
inline Row load_row(const float* p) { return {_mm_loadu_ps(p), _mm_loadu_ps(p + 4), load2(p + 8)}; }
inline void store_row(float* p, const Row& r) {
  _mm_storeu_ps(p, r.lo);
  _mm_storeu_ps(p + 4, r.mid);
  _mm_storel_pi(reinterpret_cast<__m64*>(p + 8), r.hi);
}
inline __m128 canonical(__m128 v) {
  return _mm_blendv_ps(_mm_castsi128_ps(_mm_set1_epi32(0x7FC00000)), v, _mm_cmpeq_ps(v, v));
}

void erased_update(const float* lsf, int mode, float* prev) {
  namespace vq = lsfvq32f;
  constexpr int M = vq::M;
  static_assert(M == 10 && vq::t::kMaOrder == 4, "rows of 4 + 4 + 2 lanes, four rows");
  Row row[4];
  for (int k = 0; k < 4; ++k) row[k] = load_row(prev + k * M);
  Row res = load_row(lsf);
  for (int k = 0; k < 4; ++k) {
    const Row ma = load_row(vq::ma_pred(mode, k));
    res.lo = _mm_sub_ps(res.lo, _mm_mul_ps(row[k].lo, ma.lo));
    res.mid = _mm_sub_ps(res.mid, _mm_mul_ps(row[k].mid, ma.mid));
    res.hi = _mm_sub_ps(res.hi, _mm_mul_ps(row[k].hi, ma.hi));
  }
  const Row inv = load_row(vq::ma_sum_inv(mode));
  res = {canonical(_mm_mul_ps(res.lo, inv.lo)), canonical(_mm_mul_ps(res.mid, inv.mid)),
         canonical(_mm_mul_ps(res.hi, inv.hi))};
  for (int k = 3; k > 0; --k) store_row(prev + k * M, row[k - 1]);
  store_row(prev, res);
}

}  // namespace
#endif

VspStatus legacy90vspsLSFDecode_G729_32f(const int* pQuantIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pDstQLsf) {
  namespace vq = lsfvq32f;
  if (pQuantIndex == nullptr || pSrcDstPrevFreq == nullptr || pDstQLsf == nullptr) return vspStsNullPtrErr;
  // The codes are masked to their bit widths as a bit-stream unpacker does.
  const int mode = pQuantIndex[0] & 1;
  float buf[vq::M];
  vq::residual(pQuantIndex[1] & 127, pQuantIndex[2] & 31, pQuantIndex[3] & 31, buf);
  float lsf[vq::M];
  vq::prev_compose(buf, mode, pSrcDstPrevFreq, lsf);
  vq::prev_update(buf, pSrcDstPrevFreq);
  vq::stability(lsf);
  for (int j = 0; j < vq::M; ++j) pDstQLsf[j] = fout::canonical(lsf[j]);
  return vspStsNoErr;
}

VspStatus legacy90vspsLSFDecodeErased_G729_32f(int maIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pSrcDstLsf) {
  namespace vq = lsfvq32f;
  if (pSrcDstPrevFreq == nullptr || pSrcDstLsf == nullptr) return vspStsNullPtrErr;
  if (maIndex != 0 && maIndex != 1) return vspStsBadIndexErr;
#if defined(__AVX__)
  erased_update(pSrcDstLsf, maIndex, pSrcDstPrevFreq);
#else
  float res[vq::M];
  vq::prev_extract(pSrcDstLsf, maIndex, pSrcDstPrevFreq, res);
  for (float& v : res) v = fout::canonical(v);
  vq::prev_update(res, pSrcDstPrevFreq);
#endif
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
