// The filter bank's own behaviour: reported sizes, self-alignment, the
// built-in windows, reconstruction through analysis and synthesis, the
// saturation inside the fixed-point fold, the reversed synthesis window and
// Init's failure after the window copy.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>

#include "ec/subband_layout.h"
#include "tests/ec/dft_model.h"
#include "tests/ec/ec_test_util.h"

namespace {

using ect::subband_sizes;

// ---- sizes -------------------------------------------------------------------

TEST(SubbandSizes, FollowTheLayout) {
  struct Row {
    int order, windowLen;
  };
  for (Row r :
       {Row{1, 2}, Row{2, 12}, Row{4, 64}, Row{5, 128}, Row{5, 96}, Row{6, 256}, Row{10, 1024}, Row{13, 8192}}) {
    const int n = 1 << r.order, m = n / 2;
    const int tables = (8 * (m - 1) + 8 * (m / 2 + 1) + 2 * m + 15) / 16 * 16;
    const int line16 = (2 * r.windowLen + 15) / 16 * 16;
    const ect::SubbandSizes f = subband_sizes(true, r.order, r.windowLen);
    const ect::SubbandSizes g = subband_sizes(false, r.order, r.windowLen);
    ASSERT_EQ(f.status, 0);
    ASSERT_EQ(g.status, 0);
    EXPECT_EQ(f.state, tables + 2 * line16 + 48 + 16) << r.order;
    EXPECT_EQ(g.state, 8 * r.windowLen + 40 + tables + 16) << r.order;
    EXPECT_EQ(f.init, r.order >= 5 ? 8 * (n / 4 + 1) + 16 : 0);
    EXPECT_EQ(f.work, (4 * n + 15) / 16 * 16 + 16);
    EXPECT_EQ(g.work, f.work);
  }
}

TEST(SubbandSizes, TransformRangeIsOrders1To13) {
  EXPECT_EQ(subband_sizes(true, 13, 8192).status, 0);
  EXPECT_EQ(subband_sizes(false, 14, 16384).status, vspStsBadArgErr);
  EXPECT_EQ(subband_sizes(true, 31, 1 << 30).status, vspStsBadArgErr);
  EXPECT_EQ(subband_sizes(false, 13, 8192 * 32768).status, vspStsBadArgErr);  // state above INT_MAX
}

// ---- helpers -------------------------------------------------------------------

struct Bank {
  bool fixedPoint;
  int order, frameSize, windowLen;
  std::vector<uint8_t> state, work;
  std::size_t offset;
  Bank(bool fixed, int ord, int hop, int len, const void* window = nullptr, std::size_t misalign = 0)
      : fixedPoint(fixed), order(ord), frameSize(hop), windowLen(len), offset(misalign) {
    const ect::SubbandSizes sz = subband_sizes(fixed, ord, len);
    state.assign(std::size_t(sz.state) + misalign, 0xEE);
    work.assign(std::size_t(sz.work) + misalign, 0xEE);
    std::vector<uint8_t> init(std::size_t(sz.init) + misalign);
    const int st = fixed
                       ? legacy90vspsSubbandProcessInit_16s(state.data() + misalign, ord, hop, len,
                                                            static_cast<const Vsp16s*>(window), init.data() + misalign)
                       : legacy90vspsSubbandProcessInit_32f(state.data() + misalign, ord, hop, len,
                                                            static_cast<const Vsp32f*>(window), init.data() + misalign);
    EXPECT_EQ(st, 0);
  }
  std::size_t bins() const { return std::size_t(1 << order) / 2 + 1; }
  Vsp8u* st() { return state.data() + offset; }
  Vsp8u* wb() { return work.data() + offset; }
  void analyse(const Vsp16s* src, Vsp32sc* dst, int sf) {
    ASSERT_EQ(legacy90vspsSubbandAnalysis_16s32sc_Sfs(src, dst, reinterpret_cast<VspsSubbandProcessState_16s*>(st()),
                                                      sf, wb()),
              0);
  }
  void analyse(const Vsp32f* src, Vsp32fc* dst) {
    ASSERT_EQ(legacy90vspsSubbandAnalysis_32f32fc(src, dst, reinterpret_cast<VspsSubbandProcessState_32f*>(st()), wb()),
              0);
  }
  void synthesise(const Vsp32sc* src, Vsp16s* dst, int sf) {
    ASSERT_EQ(legacy90vspsSubbandSynthesis_32sc16s_Sfs(src, dst, reinterpret_cast<VspsSubbandProcessState_16s*>(st()),
                                                       sf, wb()),
              0);
  }
  void synthesise(const Vsp32fc* src, Vsp32f* dst) {
    ASSERT_EQ(
        legacy90vspsSubbandSynthesis_32fc32f(src, dst, reinterpret_cast<VspsSubbandProcessState_32f*>(st()), wb()), 0);
  }
  // The window copy inside the state (white box).
  std::vector<double> window() const {
    const uint8_t* base = vsps::ec::align16(state.data() + offset);
    std::vector<double> w(static_cast<std::size_t>(windowLen));
    if (fixedPoint) {
      const auto* p = reinterpret_cast<const vsps::ec::SubbandHeader16s*>(base)->window;
      for (std::size_t i = 0; i < w.size(); ++i) w[i] = p[i];
    } else {
      const auto* p = reinterpret_cast<const vsps::ec::SubbandHeader32f*>(base)->window;
      for (std::size_t i = 0; i < w.size(); ++i) w[i] = p[i];
    }
    return w;
  }
};

// ---- alignment -------------------------------------------------------------------

TEST(SubbandState, AnyAlignmentGivesTheSameFrames) {
  std::mt19937 rng(5);
  std::vector<Vsp16s> x(24 * 20);
  for (Vsp16s& v : x) v = static_cast<Vsp16s>(rng() % 20000) - 10000;
  std::vector<std::vector<Vsp32sc>> ref;
  for (std::size_t mis = 0; mis < 16; ++mis) {
    Bank b(true, 5, 24, 128, nullptr, mis);
    std::vector<Vsp32sc> all;
    for (std::size_t f = 0; f < 20; ++f) {
      std::vector<Vsp32sc> out(b.bins());
      b.analyse(&x[24 * f], out.data(), 2);
      all.insert(all.end(), out.begin(), out.end());
    }
    if (mis == 0)
      ref.push_back(all);
    else
      EXPECT_TRUE(std::memcmp(all.data(), ref[0].data(), all.size() * sizeof(Vsp32sc)) == 0) << "misalignment " << mis;
  }
}

// ---- built-in windows -------------------------------------------------------------

TEST(SubbandWindows, BuiltInWindowsAndTheirQ13Truncation) {
  struct Cfg {
    int order, hop, len;
    double peak, sum;
    int peak16;
  };
  for (Cfg c : {Cfg{5, 24, 128, 0.9311249, 27.1875, 7627}, Cfg{6, 44, 256, 0.9447229, 50.3192, 7739}}) {
    const Bank f(false, c.order, c.hop, c.len), q(true, c.order, c.hop, c.len);
    const std::vector<double> w = f.window(), w16 = q.window();
    double sum = 0, peak = 0;
    for (std::size_t i = 0; i < w.size(); ++i) {
      EXPECT_EQ(w[i], w[w.size() - 1 - i]);
      EXPECT_EQ(w16[i], std::trunc(double(static_cast<float>(w[i]) * 8192.0f))) << i;
      sum += w[i];
      peak = std::max(peak, w[i]);
    }
    EXPECT_NEAR(sum, c.sum, 1e-3);
    EXPECT_EQ(static_cast<float>(peak), static_cast<float>(c.peak));
    EXPECT_EQ(w[w.size() / 2], peak);
    EXPECT_EQ(*std::max_element(w16.begin(), w16.end()), c.peak16);
    EXPECT_LT(*std::min_element(w16.begin(), w16.end()), 0);  // negative side lobes truncate toward zero
  }
}

// ---- reconstruction -----------------------------------------------------------------

// Analysis then synthesis with no change in between: v = u, so the chain
// is the time-domain fold-and-overlap-add of the windows. The library's
// output is compared with that model written directly (double precision),
// and the signal-to-error ratio of the reconstruction (delay windowLen -
// frameSize, unit gain) is the bank's own: its prototype leaves time-aliased
// copies at multiples of N.
struct Recon {
  double snrLibrary, snrModel, modelError;
};

Recon reconstruct(bool fixedPoint, int order, int hop, int len) {
  const int n = 1 << order;
  const int frames = 600;
  std::mt19937 rng(11);
  std::normal_distribution<double> g(0.0, 3000.0);
  std::vector<double> x(std::size_t(frames * hop));
  for (double& v : x) v = std::clamp(std::round(g(rng)), -32768.0, 32767.0);
  if (!fixedPoint)
    for (double& v : x) v /= 32768.0;
  Bank ana(fixedPoint, order, hop, len), syn(fixedPoint, order, hop, len);
  const std::vector<double> w = ana.window();
  std::vector<double> y(x.size()), model(x.size());
  std::vector<double> d(std::size_t(len), 0.0), acc(std::size_t(len), 0.0);
  const int sf = 0;
  for (int f = 0; f < frames; ++f) {
    const std::size_t p = std::size_t(f * hop);
    if (fixedPoint) {
      std::vector<Vsp16s> in(static_cast<std::size_t>(hop)), out(static_cast<std::size_t>(hop));
      std::vector<Vsp32sc> bins(ana.bins());
      for (int i = 0; i < hop; ++i) in[std::size_t(i)] = static_cast<Vsp16s>(x[p + std::size_t(i)]);
      ana.analyse(in.data(), bins.data(), sf);
      syn.synthesise(bins.data(), out.data(), sf);
      for (int i = 0; i < hop; ++i) y[p + std::size_t(i)] = out[std::size_t(i)];
    } else {
      std::vector<Vsp32f> in(static_cast<std::size_t>(hop)), out(static_cast<std::size_t>(hop));
      std::vector<Vsp32fc> bins(ana.bins());
      for (int i = 0; i < hop; ++i) in[std::size_t(i)] = static_cast<Vsp32f>(x[p + std::size_t(i)]);
      ana.analyse(in.data(), bins.data());
      syn.synthesise(bins.data(), out.data());
      for (int i = 0; i < hop; ++i) y[p + std::size_t(i)] = out[std::size_t(i)];
    }
    // Model: delay line, fold, overlap-add with the reversed window.
    std::rotate(d.begin(), d.begin() + hop, d.end());
    for (int i = 0; i < hop; ++i) d[std::size_t(len - hop + i)] = x[p + std::size_t(i)];
    std::vector<double> u(std::size_t(n), 0.0);
    for (int i = 0; i < len; ++i)
      u[std::size_t(i % n)] += d[std::size_t(i)] * w[std::size_t(i)] / (fixedPoint ? 8192 : 1);
    std::rotate(acc.begin(), acc.begin() + hop, acc.end());
    std::fill(acc.end() - hop, acc.end(), 0.0);
    for (int k = 0; k < len; ++k)
      acc[std::size_t(k)] += u[std::size_t(k % n)] * w[std::size_t(len - 1 - k)] / (fixedPoint ? 8192 : 1);
    for (int i = 0; i < hop; ++i) model[p + std::size_t(i)] = acc[std::size_t(i)];
  }
  const std::size_t delay = std::size_t(len - hop);
  double px = 0, el = 0, em = 0, dm = 0, pm = 0;
  for (std::size_t i = std::size_t(4 * len); i < x.size(); ++i) {
    px += x[i - delay] * x[i - delay];
    el += (y[i] - x[i - delay]) * (y[i] - x[i - delay]);
    em += (model[i] - x[i - delay]) * (model[i] - x[i - delay]);
    dm += (y[i] - model[i]) * (y[i] - model[i]);
    pm += model[i] * model[i];
  }
  return {10 * std::log10(px / el), 10 * std::log10(px / em), 10 * std::log10(pm / dm)};
}

TEST(SubbandReconstruction, DefaultWindowsBothTwins) {
  struct Cfg {
    int order, hop, len;
    double minSnr;
  };
  for (bool fixedPoint : {false, true})
    for (Cfg c : {Cfg{5, 24, 128, 15.5}, Cfg{6, 44, 256, 23.5}}) {
      const Recon r = reconstruct(fixedPoint, c.order, c.hop, c.len);
      std::printf("  %s (%d, %d, %d): reconstruction SNR %.2f dB (bank model %.2f dB), library vs model %.1f dB\n",
                  fixedPoint ? "fixed" : "float", c.order, c.hop, c.len, r.snrLibrary, r.snrModel, r.modelError);
      EXPECT_GE(r.snrLibrary, c.minSnr);
      EXPECT_NEAR(r.snrLibrary, r.snrModel, 0.1);
      EXPECT_GE(r.modelError, fixedPoint ? 40.0 : 100.0);  // the library follows the bank exactly
    }
}

// ---- fixed-point fold saturation ------------------------------------------------------

// Order 1 (N = 2, exact transform): bin 0 is u0 + u1 and bin 1 is u0 - u1.
// A window of 2.0 (16384 in Q13) over windowLen 4 and full-scale samples of
// alternating sign per block: u0 = sat16(sat16(32767 * 2) + (-32768 * 2)) =
// -32768, where one saturation at the end would give -2.
TEST(SubbandFold, FixedPointSaturatesAfterEveryTerm) {
  const std::vector<Vsp16s> window(4, 16384);
  Bank b(true, 1, 2, 4, window.data());
  const Vsp16s first[2] = {32767, 32767}, second[2] = {-32768, -32768};
  Vsp32sc bins[2];
  b.analyse(first, bins, 0);
  b.analyse(second, bins, 0);     // delay line: 32767, 32767, -32768, -32768
  EXPECT_EQ(bins[0].re, -65536);  // u0 + u1 = -32768 + -32768
  EXPECT_EQ(bins[1].re, 0);
  EXPECT_EQ(bins[0].im, 0);
  EXPECT_EQ(bins[1].im, 0);
}

// scaleFactor is any int: the extremes scale every non-zero bin or sample to
// saturation (INT32_MIN) or to zero (INT32_MAX), as +-64 do, without the
// total shift overflowing.
TEST(SubbandScaleFactor, ExtremesSaturateOrVanish) {
  const std::vector<Vsp16s> window(4, 16384);  // 2.0 in Q13
  const Vsp16s frame[2] = {1000, -3000};       // folded block 2000, -6000
  struct Case {
    int sf;
    Vsp32s bin0, bin1;
  };
  for (const Case& c : {Case{INT32_MIN, INT32_MIN, INT32_MAX}, Case{-64, INT32_MIN, INT32_MAX}, Case{INT32_MAX, 0, 0},
                        Case{0, -4000, 8000}}) {
    Bank b(true, 1, 2, 4, window.data());
    Vsp32sc bins[2];
    b.analyse(frame, bins, c.sf);
    EXPECT_EQ(bins[0].re, c.bin0) << c.sf;
    EXPECT_EQ(bins[1].re, c.bin1) << c.sf;
  }
  const Vsp32sc bins[2] = {{-4000, 0}, {8000, 0}};
  for (int sf : {INT32_MIN, INT32_MAX}) {
    Bank b(true, 1, 2, 4, window.data());
    Vsp16s out[2];
    b.synthesise(bins, out, sf);
    for (Vsp16s v : out) EXPECT_EQ(std::abs(int(v)) >= 32767, sf == INT32_MIN) << sf << ": " << v;
  }
}

// The default window on full-scale input: samples with the window's sign
// (the opposite sign in the last quarter) drive the fold's partial sums
// past 16 bits and back, so the per-term saturation shows in the DC bin.
TEST(SubbandFold, FullScaleInputSaturatesInsideTheFold) {
  Bank b(true, 5, 24, 128);
  const std::vector<double> w = b.window();
  std::vector<Vsp16s> d(128);
  for (std::size_t i = 0; i < 128; ++i) {
    const bool positive = (w[i] >= 0) != (i >= 96);
    d[i] = positive ? 32767 : -32768;
  }
  std::vector<Vsp16s> input(144, 0);
  std::copy(d.begin(), d.end(), input.begin() + 16);  // the last 128 samples of 6 frames
  std::vector<Vsp32sc> bins(b.bins());
  for (int f = 0; f < 6; ++f) b.analyse(&input[std::size_t(24 * f)], bins.data(), 0);
  int64_t perTerm = 0, atEnd = 0;
  for (int j = 0; j < 32; ++j) {
    int32_t u = 0;
    int64_t exact = 0;
    for (int i = j; i < 128; i += 32) {
      const int32_t p = (d[std::size_t(i)] * int32_t(w[std::size_t(i)]) + 4096) >> 13;
      u = std::clamp(i == j ? p : u + p, -32768, 32767);
      exact += p;
    }
    perTerm += u;
    atEnd += std::clamp<int64_t>(exact, -32768, 32767);
  }
  ASSERT_NE(perTerm, atEnd);  // the input does reach saturation
  EXPECT_EQ(bins[0].re, perTerm);
}

// ---- reversed synthesis window -----------------------------------------------------------

// With a caller's asymmetric window the synthesis reads it backwards
// (w[L-1-k]); the first frame after Init outputs the first frameSize values
// of the windowed, periodically extended inverse transform.
TEST(SubbandSynthesis, ReadsTheWindowBackwards) {
  const int order = 3, n = 8, hop = 5, len = 16;
  std::vector<Vsp32f> w(len);
  for (int i = 0; i < len; ++i) w[std::size_t(i)] = 0.1f + 0.05f * float(i);  // a ramp
  Bank b(false, order, hop, len, w.data());
  std::vector<Vsp32fc> src(std::size_t(n / 2 + 1));
  std::mt19937 rng(2);
  std::uniform_real_distribution<float> uni(-1, 1);
  for (Vsp32fc& c : src) c = {uni(rng), uni(rng)};
  src[0].im = src.back().im = 0;
  std::vector<Vsp32f> out(static_cast<std::size_t>(hop));
  b.synthesise(src.data(), out.data());
  std::vector<ect::cplx> bins;
  for (const Vsp32fc& c : src) bins.emplace_back(c.re, c.im);
  const std::vector<double> v = ect::idft_real(bins, std::size_t(n));
  double backward = 0, forward = 0;
  for (int k = 0; k < hop; ++k) {
    backward = std::max(backward, std::fabs(out[std::size_t(k)] - v[std::size_t(k % n)] * w[std::size_t(len - 1 - k)]));
    forward = std::max(forward, std::fabs(out[std::size_t(k)] - v[std::size_t(k % n)] * w[std::size_t(k)]));
  }
  EXPECT_LT(backward, 1e-6);
  EXPECT_GT(forward, 1e-2);
}

// ---- Init ---------------------------------------------------------------------------------

// A null init buffer from order 5 on fails the table set-up with vspStsErr
// after the window has been copied; the header is not written.
TEST(SubbandInit, TableFailureAfterTheWindowCopy) {
  for (bool fixedPoint : {true, false}) {
    const ect::SubbandSizes sz = subband_sizes(fixedPoint, 5, 96);
    std::vector<uint8_t> state(std::size_t(sz.state), 0xEE);
    std::vector<Vsp16s> w16(96);
    std::vector<Vsp32f> w32(96);
    for (int i = 0; i < 96; ++i) {
      w16[std::size_t(i)] = static_cast<Vsp16s>(100 + i);
      w32[std::size_t(i)] = 0.5f + float(i);
    }
    const int st = fixedPoint ? legacy90vspsSubbandProcessInit_16s(state.data(), 5, 24, 96, w16.data(), nullptr)
                              : legacy90vspsSubbandProcessInit_32f(state.data(), 5, 24, 96, w32.data(), nullptr);
    EXPECT_EQ(st, vspStsErr);
    const uint8_t* base = vsps::ec::align16(state.data());
    const std::size_t header = fixedPoint ? 48 : 40;
    EXPECT_EQ(std::memcmp(base + header, fixedPoint ? static_cast<const void*>(w16.data()) : w32.data(),
                          fixedPoint ? 192 : 384),
              0);
    for (std::size_t i = 0; i < header; ++i) EXPECT_EQ(base[i], 0xEE) << "header byte " << i;
  }
}

// Below order 5 the tables are built on the stack: no init buffer needed.
TEST(SubbandInit, SmallOrdersNeedNoInitBuffer) {
  const ect::SubbandSizes sz = subband_sizes(true, 4, 64);
  EXPECT_EQ(sz.init, 0);
  std::vector<uint8_t> state(std::size_t(sz.state));
  const std::vector<Vsp16s> w(64, 8192);
  EXPECT_EQ(legacy90vspsSubbandProcessInit_16s(state.data(), 4, 16, 64, w.data(), nullptr), 0);
}

// After Init the first analysis sees windowLen - frameSize zeros, then the
// frame: with windowLen = N it is the plain transform of that block.
TEST(SubbandAnalysis, FirstFrameSeesZerosThenTheFrame) {
  const std::vector<Vsp32f> one(16, 1.0f);
  Bank b(false, 4, 5, 16, one.data());
  const Vsp32f x[5] = {1, -2, 3, 0.5f, 4};
  std::vector<Vsp32fc> bins(b.bins());
  b.analyse(x, bins.data());
  std::vector<double> block(16, 0.0);
  for (int i = 0; i < 5; ++i) block[std::size_t(11 + i)] = x[i];
  const auto exact = ect::dft_real(block);
  for (std::size_t k = 0; k < exact.size(); ++k) {
    EXPECT_NEAR(bins[k].re, exact[k].real(), 1e-5);
    EXPECT_NEAR(bins[k].im, exact[k].imag(), 1e-5);
  }
}

}  // namespace
