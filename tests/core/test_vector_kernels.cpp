// Cross-level checks of the kernel's vector code on adversarial inputs:
// every level must give level 0's bits.
#include <gtest/gtest.h>

#include <vector>

#include "tests/support/adversarial.h"
#include "vsps.h"

namespace {

// Inverse square root: zero and negative values, every power of two and its
// neighbours (where a float conversion rounds up to the next power), the
// extremes, random values; every length 1..40 for the vector blocks and the
// scalar tail.
TEST(KernelVectorKernels, InvSqrtAgreesOnEveryExponentAndTail) {
  std::vector<int32_t> values = {0, -1, INT32_MIN, INT32_MAX, 1, 2, 3};
  for (int b = 1; b < 31; ++b)
    for (int32_t d : {-1, 0, 1}) values.push_back(static_cast<int32_t>((int64_t(1) << b) + d));
  for (int b = 8; b < 31; ++b)
    values.push_back(static_cast<int32_t>((int64_t(1) << b) - (int64_t(1) << (b - 25 > 0 ? b - 25 : 0))));
  std::mt19937 rng(1);
  while (values.size() < 400) values.push_back(static_cast<int32_t>(rng()) >> (rng() % 31));
  vt::expect_levels_agree(
      [&] {
        std::vector<int32_t> v = values;
        legacy90vspsInvSqrt_32s_I(v.data(), static_cast<int>(v.size()));
        return v;
      },
      "InvSqrt");
  for (int len = 1; len <= 40; ++len)
    vt::expect_levels_agree(
        [&] {
          std::vector<int32_t> v(values.begin(), values.begin() + len);
          legacy90vspsInvSqrt_32s_I(v.data(), len);
          return v;
        },
        "InvSqrt len " + std::to_string(len));
}

// Partial convolution: full-scale operands wrap the 32-bit sums; every
// length 1..100 (blocks of 16 and the scalar rest), shifts 0..40, and the
// overlapping calls that take the scalar order at every level.
TEST(KernelVectorKernels, ConvPartialAgreesOnWrappingSums) {
  std::mt19937 rng(80);
  for (int len = 1; len <= 100; ++len) {
    const std::vector<int16_t> a = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
    const std::vector<int16_t> b = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
    const int shift = len % 41;
    vt::expect_levels_agree(
        [&] {
          std::vector<int16_t> d(static_cast<std::size_t>(len));
          legacy90vspsConvPartial_16s_Sfs(a.data(), b.data(), d.data(), len, shift);
          return d;
        },
        "ConvPartial len " + std::to_string(len));
    vt::expect_levels_agree(
        [&] {
          std::vector<int16_t> d = b;  // in place over the second operand
          legacy90vspsConvPartial_16s_Sfs(a.data(), d.data(), d.data(), len, shift);
          return d;
        },
        "ConvPartial in place len " + std::to_string(len));
    if (HasFailure()) return;
  }
}

}  // namespace
