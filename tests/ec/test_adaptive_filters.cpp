// Adaptive filters beyond the test vectors: the adapting filters against
// the plain ones, block splitting, the 32-bit reading of NLMS_EC_16s, the
// integer sub-band filters' rounding and saturation, the integer
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

template <class T>
std::vector<T> random_signal(std::size_t n, std::mt19937& rng, double scale) {
  std::normal_distribution<double> g(0.0, scale);
  std::vector<T> v(n);
  for (T& x : v) x = static_cast<T>(std::is_integral_v<T> ? std::clamp(std::round(g(rng)), -32768.0, 32767.0) : g(rng));
  return v;
}

// With a zero carried error and zero steps the adapting filter leaves the
// coefficients alone and its output is the plain filter's.
TEST(FullBand, NlmsWithoutStepIsTheFir) {
  std::mt19937 rng(1);
  const int taps = 24, len = 100;
  {
    const auto x = random_signal<Vsp32f>(std::size_t(taps + len), rng, 0.3);
    const auto d = random_signal<Vsp32f>(std::size_t(len), rng, 0.3);
    const auto h0 = random_signal<Vsp32f>(std::size_t(taps), rng, 0.2);
    std::vector<Vsp32f> h = h0, eFir(static_cast<std::size_t>(len)), eNlms(static_cast<std::size_t>(len)),
                        step(std::size_t(len), 0.0f);
    Vsp32f c = 0;
    ASSERT_EQ(legacy90vspsFIR_EC_32f(&x[taps], d.data(), eFir.data(), len, h0.data(), taps), 0);
    ASSERT_EQ(legacy90vspsNLMS_EC_32f(&x[taps], d.data(), step.data(), eNlms.data(), len, h.data(), taps, &c), 0);
    EXPECT_EQ(h, h0);
    EXPECT_EQ(eFir, eNlms);
  }
  {
    const auto x = random_signal<Vsp16s>(std::size_t(taps + len), rng, 8000);
    const auto d = random_signal<Vsp16s>(std::size_t(len), rng, 8000);
    const auto h0 = random_signal<Vsp16s>(std::size_t(taps), rng, 6000);
    std::vector<Vsp16s> h = h0, eFir(static_cast<std::size_t>(len)), eNlms(static_cast<std::size_t>(len));
    std::vector<Vsp32s> step(std::size_t(len), 0);
    Vsp16s c = 0;
    ASSERT_EQ(legacy90vspsFIR_EC_16s(&x[taps], d.data(), eFir.data(), len, h0.data(), taps), 0);
    ASSERT_EQ(legacy90vspsNLMS_EC_16s(&x[taps], d.data(), step.data(), eNlms.data(), len, h.data(), taps, &c), 0);
    EXPECT_EQ(h, h0);
    EXPECT_EQ(eFir, eNlms);
  }
}

// One block of 2L samples or two calls of L with the carried error passed
// on give the same errors and coefficients (fixed point: while the carried
// value stays within 16 bits, here with small steps).
TEST(FullBand, SplittingABlockKeepsTheResult) {
  std::mt19937 rng(2);
  const int taps = 16, len = 60;
  {
    const auto x = random_signal<Vsp32f>(std::size_t(taps + 2 * len), rng, 0.3);
    const auto d = random_signal<Vsp32f>(std::size_t(2 * len), rng, 0.3);
    const std::vector<Vsp32f> step(std::size_t(2 * len), 0.05f);
    std::vector<Vsp32f> h1(std::size_t(taps), 0), h2 = h1, e1(std::size_t(2 * len)), e2 = e1;
    Vsp32f c1 = 0, c2 = 0;
    legacy90vspsNLMS_EC_32f(&x[taps], d.data(), step.data(), e1.data(), 2 * len, h1.data(), taps, &c1);
    legacy90vspsNLMS_EC_32f(&x[taps], d.data(), step.data(), e2.data(), len, h2.data(), taps, &c2);
    legacy90vspsNLMS_EC_32f(&x[taps + len], &d[len], &step[len], &e2[len], len, h2.data(), taps, &c2);
    EXPECT_EQ(e1, e2);
    EXPECT_EQ(h1, h2);
    EXPECT_EQ(c1, c2);
  }
  {
    const auto x = random_signal<Vsp16s>(std::size_t(taps + 2 * len), rng, 6000);
    const auto d = random_signal<Vsp16s>(std::size_t(2 * len), rng, 6000);
    const std::vector<Vsp32s> step(std::size_t(2 * len), 40);  // |e*step| >> 11 stays within 16 bits
    std::vector<Vsp16s> h1(std::size_t(taps), 0), h2 = h1, e1(std::size_t(2 * len)), e2 = e1;
    Vsp16s c1 = 0, c2 = 0;
    legacy90vspsNLMS_EC_16s(&x[taps], d.data(), step.data(), e1.data(), 2 * len, h1.data(), taps, &c1);
    legacy90vspsNLMS_EC_16s(&x[taps], d.data(), step.data(), e2.data(), len, h2.data(), taps, &c2);
    legacy90vspsNLMS_EC_16s(&x[taps + len], &d[len], &step[len], &e2[len], len, h2.data(), taps, &c2);
    EXPECT_EQ(e1, e2);
    EXPECT_EQ(h1, h2);
    EXPECT_EQ(c1, c2);
  }
}

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

