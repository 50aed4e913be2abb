// Per-level entry points to internal operations, for the tests that compare
// the levels bit for bit. Not exported from the shared library.
#pragma once

#include <cstdint>

#include "core/level_map.h"
#include "vsps.h"

namespace vsps {

struct KernelOps {
  int (*normalise32)(int32_t x);
  VspStatus (*copy16)(const Vsp16s* src, Vsp16s* dst, int len);
  VspStatus (*copy16_long)(const Vsp16s* src, Vsp16s* dst, int len);
  // copy-16-long with a chunk of 7 elements above 16 elements, so that the
  // chunked path runs on small buffers.
  VspStatus (*copy16_long_small_chunks)(const Vsp16s* src, Vsp16s* dst, int len);
  int64_t (*energy64)(const Vsp16s* src, int len);
};

// The operations of a level (0..6).
const KernelOps& kernel_ops(int level);

}  // namespace vsps

VSPS_DECLARE_IN_EVERY_LEVEL(extern const KernelOps kKernelOps)
