// GSM 06.10 clauses 4.2.11 to 4.2.12: long-term predictor lag and gain of
// one subframe, and the long-term analysis filter.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

using vsps::gsmfr::kHistory;
using vsps::gsmfr::kSubframe;

// Lag Nc (40..120, the first maximum of the cross-correlation) and gain
// index bc (0..3). `dp` points at dp[0]; dp[-120..-1] is the history.
void lag_and_gain(const int16_t* d, const int16_t* dp, int* nc, int* bc) {
  int16_t dmax = 0;
  for (int k = 0; k < kSubframe; ++k) {
    const int16_t t = bop::abs_s(d[k]);
    if (t > dmax) dmax = t;
  }
  const int t = dmax == 0 ? 0 : bop::norm_l(int32_t(dmax) << 16);
  const int scal = t > 6 ? 0 : 6 - t;
  int16_t wt[kSubframe];  // d scaled down so that the correlations fit
  for (int k = 0; k < kSubframe; ++k) wt[k] = static_cast<int16_t>(d[k] >> scal);
  int32_t lmax = 0;
  int best = vsps::gsmfr::kMinLag;
  for (int lag = vsps::gsmfr::kMinLag; lag <= vsps::gsmfr::kMaxLag; ++lag) {
    int32_t sum = 0;  // plain: 40 products of a 10-bit and a 16-bit value
    for (int k = 0; k < kSubframe; ++k) sum += int32_t(wt[k]) * dp[k - lag];
    if (sum > lmax) {
      lmax = sum;
      best = lag;
    }
  }
  *nc = best;
  lmax = static_cast<int32_t>(static_cast<uint32_t>(lmax) << 1) >> (6 - scal);
  int32_t lpow = 0;  // plain: 40 squares of 13-bit values
  for (int k = 0; k < kSubframe; ++k) {
    const int32_t v = dp[k - best] >> 3;
    lpow += v * v;
  }
  lpow *= 2;
  if (lmax <= 0) {
    *bc = 0;
  } else if (lmax >= lpow) {
    *bc = 3;
  } else {
    const int n = bop::norm_l(lpow);
    const auto r = static_cast<int16_t>(static_cast<int32_t>(static_cast<uint32_t>(lmax) << n) >> 16);
    const auto s = static_cast<int16_t>(static_cast<int32_t>(static_cast<uint32_t>(lpow) << n) >> 16);
    int b = 0;
    while (b < 3 && r > bop::mult(s, vsps::gsmfr::kLtpDlb[b])) ++b;
    *bc = b;
  }
}

}  // namespace

VspStatus legacy90vspsLongTermPredictor_GSMFR_16s(const Vsp16s* pSrc, const Vsp16s* pSrcHist, Vsp16s* pDstPred,
                                                  Vsp16s* pDstResidual, Vsp16s* pDstLag, Vsp16s* pDstGain) {
  if (pSrc == nullptr || pSrcHist == nullptr || pDstPred == nullptr || pDstResidual == nullptr || pDstLag == nullptr ||
      pDstGain == nullptr)
    return vspStsNullPtrErr;
  int nc = 0, bc = 0;
  const int16_t* dp = pSrcHist + kHistory;
  lag_and_gain(pSrc, dp, &nc, &bc);
  const int16_t g = vsps::gsmfr::kLtpQlb[bc];
  int16_t dpp[kSubframe], e[kSubframe];  // pDstPred / pDstResidual may alias the inputs
  for (int k = 0; k < kSubframe; ++k) {
    dpp[k] = bop::mult_r(g, dp[k - nc]);
    e[k] = bop::sub(pSrc[k], dpp[k]);
  }
  for (int k = 0; k < kSubframe; ++k) {
    pDstPred[k] = dpp[k];
    pDstResidual[k] = e[k];
  }
  *pDstLag = static_cast<int16_t>(nc);
  *pDstGain = static_cast<int16_t>(bc);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
