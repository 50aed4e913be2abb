// Edge cases of the G.729 LP front end and the decisions documented in the
// list of exports.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/g729/g729_test_util.h"

namespace {

using g729t::V16;
using V32 = std::vector<Vsp32s>;

struct LevinsonOut {
  VspStatus status;
  V16 lpc, rc;
  Vsp16s energy;
};
LevinsonOut levinson(const V32& r, int order = 10) {
  LevinsonOut o{0, V16(static_cast<std::size_t>(order) + 1, -5), V16(static_cast<std::size_t>(order), -5), -5};
  o.status = legacy90vspsLevinsonDurbin_G729_32s16s(r.data(), order, o.lpc.data(), o.rc.data(), &o.energy);
  return o;
}

TEST(G729Levinson, UnusableInputWritesNothing) {
  const V32 bad[] = {{65535, 1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000, 1000},
                     {-1073741824, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},  // negative r[0] of any size
                     {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
                     // second reflection coefficient beyond 32750
                     {1073741824, 536870912, -1073741824, 0, 0, 0, 0, 0, 0, 0, 0}};
  for (const V32& r : bad) {
    const LevinsonOut o = levinson(r);
    EXPECT_EQ(o.status, vspStsLPCUnstable) << r[0];
    EXPECT_EQ(o.lpc, V16(11, -5));
    EXPECT_EQ(o.rc, V16(10, -5));
    EXPECT_EQ(o.energy, -5);
  }
  EXPECT_EQ(levinson(V32(32, 1 << 30), 31).status, vspStsSizeErr);
}

// The float twin of the unstable case above stops with vspStsNoErr and the
// order-1 filter; the offending coefficient is stored, the energy is not.
TEST(G729Levinson, FloatTwinStopsWithoutWarning) {
  std::vector<Vsp32f> r = {1.0f, 0.5f, -1.0f, 0, 0, 0, 0, 0, 0, 0, 0};
  std::vector<Vsp32f> a(11, -5.0f), rc(10, -5.0f);
  Vsp32f energy = -5.0f;
  ASSERT_EQ(legacy90vspsLevinsonDurbin_G729_32f(r.data(), 10, a.data(), rc.data(), &energy), vspStsNoErr);
  EXPECT_EQ(a[0], 1.0f);
  EXPECT_EQ(a[1], -0.5f);
  EXPECT_EQ(a[2], -5.0f);
  EXPECT_EQ(rc[0], -0.5f);
  EXPECT_NEAR(rc[1], 1.25f / 0.75f, 1e-6);
  EXPECT_EQ(rc[2], -5.0f);
  EXPECT_EQ(energy, -5.0f);
  // A white input runs to the full order and writes the energy.
  r = {2.0f, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
  ASSERT_EQ(legacy90vspsLevinsonDurbin_G729_32f(r.data(), 10, a.data(), rc.data(), &energy), vspStsNoErr);
  EXPECT_EQ(energy, 2.0f);
  EXPECT_EQ(a, std::vector<Vsp32f>({1.0f, -0.0f, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

// Decision: an r[0] below 2^30 is normalised first. An input that is the
// normalised one shifted right exactly gives the same filter and
// coefficients, and the residual energy shifted right by the same count.
TEST(G729Levinson, NonNormalisedInputIsNormalisedFirst) {
  std::mt19937 rng(21);
  for (int trial = 0; trial < 40; ++trial) {
    V32 r = g729t::random_autocorr(rng);
    const int k = 1 + trial % 14;
    for (auto& v : r) v &= ~((int32_t(1) << (k + 1)) - 1);  // exact after the shift
    const LevinsonOut ref = levinson(r);
    V32 small = r;
    for (auto& v : small) v >>= k;
    ASSERT_GE(small[0], 65536);
    const LevinsonOut got = levinson(small);
    EXPECT_EQ(got.status, ref.status);
    EXPECT_EQ(got.lpc, ref.lpc);
    EXPECT_EQ(got.rc, ref.rc);
    if (ref.status == vspStsNoErr) EXPECT_EQ(got.energy, ref.energy >> k);
  }
}

// The decoder's stability rule: an LSF whose first value composes to 20 comes
// out as 40 with vspStsLsfLowClamped. The memory's first column is searched
// for the value that composes to 20 with independent integer arithmetic.
TEST(G729LsfDecode, LowClampReportsThirteen) {
  const V16 codes = {0, 0, 0, 0};
  // Stage-1 row 0 + stage-2 row 0 (first coefficient; no rearrangement moves
  // it for these rows), MA mode 0 coefficients of coefficient 0.
  const int res0 = 1486 + (-435);  // lspcb1[0][0] + lspcb2[0][0]
  const int fgSum0 = 7798;         // fg_sum[0][0]
  const int fg0[4] = {8421, 7018, 5472, 4056};
  int found = -1;
  for (int m = -2000; m <= 2000 && found < 0; ++m) {
    int64_t acc = 2LL * res0 * fgSum0;
    for (int f : fg0) acc += 2LL * m * f;
    if ((acc >> 16) == 20) found = m;
  }
  ASSERT_GE(found, -2000);
  V16 mem = g729t::reset_memory();
  for (int k = 0; k < 4; ++k) mem[10 * k] = static_cast<Vsp16s>(found);
  V16 lsf(10);
  EXPECT_EQ(legacy90vspsLSFDecode_G729_16s(codes.data(), mem.data(), lsf.data()), vspStsLsfLowClamped);
  EXPECT_EQ(lsf[0], 40);
  EXPECT_EQ(mem[0], res0);  // the residual became the newest row
}

TEST(G729LsfDecode, FloatDecoderMasksItsCodes) {
  std::vector<Vsp32f> mem1(40), mem2;
  for (int k = 0; k < 40; ++k) mem1[k] = 0.3f * static_cast<float>(k % 10 + 1);
  mem2 = mem1;
  std::vector<Vsp32f> out1(10), out2(10);
  const std::vector<int> plain = {1, 5, 6, 7}, wide = {3, 128 + 5, 64 + 6, -32 + 7};
  EXPECT_EQ(legacy90vspsLSFDecode_G729_32f(plain.data(), mem1.data(), out1.data()), vspStsNoErr);
  EXPECT_EQ(legacy90vspsLSFDecode_G729_32f(wide.data(), mem2.data(), out2.data()), vspStsNoErr);
  EXPECT_EQ(out1, out2);
  EXPECT_EQ(mem1, mem2);
}

struct LsfToLspCase {
  Vsp16s lsf;
  Vsp16s lsp;
};
TEST(G729LsfToLsp, TableIndexIsClamped) {
  // Reference values of Lsf_lsp2, including the clamp to index 63.
  const LsfToLspCase cases[] = {{0, 32767},      {40, 32763},     {321, 32735},    {8192, 17700},  {25681, -32764},
                                {25735, -32768}, {25736, -32729}, {30000, -32753}, {32767, -32749}};
  for (const auto& c : cases) {
    V16 in(10, c.lsf), out(10);
    ASSERT_EQ(legacy90vspsLSFToLSP_G729_16s(in.data(), out.data()), vspStsNoErr);
    EXPECT_EQ(out[0], c.lsp) << c.lsf;
  }
  // Decision: negative LSFs use index 0 (near cos 0), never read before the table.
  for (int lsf : {-1, -10, -300, -32768}) {
    V16 in(10, static_cast<Vsp16s>(lsf)), out(10);
    ASSERT_EQ(legacy90vspsLSFToLSP_G729_16s(in.data(), out.data()), vspStsNoErr);
    EXPECT_GE(out[0], 32000) << lsf;
  }
}

TEST(G729Interpolate, HalvesTowardMinusInfinity) {
  const V16 a = {-1, -1, 32767, -32768, 3}, b = {-1, 0, 32767, -32768, 3};
  V16 out(5);
  ASSERT_EQ(legacy90vspsInterpolate_G729_16s(a.data(), b.data(), out.data(), 5), vspStsNoErr);
  EXPECT_EQ(out, (V16{-2, -1, 32766, -32768, 2}));
}

struct InterpolateCCase {
  Vsp16s x1, v1, x2, v2;
  int sf;
  Vsp16s want;
};
TEST(G729Interpolate, WeightedSumShiftsEachProductAndSaturates) {
  const InterpolateCCase cases[] = {
      {-32768, -32768, -32768, -32768, 0, 32767},  // 2^31 in all: saturates
      {-32768, 32767, -32768, 32767, 0, -32768},
      {-3, 1, -3, 1, 1, -4},  // (-3 >> 1) + (-3 >> 1): each floored
      {-5, 7, 9, 3, 40, -1},  // shifts of 31 or more: 0 or -1
      {16384, 16384, 16384, 16384, 15, 16384},
      {1000, 8192, 2000, 24576, 15, 1750},
  };
  for (const auto& c : cases) {
    V16 out(1);
    ASSERT_EQ(legacy90vspsInterpolateC_G729_16s_Sfs(&c.x1, c.v1, &c.x2, c.v2, out.data(), 1, c.sf), vspStsNoErr);
    EXPECT_EQ(out[0], c.want) << c.x1 << " " << c.v1 << " " << c.x2 << " " << c.v2 << " " << c.sf;
  }
}

TEST(G729AutoCorr, SilenceAndOverflowControl) {
  std::vector<Vsp16s> x(240, 0);
  V32 r(11, 7);
  int norm = 0;
  ASSERT_EQ(legacy90vspsAutoCorr_NormE_16s32s(x.data(), 240, r.data(), 11, &norm), vspStsNoErr);
  EXPECT_EQ(r[0], 1 << 30);  // the start value 1, normalised
  EXPECT_EQ(r[1], 0);
  EXPECT_EQ(norm, 30);
  // A constant 16384 overflows twice: the samples become 1024, r[0] =
  // 1 + 2 * 240 * 2^20 normalised by 2 shifts, 2^(2 - 8) in all.
  x.assign(240, 16384);
  ASSERT_EQ(legacy90vspsAutoCorr_NormE_16s32s(x.data(), 240, r.data(), 11, &norm), vspStsNoErr);
  EXPECT_EQ(norm, -6);
  EXPECT_EQ(r[0], ((1 + 2 * 240 * (1 << 20)) << 2) & ~1);
  for (int k = 1; k < 11; ++k) EXPECT_EQ(r[k], (2 * (240 - k) * (1 << 20)) << 2) << k;
}

}  // namespace
