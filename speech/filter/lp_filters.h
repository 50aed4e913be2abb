// LP synthesis (all-pole) and residual (all-zero) filters with the
// saturating arithmetic of the ITU-T speech-coding references (G.729 Syn_filt
// and Residu): products accumulated with L_mac/L_msu, the sum shifted left by
// (15 - coefficient Q) and rounded. Variant code only (level namespace).
//
// Each filter first bounds its sums: when no partial sum of products can
// reach 2^31 (bounds below), the chain of saturating operators equals the
// plain 32-bit sum, which is then formed in any order (the compiler
// vectorises the loops at each level); only the final shift and rounding,
// which may saturate, keep the operators. Otherwise the literal chain runs.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "speech/corr/mac_sums.h"

namespace vsps::VSPS_NS::speech {

// Largest |v[i]|, i < n (32768 for -32768).
inline int32_t max_abs(const int16_t* v, int n) {
  int32_t m = 0;
  for (int i = 0; i < n; ++i) {
    const int32_t a = v[i] < 0 ? -int32_t{v[i]} : int32_t{v[i]};
    m = a > m ? a : m;
  }
  return m;
}

// Sum of |c[i]|, i < n.
inline int64_t sum_abs(const int16_t* c, int n) {
  int64_t s = 0;
  for (int i = 0; i < n; ++i) s += c[i] < 0 ? -int64_t{c[i]} : int64_t{c[i]};
  return s;
}

// True when every partial sum of 2 sum_i c[i] v[k_i] (distinct i, any
// samples v of the block) stays below 2^31 in magnitude: either
// max|v| sum|c| < 2^30 or, by Cauchy-Schwarz over the whole block,
// E(c) E(v) < 2^60.
inline bool products_fit(const int16_t* c, int nc, const int16_t* v, int nv) {
  if (int64_t{max_abs(v, nv)} * sum_abs(c, nc) < (int64_t{1} << 30)) return true;
  return cross_fits(energy(c, nc), energy(v, nv));
}

// y[n] = round(sat(2^(15-q) (x[n] a[0] - sum_j a[j] y[n-j]))), n = 0..len-1;
// y[-order..-1] = mem (oldest first). x and y may be the same array. The
// memory is replaced by the last `order` outputs (shifted when len < order).
// Returns true when an operator saturated.
// The plain form of synthesis() when 2 (|a[0]| max|x| + 32768 sum_{j>=1}
// |a[j]|) < 2^31: the sums are exact, the outputs feed back through a local
// history (x and y may still be the same array: x[n] is read before y[n] is
// written).
inline bool synthesis_exact(const int16_t* a, int order, const int16_t* x, int16_t* y, int len, int16_t* mem,
                            int16_t shift) {
  using namespace bop;
  constexpr int kMaxOrder = 30;
  constexpr int kBlock = 64;
  int16_t hist[kMaxOrder + kBlock];  // y[n - order .. n - 1] of the block, then its outputs
  for (int i = 0; i < order; ++i) hist[i] = mem[i];
  bool ovf = false;
  for (int n0 = 0; n0 < len; n0 += kBlock) {
    const int m = len - n0 < kBlock ? len - n0 : kBlock;
    for (int n = 0; n < m; ++n) {
      int32_t s = int32_t{x[n0 + n]} * a[0];
      for (int j = order; j >= 1; --j) s -= int32_t{a[j]} * hist[order + n - j];  // the newest output last
      const int16_t out = extract_h(L_add_ovf(L_shl_ovf(2 * s, shift, ovf), 0x8000, ovf));
      hist[order + n] = out;
      y[n0 + n] = out;
    }
    for (int i = 0; i < order; ++i) hist[i] = hist[m + i];
  }
  for (int i = 0; i < order; ++i) mem[i] = hist[i];
  return ovf;
}

inline bool synthesis(const int16_t* a, int order, const int16_t* x, int16_t* y, int len, int16_t* mem, int q) {
  using namespace bop;
  bool ovf = false;
  const auto shift = static_cast<int16_t>(15 - q);
  const int64_t bound =
      int64_t{max_abs(x, len)} * (a[0] < 0 ? -int64_t{a[0]} : int64_t{a[0]}) + int64_t{32768} * sum_abs(a + 1, order);
  // The bound reads x before any output is written: x and y the same array or apart.
  const auto xa = reinterpret_cast<std::uintptr_t>(x), ya = reinterpret_cast<std::uintptr_t>(y);
  const auto bytes = static_cast<std::uintptr_t>(len) * sizeof(int16_t);
  const bool separate = xa == ya || xa + bytes <= ya || ya + bytes <= xa;
  if (separate && bound < (int64_t{1} << 30)) return synthesis_exact(a, order, x, y, len, mem, shift);
  for (int n = 0; n < len; ++n) {
    int32_t s = L_mult_ovf(x[n], a[0], ovf);
    for (int j = 1; j <= order; ++j) s = L_msu_ovf(s, a[j], n - j >= 0 ? y[n - j] : mem[order + n - j], ovf);
    s = L_shl_ovf(s, shift, ovf);
    y[n] = extract_h(L_add_ovf(s, 0x8000, ovf));
  }
  if (len >= order) {
    for (int i = 0; i < order; ++i) mem[i] = y[len - order + i];
  } else {
    for (int i = 0; i < order - len; ++i) mem[i] = mem[i + len];
    for (int i = 0; i < len; ++i) mem[order - len + i] = y[i];
  }
  return ovf;
}

// y[n] = round(sat(2^(15-q) sum_{i=0..order} a[i] x[n-i])); x[-order..-1]
// are read.
inline void residual(const int16_t* a, int order, const int16_t* x, int16_t* y, int len, int q) {
  using namespace bop;
  const auto shift = static_cast<int16_t>(15 - q);
  if (products_fit(a, order + 1, x - order, order + len)) {
    for (int n = 0; n < len; ++n) {
      int32_t s = 0;
      for (int i = 0; i <= order; ++i) s += int32_t{a[i]} * x[n - i];
      y[n] = round(L_shl(2 * s, shift));
    }
    return;
  }
  for (int n = 0; n < len; ++n) {
    int32_t s = L_mult(x[n], a[0]);
    for (int i = 1; i <= order; ++i) s = L_mac(s, a[i], x[n - i]);
    y[n] = round(L_shl(s, shift));
  }
}

}  // namespace vsps::VSPS_NS::speech

namespace vsps::VSPS_NS::speech {

// y[n] = extract_h(L_shl(sum_{i<=n} L_mac x[i] h[n-i], 15 - q)), saturating
// (G.729 Convolve with h in Qq).
inline void convolve_sat(const int16_t* x, const int16_t* h, int16_t* y, int len, int q) {
  using namespace bop;
  const auto shift = static_cast<int16_t>(15 - q);
  constexpr int kExactMax = 64;  // outputs of the local accumulators
  if (len <= kExactMax && products_fit(h, len, x, len)) {
    int32_t acc[kExactMax] = {};
    for (int i = 0; i < len; ++i) {  // x[i] h[n - i] added to every output n >= i
      const int32_t xi = x[i];
      for (int n = i; n < len; ++n) acc[n] += xi * h[n - i];
    }
    for (int n = 0; n < len; ++n) y[n] = extract_h(L_shl(2 * acc[n], shift));
    return;
  }
  for (int n = 0; n < len; ++n) {
    int32_t s = 0;
    for (int i = 0; i <= n; ++i) s = L_mac(s, x[i], h[n - i]);
    y[n] = extract_h(L_shl(s, shift));
  }
}

}  // namespace vsps::VSPS_NS::speech
