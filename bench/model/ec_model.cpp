// The plain scalar model of the Q15 full-band echo-path filters (see
// ec_model.h).
#include "bench/model/ec_model.h"

#include "bench/model/ref_ops.h"

namespace model::ec {

namespace {
// (a b + 16384) >> 15 in 32 bits (the product rounded to Q0, unsaturated).
__attribute__((noinline)) int32_t mul_round15(int16_t a, int16_t b) { return (int32_t(a) * b + 16384) >> 15; }
// (a c + round) >> shift in wrapping 32-bit arithmetic.
__attribute__((noinline)) int32_t mul_wrap_shift(int32_t a, int32_t c, int32_t round, int shift) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(c) + static_cast<uint32_t>(round)) >>
         shift;
}
// sat16 of a 32-bit value.
__attribute__((noinline)) int16_t sat16_l(int32_t x) {
  if (x > 32767 || x < -32768) {
    Overflow = 1;
    return static_cast<int16_t>(x > 0 ? 32767 : -32768);
  }
  return static_cast<int16_t>(x);
}
}  // namespace

void fir_16s(const int16_t* reference, const int16_t* nearEnd, int16_t* error, int len, const int16_t* coeffs,
             int tapLen) {
  for (int n = 0; n < len; ++n) {
    int32_t y = 0;
    for (int k = 0; k < tapLen; ++k) y = L_add(y, mul_round15(reference[n - k], coeffs[k]));
    error[n] = sat16_l(L_sub(nearEnd[n], y));
  }
}

void lms_16s(const int16_t* reference, const int16_t* nearEnd, const int32_t* step, int16_t* error, int len,
             int16_t* coeffs, int tapLen, int16_t* carriedError) {
  int32_t c = *carriedError;
  for (int n = 0; n < len; ++n) {
    const int16_t* x = reference + n;
    int32_t y = 0;
    for (int k = 0; k < tapLen; ++k) {
      coeffs[k] = sat16_l(L_add(coeffs[k], mul_wrap_shift(x[-1 - k], c, 4096, 13)));
      y = L_add(y, mul_round15(coeffs[k], x[-k]));
    }
    const int16_t e = sat16_l(L_sub(nearEnd[n], y));
    error[n] = e;
    c = mul_wrap_shift(e, step[n], 1024, 11);
  }
  *carriedError = sat16_l(c);
}

}  // namespace model::ec
