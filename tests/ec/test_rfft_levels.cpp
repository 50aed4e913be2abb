// Cross-level checks of the float filter bank's real transform (butterflies,
// packing and unpacking): every level must give level 0's bytes for every
// transform order, on ordinary and adversarial values (huge magnitudes that
// overflow inside the butterflies, denormals, signed zeros, infinities, NaN). With a window of ones and the window
// length equal to the transform length, the analysis transforms exactly the
// source block and the synthesis returns exactly the inverse transform.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "tests/support/adversarial.h"
#include "vsps.h"

namespace {

enum class Mix { Ordinary, Wild, OneNaN, ManyNaN };

float bits_to_float(uint32_t b) {
  float f;
  std::memcpy(&f, &b, sizeof f);
  return f;
}

float wild_value(std::mt19937& rng) {
  const float u = static_cast<float>(static_cast<int32_t>(rng())) * 0x1p-31f;  // -1 .. 1
  switch (rng() % 8) {
    case 0:
      return u * 3e38f;  // sums overflow to infinity, then inf - inf
    case 1:
      return u * 1e-38f;  // denormal products and sums
    case 2:
      return bits_to_float(rng() % 0x00800000u | (rng() % 2 ? 0x80000000u : 0u));  // denormal
    case 3:
      return rng() % 2 ? 0.0f : -0.0f;
    case 4:
      return rng() % 2 ? INFINITY : -INFINITY;
    default:
      return u * 1000.0f;
  }
}

// The NaN the processor itself produces (inf - inf, 0 x inf). Where two
// NaN of different signs or payloads meet in an addition or product, which
// one propagates depends on the operand order the compiler picks for the
// scalar code, which differs between levels (for instance bin 0 of order 1,
// z0.re + z0.im); inputs that carry only this NaN keep every level alike.
float nan_value() { return bits_to_float(0xFFC00000u); }

std::vector<float> values(std::mt19937& rng, std::size_t n, Mix mix) {
  std::vector<float> v(n);
  for (auto& x : v) {
    const float u = static_cast<float>(static_cast<int32_t>(rng())) * 0x1p-31f;
    x = mix == Mix::Ordinary ? u * 32768.0f : wild_value(rng);
    if (mix == Mix::ManyNaN && rng() % 4 == 0) x = nan_value();
  }
  if (mix == Mix::OneNaN) v[rng() % n] = nan_value();
  return v;
}

template <class T>
std::vector<uint8_t> bytes(const std::vector<T>& v) {
  std::vector<uint8_t> b(v.size() * sizeof(T));
  std::memcpy(b.data(), v.data(), b.size());
  return b;
}

struct Bank {
  std::vector<Vsp8u> analysis, synthesis, work;
};

Bank make_bank(int order) {
  const int n = 1 << order;
  int s = 0, i = 0, w = 0;
  EXPECT_EQ(legacy90vspsSubbandProcessGetSize_32f(order, n, &s, &i, &w), vspStsNoErr);
  Bank b{std::vector<Vsp8u>(static_cast<std::size_t>(s)), std::vector<Vsp8u>(static_cast<std::size_t>(s)),
         std::vector<Vsp8u>(static_cast<std::size_t>(w))};
  std::vector<Vsp8u> init(static_cast<std::size_t>(i) + 1);
  const std::vector<Vsp32f> ones(static_cast<std::size_t>(n), 1.0f);
  for (std::vector<Vsp8u>* st : {&b.analysis, &b.synthesis})
    EXPECT_EQ(legacy90vspsSubbandProcessInit_32f(st->data(), order, n, n, ones.data(), init.data()), vspStsNoErr);
  return b;
}

TEST(EcVectorKernels, FloatRealTransformAgreesAtEveryOrder) {
  std::mt19937 rng(4713);
  for (int order = 1; order <= 13; ++order) {
    const int n = 1 << order;
    const std::size_t bins = static_cast<std::size_t>(n / 2 + 1);
    for (Mix mix : {Mix::Ordinary, Mix::Wild, Mix::OneNaN, Mix::ManyNaN})
      for (int trial = 0; trial < 3; ++trial) {
        const std::vector<float> x = values(rng, static_cast<std::size_t>(n), mix);
        const std::vector<float> spectrum = values(rng, 2 * bins, mix);
        const std::string what = "order " + std::to_string(order) + " mix " + std::to_string(static_cast<int>(mix)) +
                                 " trial " + std::to_string(trial);
        vt::expect_levels_agree(
            [&] {
              Bank b = make_bank(order);
              std::vector<Vsp32fc> forward(bins);
              EXPECT_EQ(legacy90vspsSubbandAnalysis_32f32fc(
                            x.data(), forward.data(), reinterpret_cast<VspsSubbandProcessState_32f*>(b.analysis.data()),
                            b.work.data()),
                        vspStsNoErr);
              std::vector<Vsp32fc> src(bins);
              std::memcpy(src.data(), spectrum.data(), sizeof(Vsp32fc) * bins);
              std::vector<Vsp32f> inverse(static_cast<std::size_t>(n));
              EXPECT_EQ(legacy90vspsSubbandSynthesis_32fc32f(
                            src.data(), inverse.data(),
                            reinterpret_cast<VspsSubbandProcessState_32f*>(b.synthesis.data()), b.work.data()),
                        vspStsNoErr);
              std::vector<uint8_t> out = bytes(forward);
              const std::vector<uint8_t> inv = bytes(inverse);
              out.insert(out.end(), inv.begin(), inv.end());
              return out;
            },
            what);
        if (HasFailure()) return;
      }
  }
}

}  // namespace
