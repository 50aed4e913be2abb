// Fuzz-hook helpers of the echo-cancellation contracts: sub-band counts and
// frame arrays, the filter bank's documented block sizes, and formatted
// states with fuzzed contents.
#pragma once

#include <algorithm>
#include <cstdint>

#include "tests/ec/ec_test_util.h"
#include "tests/support/fuzz_hooks.h"

namespace ect {

// Block sizes in bytes by the documented formula (order 1..13, windowLen a
// multiple of 2^order): fixed-point state = tables + 2*roundup16(2*L) + 48
// + 16, float state = 8*L + 40 + tables + 16, tables = roundup16(8*(N/2-1)
// + 8*(N/4+1) + N), init = 8*(N/4+1) + 16 from order 5 on, work =
// roundup16(4*N) + 16.
struct DocumentedSizes {
  int64_t state, init, work;
};
inline DocumentedSizes documented_sizes(bool fixedPoint, int64_t order, int64_t windowLen) {
  auto up16 = [](int64_t n) { return (n + 15) / 16 * 16; };
  const int64_t n = int64_t(1) << order;
  const int64_t tables = up16(8 * (n / 2 - 1) + 8 * (n / 4 + 1) + n);
  DocumentedSizes s{};
  s.state = fixedPoint ? tables + 2 * up16(2 * windowLen) + 48 + 16 : 8 * windowLen + 40 + tables + 16;
  s.init = order >= 5 ? 8 * (n / 4 + 1) + 16 : 0;
  s.work = up16(4 * n) + 16;
  return s;
}

// Sub-band counts chosen around their limits (numSegments 1..255,
// numSubbands 1..4097).
struct SubbandCounts {
  int64_t segments, subbands;
  bool segmentsOk, subbandsOk;
};
inline SubbandCounts pick_counts(vt::FuzzInput& in) {
  SubbandCounts c{};
  c.segments = vt::fz::pick(in, "numSegments", -2, 258);
  c.subbands = vt::fz::pick(in, "numSubbands", -2, 4100);
  c.segmentsOk = c.segments >= 1 && c.segments <= 255;
  c.subbandsOk = c.subbands >= 1 && c.subbands <= 4097;
  c.segments = std::clamp<int64_t>(c.segments, INT32_MIN, INT32_MAX);
  return c;
}

// A pointer array of `count` frames of `stride` elements when `ok`, else a
// single one-element frame.
inline void frames(vt::Call& call, const char* name, bool ok, int64_t count, int64_t stride) {
  if (ok)
    call.frames(name, static_cast<std::size_t>(count), static_cast<std::size_t>(stride));
  else
    call.frames(name, 1, 1);
}

// A working filter-bank configuration: order 1..13, frameSize 1..N,
// windowLen a multiple of N, block sizes under the fuzzing limit.
struct BankConfig {
  int order, frameSize, windowLen;
};
inline bool pick_bank(vt::FuzzInput& in, BankConfig& b) {
  b.order = static_cast<int>(in.scalar("order", 1, 13));
  const int n = 1 << b.order;
  b.frameSize = static_cast<int>(in.scalar("frameSize", 1, n));
  const int w = static_cast<int>(in.scalar("windowLen", n, 16 * n));
  b.windowLen = w - w % n;
  return documented_sizes(true, b.order, b.windowLen).state * 2 <= vt::fz::kMaxBytes;
}

}  // namespace ect
