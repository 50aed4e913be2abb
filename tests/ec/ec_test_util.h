// Helpers of the echo-cancellation tests: state blocks set up through the
// library's own GetSize/Init, and binding of frame arrays by name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/call.h"
#include "tests/support/golden.h"
#include "vsps.h"

namespace ect {

// Byte offsets (from the block's first 16-byte boundary) of the pointers a
// sub-band state holds into itself.
const std::vector<std::size_t>& subband_self_pointers(bool fixedPoint);

struct SubbandSizes {
  int state = 0, init = 0, work = 0;
  int status = 0;
};
SubbandSizes subband_sizes(bool fixedPoint, int order, int windowLen);

// Formats a sub-band state in `call`'s opaque argument `stateName` (with
// `misalign` bytes in front) and gives it a work buffer `workName` of the
// reported size. window may be empty (built-in window). Returns Init's
// status.
int setup_subband_state(vt::Call& call, bool fixedPoint, int order, int frameSize, int windowLen,
                        const std::vector<uint8_t>& windowBytes, const std::string& stateName,
                        const std::string& workName, std::size_t misalign);

// Copies a saved state block (bytes of the whole argument, misalign
// included, plus the address it lived at) into the call and rebases its
// self-pointers.
std::vector<uint8_t> save_state(vt::Call& call, const std::string& stateName);
void restore_state(vt::Call& call, const std::string& stateName, const std::vector<uint8_t>& saved,
                   const std::vector<std::size_t>& selfPointers, std::size_t misalign);

// Frames of a pointer-array parameter from a golden case: count frames of
// stride elements, filled from the case's 'in' tokens (placeholders of
// failing calls keep every entry at the start).
void bind_frames(vt::Call& call, const vt::GoldenCase& gc, const std::string& name, int64_t count, int64_t stride);

}  // namespace ect
