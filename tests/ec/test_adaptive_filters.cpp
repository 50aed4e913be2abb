// Adaptive filters beyond the test vectors: the 32-bit reading of
// NLMS_EC_16s, the integer sub-band filters' saturation, the integer
// coefficient updates against the float one, and the affine-projection
// update's defining properties.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstring>
#include <random>

#include "vsps.h"

namespace {

// ---- full band -------------------------------------------------------------------------

// The decision for NLMS_EC_16s: e*step + 1024 and x*c + 4096 wrap in 32
// bits. One tap h = 1000, reference[0] = 3000, d[0] = 16476: y = 92, e =
// 16384, and with step 2^17, e*step = 2^31 wraps to -2^31, so c =
// (-2^31 + 1024) >> 11 = -1048576 (64-bit products: +1048576). The next
// update takes x[n-1]*c = 3000 * -1048576 = -3145728000, which wraps to
// 1149239296: h = sat16(1000 + ((1149239296 + 4096) >> 13)) = 32767 (64-bit:
// -32768). Written back after one sample, c saturates to -32768.
TEST(FullBand, Nlms16sProductsWrapIn32Bits) {
  const Vsp16s x[3] = {0, 3000, 0};  // reference[-1], [0], [1]
  const Vsp16s d[2] = {16476, 0};
  const Vsp32s step[2] = {1 << 17, 1 << 17};
  Vsp16s h = 1000, e[2], c = 0;
  ASSERT_EQ(legacy90vspsNLMS_EC_16s(&x[1], d, step, e, 2, &h, 1, &c), 0);
  EXPECT_EQ(e[0], 16384);
  EXPECT_EQ(h, 32767);
  EXPECT_EQ(e[1], 0);  // y = (32767 * 0 + 16384) >> 15 = 0
  EXPECT_EQ(c, 0);     // (0 * step + 1024) >> 11
  Vsp16s c1 = 0, h1 = 1000, e1;
  ASSERT_EQ(legacy90vspsNLMS_EC_16s(&x[1], d, step, &e1, 1, &h1, 1, &c1), 0);
  EXPECT_EQ(c1, -32768);
}

// ---- sub-band filters ------------------------------------------------------------------

struct Frames32sc {
  std::vector<Vsp32sc> x, h;
  std::vector<const Vsp32sc*> xp, hp;
  Frames32sc(int segs, int bands) : x(std::size_t(segs * bands)), h(x.size()) {
    for (int m = 0; m < segs; ++m) {
      xp.push_back(&x[std::size_t(m * bands)]);
      hp.push_back(&h[std::size_t(m * bands)]);
    }
  }
};

// Saturation at the 64-bit limits inside the sum (FIRSubband) against the
// plain wrapping sum of the economical filter.
TEST(SubbandFilter, SixtyFourBitSaturationAgainstWrap) {
  Frames32sc f(2, 1);
  f.x[0] = f.x[1] = {INT32_MIN, INT32_MIN};
  f.h[0] = f.h[1] = {INT32_MIN, INT32_MAX};  // re: 2^62 + 2^62 - 2^31 per segment
  Vsp32sc sat{}, low{};
  ASSERT_EQ(legacy90vspsFIRSubband_EC_32sc_Sfs(f.xp.data(), f.hp.data(), &sat, 2, 1, 31), 0);
  ASSERT_EQ(legacy90vspsFIRSubbandLow_EC_32sc_Sfs(f.xp.data(), f.hp.data(), 2, &low, 0, 1, 31), 0);
  EXPECT_EQ(sat.re, INT32_MAX);
  // Wrapped: 2 * (2^63 - 2^31) = -2^32 (mod 2^64); >> 31 = -2.
  EXPECT_EQ(low.re, -2);
}

// ---- integer coefficient updates ----------------------------------------------------------

// With mantissa 2^30 and exponent 31 + k the step is 2^-(k+1); with even
// errors and small samples every step is exact, so the integer update in
// Q(scaleFactor) equals the float update times 2^scaleFactor.
TEST(SubbandUpdate, IntegerUpdateIsTheFloatUpdateInQScale) {
  const int segs = 4, bands = 9, sf = 20, k = 4;
  std::mt19937 rng(4);
  std::uniform_int_distribution<int> small(-50, 50);
  Frames32sc f(segs, bands);
  std::vector<Vsp32fc> xf(f.x.size()), hf(f.x.size());
  for (std::size_t i = 0; i < f.x.size(); ++i) {
    f.x[i] = {small(rng), small(rng)};
    f.h[i] = {small(rng) << sf, small(rng) << sf};
    xf[i] = {float(f.x[i].re), float(f.x[i].im)};
    hf[i] = {float(f.h[i].re >> sf), float(f.h[i].im >> sf)};
  }
  std::vector<Vsp32sc> e(bands);
  std::vector<Vsp32fc> ef(bands);
  for (int b = 0; b < bands; ++b) {
    e[std::size_t(b)] = {2 * small(rng), 2 * small(rng)};
    ef[std::size_t(b)] = {float(e[std::size_t(b)].re), float(e[std::size_t(b)].im)};
  }
  std::vector<Vsp32s> step;
  for (int b = 0; b < bands; ++b) step.insert(step.end(), {1 << 30, 31 + k});
  const std::vector<double> stepF(bands, std::ldexp(1.0, -(k + 1)));
  std::vector<Vsp32sc*> hp;
  std::vector<const Vsp32fc*> xfp;
  std::vector<Vsp32fc*> hfp;
  for (int m = 0; m < segs; ++m) {
    hp.push_back(&f.h[std::size_t(m * bands)]);
    xfp.push_back(&xf[std::size_t(m * bands)]);
    hfp.push_back(&hf[std::size_t(m * bands)]);
  }
  const auto original = f.h;
  auto low = f.h;
  std::vector<Vsp32sc*> lowp;
  for (int m = 0; m < segs; ++m) lowp.push_back(&low[std::size_t(m * bands)]);
  std::vector<Vsp32sc> work(bands, Vsp32sc{-9, -9});
  ASSERT_EQ(legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I(step.data(), f.xp.data(), e.data(), hp.data(), segs, bands, sf),
            0);
  ASSERT_EQ(legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I(stepF.data(), xfp.data(), ef.data(), hfp.data(), segs, bands),
            0);
  ASSERT_EQ(legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I(f.xp.data(), e.data(), lowp.data(), segs, work.data(),
                                                           step.data(), 3, bands, sf),
            0);
  for (std::size_t i = 0; i < f.h.size(); ++i) {
    EXPECT_EQ(double(f.h[i].re), std::ldexp(double(hf[i].re), sf)) << i;
    EXPECT_EQ(double(f.h[i].im), std::ldexp(double(hf[i].im), sf)) << i;
    // The economical update: the same below no overflow, from sub-band 3 on.
    const Vsp32sc want = int(i % bands) < 3 ? original[i] : f.h[i];
    EXPECT_TRUE(low[i].re == want.re && low[i].im == want.im) << i;
  }
  for (int b = 0; b < bands; ++b) {
    if (b < 3) {
      EXPECT_EQ(work[std::size_t(b)].re, -9);  // below the first sub-band: untouched
    } else {
      EXPECT_EQ(work[std::size_t(b)].re, e[std::size_t(b)].re / 2);  // t = mantissa * E / 2^31
      EXPECT_EQ(work[std::size_t(b)].im, e[std::size_t(b)].im / 2);
    }
  }
}

// Saturation of the 32-bit result and of the left shift.
TEST(SubbandUpdate, IntegerUpdateSaturates) {
  Frames32sc f(1, 2);
  f.x[0] = f.x[1] = {INT32_MAX, 0};
  f.h[0] = {INT32_MAX - 5, 0};
  f.h[1] = {INT32_MIN + 5, 0};
  const Vsp32sc e[2] = {{INT32_MAX, 0}, {INT32_MIN, 0}};
  const Vsp32s step[4] = {INT32_MAX, 0, INT32_MAX, 0};  // shift count -31: left, saturating
  std::vector<Vsp32sc*> hp{f.h.data()};
  ASSERT_EQ(legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I(step, f.xp.data(), e, hp.data(), 1, 2, 0), 0);
  EXPECT_EQ(f.h[0].re, INT32_MAX);
  EXPECT_EQ(f.h[1].re, INT32_MIN);
}

// ---- affine projection ----------------------------------------------------------------------

using cd = std::complex<double>;

struct ApCase {
  int segs, bands, order;
  std::vector<Vsp32fc> x, e, h;
  std::vector<const Vsp32fc*> xp, ep;
  std::vector<Vsp32fc*> hp;
  ApCase(int s, int b, int p, std::mt19937& rng)
      : segs(s), bands(b), order(p), x(std::size_t((s + p - 1) * b)), e(std::size_t(p * b)), h(std::size_t(s * b)) {
    std::normal_distribution<float> g(0, 1);
    for (Vsp32fc& v : x) v = {g(rng), g(rng)};
    for (Vsp32fc& v : e) v = {g(rng), g(rng)};
    for (Vsp32fc& v : h) v = {0.1f * g(rng), 0.1f * g(rng)};
    for (int m = 0; m < s + p - 1; ++m) xp.push_back(&x[std::size_t(m * b)]);
    for (int q = 0; q < p; ++q) ep.push_back(&e[std::size_t(q * b)]);
    for (int m = 0; m < s; ++m) hp.push_back(&h[std::size_t(m * b)]);
  }
  cd X(int m, int k) const { return {x[std::size_t(m * bands + k)].re, x[std::size_t(m * bands + k)].im}; }
  cd H(int m, int k) const { return {h[std::size_t(m * bands + k)].re, h[std::size_t(m * bands + k)].im}; }
  // x_p^T h of sub-band k.
  cd output(int p, int k) const {
    cd s = 0;
    for (int m = 0; m < segs; ++m) s += X(p + m, k) * H(m, k);
    return s;
  }
  int run(const std::vector<double>& stepData) {
    return legacy90vspsFIRSubbandAPCoeffUpdate_EC_32fc_I(stepData.data(), xp.data(), ep.data(), hp.data(), segs, bands,
                                                         order);
  }
};

// With mu = P (the update scales by 1/P) and no regularisation, the update
// solves the P constraints: the a-posteriori errors vanish, i.e. the output
// of every regressor moves by exactly its a-priori error.
TEST(AffineProjection, AposterioriErrorsVanish) {
  std::mt19937 rng(8);
  for (int p : {1, 2, 4, 8}) {
    ApCase c(12, 5, p, rng);
    std::vector<cd> before;
    for (int q = 0; q < p; ++q)
      for (int k = 0; k < c.bands; ++k) before.push_back(c.output(q, k));
    std::vector<double> stepData;
    for (int k = 0; k < c.bands; ++k) stepData.insert(stepData.end(), {double(p), 0.0});
    ASSERT_EQ(c.run(stepData), 0);
    for (int q = 0; q < p; ++q)
      for (int k = 0; k < c.bands; ++k) {
        const cd moved = c.output(q, k) - before[std::size_t(q * c.bands + k)];
        const cd want(c.e[std::size_t(q * c.bands + k)].re, c.e[std::size_t(q * c.bands + k)].im);
        EXPECT_LT(std::abs(moved - want), 2e-5 * (1 + std::abs(want))) << "order " << p << " q " << q << " k " << k;
      }
  }
}

// Order 1 is the normalised LMS update mu E conj(X) / (|x|^2 + delta).
TEST(AffineProjection, OrderOneIsNormalisedLms) {
  std::mt19937 rng(9);
  ApCase c(10, 7, 1, rng);
  std::vector<Vsp32fc> h2 = c.h;
  std::vector<Vsp32fc*> h2p;
  for (int m = 0; m < c.segs; ++m) h2p.push_back(&h2[std::size_t(m * c.bands)]);
  std::vector<double> stepData, nlms;
  for (int k = 0; k < c.bands; ++k) {
    const double mu = 0.3 + 0.1 * k, delta = 0.5;
    stepData.insert(stepData.end(), {mu, delta});
    double energy = 0;
    for (int m = 0; m < c.segs; ++m) energy += std::norm(c.X(m, k));
    nlms.push_back(mu / (energy + delta));
  }
  ASSERT_EQ(
      legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I(nlms.data(), c.xp.data(), c.e.data(), h2p.data(), c.segs, c.bands),
      0);
  ASSERT_EQ(c.run(stepData), 0);
  for (std::size_t i = 0; i < h2.size(); ++i) {
    EXPECT_NEAR(c.h[i].re, h2[i].re, 1e-6);
    EXPECT_NEAR(c.h[i].im, h2[i].im, 1e-6);
  }
}

TEST(AffineProjection, SingularSubbandIsLeftUnchanged) {
  std::mt19937 rng(10);
  ApCase c(6, 3, 2, rng);
  for (int m = 0; m < c.segs + 1; ++m) c.x[std::size_t(m * c.bands + 1)] = {0, 0};  // sub-band 1 silent
  const std::vector<Vsp32fc> h0 = c.h;
  const std::vector<double> stepData(6, 0.0);  // mu 0, delta 0 everywhere
  std::vector<double> sd = stepData;
  for (int k = 0; k < 3; ++k) sd[std::size_t(2 * k)] = 1.0;
  ASSERT_EQ(c.run(sd), 0);
  for (int m = 0; m < c.segs; ++m) {
    EXPECT_EQ(c.h[std::size_t(m * 3 + 1)].re, h0[std::size_t(m * 3 + 1)].re);
    EXPECT_NE(c.h[std::size_t(m * 3)].re, h0[std::size_t(m * 3)].re);
  }
}

}  // namespace
