// GSM 06.10 clauses 4.2.4 to 4.2.7: autocorrelation with in-place scaling,
// Schur recursion, log-area ratios and their quantisation.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

using vsps::gsmfr::kFrame;
using vsps::gsmfr::kOrder;

// ACF[0..8] of the frame, which is scaled down for the sums and then scaled
// back (losing the rounded-away bits, as the standard does).
void autocorrelation(int16_t* s, int32_t* acf) {
  int16_t smax = 0;
  for (int k = 0; k < kFrame; ++k) {
    const int16_t t = bop::abs_s(s[k]);
    if (t > smax) smax = t;
  }
  const int scal = smax == 0 ? 0 : 4 - bop::norm_l(int32_t(smax) << 16);
  if (scal > 0) {
    const auto f = static_cast<int16_t>(16384 >> (scal - 1));
    for (int k = 0; k < kFrame; ++k) s[k] = bop::mult_r(s[k], f);
  }
  for (int lag = 0; lag <= kOrder; ++lag) {
    int32_t sum = 0;  // at most 160 products of 13-bit values: no overflow
    for (int i = lag; i < kFrame; ++i) sum += int32_t(s[i]) * s[i - lag];
    acf[lag] = sum * 2;
  }
  if (scal > 0)
    for (int k = 0; k < kFrame; ++k) s[k] = static_cast<int16_t>(s[k] * (1 << scal));
}

// Reflection coefficients r[0..7] (Q15) by the Schur recursion.
void reflection_coefficients(const int32_t* acf, int16_t* r) {
  for (int i = 0; i < kOrder; ++i) r[i] = 0;
  if (acf[0] == 0) return;
  const int t0 = bop::norm_l(acf[0]);
  int16_t acfn[kOrder + 1];
  for (int i = 0; i <= kOrder; ++i)
    acfn[i] =
        static_cast<int16_t>(static_cast<int32_t>(static_cast<uint32_t>(acf[i]) << t0) >> 16);  // |ACF[i]| <= ACF[0]
  int16_t k[kOrder + 1], p[kOrder + 1];
  for (int i = 1; i < kOrder; ++i) k[i] = acfn[i];
  for (int i = 0; i <= kOrder; ++i) p[i] = acfn[i];
  for (int n = 1; n <= kOrder; ++n) {
    const int16_t t = bop::abs_s(p[1]);
    if (p[0] < t) return;
    int16_t rn = bop::div_s(t, p[0]);
    if (p[1] > 0) rn = static_cast<int16_t>(-rn);
    r[n - 1] = rn;
    if (n == kOrder) return;
    p[0] = bop::add(p[0], bop::mult_r(p[1], rn));
    for (int m = 1; m <= kOrder - n; ++m) {
      p[m] = bop::add(p[m + 1], bop::mult_r(k[m], rn));
      k[m] = bop::add(k[m], bop::mult_r(p[m + 1], rn));
    }
  }
}

}  // namespace

VspStatus legacy90vspsLPCAnalysis_GSMFR_16s_I(Vsp16s* pSrcDst, Vsp16s* pDstLARc) {
  if (pSrcDst == nullptr || pDstLARc == nullptr) return vspStsNullPtrErr;
  int32_t acf[kOrder + 1];
  autocorrelation(pSrcDst, acf);
  int16_t r[kOrder];
  reflection_coefficients(acf, r);
  for (int i = 0; i < kOrder; ++i) {
    // Log-area ratio by the piecewise-linear approximation, then quantised.
    int16_t t = bop::abs_s(r[i]);
    if (t < 22118)
      t = static_cast<int16_t>(t >> 1);
    else if (t < 31130)
      t = static_cast<int16_t>(t - 11059);
    else
      t = static_cast<int16_t>((t - 26112) << 2);
    const auto lar = static_cast<int16_t>(r[i] < 0 ? -t : t);
    const int16_t c = static_cast<int16_t>(
        bop::add(bop::add(bop::mult(vsps::gsmfr::kLarA[i], lar), vsps::gsmfr::kLarB[i]), 256) >> 9);
    const int16_t mac = vsps::gsmfr::kLarMac[i], mic = vsps::gsmfr::kLarMic[i];
    pDstLARc[i] = static_cast<int16_t>(c > mac ? mac - mic : (c < mic ? 0 : c - mic));
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
