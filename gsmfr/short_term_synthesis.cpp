// GSM 06.10 clauses 4.3.2 to 4.3.4 (with 4.2.8 and 4.2.9): LAR decoding,
// interpolation with the previous frame, and the short-term synthesis
// lattice over one frame.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_ops.h"
#include "gsmfr/lattice_simd.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsShortTermSynthesis_GSMFR_16s(const Vsp16s* pSrcLARc, const Vsp16s* pSrc, Vsp16s* pDst,
                                                   Vsp16s* pLARpp, Vsp16s* pMem) {
  if (pSrcLARc == nullptr || pSrc == nullptr || pDst == nullptr || pLARpp == nullptr || pMem == nullptr)
    return vspStsNullPtrErr;
  if (!gsmfr::lar_codes_valid(pSrcLARc)) return vspStsRangeErr;
  using vsps::gsmfr::kOrder;
  int16_t cur[kOrder], prev[kOrder], v[kOrder + 1];
  gsmfr::decode_lars(pSrcLARc, cur);
  for (int i = 0; i < kOrder; ++i) prev[i] = pLARpp[i];
  for (int i = 0; i <= kOrder; ++i) v[i] = pMem[i];
#if defined(VSPS_SIMD128)
  __m128i vv = _mm_loadu_si128(reinterpret_cast<const __m128i*>(v));
  for (int seg = 0; seg < 4; ++seg) {
    int16_t rrp[kOrder];
    gsmfr::segment_coefficients(prev, cur, seg, rrp);
    const int at = gsmfr::kSegmentStart[seg];
    gsmfr::synthesis_lattice(rrp, pSrc + at, pDst + at, gsmfr::kSegmentStart[seg + 1] - at, vv, v[kOrder]);
  }
  _mm_storeu_si128(reinterpret_cast<__m128i*>(v), vv);
#else
  for (int seg = 0; seg < 4; ++seg) {
    int16_t rrp[kOrder];
    gsmfr::segment_coefficients(prev, cur, seg, rrp);
    for (int k = gsmfr::kSegmentStart[seg]; k < gsmfr::kSegmentStart[seg + 1]; ++k) {
      int16_t sri = pSrc[k];
      for (int i = kOrder - 1; i >= 0; --i) {
        sri = bop::sub(sri, bop::mult_r(rrp[i], v[i]));
        v[i + 1] = bop::add(v[i], bop::mult_r(rrp[i], sri));
      }
      v[0] = sri;
      pDst[k] = sri;
    }
  }
#endif
  for (int i = 0; i < kOrder; ++i) pLARpp[i] = cur[i];
  for (int i = 0; i <= kOrder; ++i) pMem[i] = v[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
