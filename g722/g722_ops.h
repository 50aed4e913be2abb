// G.722 per-sample arithmetic shared by the step exports and the whole-block
// codec: the QMF pair (clause 3.3 / 4.4 of the Recommendation), the lower-
// and higher-band ADPCM quantisers, inverse quantisers, scale-factor
// adaptation and predictor update (clauses 3.4 to 3.6, 4.2 to 4.3).
// Variant code only.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/level_ns.h"
#include "core/simd/x86.h"
#include "g722/g722_tables.h"

namespace vsps::VSPS_NS::g722 {

namespace t = vsps::g722;

// Sub-band state words, in this order (26): a1 a2 (pole coefficients, Q14),
// b1..b6 (zero coefficients, Q14), det (scale factor), d0..d6 (quantised
// differences, d0 newest), nb (log scale factor), p0..p2 (partially
// reconstructed signal), r0..r2 (reconstructed signal), s (estimate), sp
// (pole part), sz (zero part).
enum : int { kA1 = 0, kA2 = 1, kB = 2, kDet = 8, kD = 9, kNb = 16, kP = 17, kR = 20, kS = 23, kSp = 24, kSz = 25 };

inline int16_t limit15(int32_t x) { return static_cast<int16_t>(x > 16383 ? 16383 : (x < -16384 ? -16384 : x)); }
inline int16_t limit15(int16_t x) { return limit15(int32_t(x)); }
inline int16_t sgn(int16_t x) { return static_cast<int16_t>(x >> 15); }  // -1 negative, 0 otherwise
// |x| in one's complement as the quantisers see it: -1 -> 0, -32768 -> 32767.
inline int16_t ones_magnitude(int16_t e) { return e >= 0 ? e : bop::sub(32767, static_cast<int16_t>(e & 32767)); }

#if defined(VSPS_SIMD128)
// The sixth-order zero predictor in one register (lanes 0..5 = taps 1..6):
// b[i] += sign-sign step g (+g where dq and the old d[i] have the same sign,
// -g where not) after the leakage mult(b[i], 32640); d[1..6] = dq, d[1..5];
// returns sz, the saturating sum of mult(2 d[i], b[i]) from i = 6 down to 1
// in that order (a serial chain of paddsw, as the reference adds). Exact:
// mult_q15 is mult for every pair, paddsw is add.
inline int16_t zero_predictor(int16_t* b, int16_t* d, int16_t dq, int16_t g) {
  int16_t lanes[8] = {};
  const __m128i bOld = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b + 1));
  const __m128i dOld = _mm_loadu_si128(reinterpret_cast<const __m128i*>(d + 1));
  const __m128i differ = _mm_srai_epi16(_mm_xor_si128(dOld, _mm_set1_epi16(dq)), 15);  // -1 where signs differ
  const __m128i step = _mm_sub_epi16(_mm_xor_si128(_mm_set1_epi16(g), differ), differ);
  const __m128i bNew = _mm_adds_epi16(step, simd::mult_q15(bOld, _mm_set1_epi16(32640)));
  const __m128i dNew = _mm_insert_epi16(_mm_slli_si128(dOld, 2), dq, 0);
  const __m128i terms = simd::mult_q15(_mm_adds_epi16(dNew, dNew), bNew);
  __m128i sz = _mm_srli_si128(terms, 10);
  sz = _mm_adds_epi16(sz, _mm_srli_si128(terms, 8));
  sz = _mm_adds_epi16(sz, _mm_srli_si128(terms, 6));
  sz = _mm_adds_epi16(sz, _mm_srli_si128(terms, 4));
  sz = _mm_adds_epi16(sz, _mm_srli_si128(terms, 2));
  sz = _mm_adds_epi16(sz, terms);
  _mm_storeu_si128(reinterpret_cast<__m128i*>(lanes), bNew);
  for (int i = 0; i < 6; ++i) b[i + 1] = lanes[i];
  _mm_storeu_si128(reinterpret_cast<__m128i*>(lanes), dNew);
  for (int i = 0; i < 6; ++i) d[i + 1] = lanes[i];
  return static_cast<int16_t>(_mm_cvtsi128_si32(sz));
}
#endif

