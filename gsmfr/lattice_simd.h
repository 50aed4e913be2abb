// The short-term lattices of GSM 06.10 (clauses 4.2.10 and 4.3.4) over one
// interpolation segment with the eight filter memories in one SSE register
// (lane i = memory i), at the SSSE3 levels and above. Variant code only.
//
// Exact: the reflection coefficients never equal -32768 (|r| <= 32767 by
// construction in segment_coefficients), so pmulhrsw is mult_r; paddsw and
// psubsw are the saturating add and sub. Per sample the eight products of
// the old memories come at once; the eight additions (subtractions) of the
// serial chain stay in the reference order, each on a register whose lanes
// all hold the running value, and lane i keeps the value at stage i; the
// eight memory updates then come at once from those values.
#pragma once

#include <cstdint>

#include "core/level_ns.h"
#include "core/simd/x86.h"

#if defined(VSPS_SIMD128)
namespace vsps::VSPS_NS::gsmfr {

// pshufb masks that broadcast word i, and masks of word i alone.
struct LaneMasks {
  __m128i broadcast[8], lane[8];
  LaneMasks() {
    for (int i = 0; i < 8; ++i) {
      broadcast[i] = _mm_set1_epi16(static_cast<int16_t>(((2 * i + 1) << 8) | (2 * i)));
      lane[i] = i == 0 ? _mm_cvtsi32_si128(0xFFFF) : _mm_slli_si128(lane[i - 1], 2);
    }
  }
};

// Analysis: d = x; for i = 0..7: u'[i] = d_i (u'[0] = x), d += mult_r(r[i], u[i]),
// u'[i + 1] = u[i] + mult_r(r[i], d_i), where d_i is d before stage i.
inline void analysis_lattice(const int16_t* rp, const int16_t* x, int16_t* y, int n, __m128i& u) {
  const LaneMasks m;
  const __m128i r = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rp));
  for (int k = 0; k < n; ++k) {
    const __m128i p = _mm_mulhrs_epi16(r, u);
    __m128i d = _mm_set1_epi16(x[k]);
    __m128i stages = _mm_and_si128(d, m.lane[0]);
    for (int i = 0; i < 8; ++i) {
      d = _mm_adds_epi16(d, _mm_shuffle_epi8(p, m.broadcast[i]));
      if (i < 7) stages = _mm_or_si128(stages, _mm_and_si128(d, m.lane[i + 1]));
    }
    const __m128i sav = _mm_adds_epi16(u, _mm_mulhrs_epi16(r, stages));  // lane i: u'[i + 1]
    u = _mm_or_si128(_mm_slli_si128(sav, 2), _mm_and_si128(_mm_set1_epi16(x[k]), m.lane[0]));
    y[k] = static_cast<int16_t>(_mm_cvtsi128_si32(d));
  }
}

// Synthesis: s = x; for i = 7..0: s -= mult_r(r[i], v[i]), v'[i + 1] =
// v[i] + mult_r(r[i], s_i) with s_i the value after stage i; v'[0] = s_0.
inline void synthesis_lattice(const int16_t* rrp, const int16_t* x, int16_t* y, int n, __m128i& v, int16_t& v8) {
  const LaneMasks m;
  const __m128i r = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rrp));
  for (int k = 0; k < n; ++k) {
    const __m128i p = _mm_mulhrs_epi16(r, v);
    __m128i sri = _mm_set1_epi16(x[k]);
    __m128i stages = _mm_setzero_si128();
    for (int i = 7; i >= 0; --i) {
      sri = _mm_subs_epi16(sri, _mm_shuffle_epi8(p, m.broadcast[i]));
      stages = _mm_or_si128(stages, _mm_and_si128(sri, m.lane[i]));
    }
    const __m128i next = _mm_adds_epi16(v, _mm_mulhrs_epi16(r, stages));  // lane i: v'[i + 1]
    v8 = static_cast<int16_t>(_mm_extract_epi16(next, 7));
    v = _mm_or_si128(_mm_slli_si128(next, 2), _mm_and_si128(sri, m.lane[0]));
    y[k] = static_cast<int16_t>(_mm_cvtsi128_si32(sri));
  }
}

}  // namespace vsps::VSPS_NS::gsmfr
#endif
