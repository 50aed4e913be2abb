// Level-indexed table of the echo-cancellation internal entry points.
#include "ec/internal_ops.h"

namespace vsps {

const EcTransformOps& ec_transform_ops(int level) {
  static const EcTransformOps* const kByLevel[7] = VSPS_PER_LEVEL_ADDRESSES(kEcTransformOps);
  return *kByLevel[level < 0 ? 0 : (level > 6 ? 6 : level)];
}

}  // namespace vsps