// Predictor update with the quantised difference dq (both bands), and the
// estimate of the next sample.
inline void adapt(int16_t* st, int16_t dq) {
  int16_t* b = st + kB - 1;  // b[1..6]
  int16_t* d = st + kD;      // d[0..6]
  int16_t* p = st + kP;
  int16_t* r = st + kR;
  d[0] = dq;
  p[0] = bop::add(dq, st[kSz]);
  r[0] = bop::add(st[kS], dq);
  // Zero predictor (sign-sign update with leakage 1 - 2^-8) and its estimate
  // from the shifted delay line.
  const int16_t g = dq == 0 ? 0 : 128;
#if defined(VSPS_SIMD128)
  const int16_t sz = zero_predictor(b, d, dq, g);
#else
  for (int i = 6; i >= 1; --i) {
    b[i] = bop::add(sgn(dq) == sgn(d[i]) ? g : static_cast<int16_t>(-g), bop::mult(b[i], 32640));
    d[i] = d[i - 1];
  }
#endif
  // Second pole coefficient, then the first limited by the new second.
  int16_t u = bop::shl(st[kA1], 2);
  if (sgn(p[0]) == sgn(p[1])) u = bop::sub(0, u);
  u = static_cast<int16_t>(u >> 7);
  int16_t a2 = bop::add(bop::add(u, sgn(p[0]) == sgn(p[2]) ? int16_t(128) : int16_t(-128)), bop::mult(st[kA2], 32512));
  a2 = a2 > 12288 ? int16_t(12288) : (a2 < -12288 ? int16_t(-12288) : a2);
  int16_t a1 = bop::add(sgn(p[0]) == sgn(p[1]) ? int16_t(192) : int16_t(-192), bop::mult(st[kA1], 32640));
  const int16_t lim = bop::sub(15360, a2);
  if (a1 > lim)
    a1 = lim;
  else if (bop::add(a1, lim) < 0)
    a1 = bop::negate(lim);
  st[kA1] = a1;
  st[kA2] = a2;
  p[2] = p[1];
  p[1] = p[0];
  // Estimate of the next sample from the shifted delay lines.
#if !defined(VSPS_SIMD128)
  int16_t sz = 0;
  for (int i = 6; i >= 1; --i) sz = bop::add(sz, bop::mult(bop::add(d[i], d[i]), b[i]));
#endif
  r[2] = r[1];
  r[1] = r[0];
  const int16_t sp = bop::add(bop::mult(a1, bop::add(r[1], r[1])), bop::mult(a2, bop::add(r[2], r[2])));
  st[kSz] = sz;
  st[kSp] = sp;
  st[kS] = bop::add(sp, sz);
}

// Lower band: 4-bit inverse quantiser (the two LSBs of the code unused),
// log scale factor and scale factor, predictor update.
inline void lower_update(int16_t* st, int il) {
  const int r4 = il >> 2;
  int16_t w = bop::shl(t::kOq4[t::kRil4[r4]], 3);
  if (t::kRisil4[r4] == -1) w = bop::negate(w);
  const int16_t dq = bop::mult(st[kDet], w);
  int16_t nb = bop::add(bop::mult(st[kNb], 32512), t::kWl[t::kRil4[r4]]);
  nb = nb < 0 ? int16_t(0) : (nb > t::kMaxNbl ? int16_t(t::kMaxNbl) : nb);
  st[kNb] = nb;
  st[kDet] = bop::shl(static_cast<int16_t>(t::kIla[((nb >> 6) & 511) + 64] + 1), 2);
  adapt(st, dq);
}

// The lower-band decision interval of magnitude wd: the reference's search
// stops at the first m < 30 whose threshold mult(Q6[m] << 3, det) exceeds
// wd. The thresholds never fall with m (Q6 rises, det > 0, and Q6[29] << 3 =
// 23352 does not saturate), so the interval is the count of thresholds at
// most wd.
#if defined(VSPS_SIMD128)
// Four rows of eight thresholds (m = 0..7, 8..15, 16..23, 22..29), compared
// at once; the interval is the run of trailing ones of the row masks (with
// m = 22, 23 twice past bit 23).
inline int lower_interval(int16_t det, int16_t wd) {
  const __m128i d = _mm_set1_epi16(det), w = _mm_set1_epi16(wd), ones = _mm_set1_epi16(-1);
  const auto atMost = [&](int from) {
    const __m128i q = _mm_slli_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(t::kQ6 + from)), 3);
    return _mm_xor_si128(_mm_cmpgt_epi16(simd::mult_q15(q, d), w), ones);
  };
  const auto lo = static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(atMost(0), atMost(8))));
  const auto hi = static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(atMost(16), atMost(22))));
  const int run = __builtin_ctzll(~((uint64_t{hi} << 16) | lo));
  return run < 24 ? run : run - 2;
}
#else
inline int lower_interval(int16_t det, int16_t wd) {
  int m = 0;
  while (m < 30 && bop::mult(bop::shl(t::kQ6[m], 3), det) <= wd) ++m;
  return m;
}
#endif

inline int lower_encode(int16_t* st, int16_t xl) {
  const int16_t el = bop::sub(xl, st[kS]);
  const int16_t wd = ones_magnitude(el);
  const int m = lower_interval(st[kDet], wd);
  const int il = el >= 0 ? t::kMisilPos[m] : t::kMisilNeg[m];
  lower_update(st, il);
  return il;
}

