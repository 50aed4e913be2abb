// Realistic inputs for the benchmarks: the built-in speech-like signal at
// 8 kHz and, per 10 ms frame, the values each step of the G.729 and GSM-AMR
// LP front ends hands to the next (computed once with the library). The
// benchmarks cycle through the frames so that no single frame is learnt by
// the branch predictors.
#pragma once

#include <cstdint>
#include <vector>

#include "vsps.h"

namespace bench {

inline constexpr int kFrames = 64;  // frames cycled through

// Ten seconds of the speech-like signal, 8 kHz.
const std::vector<Vsp16s>& speech8k();
// The same signal at 16 kHz (the G.722 input).
const std::vector<Vsp16s>& speech16k();

struct G729Frame {
  Vsp16s buffer[240];    // high-passed analysis buffer (120 past, 80 new, 40 look-ahead)
  Vsp16s windowed[240];  // the same times the analysis window
  Vsp32s r[11];          // normalised autocorrelation after the lag window
  Vsp16s lpc[11];        // Q12
  Vsp16s lsp[10];        // Q15
  Vsp16s lsf[10];        // radian Q13
  Vsp16s codes[4];       // L0..L3
  Vsp16s prevFreq[40];   // the encoder's MA memory before this frame
  Vsp32f rF[11], lpcF[11], lspF[10], lsfF[10], prevFreqF[40];
};
const std::vector<G729Frame>& g729_frames();

struct AmrFrame {
  Vsp16s buffer[240];  // analysis buffer of the 3-split modes
  Vsp32s r122[22];     // 12.2 kbit/s: the two analyses
  Vsp16s lpc[11];      // of the 3-split modes' analysis
  Vsp16s lsp122[20];   // 12.2 kbit/s: LSPs of subframes 2 and 4
  Vsp16s lsp[10];      // 3-split modes
  Vsp16s idx475[3], idx122[5];
};
const std::vector<AmrFrame>& amr_frames();

}  // namespace bench
