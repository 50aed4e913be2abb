// LP to LSP root search shared by the G.729 main body, G.729 Annex A and
// GSM-AMR (ITU-T G.729 clause 3.2.3 Az_lsp, TS 26.073 Az_lsp): one grid
// search with bisection and linear interpolation, parametrised by the
// fixed-point form of the Chebyshev evaluation, the grid and the number of
// bisections. Each codec family passes its own grid as data.
//
// Usage (all in the level namespace, include from variant sources only):
//   int16_t f1[6], f2[6];
//   const bool q10 = lsp::sum_diff_polys_q11(lpcQ12, f1, f2);  // G.729: Q11, Q10 on overflow
//   const lsp::ChebyshevForm form = q10 ? lsp::kChebyshevQ10 : lsp::kChebyshevQ11;
//   int16_t lspQ15[10];
//   const lsp::SearchGrid grid{kGrid60Q15, 60, 4};  // the family's table
//   if (lsp::find_roots(f1, f2, form, grid, lspQ15) < 10) ... fall back ...
// GSM-AMR forms the polynomials in Q10 unconditionally (sum_diff_polys_q10)
// and evaluates them with kChebyshevAmrQ10 on its own 60-point grid (the
// same points as G.729's, 4 bisections).
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/dpf.h"
#include "core/level_ns.h"
#include "core/simd/x86.h"

