// State blocks of the G.729 post-filters (main body and Annex A), kept in
// the caller's memory at any alignment (copied in and out by each call).
#pragma once

#include <cstdint>

namespace vsps {

struct PostFilterState {
  static constexpr int kMemRes = 152;  // residual history, PIT_MAX + 1 + 8
  int16_t res[kMemRes + 40];           // residual R[-152..39] (the last 40 are the current subframe)
  int16_t memStp[10];                  // memory of 1/A(z/0.70)
  int16_t synMem[10];                  // the 10 synthesis samples before the subframe
  int16_t gainPrec;                    // AGC gain, Q14
};

struct PostFilterAState {
  static constexpr int kMemRes = 143;  // PIT_MAX
  int16_t res2[kMemRes + 40];          // residual history and current subframe
  int16_t scalRes2[kMemRes + 40];      // the same divided by 4
  int16_t memSynPst[10];               // memory of 1/A(z/0.70)
  int16_t synMem[10];                  // the 10 synthesis samples before the subframe
  int16_t memPre;                      // pre-emphasis memory
  int16_t pastGain;                    // AGC gain, Q12
};

}  // namespace vsps
