// LP synthesis (all-pole) and residual (all-zero) filters with the
// saturating arithmetic of the ITU-T speech-coding references (G.729 Syn_filt
// and Residu): products accumulated with L_mac/L_msu, the sum shifted left by
// (15 - coefficient Q) and rounded. Variant code only (level namespace).
#pragma once

#include <cstdint>

#include "core/basic_ops.h"

namespace vsps::VSPS_NS::speech {

// y[n] = round(sat(2^(15-q) (x[n] a[0] - sum_j a[j] y[n-j]))), n = 0..len-1;
// y[-order..-1] = mem (oldest first). x and y may be the same array. The
// memory is replaced by the last `order` outputs (shifted when len < order).
// Returns true when an operator saturated.
inline bool synthesis(const int16_t* a, int order, const int16_t* x, int16_t* y, int len, int16_t* mem, int q) {
  using namespace bop;
  bool ovf = false;
  const auto shift = static_cast<int16_t>(15 - q);
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
  for (int n = 0; n < len; ++n) {
    int32_t s = 0;
    for (int i = 0; i <= n; ++i) s = L_mac(s, x[i], h[n - i]);
    y[n] = extract_h(L_shl(s, shift));
  }
}

}  // namespace vsps::VSPS_NS::speech
