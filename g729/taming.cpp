// Taming of the pitch gain (G.729 clause 3.8 note, test_err and
// update_exc_err): a running estimate of the excitation error per 40-sample
// zone of past delays, Q14, kept by the caller as 4 Vsp32s (reset 0x4000).
#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {
constexpr int32_t kThreshErr = 983040000;  // 60000.0 in Q14
}

VspStatus legacy90vspsTamingTest_G729_32s(Vsp16s T0, Vsp16s frac, const Vsp32s* pExcErr, int* pDstFlag) {
  if (pExcErr == nullptr || pDstFlag == nullptr) return vspStsNullPtrErr;
  if (T0 < kLagMin || T0 > kLagMax || frac < -1 || frac > 1) return vspStsRangeErr;
  const int t1 = frac > 0 ? T0 + 1 : T0;
  if (t1 > kLagMax) return vspStsRangeErr;  // 144 1/3: beyond the zone table
  const int zone1 = tb::kTabZone[t1 - 50 > 0 ? t1 - 50 : 0];
  const int zone2 = tb::kTabZone[t1 + 8];
  int32_t mx = -1;
  for (int i = zone2; i >= zone1; --i)
    if (L_sub(pExcErr[i], mx) > 0) mx = pExcErr[i];
  *pDstFlag = L_sub(mx, kThreshErr) > 0 ? 1 : 0;
  return vspStsNoErr;
}

VspStatus legacy90vspsTamingUpdate_G729_32s_I(Vsp16s gainPitch, Vsp16s T0, Vsp32s* pSrcDstExcErr) {
  if (pSrcDstExcErr == nullptr) return vspStsNullPtrErr;
  if (T0 < kLagMin || T0 > kLagMax) return vspStsRangeErr;
  taming_update(gainPitch, T0, pSrcDstExcErr);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
