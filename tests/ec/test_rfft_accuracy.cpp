// Accuracy of the filter bank's real transform against a double-precision
// DFT, orders 1..13, through the public functions: analysis with
// windowLen = frameSize = N and a unit window is the plain forward
// transform of the source; synthesis of the first frame after Init is the
// plain inverse transform (divided by N).
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "tests/ec/dft_model.h"
#include "tests/ec/ec_test_util.h"

namespace {

struct Bank {
  std::vector<uint8_t> state, work;
  bool fixedPoint;
  Bank(bool fixed, int order) : fixedPoint(fixed) {
    const int n = 1 << order;
    const ect::SubbandSizes sz = ect::subband_sizes(fixed, order, n);
    state.resize(std::size_t(sz.state));
    work.resize(std::size_t(sz.work));
    std::vector<uint8_t> init(std::size_t(sz.init) + 1);
    int st;
    if (fixed) {
      const std::vector<Vsp16s> one(std::size_t(n), 8192);  // 1.0 in Q13
      st = legacy90vspsSubbandProcessInit_16s(state.data(), order, n, n, one.data(), init.data());
    } else {
      const std::vector<Vsp32f> one(std::size_t(n), 1.0f);
      st = legacy90vspsSubbandProcessInit_32f(state.data(), order, n, n, one.data(), init.data());
    }
    EXPECT_EQ(st, 0);
  }
  auto* s16() { return reinterpret_cast<VspsSubbandProcessState_16s*>(state.data()); }
  auto* s32() { return reinterpret_cast<VspsSubbandProcessState_32f*>(state.data()); }
};

double sum_abs(const std::vector<double>& v) {
  double s = 0;
  for (double x : v) s += std::fabs(x);
  return s;
}

class TransformAccuracy : public testing::TestWithParam<int> {};

// Float forward: |error| <= 2^-24 (order+1) sum|u| for every bin component
// (a quarter of the bound the filter-bank test vectors allow).
TEST_P(TransformAccuracy, FloatForward) {
  const int order = GetParam(), n = 1 << order;
  std::mt19937 rng(static_cast<uint32_t>(order));
  std::uniform_real_distribution<float> uni(-1.0f, 1.0f);
  Bank bank(false, order);
  std::vector<Vsp32f> src(static_cast<std::size_t>(n));
  for (float& v : src) v = uni(rng);
  std::vector<Vsp32fc> dst(std::size_t(n / 2 + 1));
  ASSERT_EQ(legacy90vspsSubbandAnalysis_32f32fc(src.data(), dst.data(), bank.s32(), bank.work.data()), 0);
  const std::vector<double> u(src.begin(), src.end());
  const auto exact = ect::dft_real(u);
  double worst = 0;
  for (std::size_t k = 0; k < exact.size(); ++k)
    worst = std::max({worst, std::fabs(dst[k].re - exact[k].real()), std::fabs(dst[k].im - exact[k].imag())});
  const double unit = std::ldexp(1.0, -24) * (order + 1) * sum_abs(u);
  std::printf("  float forward order %2d: max error %.3g = %.3f x 2^-24 (order+1) sum|u|\n", order, worst,
              worst / unit);
  EXPECT_LE(worst, unit);
  EXPECT_EQ(dst[0].im, 0.0f);
  EXPECT_EQ(dst[std::size_t(n / 2)].im, 0.0f);
}

// Float inverse: |error| <= 2^-24 (order+1) 2 sum|X| / N.
TEST_P(TransformAccuracy, FloatInverse) {
  const int order = GetParam(), n = 1 << order;
  std::mt19937 rng(static_cast<uint32_t>(100 + order));
  std::uniform_real_distribution<float> uni(-1.0f, 1.0f);
  Bank bank(false, order);
  std::vector<Vsp32fc> src(std::size_t(n / 2 + 1));
  for (Vsp32fc& x : src) x = {uni(rng), uni(rng)};
  src[0].im = 0;
  src.back().im = 0;
  std::vector<Vsp32f> dst(static_cast<std::size_t>(n));
  ASSERT_EQ(legacy90vspsSubbandSynthesis_32fc32f(src.data(), dst.data(), bank.s32(), bank.work.data()), 0);
  std::vector<ect::cplx> bins;
  double l1 = 0;
  for (const Vsp32fc& x : src) {
    bins.emplace_back(x.re, x.im);
    l1 += std::fabs(x.re) + std::fabs(x.im);
  }
  const auto exact = ect::idft_real(bins, std::size_t(n));
  double worst = 0;
  for (std::size_t i = 0; i < exact.size(); ++i) worst = std::max(worst, std::fabs(dst[i] - exact[i]));
  const double unit = std::ldexp(1.0, -24) * (order + 1) * 2 * l1 / n;
  std::printf("  float inverse order %2d: max error %.3g = %.3f x 2^-24 (order+1) 2 sum|X|/N\n", order, worst,
              worst / unit);
  EXPECT_LE(worst, unit);
}

// Fixed forward, full-scale samples, scale factors from -2 to 12:
// |error| <= 2^max(0,-s) + 2^-24 sum|u| / 2^s units (rounding of the result
// plus the Q30 twiddles), where the test vectors allow
// 4 * 2^max(0,-s) + 2^-14 sum|u| / 2^s.
TEST_P(TransformAccuracy, FixedForward) {
  const int order = GetParam(), n = 1 << order;
  std::mt19937 rng(static_cast<uint32_t>(200 + order));
  std::vector<Vsp16s> src(static_cast<std::size_t>(n));
  for (Vsp16s& v : src) v = static_cast<Vsp16s>(rng());
  const std::vector<double> u(src.begin(), src.end());
  const auto exact = ect::dft_real(u);
  double worstUnits = 0;
  for (int sf : {-2, 0, 3, order, 12}) {
    Bank bank(true, order);
    std::vector<Vsp32sc> dst(std::size_t(n / 2 + 1));
    ASSERT_EQ(legacy90vspsSubbandAnalysis_16s32sc_Sfs(src.data(), dst.data(), bank.s16(), sf, bank.work.data()), 0);
    const double scale = std::ldexp(1.0, -sf);
    const double bound = std::max(1.0, scale) + std::ldexp(1.0, -24) * sum_abs(u) * scale;
    for (std::size_t k = 0; k < exact.size(); ++k) {
      const double er = std::fabs(dst[k].re - exact[k].real() * scale);
      const double ei = std::fabs(dst[k].im - exact[k].imag() * scale);
      ASSERT_LE(std::max(er, ei), bound) << "bin " << k << " scale factor " << sf;
      worstUnits = std::max(worstUnits, std::max(er, ei) / bound);
    }
    EXPECT_EQ(dst[0].im, 0);
    EXPECT_EQ(dst[std::size_t(n / 2)].im, 0);
  }
  std::printf("  fixed forward order %2d: max error %.3f of the bound\n", order, worstUnits);
}

// Fixed inverse, bins up to 2^20 (16-bit results at these scale factors):
// |error| <= 2^max(0,-s) + 2^-20 (2 sum|X| / N) / 2^s units (the block
// scaling keeps the input's top 28 bits of magnitude sum), where the test
// vectors allow 2 * 2^max(0,-s) + 2^-14 (2 sum|X| / N) / 2^s.
TEST_P(TransformAccuracy, FixedInverse) {
  const int order = GetParam(), n = 1 << order;
  std::mt19937 rng(static_cast<uint32_t>(300 + order));
  std::uniform_int_distribution<int32_t> uni(-(1 << 20), 1 << 20);
  std::vector<Vsp32sc> src(std::size_t(n / 2 + 1));
  for (Vsp32sc& x : src) x = {uni(rng), uni(rng)};
  src[0].im = 0;
  src.back().im = 0;
  std::vector<ect::cplx> bins;
  double l1 = 0;
  for (const Vsp32sc& x : src) {
    bins.emplace_back(x.re, x.im);
    l1 += std::fabs(x.re) + std::fabs(x.im);
  }
  const auto exact = ect::idft_real(bins, std::size_t(n));
  double worstUnits = 0;
  for (int sf : {-3, 0, 2, 6}) {
    Bank bank(true, order);
    std::vector<Vsp16s> dst(static_cast<std::size_t>(n));
    ASSERT_EQ(legacy90vspsSubbandSynthesis_32sc16s_Sfs(src.data(), dst.data(), bank.s16(), sf, bank.work.data()), 0);
    const double scale = std::ldexp(1.0, -sf);
    const double bound = std::max(1.0, scale) + std::ldexp(1.0, -20) * 2 * l1 / n * scale;
    for (std::size_t i = 0; i < exact.size(); ++i) {
      const double want = std::clamp(exact[i] * scale, -32768.0, 32767.0);
      const double e = std::fabs(dst[i] - want);
      ASSERT_LE(e, bound) << "sample " << i << " scale factor " << sf;
      worstUnits = std::max(worstUnits, e / bound);
    }
  }
  std::printf("  fixed inverse order %2d: max error %.3f of the bound\n", order, worstUnits);
}

INSTANTIATE_TEST_SUITE_P(Orders, TransformAccuracy, testing::Range(1, 14),
                         [](const testing::TestParamInfo<int>& i) { return "order" + std::to_string(i.param); });

}  // namespace
