// Measures of LP analysis quality for the tool's reports.
#pragma once

#include <cstdint>

namespace vsps::tool {

// Log spectral distortion in dB between two Q12 LP filters a[0..10] (a[0] =
// 4096): the RMS over 0..4 kHz (256 points) of 10 log10(|A1|^2 / |A2|^2).
double spectral_distortion_db(const int16_t* aQ12, const int16_t* bQ12);

}  // namespace vsps::tool
