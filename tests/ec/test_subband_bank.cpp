// The filter bank's documented decisions beyond the golden files: the
// saturation inside the fixed-point fold, the extreme scale factors, the
// reversed synthesis window and Init's failure after the window copy.
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

}  // namespace
