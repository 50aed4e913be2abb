// The 2100 Hz tone detector run over a whole signal.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace vsps::tool {

// Times in seconds (end of the 20 ms block) at which the detector reported a
// 2100 Hz tone with phase reversals. False on a library error (for example a
// rate other than 8000 or 16000 Hz). `progress` (optional) is called with
// the number of samples done.
bool scan_for_tone(const std::vector<int16_t>& pcm, int rate, std::vector<double>* times,
                   const std::function<void(std::size_t)>& progress = {});

}  // namespace vsps::tool
