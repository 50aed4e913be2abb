// Autocorrelation normalised by energy: legacy90vspsAutoCorr_NormE_16s32s
// (caller-windowed samples) and legacy90vspsAutoCorr_NormE_G729_16s32s (the
// G.729 240-sample analysis window applied first), bit-exact with the G.729
// reference Autocorr: overflow control by repeated division of the samples by
// 4, r[0] started at 1, normalisation of r[0] to 2^30..2^31-1.
#include <cstdint>

#include "core/basic_ops.h"
#include "core/simd/corr.h"
#include "g729/g729_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
// r[k] = 2 sum_j y[j] y[j+k] (r[0] + 1) in the reference's saturating L_mac
// chain. No partial sum of a lag k >= 1 over any subset of its terms can
// exceed r[0] / 2 in magnitude (Cauchy-Schwarz), so once r[0] fits 32 bits
// every chain is exact and is summed in wrapping 32-bit lanes here. Samples
// divided by 4^scalings as the repeated shr(y, 2) of the reference do (floor
// shifts compose; 15 or more gives 0 or -1).
// padded: y may be read up to simd::kCrossPad zeros past its end.
void autocorr_norm(const Vsp16s* y, int len, Vsp32s* dst, int lenDst, int* pNorm, bool padded) {
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
}  // namespace

VspStatus legacy90vspsAutoCorr_NormE_16s32s(const Vsp16s* pSrc, int len, Vsp32s* pDst, int lenDst, int* pNorm) {
  if (pSrc == nullptr || pDst == nullptr || pNorm == nullptr) return vspStsNullPtrErr;
  if (len < 1 || len >= (1 << 29)) return vspStsSizeErr;
  if (lenDst < 1 || lenDst > len) return vspStsSizeErr;
  autocorr_norm(pSrc, len, pDst, lenDst, pNorm, false);
  return vspStsNoErr;
}

VspStatus legacy90vspsAutoCorr_NormE_G729_16s32s(const Vsp16s* pSrc, Vsp32s* pDst, int lenDst, int* pNorm) {
  constexpr int kLen = tables::g729::kWindowLen;
  if (pSrc == nullptr || pDst == nullptr || pNorm == nullptr) return vspStsNullPtrErr;
  if (lenDst < 1 || lenDst > kLen) return vspStsSizeErr;
  Vsp16s y[kLen + simd::kCrossPad] = {};
  simd::window_mult_r(pSrc, tables::g729::kHammingWindowQ15, y, kLen);
  autocorr_norm(y, kLen, pDst, lenDst, pNorm, true);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
