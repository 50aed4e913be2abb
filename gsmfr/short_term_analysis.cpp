// GSM 06.10 clauses 4.2.8 to 4.2.10: LAR decoding, interpolation with the
// previous frame, and the short-term analysis lattice over one frame.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_ops.h"
#include "gsmfr/lattice_simd.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsShortTermAnalysis_GSMFR_16s(const Vsp16s* pSrcLARc, const Vsp16s* pSrc, Vsp16s* pDst,
                                                  Vsp16s* pLARpp, Vsp16s* pMem) {
  if (pSrcLARc == nullptr || pSrc == nullptr || pDst == nullptr || pLARpp == nullptr || pMem == nullptr)
    return vspStsNullPtrErr;
  if (!gsmfr::lar_codes_valid(pSrcLARc)) return vspStsRangeErr;
  using vsps::gsmfr::kOrder;
  int16_t cur[kOrder], prev[kOrder], u[kOrder];
  gsmfr::decode_lars(pSrcLARc, cur);
  for (int i = 0; i < kOrder; ++i) {
    prev[i] = pLARpp[i];
    u[i] = pMem[i];
  }
#if defined(VSPS_SIMD128)
  __m128i uu = _mm_loadu_si128(reinterpret_cast<const __m128i*>(u));
  for (int seg = 0; seg < 4; ++seg) {
    int16_t rp[kOrder];
    gsmfr::segment_coefficients(prev, cur, seg, rp);
    const int at = gsmfr::kSegmentStart[seg];
    gsmfr::analysis_lattice(rp, pSrc + at, pDst + at, gsmfr::kSegmentStart[seg + 1] - at, uu);
  }
  _mm_storeu_si128(reinterpret_cast<__m128i*>(u), uu);
#else
  for (int seg = 0; seg < 4; ++seg) {
    int16_t rp[kOrder];
    gsmfr::segment_coefficients(prev, cur, seg, rp);
    for (int k = gsmfr::kSegmentStart[seg]; k < gsmfr::kSegmentStart[seg + 1]; ++k) {
      int16_t di = pSrc[k], sav = di;
      for (int i = 0; i < kOrder; ++i) {
        const int16_t ui = u[i];
        u[i] = sav;
        sav = bop::add(ui, bop::mult_r(rp[i], di));
        di = bop::add(di, bop::mult_r(rp[i], ui));
      }
      pDst[k] = di;
    }
  }
#endif
  for (int i = 0; i < kOrder; ++i) {
    pLARpp[i] = cur[i];
    pMem[i] = u[i];
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
