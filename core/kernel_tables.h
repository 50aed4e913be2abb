// Constant tables of the fixed-point kernel, compiled once for all levels.
#pragma once

#include <array>
#include <cstdint>

namespace vsps::tables {

// kNormByte[b]: left shifts that bring b into 0x40..0x7F (7 minus the bit
// length of b) for b = 1..127; entry 0 is 7; entries 128..255 are -1 (never
// used: normalise-32 takes positive values only).
extern const std::array<int16_t, 256> kNormByte;
// kNormByteLow[b] = kNormByte[b] + 8: the count when the next higher byte is 0.
extern const std::array<int16_t, 256> kNormByteLow;

// Inverse square root: the first 48 of the 49 values of the G.729 table
// (Q15, 32767 .. 16514) stored as value << 16 (Q31), and beside each a slope
// of twice the difference to the next value (the 49th value, 16384, enters
// only through the last slope).
inline constexpr int kInvSqrtTableSize = 48;
extern const std::array<int32_t, kInvSqrtTableSize> kInvSqrtBaseQ31;
extern const std::array<int16_t, kInvSqrtTableSize> kInvSqrtSlope;

}  // namespace vsps::tables
