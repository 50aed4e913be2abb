// Internal operations of the fixed-point kernel shared by the codec families:
// normalise-32, copy-16, copy-16-long and energy-64. Inline, per level.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/kernel_tables.h"
#include "core/level_ns.h"
#include "core/simd/corr.h"
#include "vsps.h"

namespace vsps::VSPS_NS::kernel {

// Left shifts n that bring x (> 0) into 0x40000000..0x7FFFFFFF, from the two
// byte tables: the highest non-zero byte decides.
inline int normalise32(int32_t x) {
  const auto u = static_cast<uint32_t>(x);
  if ((u >> 16) == 0) {
    const uint32_t b1 = (u >> 8) & 0xFF;
    return 16 + (b1 != 0 ? tables::kNormByte[b1] : tables::kNormByteLow[u & 0xFF]);
  }
  const uint32_t b3 = u >> 24;
  return b3 != 0 ? tables::kNormByte[b3] : tables::kNormByteLow[(u >> 16) & 0xFF];
}

// Copies len 16-bit values. Null pointer: vspStsNullPtrErr; len < 1:
// vspStsSizeErr; nothing is written on failure.
inline VspStatus copy16(const Vsp16s* src, Vsp16s* dst, int len) {
  if (src == nullptr || dst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  std::memmove(dst, src, static_cast<std::size_t>(len) * sizeof(Vsp16s));
  return vspStsNoErr;
}

// As copy16, but copies in chunks of kChunk elements so that no single byte
// count exceeds a signed 32-bit value (0x3FFFFFF0 elements = 0x7FFFFFE0
// bytes). Lengths below 0x40000000 are one chunk. The chunk size is a
// parameter so that the chunking can be tested on small buffers.
inline constexpr int64_t kCopyLongChunk = 0x3FFFFFF0;
inline constexpr int64_t kCopyLongThreshold = 0x40000000;
template <int64_t kChunk = kCopyLongChunk, int64_t kThreshold = kCopyLongThreshold>
inline VspStatus copy16_long(const Vsp16s* src, Vsp16s* dst, int len) {
  if (src == nullptr || dst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  int64_t left = len;
  if (left < kThreshold) {
    std::memmove(dst, src, static_cast<std::size_t>(left) * sizeof(Vsp16s));
    return vspStsNoErr;
  }
  while (left > 0) {
    const int64_t n = left < kChunk ? left : kChunk;
    std::memmove(dst, src, static_cast<std::size_t>(n) * sizeof(Vsp16s));
    src += n;
    dst += n;
    left -= n;
  }
  return vspStsNoErr;
}

// Exact sum of squares of len samples (len <= 0 gives 0). No checks: callers
// pass validated arguments. Squares are formed in 32 bits (at most 2^30);
// pairs of them are summed as unsigned 32-bit values (at most 2^31) and
// widened before the 64-bit addition, the form the vector variants use.
inline int64_t energy64(const Vsp16s* src, int len) { return len > 0 ? simd::energy64_shifted(src, len, 0) : 0; }
inline void energy64(const Vsp16s* src, int len, int64_t* pEnergy) { *pEnergy = energy64(src, len); }

}  // namespace vsps::VSPS_NS::kernel
