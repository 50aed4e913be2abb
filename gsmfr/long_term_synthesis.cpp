// GSM 06.10 clause 4.3.2: long-term synthesis filtering of one subframe,
// with the received lag replaced by the last valid one when it lies
// outside 40..120.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLongTermSynthesis_GSMFR_16s(const Vsp16s* pSrcExc, Vsp16s* pHist, Vsp16s* pDst, Vsp16s* pLastLag,
                                                  int lag, int gain) {
  if (pSrcExc == nullptr || pHist == nullptr || pDst == nullptr || pLastLag == nullptr) return vspStsNullPtrErr;
  using vsps::gsmfr::kHistory;
  using vsps::gsmfr::kMaxLag;
  using vsps::gsmfr::kMinLag;
  using vsps::gsmfr::kSubframe;
  if (lag < 0 || lag > 127 || gain < 0 || gain > 3 || *pLastLag < kMinLag || *pLastLag > kMaxLag) return vspStsRangeErr;
  const int nr = lag < kMinLag || lag > kMaxLag ? *pLastLag : lag;
  const int16_t g = vsps::gsmfr::kLtpQlb[gain];
  int16_t drp[kHistory + kSubframe];  // drp[-120..39], shifted to 0..159
  for (int k = 0; k < kHistory; ++k) drp[k] = pHist[k];
  for (int k = 0; k < kSubframe; ++k) drp[kHistory + k] = bop::add(pSrcExc[k], bop::mult_r(g, drp[kHistory + k - nr]));
  for (int k = 0; k < kSubframe; ++k) pDst[k] = drp[kHistory + k];
  for (int k = 0; k < kHistory; ++k) pHist[k] = drp[kSubframe + k];
  *pLastLag = static_cast<int16_t>(nr);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
