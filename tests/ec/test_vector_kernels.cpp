// Cross-level checks of the echo-cancellation vector kernels on adversarial
// inputs: every level must give level 0's bits.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>
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

namespace {

// Runs `frames` analysis and synthesis steps of a bank (order, hop, window
// length) on full-scale input with a full-scale window (the 16-bit fold
// saturates inside the sum) and returns every output and the final states.
template <bool kFixed>
std::vector<uint8_t> bank_run(int order, int hop, int len, std::mt19937::result_type seed) {
  std::mt19937 rng(seed);
  int s = 0, i = 0, w = 0;
  (kFixed ? legacy90vspsSubbandProcessGetSize_16s : legacy90vspsSubbandProcessGetSize_32f)(order, len, &s, &i, &w);
  std::vector<Vsp8u> ana(static_cast<std::size_t>(s)), syn(static_cast<std::size_t>(s)),
      init(static_cast<std::size_t>(i) + 1), work(static_cast<std::size_t>(w));
  const std::vector<int16_t> win16 = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
  std::vector<float> win32(win16.size());
  for (std::size_t k = 0; k < win16.size(); ++k) win32[k] = static_cast<float>(win16[k]) / 8192.0f;
  for (std::vector<Vsp8u>* st : {&ana, &syn})
    if (kFixed)
      legacy90vspsSubbandProcessInit_16s(st->data(), order, hop, len, win16.data(), init.data());
    else
      legacy90vspsSubbandProcessInit_32f(st->data(), order, hop, len, win32.data(), init.data());
  const std::size_t bins = static_cast<std::size_t>((1 << order) / 2 + 1);
  std::vector<uint8_t> out;
  for (int f = 0; f < 12; ++f) {
    const std::vector<int16_t> x = vt::adversarial16(rng, static_cast<std::size_t>(hop), 32767);
    if (kFixed) {
      std::vector<Vsp32sc> b(bins);
      std::vector<Vsp16s> y(static_cast<std::size_t>(hop));
      legacy90vspsSubbandAnalysis_16s32sc_Sfs(
          x.data(), b.data(), reinterpret_cast<VspsSubbandProcessState_16s*>(ana.data()), f % 3, work.data());
      legacy90vspsSubbandSynthesis_32sc16s_Sfs(
          b.data(), y.data(), reinterpret_cast<VspsSubbandProcessState_16s*>(syn.data()), f % 3 - 1, work.data());
      const std::vector<uint8_t> bb = bytes(b), yb = bytes(y);
      out.insert(out.end(), bb.begin(), bb.end());
      out.insert(out.end(), yb.begin(), yb.end());
    } else {
      std::vector<Vsp32f> xf(x.begin(), x.end());
      std::vector<Vsp32fc> b(bins);
      std::vector<Vsp32f> y(static_cast<std::size_t>(hop));
      legacy90vspsSubbandAnalysis_32f32fc(xf.data(), b.data(),
                                          reinterpret_cast<VspsSubbandProcessState_32f*>(ana.data()), work.data());
      legacy90vspsSubbandSynthesis_32fc32f(b.data(), y.data(),
                                           reinterpret_cast<VspsSubbandProcessState_32f*>(syn.data()), work.data());
      const std::vector<uint8_t> bb = bytes(b), yb = bytes(y);
      out.insert(out.end(), bb.begin(), bb.end());
      out.insert(out.end(), yb.begin(), yb.end());
    }
  }
  return out;
}

// Windowing and folding (the 16-bit running sums saturate), the overlap-add
// with the reversed window, for transform orders 1..7 (vector blocks and
// scalar remainders) and several windows per order.
TEST(EcVectorKernels, FilterBanksAgreeOnFullScaleInputs) {
  for (int order = 1; order <= 7; ++order)
    for (int mult : {1, 2, 4}) {
      const int n = 1 << order, len = mult * n, hop = n > 2 ? n / 2 + 1 : 1;
      vt::expect_levels_agree([&] { return bank_run<true>(order, hop, len, static_cast<unsigned>(order * 10 + mult)); },
                              "16s bank order " + std::to_string(order) + " x" + std::to_string(mult));
      vt::expect_levels_agree(
          [&] { return bank_run<false>(order, hop, len, static_cast<unsigned>(order * 10 + mult)); },
          "32f bank order " + std::to_string(order) + " x" + std::to_string(mult));
      if (HasFailure()) return;
    }
}

}  // namespace

namespace {

// Sub-band echo estimate (float): wild magnitudes, every sub-band count
// 1..40 (blocks of 2 and 4 and the remainder), 1..9 segments.
TEST(EcVectorKernels, SubbandEstimateAgreesOnWildInputs) {
  std::mt19937 rng(33);
  for (int bands = 1; bands <= 40; ++bands) {
    const int segments = 1 + bands % 9;
    std::vector<std::vector<Vsp32fc>> x(static_cast<std::size_t>(segments)), h(x.size());
    std::vector<const Vsp32fc*> xp, hp;
    for (std::size_t m = 0; m < x.size(); ++m) {
      const std::vector<float> a = wild_floats(rng, 2 * static_cast<std::size_t>(bands)),
                               b = wild_floats(rng, 2 * static_cast<std::size_t>(bands));
      for (int k = 0; k < bands; ++k) {
        x[m].push_back({a[2 * static_cast<std::size_t>(k)], a[2 * static_cast<std::size_t>(k) + 1]});
        h[m].push_back({b[2 * static_cast<std::size_t>(k)], b[2 * static_cast<std::size_t>(k) + 1]});
      }
      xp.push_back(x[m].data());
      hp.push_back(h[m].data());
    }
    vt::expect_levels_agree(
        [&] {
          std::vector<Vsp32fc> out(static_cast<std::size_t>(bands));
          legacy90vspsFIRSubband_EC_32fc(xp.data(), hp.data(), out.data(), segments, bands);
          return bytes(out);
        },
        "FIRSubband_EC_32fc bands " + std::to_string(bands));
    if (HasFailure()) return;
  }
}

}  // namespace

// Cross-level checks of the float filter bank's real transform (butterflies,
// packing and unpacking): every level must give level 0's bytes for every
// transform order, on ordinary and adversarial values (huge magnitudes that
// overflow inside the butterflies, denormals, signed zeros, infinities, NaN). With a window of ones and the window
// length equal to the transform length, the analysis transforms exactly the
// source block and the synthesis returns exactly the inverse transform.
namespace {

enum class Mix { Ordinary, Wild, OneNaN, ManyNaN };

float bits_to_float(uint32_t b) {
  float f;
  std::memcpy(&f, &b, sizeof f);
  return f;
}

float wild_transform_value(std::mt19937& rng) {
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
    x = mix == Mix::Ordinary ? u * 32768.0f : wild_transform_value(rng);
    if (mix == Mix::ManyNaN && rng() % 4 == 0) x = nan_value();
  }
  if (mix == Mix::OneNaN) v[rng() % n] = nan_value();
  return v;
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