namespace vsps::VSPS_NS::lsp {

// Fixed-point form of C(x) = T5(x) + f1 T4(x) + f2 T3(x) + f3 T2(x) + f4 T1(x) + f5/2
// evaluated by the Chebyshev recursion in DPF (hi, lo) words; the result is Q14.
struct ChebyshevForm {
  int16_t oneHi;      // high word of 1.0 in the recursion's format (b2 start)
  int16_t xScale;     // L_mult(x, xScale) = 2x in the recursion's format
  int16_t coefScale;  // L_mac(t, f[i], coefScale) adds f[i], i = 1..4
  int16_t lastScale;  // L_mac(t, f[5], lastScale) adds f[5] / 2
  int16_t outShift;   // left shift that brings the sum to Q30 before the high word
};
// G.729 Chebps_11: Q11 polynomials, Q24 recursion.
inline constexpr ChebyshevForm kChebyshevQ11{256, 512, 4096, 2048, 6};
// G.729 Chebps_10 (after a coefficient overflow): Q10 polynomials, Q23 recursion.
inline constexpr ChebyshevForm kChebyshevQ10{128, 256, 4096, 2048, 7};
// TS 26.073 Chebps: Q10 polynomials, Q24 recursion.
inline constexpr ChebyshevForm kChebyshevAmrQ10{256, 512, 8192, 4096, 6};

// A search grid of intervals+1 cosine points from +1 toward -1 (Q15).
struct SearchGrid {
  const int16_t* points;
  int intervals;
  int bisections;
};

inline constexpr int kPolyOrder = 5;  // NC: order of F1 and F2
inline constexpr int kLpOrder = 10;

// C(x) for x in Q15 and f[0..5] (f[0] unused); result Q14.
inline int16_t chebyshev(int16_t x, const int16_t* f, const ChebyshevForm& form) {
  dpf::Dpf b2{form.oneHi, 0};
  int32_t t = bop::L_mac(bop::L_mult(x, form.xScale), f[1], form.coefScale);
  dpf::Dpf b1 = dpf::L_Extract(t);
  for (int i = 2; i < kPolyOrder; ++i) {
    t = bop::L_shl(dpf::Mpy_32_16(b1, x), 1);  // 2x b1
    t = bop::L_mac(t, b2.hi, -32768);          // - b2
    t = bop::L_msu(t, b2.lo, 1);
    t = bop::L_mac(t, f[i], form.coefScale);  // + f[i]
    b2 = b1;
    b1 = dpf::L_Extract(t);
  }
  t = dpf::Mpy_32_16(b1, x);  // x b1
  t = bop::L_mac(t, b2.hi, -32768);
  t = bop::L_msu(t, b2.lo, 1);
  t = bop::L_mac(t, f[kPolyOrder], form.lastScale);  // + f[5] / 2
  return bop::extract_h(bop::L_shl(t, form.outShift));
}

// F1 (sum) and F2 (difference) polynomials of a Q12 LP filter a[0..10] in
// Q11 (f[0] = 2048). Returns true when an add/sub saturated: the caller
// must then use sum_diff_polys_q10 and kChebyshevQ10 (G.729 Az_lsp).
inline bool sum_diff_polys_q11(const int16_t* a, int16_t* f1, int16_t* f2) {
  bool overflow = false;
  f1[0] = 2048;
  f2[0] = 2048;
  for (int i = 0; i < kPolyOrder; ++i) {
    bool ovf = false;
    int16_t x = bop::extract_h(bop::L_mac(bop::L_mult(a[i + 1], 16384), a[kLpOrder - i], 16384));
    f1[i + 1] = bop::sub_ovf(x, f1[i], ovf);
    overflow = overflow || ovf;
    x = bop::extract_h(bop::L_msu(bop::L_mult(a[i + 1], 16384), a[kLpOrder - i], 16384));
    f2[i + 1] = bop::add_ovf(x, f2[i], ovf);
    overflow = overflow || ovf;
  }
  return overflow;
}

// The same polynomials in Q10 (f[0] = 1024); never overflows.
inline void sum_diff_polys_q10(const int16_t* a, int16_t* f1, int16_t* f2) {
  f1[0] = 1024;
  f2[0] = 1024;
  for (int i = 0; i < kPolyOrder; ++i) {
    int16_t x = bop::extract_h(bop::L_mac(bop::L_mult(a[i + 1], 8192), a[kLpOrder - i], 8192));
    f1[i + 1] = bop::sub(x, f1[i]);
    x = bop::extract_h(bop::L_msu(bop::L_mult(a[i + 1], 8192), a[kLpOrder - i], 8192));
    f2[i + 1] = bop::add(x, f2[i]);
  }
}

// Root between xlow and xhigh by linear interpolation of (xlow, ylow),
// (xhigh, yhigh), in the reference's operator sequence.
inline int16_t interpolate_root(int16_t xlow, int16_t ylow, int16_t xhigh, int16_t yhigh) {
  const int16_t dx = bop::sub(xhigh, xlow);
  int16_t dy = bop::sub(yhigh, ylow);
  if (dy == 0) return xlow;
  const int16_t sign = dy;
  dy = bop::abs_s(dy);
  const int16_t e = bop::norm_s(dy);
  dy = bop::shl(dy, e);
  dy = bop::div_s(16383, dy);                                                        // dy >= 16384 here
  int16_t slope = bop::extract_l(bop::L_shr(bop::L_mult(dx, dy), bop::sub(20, e)));  // dx/dy, Q11, wraps
  if (sign < 0) slope = bop::negate(slope);
  return bop::sub(xlow, bop::extract_l(bop::L_shr(bop::L_mult(ylow, slope), 11)));
}

// Level 6 only: the four-lane SSE4.1 form (a chebyshev_sse41.inl beside this file) was
// measured slower than the scalar evaluation at levels 4 and 5.
#if defined(VSPS_SIMD256)
#include "speech/lpc/chebyshev_avx2.inl"
#define VSPS_CHEBYSHEV_MANY 8
#endif

// Searches the roots of F1 and F2 alternately along the grid; writes the
// roots found (descending cosines, Q15) to lsp[0..] and returns their count
// (10 on success). After a root the search goes on from the root to the
// next grid point with the other polynomial. The caller decides what to do
// with fewer than 10 roots (G.729 and GSM-AMR copy the previous LSP).
//
// Level 6 evaluates both polynomials on the whole grid, and every point a
// run of bisections can visit (the 2^bisections - 1 nodes of its binary
// tree), in vector form before they are needed; the scan then reads the
// same values the scalar evaluation gives, in the same order of decisions.
inline int find_roots(const int16_t* f1, const int16_t* f2, const ChebyshevForm& form, const SearchGrid& grid,
                      int16_t* lsp) {
#if defined(VSPS_CHEBYSHEV_MANY)
  constexpr int kGridMax = 64;  // grids of up to 63 intervals (the codecs use 60 and 50)
  constexpr int kTreeMax = 16;  // up to 4 bisections
  const int points = grid.intervals + 1;
  const int padded = (points + VSPS_CHEBYSHEV_MANY - 1) / VSPS_CHEBYSHEV_MANY * VSPS_CHEBYSHEV_MANY;
  int16_t xs[kGridMax], gridY[2][kGridMax];
  for (int j = 0; j < padded; ++j) xs[j] = grid.points[j < points ? j : points - 1];
  chebyshev_many(xs, padded, f1, form, gridY[0]);
  chebyshev_many(xs, padded, f2, form, gridY[1]);
#endif
  int nf = 0;
  const int16_t* coef = f1;
  bool onF1 = true;
  int16_t xlow = grid.points[0];
#if defined(VSPS_CHEBYSHEV_MANY)
  int16_t ylow = gridY[0][0];
#else
  int16_t ylow = chebyshev(xlow, coef, form);
#endif
  int j = 0;
  while (nf < kLpOrder && j < grid.intervals) {
    ++j;
    int16_t xhigh = xlow;
    int16_t yhigh = ylow;
    xlow = grid.points[j];
#if defined(VSPS_CHEBYSHEV_MANY)
    ylow = gridY[onF1 ? 0 : 1][j];
#else
    ylow = chebyshev(xlow, coef, form);
#endif
    if (bop::L_mult(ylow, yhigh) > 0) continue;
#if defined(VSPS_CHEBYSHEV_MANY)
    // Node n of the bisection tree halves (lo[n], hi[n]); its children are
    // 2n (the lower half, kept on a sign change below the midpoint) and 2n+1.
    int16_t lo[kTreeMax], hi[kTreeMax], mid[kTreeMax], ymids[kTreeMax];
    const int nodes = (1 << grid.bisections) - 1;
    lo[1] = xlow;
    hi[1] = xhigh;
    for (int n = 1; n <= nodes; ++n) {
      mid[n - 1] = bop::add(bop::shr(lo[n], 1), bop::shr(hi[n], 1));
      if (2 * n + 1 < kTreeMax) {
        lo[2 * n] = lo[n];
        hi[2 * n] = mid[n - 1];
        lo[2 * n + 1] = mid[n - 1];
        hi[2 * n + 1] = hi[n];
      }
    }
    for (int n = nodes; n < kTreeMax; ++n) mid[n] = mid[0];
    chebyshev_many(mid, (nodes + VSPS_CHEBYSHEV_MANY - 1) / VSPS_CHEBYSHEV_MANY * VSPS_CHEBYSHEV_MANY, coef, form,
                   ymids);
    for (int b = 0, n = 1; b < grid.bisections; ++b) {
      const int16_t xmid = mid[n - 1];
      const int16_t ymid = ymids[n - 1];
      if (bop::L_mult(ylow, ymid) <= 0) {
        yhigh = ymid;
        xhigh = xmid;
        n = 2 * n;
      } else {
        ylow = ymid;
        xlow = xmid;
        n = 2 * n + 1;
      }
    }
#else
    for (int b = 0; b < grid.bisections; ++b) {  // sign change (or a zero) in [xlow, xhigh]
      const int16_t xmid = bop::add(bop::shr(xlow, 1), bop::shr(xhigh, 1));
      const int16_t ymid = chebyshev(xmid, coef, form);
      if (bop::L_mult(ylow, ymid) <= 0) {
        yhigh = ymid;
        xhigh = xmid;
      } else {
        ylow = ymid;
        xlow = xmid;
      }
    }
#endif
    const int16_t xint = interpolate_root(xlow, ylow, xhigh, yhigh);
    lsp[nf++] = xint;
    xlow = xint;
    onF1 = !onF1;
    coef = onF1 ? f1 : f2;
    ylow = chebyshev(xlow, coef, form);
  }
  return nf;
}

}  // namespace vsps::VSPS_NS::lsp
