// GSM 06.10 clauses 4.2.13 to 4.2.17: weighting filter, RPE grid selection,
// APCM quantisation of the 13 pulses and their local decoding.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

using vsps::gsmfr::kPulses;
using vsps::gsmfr::kSubframe;

// x[k] = sat16((4096 + sum H[i] e[k+i-5]) >> 13), e = 0 outside the subframe.
void weighting(const int16_t* e, int16_t* x) {
  for (int k = 0; k < kSubframe; ++k) {
    int32_t sum = 4096;  // plain: 11 products of Q13 taps and 16-bit samples
    for (int i = 0; i < 11; ++i) {
      const int j = k + i - 5;
      if (j >= 0 && j < kSubframe) sum += int32_t(vsps::gsmfr::kRpeH[i]) * e[j];
    }
    x[k] = bop::sat16(sum >> 13);
  }
}

// The grid (0..3) with the largest energy; the first one on ties.
int select_grid(const int16_t* x) {
  int best = 0;
  int32_t emax = 0;
  for (int m = 0; m < 4; ++m) {
    int32_t em = 0;  // plain: 13 squares of 14-bit values
    for (int i = 0; i < kPulses; ++i) {
      const int32_t v = x[m + 3 * i] >> 2;
      em += v * v;
    }
    em *= 2;
    if (m == 0 || em > emax) {
      emax = em;
      best = m;
    }
  }
  return best;
}

}  // namespace

VspStatus legacy90vspsRPEEncode_GSMFR_16s(const Vsp16s* pSrc, Vsp16s* pDstXmaxc, Vsp16s* pDstGrid, Vsp16s* pDstPulses,
                                          Vsp16s* pDstExc) {
  if (pSrc == nullptr || pDstXmaxc == nullptr || pDstGrid == nullptr || pDstPulses == nullptr || pDstExc == nullptr)
    return vspStsNullPtrErr;
  int16_t x[kSubframe];
  weighting(pSrc, x);
  const int mc = select_grid(x);
  int16_t xm[kPulses];
  int16_t xmax = 0;
  for (int i = 0; i < kPulses; ++i) {
    xm[i] = x[mc + 3 * i];
    const int16_t t = bop::abs_s(xm[i]);
    if (t > xmax) xmax = t;
  }
  // Block maximum: 3-bit mantissa and exponent (0..6) in six bits.
  int ex = 0;
  for (int16_t t = static_cast<int16_t>(xmax >> 9); t != 0 && ex < 6; t = static_cast<int16_t>(t >> 1)) ++ex;
  const int16_t xmaxc = bop::add(static_cast<int16_t>(xmax >> (ex + 5)), static_cast<int16_t>(ex << 3));
  int e = 0, m = 0;
  gsmfr::xmaxc_exp_mant(xmaxc, &e, &m);
  int16_t xmc[kPulses];
  for (int i = 0; i < kPulses; ++i) {
    const auto t = static_cast<int16_t>(xm[i] * (1 << (6 - e)));  // within 16 bits by the choice of e
    xmc[i] = static_cast<int16_t>((bop::mult(t, vsps::gsmfr::kRpeNrFac[m]) >> 12) + 4);
  }
  int16_t ep[kSubframe];
  gsmfr::rpe_decode(xmaxc, mc, xmc, ep);
  *pDstXmaxc = xmaxc;
  *pDstGrid = static_cast<int16_t>(mc);
  for (int i = 0; i < kPulses; ++i) pDstPulses[i] = xmc[i];
  for (int k = 0; k < kSubframe; ++k) pDstExc[k] = ep[k];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
