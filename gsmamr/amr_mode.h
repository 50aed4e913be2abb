// The GSM-AMR rate selector (VspSpeechBitRate) as the LP-analysis and LSP
// quantisation routines use it. Variant code: lives in the level namespace.
#pragma once

#include "core/level_ns.h"
#include "vsps.h"

namespace vsps::VSPS_NS::amr {

// The nine accepted rates: 0, 1, 3, 6, 7, 8, 11, 12 and 25 (SID frames, run
// exactly as the full-table 3-split modes).
inline bool mode_is_valid(int mode) {
  switch (mode) {
    case vspRate4750:
    case vspRate5150:
    case vspRate5900:
    case vspRate6700:
    case vspRate7400:
    case vspRate7950:
    case vspRate10200:
    case vspRate12200:
    case vspRateDTX:
      return true;
    default:
      return false;
  }
}

// 12.2 kbit/s: two LP analyses a frame and the split-matrix quantiser.
inline bool is_mr122(int mode) { return mode == vspRate12200; }
// 4.75 and 5.15 kbit/s: the reduced 3-split tables.
inline bool uses_reduced_tables(int mode) { return mode == vspRate4750 || mode == vspRate5150; }

}  // namespace vsps::VSPS_NS::amr
