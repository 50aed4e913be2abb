// Per-level entry points to the filter bank's bare real transforms, for the
// benchmarks (the cost of the transforms inside analysis and synthesis) and
// the tests. Not exported from the shared library.
#pragma once

#include "core/level_map.h"
#include "vsps.h"

namespace vsps {

struct EcTransformOps {
  // Forward real transform of the N floats at the first 16-byte boundary of
  // work (destroyed) into bins 0..N/2, with the tables of a float state.
  VspStatus (*forward_32f)(VspsSubbandProcessState_32f* state, Vsp8u* work, Vsp32fc* bins);
  // Inverse real transform (divided by N) of bins 0..N/2 into the N floats
  // at the first 16-byte boundary of work.
  VspStatus (*inverse_32f)(VspsSubbandProcessState_32f* state, const Vsp32fc* bins, Vsp8u* work);
};

// The operations of a level (0..6).
const EcTransformOps& ec_transform_ops(int level);

}  // namespace vsps

VSPS_DECLARE_IN_EVERY_LEVEL(extern const EcTransformOps kEcTransformOps)