TEST(SubbandFilter, IntegerScalingRoundsTowardZero) {
  struct Row {
    int32_t sum;
    int sf;
    int32_t want;
  };
  for (Row r : {Row{-3, 1, -1}, Row{3, 1, 1}, Row{-5, 2, -1}, Row{-4, 2, -1}, Row{-1, 31, 0}, Row{7, 0, 7},
                Row{1, -31, INT32_MAX}, Row{-1, -31, INT32_MIN}, Row{3, -2, 12}}) {
    Frames32sc f(1, 1);
    f.x[0] = {r.sum, 0};
    f.h[0] = {1, 0};
    Vsp32sc out{};
    ASSERT_EQ(legacy90vspsFIRSubband_EC_32sc_Sfs(f.xp.data(), f.hp.data(), &out, 1, 1, r.sf), 0);
    EXPECT_EQ(out.re, r.want) << r.sum << " >> " << r.sf;
  }
}

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

TEST(SubbandFilter, LowFirstEqualToCountWritesNothing) {
  Frames32sc f(3, 5);
  std::vector<Vsp32sc> out(5, Vsp32sc{77, -77});
  ASSERT_EQ(legacy90vspsFIRSubbandLow_EC_32sc_Sfs(f.xp.data(), f.hp.data(), 3, out.data(), 5, 5, 0), 0);
  for (const Vsp32sc& o : out) EXPECT_TRUE(o.re == 77 && o.im == -77);
}

