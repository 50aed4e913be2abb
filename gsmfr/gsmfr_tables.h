// GSM 06.10 full-rate constant tables, compiled once for all levels
// (gsmfr/gsmfr_tables.cpp). Index i-1 holds the value of LAR i.
#pragma once

#include <cstdint>

namespace vsps::gsmfr {

inline constexpr int kFrame = 160;    // samples per frame (20 ms at 8 kHz)
inline constexpr int kSubframe = 40;  // samples per subframe
inline constexpr int kHistory = 120;  // reconstructed-residual history (largest lag)
inline constexpr int kOrder = 8;      // short-term predictor order
inline constexpr int kPulses = 13;    // RPE pulses per subframe
inline constexpr int kMinLag = 40;
inline constexpr int kMaxLag = 120;

extern const int16_t kLarA[kOrder];     // LAR quantiser slope, Q15 factor for mult
extern const int16_t kLarB[kOrder];     // LAR quantiser offset
extern const int16_t kLarMic[kOrder];   // smallest signed LARc
extern const int16_t kLarMac[kOrder];   // largest signed LARc
extern const int16_t kLarInvA[kOrder];  // 1 / (4 A), Q15
extern const int16_t kLtpDlb[4];        // LTP gain decision levels, Q15
extern const int16_t kLtpQlb[4];        // quantised LTP gains, Q15
extern const int16_t kRpeH[11];         // RPE weighting filter, Q13
extern const int16_t kRpeNrFac[8];      // APCM normalisation by the mantissa, Q15
extern const int16_t kRpeFac[8];        // APCM inverse quantiser factor, Q15

}  // namespace vsps::gsmfr
