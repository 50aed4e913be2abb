// The plain scalar model of G.711 (see g711_model.h).
#include "bench/model/g711_model.h"

namespace model::g711 {

void alaw_compress(const int16_t* lin, uint8_t* log, int n) {
  for (int k = 0; k < n; ++k) {
    const int32_t x = lin[k];
    int32_t ix = x < 0 ? (~x) >> 4 : x >> 4;  // 12-bit magnitude, one's complement below zero
    if (ix > 15) {
      int32_t iexp = 1;
      while (ix > 16 + 15) {
        ix >>= 1;
        ++iexp;
      }
      ix -= 16;  // the leading one is implicit
      ix += iexp << 4;
    }
    if (x >= 0) ix |= 0x80;
    log[k] = static_cast<uint8_t>(ix ^ 0x55);  // even bits inverted on the line
  }
}

void ulaw_compress(const int16_t* lin, uint8_t* log, int n) {
  for (int k = 0; k < n; ++k) {
    const int32_t x = lin[k];
    int32_t absno = x < 0 ? ((~x) >> 2) + 33 : (x >> 2) + 33;  // 14-bit magnitude plus the bias
    if (absno > 0x1FFF) absno = 0x1FFF;
    int32_t segno = 1;
    for (int32_t i = absno >> 6; i != 0; i >>= 1) ++segno;
    const int32_t high = 8 - segno;
    const int32_t low = 15 - ((absno >> segno) & 15);
    const int32_t out = (high << 4) | low;  // all bits inverted on the line
    log[k] = static_cast<uint8_t>(x >= 0 ? out | 0x80 : out);
  }
}

void alaw_expand(const uint8_t* log, int16_t* lin, int n) {
  for (int k = 0; k < n; ++k) {
    const int32_t ix = log[k] ^ 0x55;
    const int32_t iexp = (ix & 0x7F) >> 4;
    int32_t mant = ix & 15;
    if (iexp > 0) mant += 16;
    mant = (mant << 4) + 8;  // mid-point of the interval
    if (iexp > 1) mant <<= iexp - 1;
    lin[k] = static_cast<int16_t>(ix > 127 ? mant : -mant);
  }
}

void ulaw_expand(const uint8_t* log, int16_t* lin, int n) {
  for (int k = 0; k < n; ++k) {
    const int32_t sign = log[k] < 0x80 ? -1 : 1;
    const int32_t c = ~log[k] & 0x7F;
    const int32_t exponent = c >> 4, mantissa = c & 15;
    const int32_t step = 4 << (exponent + 1);
    lin[k] = static_cast<int16_t>(sign * ((0x80 << exponent) + step * mantissa + step / 2 - 4 * 33));
  }
}

}  // namespace model::g711
