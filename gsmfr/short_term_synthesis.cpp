// GSM 06.10 clauses 4.3.2 to 4.3.4 (with 4.2.8 and 4.2.9): LAR decoding,
// interpolation with the previous frame, and the short-term synthesis
// lattice over one frame.
#include "core/basic_ops.h"
#include "core/simd/x86.h"
#include "gsmfr/gsmfr_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

#if defined(VSPS_SIMD128)
// The lattice over one segment with v[0..7] in one register (lane i = v[i])
// and v[8] beside it. Exact: the reflection coefficients never equal -32768
// (|rrp| <= 32767 by construction), so pmulhrsw is mult_r; psubsw and paddsw
// are the saturating sub and add. Per sample the eight products of the old
// v come at once; the eight subtractions stay in the reference order, each
// on a register whose lanes all hold sri, and lane i keeps sri after stage
// i; the eight updates of v then come at once from those values.
void lattice(const int16_t* rrp, const int16_t* x, int16_t* y, int n, __m128i& v, int16_t& v8) {
  const __m128i r = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rrp));
  __m128i broadcast[8], lane[8];
  for (int i = 0; i < 8; ++i) {
    broadcast[i] = _mm_set1_epi16(static_cast<int16_t>(((2 * i + 1) << 8) | (2 * i)));
    lane[i] = i == 0 ? _mm_cvtsi32_si128(0xFFFF) : _mm_slli_si128(lane[i - 1], 2);
  }
  for (int k = 0; k < n; ++k) {
    const __m128i p = _mm_mulhrs_epi16(r, v);
    __m128i sri = _mm_set1_epi16(x[k]);
    __m128i stages = _mm_setzero_si128();
    for (int i = 7; i >= 0; --i) {
      sri = _mm_subs_epi16(sri, _mm_shuffle_epi8(p, broadcast[i]));
      stages = _mm_or_si128(stages, _mm_and_si128(sri, lane[i]));
    }
    const __m128i next = _mm_adds_epi16(v, _mm_mulhrs_epi16(r, stages));  // lane i: v[i + 1]
    v8 = static_cast<int16_t>(_mm_extract_epi16(next, 7));
    v = _mm_or_si128(_mm_slli_si128(next, 2), _mm_and_si128(sri, lane[0]));
    y[k] = static_cast<int16_t>(_mm_cvtsi128_si32(sri));
  }
}
#endif

}  // namespace

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
    lattice(rrp, pSrc + at, pDst + at, gsmfr::kSegmentStart[seg + 1] - at, vv, v[kOrder]);
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
