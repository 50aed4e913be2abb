// GSM-AMR windowed autocorrelation with lag window (TS 26.073 Autocorr and
// Lag_window).
#include "core/basic_ops.h"
#include "core/dpf.h"
#include "core/simd/corr.h"
#include "gsmamr/amr_mode.h"
#include "gsmamr/amr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int kLen = gsmamr::kWindowLength;

// One analysis: r[0..10] of the windowed 240 samples, normalised, with the
// lag window applied to r[1..10].
void autocorr_one(const Vsp16s* x, const int16_t* window, Vsp32s* r) {
  int16_t y[kLen + simd::kCrossPad] = {};  // windowed speech, zero-padded for the cross sums
  simd::window_mult_r(x, window, y, kLen);

  // Energy with overflow control: the reference's saturating L_mac sum of
  // 2*y^2 reaches MAX_32 exactly when sum(y^2) >= 2^30; then the windowed
  // samples are divided by 4 (floor) and the sum is formed again.
  int64_t energy;
  for (;;) {
    energy = simd::energy64_shifted(y, kLen, 0);
    if (energy < (int64_t(1) << 30)) break;
    for (int n = 0; n < kLen; ++n) y[n] = static_cast<int16_t>(y[n] >> 2);
  }
  const int32_t r0 = static_cast<int32_t>(2 * energy + 1);  // +1: never all-zero
  const int16_t norm = bop::norm_l(r0);
  r[0] = bop::L_shl(r0, norm);

  // |partial cross sums over any subset of terms| <= sum(y^2) < 2^30 (Cauchy-
  // Schwarz): no saturation is possible, any summation order is exact.
  for (int i = 1; i <= gsmamr::kOrder; ++i) {
    const int32_t s = simd::cross32_padded(y, y + i, kLen - i);
    const dpf::Dpf ri = dpf::L_Extract(bop::L_shl(2 * s, norm));
    r[i] = dpf::Mpy_32(ri.hi, ri.lo, gsmamr::kLagWindowHi[i - 1], gsmamr::kLagWindowLo[i - 1]);
  }
}

}  // namespace

VspStatus legacy90vspsAutoCorr_GSMAMR_16s32s(const Vsp16s* pSrc, Vsp32s* pDst, int mode) {
  if (pSrc == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (!amr::mode_is_valid(mode)) return vspStsRangeErr;
  if (amr::is_mr122(mode)) {
    autocorr_one(pSrc, gsmamr::kWindow160_80, pDst);
    autocorr_one(pSrc, gsmamr::kWindow232_8, pDst + gsmamr::kOrder + 1);
  } else {
    autocorr_one(pSrc, gsmamr::kWindow200_40, pDst);
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
