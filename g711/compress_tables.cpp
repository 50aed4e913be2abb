// The G.711 compression tables, built at compile time from the per-sample
// arithmetic of the ITU-T G.191 g711 module (see g711_tables.h).
#include <cstdint>

#include "g711/g711_tables.h"

namespace vsps::tables::g711 {

namespace {

// Linear (Q0) -> A-law. A 13-bit law: the magnitude is taken from the top 12
// bits, the negative side as the one's complement (-x - 1) so that the
// decision thresholds mirror around -1/2 LSB.
constexpr uint8_t alaw_compress(int32_t x) {
  int32_t m = (x >= 0 ? x : -x - 1) >> 4;  // 0..2047
  int32_t v = m;
  if (m > 15) {
    int32_t e = 1;
    while (m > 31) {
      m >>= 1;
      ++e;
    }
    v = (e << 4) + (m - 16);  // segment 1..7, leading one dropped
  }
  if (x >= 0) v |= 0x80;
  return static_cast<uint8_t>(v ^ 0x55);
}

// Linear (Q0) -> mu-law. A 14-bit law: the magnitude in 14-bit units plus
// the bias 33, clipped to 8191; all bits inverted on the line.
constexpr uint8_t ulaw_compress(int32_t x) {
  int32_t a = ((x >= 0 ? x : -x - 1) >> 2) + 33;
  if (a > 8191) a = 8191;
  int32_t seg = 1;
  for (int32_t t = a >> 6; t != 0; t >>= 1) ++seg;  // 1..8
  const int32_t code = ((8 - seg) << 4) | (15 - ((a >> seg) & 15));
  return static_cast<uint8_t>(x >= 0 ? code | 0x80 : code);
}

// Every sample with the same x >> 4 (A-law) or x >> 2 (mu-law) gives the
// same code word (for x < 0 the magnitude -x - 1 = ~x, and ~x >> s =
// ~(x >> s)), so each entry is the word of the first sample of its run.
constexpr CompressTables build() {
  CompressTables t{};
  for (int32_t i = 0; i < 4096; ++i) t.alaw[i] = alaw_compress((i - 2048) * 16);
  for (int32_t i = 0; i < 16384; ++i) t.ulaw[i] = ulaw_compress((i - 8192) * 4);
  return t;
}

}  // namespace

constexpr CompressTables kCompress = build();

}  // namespace vsps::tables::g711
