// GSM-AMR windowed autocorrelation with lag window (TS 26.073 Autocorr and
// Lag_window).
#include "core/basic_ops.h"
#include "core/dpf.h"
#include "gsmamr/amr_mode.h"
#include "gsmamr/amr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int kLen = gsmamr::kWindowLength;

// One analysis: r[0..10] of the windowed 240 samples, normalised, with the
// lag window applied to r[1..10].
void autocorr_one(const Vsp16s* x, const int16_t* window, Vsp32s* r) {
  int16_t y[kLen];  // windowed speech
  for (int n = 0; n < kLen; ++n) y[n] = bop::mult_r(x[n], window[n]);

  // Energy with overflow control: the reference's saturating L_mac sum of
  // 2*y^2 reaches MAX_32 exactly when sum(y^2) >= 2^30; then the windowed
  // samples are divided by 4 (floor) and the sum is formed again.
  int64_t energy;
  for (;;) {
    energy = 0;
    for (int n = 0; n < kLen; ++n) energy += int32_t(y[n]) * y[n];
    if (energy < (int64_t(1) << 30)) break;
    for (int n = 0; n < kLen; ++n) y[n] = static_cast<int16_t>(y[n] >> 2);
  }
  const int32_t r0 = static_cast<int32_t>(2 * energy + 1);  // +1: never all-zero
  const int16_t norm = bop::norm_l(r0);
  r[0] = bop::L_shl(r0, norm);

  // |partial cross sums| <= sum(y^2) < 2^30: no saturation is possible.
  for (int i = 1; i <= gsmamr::kOrder; ++i) {
    int32_t s = 0;
    for (int j = 0; j < kLen - i; ++j) s += int32_t(y[j]) * y[j + i];
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
