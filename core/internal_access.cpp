#include "core/internal_access.h"

#include "core/kernel.h"

namespace vsps::VSPS_NS {

const KernelOps kKernelOps = {
    &kernel::normalise32,
    &kernel::copy16,
    &kernel::copy16_long<>,
    &kernel::copy16_long<7, 16>,
    [](const Vsp16s* src, int len) { return kernel::energy64(src, len); },
};

}  // namespace vsps::VSPS_NS
