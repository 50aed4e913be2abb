// GSM-AMR VAD option 1: the hooks of the open-loop pitch search (TS 26.073
// vad_tone_detection_update, vad_tone_detection,
// vad_complex_detection_update, vad_pitch_detection), applied once after the
// frame's search from the values the search computed.
#include "core/basic_ops.h"
#include "gsmamr/dec_state.h"
#include "gsmamr/vad1_state.h"

namespace vsps::VSPS_NS {
namespace {

constexpr int kOlRecord = 9;  // open-loop record: 3 x (max, energy), chosen (max, energy), hp_max

// Tone flag from one lag section: max correlation t0 against 0.65 of the
// delayed signal's energy t1.
void tone_detection(amr::Vad1State& s, int32_t t0, int32_t t1) {
  const int16_t temp = bop::round(t1);
  if (temp > 0 && bop::L_msu(t0, temp, 21298) > 0) s.tone |= 0x4000;
}

}  // namespace

VspStatus legacy90vspsVAD1PitchUpdate_GSMAMR_32s(const Vsp32s* pSrcOpenLoop, const Vsp16s* pSrcLag, Vsp8u* pState,
                                                 int mode) {
  using namespace amr;
  if (pSrcOpenLoop == nullptr || pSrcLag == nullptr || pState == nullptr) return vspStsNullPtrErr;
  const int16_t m = ref_mode(mode);
  if (m < 0 || m == MRDTX) return vspStsRangeErr;
  Vad1State s;
  load_state(pState, s);
  const bool one_lag = m == MR475 || m == MR515;
  const int searches = one_lag ? 1 : 2, sections = m == MR102 ? 1 : 3;
  for (int k = 0; k < searches; ++k) {
    s.tone = bop::shr(s.tone, 1);
    if (one_lag) s.tone = static_cast<int16_t>(bop::shr(s.tone, 1) | 0x2000);
    const Vsp32s* rec = pSrcOpenLoop + kOlRecord * k;
    for (int j = 0; j < sections; ++j) tone_detection(s, rec[2 * j], rec[2 * j + 1]);
  }
  s.best_corr_hp = bop::extract_l(pSrcOpenLoop[kOlRecord * (searches - 1) + 8]);
  int16_t lagcount = 0;
  for (int i = 0; i < 2; ++i) {
    if (bop::sub(bop::abs_s(bop::sub(s.oldlag, pSrcLag[i])), 4) < 0) ++lagcount;
    s.oldlag = pSrcLag[i];
  }
  s.pitch = bop::shr(s.pitch, 1);
  if (bop::sub(bop::add(s.oldlag_count, lagcount), 4) >= 0) s.pitch |= 0x4000;
  s.oldlag_count = lagcount;
  store_state(s, pState);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
