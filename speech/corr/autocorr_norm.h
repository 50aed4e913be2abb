// Autocorrelation normalised by energy in the G.729 reference arithmetic
// (Autocorr without its window): overflow control by repeated division of
// the samples by 4, r[0] started at 1, normalisation of r[0] to
// 2^30..2^31-1, every value stored with bit 0 cleared (the DPF value).
// Shared by the general export and the codec families' windowed forms.
// Per level: include from variant sources only.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/simd/corr.h"
#include "vsps.h"

namespace vsps::VSPS_NS::corr {
// r[k] = 2 sum_j y[j] y[j+k] (r[0] + 1) in the reference's saturating L_mac
// chain. No partial sum of a lag k >= 1 over any subset of its terms can
// exceed r[0] / 2 in magnitude (Cauchy-Schwarz), so once r[0] fits 32 bits
// every chain is exact and is summed in wrapping 32-bit lanes here. Samples
// divided by 4^scalings as the repeated shr(y, 2) of the reference do (floor
// shifts compose; 15 or more gives 0 or -1).
// padded: y may be read up to simd::kCrossPad zeros past its end.
inline void autocorr_norm(const Vsp16s* y, int len, Vsp32s* dst, int lenDst, int* pNorm, bool padded) {
  int scalings = 0;
  int shift = 0;
  int64_t energy;
  for (;;) {  // overflow control: divide the samples by 4 until 1 + 2 sum y^2 fits 32 bits
    energy = simd::energy64_shifted(y, len, shift);
    if (1 + 2 * energy <= bop::kMax32) break;
    ++scalings;
    shift = 2 * scalings > 15 ? 15 : 2 * scalings;
  }
  const int32_t r0 = static_cast<int32_t>(1 + 2 * energy);
  const int16_t norm = bop::norm_l(r0);
  dst[0] = bop::L_shl(r0, norm) & ~int32_t(1);  // the DPF value: bit 0 cleared
  for (int k = 1; k < lenDst; ++k) {
    const int32_t s =
        padded && shift == 0 ? simd::cross32_padded(y, y + k, len - k) : simd::cross32(y, y + k, len - k, shift);
    dst[k] = bop::L_shl(2 * s, norm) & ~int32_t(1);
  }
  *pNorm = norm - 4 * scalings;
}

}  // namespace vsps::VSPS_NS::corr
