// legacy90vspsLagWindow_G729_32s_I: the G.729 lag window on r[1..len]
// (ITU-T G.729 clause 3.2.1 Lag_window, 12 lags as in Annex B).
#include "core/dpf.h"
#include "g729/g729_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLagWindow_G729_32s_I(Vsp32s* pSrcDst, int len) {
  if (pSrcDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsBadArgErr;
  if (len > tables::g729::kLagWindowLen) return vspStsSizeErr;
  for (int k = 0; k < len; ++k)  // r[k+1] (Q31 DPF) times the window of lag k+1 (Q31 DPF)
    pSrcDst[k] = dpf::Mpy_32(dpf::L_Extract(pSrcDst[k]), dpf::L_Extract(tables::g729::kLagWindowQ31[k]));
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
