// Memory layout of the sub-band filter-bank state blocks and of the real
// transform's tables, shared by the library code and the white-box tests.
//
// Every block (state, init buffer, work buffer) is accepted at any address:
// the code works from the first 16-byte boundary at or after it, and the
// reported sizes include 16 bytes of slack for that.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vsps.h"

namespace vsps::ec {

// Transform orders the real transform accepts: N = 2^order = 2 .. 8192
// (order 13 gives 4097 sub-bands, the limit of the sub-band filters).
inline constexpr int kMinOrder = 1;
inline constexpr int kMaxOrder = 13;
// From this order on, building the tables needs the caller's init buffer.
inline constexpr int kInitBufferFromOrder = 5;

// Header of VspsSubbandProcessState_16s (48 bytes; the window copy, the
// delay line and the transform tables follow, each on a 16-byte boundary).
struct SubbandHeader16s {
  Vsp16s* delay;        // windowLen samples, Q0
  Vsp16s* window;       // windowLen coefficients, Q13
  uint8_t* tables;      // fixed-point transform tables of order log2(fftLen)
  int32_t windowLen;    // L
  int32_t fftLen;       // N = 2^order
  int32_t frameSize;    // H
  int32_t reserved[3];  // pads the header to 48 bytes
};
static_assert(offsetof(SubbandHeader16s, delay) == 0);
static_assert(offsetof(SubbandHeader16s, window) == 8);
static_assert(offsetof(SubbandHeader16s, tables) == 16);
static_assert(offsetof(SubbandHeader16s, windowLen) == 24);
static_assert(offsetof(SubbandHeader16s, fftLen) == 28);
static_assert(offsetof(SubbandHeader16s, frameSize) == 32);
static_assert(sizeof(SubbandHeader16s) == 48);

// Header of VspsSubbandProcessState_32f (40 bytes; the window copy follows
// directly, then the delay line, then the transform tables).
struct SubbandHeader32f {
  int32_t windowLen;  // L
  int32_t fftLen;     // N = 2^order
  int32_t frameSize;  // H
  int32_t reserved;   // aligns the pointers
  Vsp32f* delay;      // windowLen samples
  Vsp32f* window;     // windowLen coefficients
  uint8_t* tables;    // float transform tables of order log2(fftLen)
};
static_assert(offsetof(SubbandHeader32f, windowLen) == 0);
static_assert(offsetof(SubbandHeader32f, fftLen) == 4);
static_assert(offsetof(SubbandHeader32f, frameSize) == 8);
static_assert(offsetof(SubbandHeader32f, delay) == 16);
static_assert(offsetof(SubbandHeader32f, window) == 24);
static_assert(offsetof(SubbandHeader32f, tables) == 32);
static_assert(sizeof(SubbandHeader32f) == 40);

// Complex Q30 twiddle of the fixed-point transform.
struct TwiddleQ30 {
  int32_t re;
  int32_t im;
};

// Transform tables of order p (N = 2^p, M = N/2 complex points), for both
// twins (T = Vsp32fc or TwiddleQ30), in this order:
//   stage twiddles  M-1 values: for each butterfly half-size h = 1, 2, .., M/2
//                   the h values e^(-2 pi i j / 2h), j = 0..h-1, at h-1;
//   packing         M/2+1 values e^(-2 pi i k / N), k = 0..M/2;
//   bit reversal    M uint16 entries: the log2(M)-bit reversal of n;
// the whole rounded up to 16 bytes.
struct TableLayout {
  std::size_t stageOffset, packOffset, revOffset, bytes;
};
static constexpr TableLayout table_layout(int order) {
  const std::size_t m = std::size_t(1) << (order - 1);
  TableLayout t{};
  t.stageOffset = 0;
  t.packOffset = 8 * (m - 1);
  t.revOffset = t.packOffset + 8 * (m / 2 + 1);
  t.bytes = (t.revOffset + 2 * m + 15) & ~std::size_t(15);
  return t;
}

static constexpr std::size_t round_up16(std::size_t n) { return (n + 15) & ~std::size_t(15); }
template <class T>
static T* align16(T* p) {
  const auto a = (reinterpret_cast<uintptr_t>(p) + 15) & ~uintptr_t(15);
  return reinterpret_cast<T*>(a);
}

// Byte sizes reported by the GetSize functions (order already validated).
static constexpr std::size_t state_bytes_16s(int order, int windowLen) {
  return table_layout(order).bytes + 2 * round_up16(2 * std::size_t(windowLen)) + sizeof(SubbandHeader16s) + 16;
}
static constexpr std::size_t state_bytes_32f(int order, int windowLen) {
  return 8 * std::size_t(windowLen) + sizeof(SubbandHeader32f) + table_layout(order).bytes + 16;
}
// The init buffer holds the quarter-wave cosine table, N/4+1 doubles; small
// orders build it on the stack and need none.
static constexpr std::size_t init_buffer_bytes(int order) {
  if (order < kInitBufferFromOrder) return 0;
  return 8 * ((std::size_t(1) << order) / 4 + 1) + 16;
}
// The transform runs in place in the block of the folded (or inverse
// transformed) samples: 4N bytes, M complex 32-bit values of either twin.
static constexpr std::size_t work_buffer_bytes(int order) { return round_up16(4 * (std::size_t(1) << order)) + 16; }

}  // namespace vsps::ec
