// Cross-level checks of the echo-cancellation vector kernels on adversarial
// inputs: every level must give level 0's bits.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/support/adversarial.h"
#include "vsps.h"

namespace {

std::vector<float> wild_floats(std::mt19937& rng, std::size_t n) {
  std::vector<float> v(n);
  for (auto& x : v) {
    const int kind = static_cast<int>(rng() % 4);
    const float u = static_cast<float>(static_cast<int32_t>(rng())) * 0x1p-31f;
    x = kind == 0 ? u * 1e30f : (kind == 1 ? u * 1e-30f : u);
  }
  return v;
}

// Bytes, so that the comparison also covers signed zeros and NaN payloads.
template <class T>
std::vector<uint8_t> bytes(const std::vector<T>& v) {
  std::vector<uint8_t> b(v.size() * sizeof(T));
  std::memcpy(b.data(), v.data(), b.size());
  return b;
}

// Float FIR: magnitudes from 1e-30 to 1e30 (overflow to infinity, NaN from
// inf - inf, rounding that depends on the order), every block remainder.
TEST(EcVectorKernels, FloatFirAgreesOnWildInputs) {
  std::mt19937 rng(32);
  for (int trial = 0; trial < 300; ++trial) {
    const int len = 1 + trial % 37, taps = 1 + (trial * 7) % 45;
    const std::vector<float> ref = wild_floats(rng, static_cast<std::size_t>(len + taps));
    const std::vector<float> nearEnd = wild_floats(rng, static_cast<std::size_t>(len));
    const std::vector<float> h = wild_floats(rng, static_cast<std::size_t>(taps));
    vt::expect_levels_agree(
        [&] {
          std::vector<float> e(static_cast<std::size_t>(len));
          legacy90vspsFIR_EC_32f(ref.data() + taps, nearEnd.data(), e.data(), len, h.data(), taps);
          return bytes(e);
        },
        "FIR_EC_32f trial " + std::to_string(trial));
    if (HasFailure()) return;
  }
}

// Q15 FIR: full-scale samples and taps (-32768 x -32768 terms of +32768,
// saturated errors), every block remainder, and the longest exact filter
// beside one tap more (the scalar loop).
TEST(EcVectorKernels, FixedFirAgreesOnFullScaleInputs) {
  std::mt19937 rng(16);
  for (int trial = 0; trial < 300; ++trial) {
    const int len = 1 + trial % 41, taps = 1 + (trial * 5) % 70;
    const std::vector<int16_t> ref = vt::adversarial16(rng, static_cast<std::size_t>(len + taps), 32767);
    const std::vector<int16_t> nearEnd = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
    const std::vector<int16_t> h = vt::adversarial16(rng, static_cast<std::size_t>(taps), 32767);
    vt::expect_levels_agree(
        [&] {
          std::vector<int16_t> e(static_cast<std::size_t>(len));
          legacy90vspsFIR_EC_16s(ref.data() + taps, nearEnd.data(), e.data(), len, h.data(), taps);
          return e;
        },
        "FIR_EC_16s trial " + std::to_string(trial));
    if (HasFailure()) return;
  }
  for (int taps : {65535, 65536}) {  // all -32768: the sum reaches -(2^31 - 32768) .. saturation
    const std::vector<int16_t> ref(static_cast<std::size_t>(taps) + 20, INT16_MIN),
        h(static_cast<std::size_t>(taps), INT16_MIN);
    const std::vector<int16_t> nearEnd(20, INT16_MIN);
    vt::expect_levels_agree(
        [&] {
          std::vector<int16_t> e(20);
          legacy90vspsFIR_EC_16s(ref.data() + taps, nearEnd.data(), e.data(), 20, h.data(), taps);
          return e;
        },
        "FIR_EC_16s taps " + std::to_string(taps));
  }
}

// Q15 LMS: full-scale samples and coefficients, steps that make the carried
// value wrap the 32-bit products, every tap remainder, and the coefficients
// overlapping the samples (the scalar order at every level).
TEST(EcVectorKernels, FixedLmsAgreesOnFullScaleInputs) {
  std::mt19937 rng(17);
  for (int trial = 0; trial < 400; ++trial) {
    const int len = 1 + trial % 23, taps = 1 + (trial * 3) % 70;
    const std::vector<int16_t> ref = vt::adversarial16(rng, static_cast<std::size_t>(len + taps), 32767);
    const std::vector<int16_t> nearEnd = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
    const std::vector<int16_t> h0 = vt::adversarial16(rng, static_cast<std::size_t>(taps), 32767);
    std::vector<int32_t> step(static_cast<std::size_t>(len));
    for (auto& s : step) s = trial % 2 ? static_cast<int32_t>(rng()) : static_cast<int32_t>(rng() % 64);
    const int16_t carried0 = vt::adversarial16(rng, 32767);
    const bool overlap = trial % 10 == 0;
    vt::expect_levels_agree(
        [&] {
          std::vector<int16_t> buf = ref, e(static_cast<std::size_t>(len)), h = h0;
          int16_t carried = carried0;
          int16_t* coeffs = overlap ? buf.data() : h.data();
          legacy90vspsNLMS_EC_16s(buf.data() + taps, nearEnd.data(), step.data(), e.data(), len, coeffs, taps,
                                  &carried);
          std::vector<int16_t> out = e;
          out.insert(out.end(), h.begin(), h.end());
          out.insert(out.end(), buf.begin(), buf.end());
          out.push_back(carried);
          return out;
        },
        "NLMS_EC_16s trial " + std::to_string(trial));
    if (HasFailure()) return;
  }
}

}  // namespace
