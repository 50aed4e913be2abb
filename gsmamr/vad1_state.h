// State block of the GSM-AMR VAD option 1 (TS 26.073 vadState1): the
// filter-bank memories, levels and background estimate, the 15-bit flag
// registers and the counters, and the decision's intermediate values of the
// last frame (for inspection). Plain 16- and 32-bit words; nothing in it is
// used as an index, so any block content is safe to run on.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/level_ns.h"
#include "vsps.h"

namespace vsps::VSPS_NS::amr {

inline constexpr int kVad1Bands = 9;  // COMPLEN

struct Vad1State {
  int16_t bckr_est[kVad1Bands];   // background noise estimate per band
  int16_t ave_level[kVad1Bands];  // averaged input level per band
  int16_t old_level[kVad1Bands];  // the previous frame's levels
  int16_t sub_level[kVad1Bands];  // the tail of the previous frame's band samples
  int16_t a_data5[3][2];          // 5th-order filter memories
  int16_t a_data3[5];             // 3rd-order filter memories
  int16_t burst_count, hang_count, stat_count;
  int16_t vadreg, pitch, tone, complex_high, complex_low;  // 15-bit flag registers
  int16_t complex_hang_timer, complex_hang_count;
  int16_t oldlag_count, oldlag;
  int16_t best_corr_hp, corr_hp_fast;  // Q15
  int16_t complex_warning, sp_burst_count, speech_vad_decision;
  // The last decision's snr_sum, noise_level, vad_thr and frame power.
  int16_t snr_sum, noise_level, vad_thr;
  int32_t pow_sum;
};

inline void load_state(const Vsp8u* p, Vad1State& s) { std::memcpy(&s, p, sizeof s); }
inline void store_state(const Vad1State& s, Vsp8u* p) { std::memcpy(p, &s, sizeof s); }

}  // namespace vsps::VSPS_NS::amr
