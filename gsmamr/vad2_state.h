// State block of the GSM-AMR VAD option 2 (TS 26.073 vadState2), with the
// last half frame's intermediate values (for inspection). Plain 16- and
// 32-bit words; shift_state, the only word used as an index, is read as
// 0 or 1 (any non-zero value counts as 1).
#pragma once

#include <cstdint>
#include <cstring>

#include "core/level_ns.h"
#include "vsps.h"

namespace vsps::VSPS_NS::amr {

inline constexpr int kVad2Channels = 16;

struct Vad2State {
  int32_t Lframe_cnt;
  int32_t Lch_enrg[kVad2Channels];   // channel energies (scaling of shift_state)
  int32_t Lch_noise[kVad2Channels];  // channel noise estimates (scaling of state 0)
  int32_t L_R0, L_Rmax;              // open-loop sums of the last frame
  int16_t pre_emp_mem, update_cnt, hyster_cnt, last_update_cnt;
  int16_t ch_enrg_long_db[kVad2Channels];  // long-term spectrum (dB, Q8)
  int16_t last_normb_shift, tsnr, hangover, burstcount, fupdate_flag;
  int16_t negSNRvar, negSNRbias, shift_state, LTP_flag;
  // The last half frame's channel energies in dB (Q8), voice metric, SNR
  // class, SNR estimate and update flag.
  int16_t ch_enrg_db[kVad2Channels];
  int16_t vm_sum, tsnrq, xt, update_flag;
};

inline void load_state(const Vsp8u* p, Vad2State& s) { std::memcpy(&s, p, sizeof s); }
inline void store_state(const Vad2State& s, Vsp8u* p) { std::memcpy(p, &s, sizeof s); }

}  // namespace vsps::VSPS_NS::amr
