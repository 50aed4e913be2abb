// Per-level legacy90vspscGetLibVersion: each level reports its own record;
// the level-4 variant picks one of its two records by SSE4.2 in the enabled
// mask.
#include "core/cpu_probe.h"
#include "core/cpu_state.h"
#include "core/level_ns.h"

namespace vsps::VSPS_NS {

const VspLibraryVersion* legacy90vspscGetLibVersion(void) { return cpu::version_record(VSPS_LEVEL, enabled_mask()); }

}  // namespace vsps::VSPS_NS
