// The code-gain predictor memories inside the gain quantiser's state block,
// read or set by the encoder's comfort-noise frames (TS 26.073 dtx_enc
// writes the predictor's past quantised energies).
#include <cstring>

#include "gsmamr/gain_common.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsGainPredictorEnergy_GSMAMR_16s(Vsp16s* pSrcDstEnergy, Vsp8u* pState, int write) {
  if (pSrcDstEnergy == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (write < 0 || write > 1) return vspStsRangeErr;
  amr::gq::State s;
  std::memcpy(&s, pState, sizeof s);
  if (write == 0) {
    std::memcpy(pSrcDstEnergy, s.past_qua_en, sizeof s.past_qua_en);
    std::memcpy(pSrcDstEnergy + 4, s.past_qua_en_MR122, sizeof s.past_qua_en_MR122);
    return vspStsNoErr;
  }
  std::memcpy(s.past_qua_en, pSrcDstEnergy, sizeof s.past_qua_en);
  std::memcpy(s.past_qua_en_MR122, pSrcDstEnergy + 4, sizeof s.past_qua_en_MR122);
  std::memcpy(pState, &s, sizeof s);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