// mode 1, 2, 3: 6, 5 or 4 bits of the code reach the output.
inline int16_t lower_decode(int16_t* st, int ilr, int mode) {
  int16_t w;
  bool negative;
  if (mode == 3) {
    const int r = ilr >> 2;
    w = bop::shl(t::kOq4[t::kRil4[r]], 3);
    negative = t::kRisil4[r] == -1;
  } else if (mode == 2) {
    const int r = ilr >> 1;
    w = bop::shl(t::kOq5[t::kRil5[r]], 3);
    negative = t::kRisi5[r] == -1;
  } else {
    w = bop::shl(t::kOq6[t::kRil6[ilr]], 3);
    negative = t::kRisi6[ilr] == -1;
  }
  if (negative) w = bop::sub(0, w);
  const int16_t rl = limit15(bop::add(st[kS], bop::mult(st[kDet], w)));
  lower_update(st, ilr);
  return rl;
}

// Higher band: quantised difference of code ih, then the updates; returns dq.
inline int16_t higher_update(int16_t* st, int ih) {
  int16_t w = bop::shl(t::kOq2[t::kIh2[ih]], 3);
  if (t::kSih[ih] == -1) w = bop::negate(w);
  const int16_t dq = bop::mult(w, st[kDet]);
  int16_t nb = bop::add(bop::mult(st[kNb], 32512), t::kWh[t::kIh2[ih]]);
  nb = nb < 0 ? int16_t(0) : (nb > t::kMaxNbh ? int16_t(t::kMaxNbh) : nb);
  st[kNb] = nb;
  st[kDet] = bop::shl(static_cast<int16_t>(t::kIla[(nb >> 6) & 511] + 1), 2);
  return dq;
}

inline int higher_encode(int16_t* st, int16_t xh) {
  const int16_t eh = bop::sub(xh, st[kS]);
  const int16_t wd = ones_magnitude(eh);
  const int m = wd >= bop::mult(bop::shl(564, 3), st[kDet]) ? 2 : 1;
  const int ih = eh >= 0 ? t::kMisihPos[m] : t::kMisihNeg[m];
  adapt(st, higher_update(st, ih));
  return ih;
}

inline int16_t higher_decode(int16_t* st, int ih) {
  const int16_t s = st[kS];
  const int16_t dq = higher_update(st, ih);
  adapt(st, dq);
  return limit15(bop::add(s, dq));
}

#if defined(VSPS_SIMD128)
#include "g722/qmf_line_ssse3.inl"
#else
// The QMF delay line D[0..23] (D[0] newest).
class QmfLine {
 public:
  explicit QmfLine(const int16_t* delay) {
    for (int i = 0; i < t::kDelay; ++i) d_[i] = delay[i];
  }
  void store(int16_t* delay) const {
    for (int i = 0; i < t::kDelay; ++i) delay[i] = d_[i];
  }
  // D[1] = older, D[0] = newer; the two 12-term sums A (even taps) and B
  // (odd taps) with exact products and saturating sums; then D[2..23] =
  // D[0..21] (D[0] and D[1] stay until the next pair overwrites them).
  void step(int16_t older, int16_t newer, int32_t* a, int32_t* b) {
    d_[1] = older;
    d_[0] = newer;
    int32_t sa = int32_t(t::kQmfCoef[0]) * d_[0];
    int32_t sb = int32_t(t::kQmfCoef[1]) * d_[1];
    for (int i = 1; i < 12; ++i) {
      sa = bop::L_add(sa, int32_t(t::kQmfCoef[2 * i]) * d_[2 * i]);
      sb = bop::L_add(sb, int32_t(t::kQmfCoef[2 * i + 1]) * d_[2 * i + 1]);
    }
#pragma GCC unroll 22
    for (int i = t::kDelay - 1; i >= 2; --i) d_[i] = d_[i - 2];  // unrolled: no memmove call for 44 bytes
    *a = sa;
    *b = sb;
  }

 private:
  int16_t d_[t::kDelay];
};
#endif

// Transmit QMF: xa (older) and xb (newer) -> lower and higher sub-band.
inline void qmf_analysis(QmfLine& line, int16_t xa, int16_t xb, int16_t* xl, int16_t* xh) {
  int32_t a = 0, b = 0;
  line.step(xa, xb, &a, &b);
  int32_t lo = bop::L_add(a, b);
  lo = bop::L_add(lo, lo);
  int32_t hi = bop::L_sub(a, b);
  hi = bop::L_add(hi, hi);
  *xl = limit15(lo >> 16);
  *xh = limit15(hi >> 16);
}

// Receive QMF: rl, rh -> two output samples in time order.
inline void qmf_synthesis(QmfLine& line, int16_t rl, int16_t rh, int16_t* y) {
  int32_t a = 0, b = 0;
  line.step(bop::add(rl, rh), bop::sub(rl, rh), &a, &b);
  y[0] = bop::extract_h(bop::L_shl(a, 4));
  y[1] = bop::extract_h(bop::L_shl(b, 4));
}

// True when a state's log scale factor lies in its band's range (it indexes
// the antilog table).
inline bool band_state_valid(const int16_t* st, int maxNb) { return st[kNb] >= 0 && st[kNb] <= maxNb; }

}  // namespace vsps::VSPS_NS::g722
