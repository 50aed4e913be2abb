// Level-indexed tables of the per-level internal entry points.
#include "core/internal_access.h"

namespace vsps {

const KernelOps& kernel_ops(int level) {
  static const KernelOps* const kByLevel[7] = VSPS_PER_LEVEL_ADDRESSES(kKernelOps);
  return *kByLevel[level < 0 ? 0 : (level > 6 ? 6 : level)];
}

}  // namespace vsps