TEST(SubbandFilter, LargestCountsAreAccepted) {
  const int bands = 4097, segs = 255;
  std::vector<Vsp32fc> x(std::size_t(bands), Vsp32fc{1, 0}), h(std::size_t(bands), Vsp32fc{0, 1});
  std::vector<const Vsp32fc*> xp(segs, x.data()), hp(segs, h.data());
  std::vector<Vsp32fc> out(static_cast<std::size_t>(bands));
  ASSERT_EQ(legacy90vspsFIRSubband_EC_32fc(xp.data(), hp.data(), out.data(), segs, bands), 0);
  EXPECT_EQ(out[4096].im, 255.0f);
  EXPECT_EQ(legacy90vspsFIRSubband_EC_32fc(xp.data(), hp.data(), out.data(), segs, bands + 1), vspStsFIRLenErr);
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

TEST(SubbandUpdate, LowUpdateLeavesLowerSubbandsAlone) {
  const int segs = 2, bands = 6;
  Frames32sc f(segs, bands);
  for (Vsp32sc& v : f.x) v = {1000, -2000};
  for (Vsp32sc& v : f.h) v = {5, 6};
  const std::vector<Vsp32sc> e(bands, Vsp32sc{1 << 20, 1 << 19});
  std::vector<Vsp32s> step;
  for (int b = 0; b < bands; ++b) step.insert(step.end(), {1 << 30, 20});
  std::vector<Vsp32sc*> hp{&f.h[0], &f.h[std::size_t(bands)]};
  std::vector<Vsp32sc> work(bands, Vsp32sc{0, 0});
  ASSERT_EQ(legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I(f.xp.data(), e.data(), hp.data(), segs, work.data(),
                                                           step.data(), 4, bands, 0),
            0);
  for (int m = 0; m < segs; ++m)
    for (int b = 0; b < bands; ++b) {
      const Vsp32sc h = f.h[std::size_t(m * bands + b)];
      if (b < 4)
        EXPECT_TRUE(h.re == 5 && h.im == 6);
      else
        EXPECT_FALSE(h.re == 5 && h.im == 6);
    }
  // First sub-band equal to the count: success, nothing done.
  const auto before = f.h;
  std::vector<Vsp32sc> work2(bands, Vsp32sc{3, 3});
  ASSERT_EQ(legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I(f.xp.data(), e.data(), hp.data(), segs, work2.data(),
                                                           step.data(), bands, bands, 0),
            0);
  EXPECT_EQ(std::memcmp(before.data(), f.h.data(), before.size() * sizeof(Vsp32sc)), 0);
  for (const Vsp32sc& w : work2) EXPECT_TRUE(w.re == 3 && w.im == 3);
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

// Identification of a sub-band echo path from coloured input: projection
// order 4 converges faster than order 1 (normalised LMS).
TEST(AffineProjection, HigherOrderConvergesFasterOnColouredInput) {
  const int segs = 8, iters = 60;
  std::mt19937 rng(12);
  std::normal_distribution<double> g(0, 1);
  std::vector<cd> truth(segs);
  for (cd& t : truth) t = {g(rng), g(rng)};
  std::vector<cd> input(std::size_t(iters + segs + 8));
  cd prev = 0;
  for (cd& v : input) v = prev = 0.95 * prev + cd(g(rng), g(rng));  // strongly coloured
  auto misalignment = [&](int order) {
    std::vector<Vsp32fc> h(segs, Vsp32fc{0, 0});
    std::vector<cd> errs;  // a-priori errors, newest first
    for (int n = 0; n < iters; ++n) {
      // Frames newest first: input[n + segs + order - 1 - m].
      std::vector<Vsp32fc> x(std::size_t(segs + order - 1));
      for (int m = 0; m < segs + order - 1; ++m) {
        const cd v = input[std::size_t(n + segs + order - 1 - m)];
        x[std::size_t(m)] = {float(v.real()), float(v.imag())};
      }
      std::vector<Vsp32fc> e(static_cast<std::size_t>(order));
      for (int q = 0; q < order; ++q) {
        cd d = 0, y = 0;
        for (int m = 0; m < segs; ++m) {
          const cd xv(x[std::size_t(q + m)].re, x[std::size_t(q + m)].im);
          d += xv * truth[std::size_t(m)];
          y += xv * cd(h[std::size_t(m)].re, h[std::size_t(m)].im);
        }
        e[std::size_t(q)] = {float((d - y).real()), float((d - y).imag())};
      }
      std::vector<const Vsp32fc*> xp, ep;
      std::vector<Vsp32fc*> hp;
      for (auto& v : x) xp.push_back(&v);
      for (auto& v : e) ep.push_back(&v);
      for (auto& v : h) hp.push_back(&v);
      const std::vector<double> sd = {0.5 * order, 1e-3};
      EXPECT_EQ(
          legacy90vspsFIRSubbandAPCoeffUpdate_EC_32fc_I(sd.data(), xp.data(), ep.data(), hp.data(), segs, 1, order), 0);
    }
    double num = 0, den = 0;
    for (int m = 0; m < segs; ++m) {
      num += std::norm(cd(h[std::size_t(m)].re, h[std::size_t(m)].im) - truth[std::size_t(m)]);
      den += std::norm(truth[std::size_t(m)]);
    }
    return 10 * std::log10(num / den);
  };
  const double p1 = misalignment(1), p4 = misalignment(4);
  EXPECT_LT(p4, p1 - 6.0) << "order 1: " << p1 << " dB, order 4: " << p4 << " dB";
}

}  // namespace
