// Constant tables and table builders of the echo-cancellation toolkit,
// compiled once for all processor levels.
#pragma once

#include <cstdint>

#include "vsps.h"

namespace vsps::ec {

// Built-in prototype windows of the filter bank (symmetric; the first halves
// are stored, the second halves are their mirror).
inline constexpr int kWindow128Len = 128;
inline constexpr int kWindow256Len = 256;
extern const Vsp32f kWindow128Half[kWindow128Len / 2];
extern const Vsp32f kWindow256Half[kWindow256Len / 2];

// cos(2 pi k / n) for k = 0..count-1 (count <= n/4 + 1), in double precision,
// from a fixed polynomial evaluation: the same bits on every processor and
// with every maths library.
void quarter_cosines(double* dst, int n, int count);

// Resonator coefficients of the 2100 Hz tone detector (c0, c1, c2, c3) for
// y = c0 x[n] + c1 x[n-2] - c2 y[n-1] - c3 y[n-2].
extern const Vsp16s kToneCoeffs8kQ12[4];
extern const Vsp16s kToneCoeffs16kQ12[4];
extern const Vsp32f kToneCoeffs8k[4];
extern const Vsp32f kToneCoeffs16k[4];

}  // namespace vsps::ec
