// GSM-AMR VAD option 2: the LTP flag from the open-loop pitch search
// (TS 26.073 LTP_flag_update with the search's L_Rmax / L_R0 sums).
#include "core/basic_ops.h"
#include "core/dpf.h"
#include "gsmamr/dec_state.h"
#include "gsmamr/vad2_state.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsVAD2LTPFlag_GSMAMR_32s(const Vsp32s* pSrcOpenLoop, Vsp8u* pState, int mode) {
  using namespace amr;
  constexpr int kOlRecord = 9;  // open-loop record: 3 x (max, energy), chosen (max, energy), hp_max
  if (pSrcOpenLoop == nullptr || pState == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if (m < 0 || m == MRDTX) return vspStsRangeErr;
  Vad2State s;
  load_state(pState, s);
  const bool one_lag = m == MR475 || m == MR515;
  s.L_Rmax = s.L_R0 = 0;
  for (int k = 0; k < (one_lag ? 1 : 2); ++k) {
    s.L_Rmax = bop::L_add(s.L_Rmax, pSrcOpenLoop[kOlRecord * k + 6]);
    s.L_R0 = bop::L_add(s.L_R0, pSrcOpenLoop[kOlRecord * k + 7]);
  }
  const int16_t thresh = one_lag ? int16_t(18022) : (m == MR102 ? int16_t(19660) : int16_t(21299));  // Q15
  s.LTP_flag = bop::L_sub(s.L_Rmax, dpf::Mpy_32_16(dpf::L_Extract(s.L_R0), thresh)) > 0 ? 1 : 0;
  store_state(s, pState);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
