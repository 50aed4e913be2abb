// State blocks of the 2100 Hz tone detector (the caller provides 72 or 80
// bytes; the block is used from its first 16-byte boundary).
#pragma once

#include <cstddef>
#include <cstdint>

#include "vsps.h"

namespace vsps::ec {

inline constexpr int kToneStateBytes16s = 72;
inline constexpr int kToneStateBytes32f = 80;

struct ToneState16s {
  const Vsp16s* coeffs;  // c0..c3, Q12
  int32_t ey;            // smoothed output energy, Q0
  int32_t ex;            // smoothed input energy, Q0
  int16_t x1, x2, y1, y2;
  int32_t toneRun;  // samples
  int32_t minRun;
  int32_t maxRun;
  int32_t gapRun;
  int32_t gapLimit;
  int32_t reversals;
  int16_t alpha;  // Q14
};
static_assert(offsetof(ToneState16s, ey) == 8 && offsetof(ToneState16s, ex) == 12);
static_assert(offsetof(ToneState16s, x1) == 16 && offsetof(ToneState16s, y2) == 22);
static_assert(offsetof(ToneState16s, toneRun) == 24 && offsetof(ToneState16s, reversals) == 44);
static_assert(offsetof(ToneState16s, alpha) == 48);
static_assert(sizeof(ToneState16s) + 16 <= kToneStateBytes16s);

struct ToneState32f {
  const Vsp32f* coeffs;
  Vsp32f ey, ex;
  Vsp32f x1, x2, y1, y2;
  Vsp32f alpha;
  int32_t toneRun;
  int32_t minRun;
  int32_t maxRun;
  int32_t gapRun;
  int32_t gapLimit;
  int32_t reversals;
};
static_assert(offsetof(ToneState32f, ey) == 8 && offsetof(ToneState32f, x1) == 16);
static_assert(offsetof(ToneState32f, alpha) == 32 && offsetof(ToneState32f, toneRun) == 36);
static_assert(offsetof(ToneState32f, reversals) == 56);
static_assert(sizeof(ToneState32f) + 16 <= kToneStateBytes32f);

}  // namespace vsps::ec
