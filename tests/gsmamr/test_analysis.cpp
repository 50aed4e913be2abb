// Edge cases of the GSM-AMR LP analysis: autocorrelation, Levinson-Durbin,
// LP/LSP/LSF conversions, interpolation and pre-emphasis, at every level.
#include <gtest/gtest.h>

#include <vector>

#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/levels.h"

namespace {

std::vector<int16_t> constant(int16_t v) { return std::vector<int16_t>(240, v); }

// r[0] of constant frames through window_200_40, measured with the TS 26.073
// reference (0x446D5673: norm = 0, bit 0 kept as the full value).
TEST(AmrAutoCorr, ConstantFramesAndOverflowPasses) {
  struct Case {
    int16_t level;
    uint32_t r0;
  };
  const Case cases[] = {
      {0, 0x40000000u}, {32767, 0x639573D6u}, {-32768, 0x63B66782u}, {8000, 0x5EFDAD62u}, {2400, 0x446D5673u}};
  vt::for_each_level([&](int level) {
    for (const Case& c : cases) {
      Vsp32s r[11];
      ASSERT_EQ(legacy90vspsAutoCorr_GSMAMR_16s32s(constant(c.level).data(), r, vspRate5900), vspStsNoErr);
      EXPECT_EQ(static_cast<uint32_t>(r[0]), c.r0) << "level " << level << ", constant " << c.level;
      if (c.level == 0)
        for (int i = 1; i < 11; ++i) EXPECT_EQ(r[i], 0);
    }
  });
}

// An impulse at the window peak: y = 16384 exactly, r[0] = (2*2^28+1) << 1,
// r[1..10] = 0. Locates each window's peak and the order of the two 12.2
// analyses.
TEST(AmrAutoCorr, WindowPerModeAndAnalysisOrder) {
  struct Case {
    int mode, position, analysis;
  };
  const Case cases[] = {{vspRate5900, 199, 0},  {vspRate4750, 200, 0},  {vspRateDTX, 199, 0},  {vspRate12200, 159, 0},
                        {vspRate12200, 160, 0}, {vspRate12200, 231, 1}, {vspRate12200, 232, 1}};
  vt::for_each_level([&](int level) {
    for (const Case& c : cases) {
      std::vector<int16_t> x(240, 0);
      x[c.position] = 16384;
      Vsp32s r[22];
      ASSERT_EQ(legacy90vspsAutoCorr_GSMAMR_16s32s(x.data(), r, c.mode), vspStsNoErr);
      EXPECT_EQ(r[11 * c.analysis], 0x40000002) << "level " << level << " mode " << c.mode << " at " << c.position;
      for (int i = 1; i < 11; ++i) EXPECT_EQ(r[11 * c.analysis + i], 0);
      if (c.mode == vspRate12200) EXPECT_NE(r[11 * (1 - c.analysis)], 0x40000002);  // off the other peak
    }
  });
}

std::vector<Vsp16s> sentinel_lpc() { return std::vector<Vsp16s>(11, 0x5A5A); }

// Status 12 leaves pDstLpc untouched; the caller keeps its previous filter.
TEST(AmrLevinson, UnusableOrUnstableInputWritesNothing) {
  const int32_t n = 1 << 30;
  const std::vector<std::vector<int32_t>> cases = {
      {65535, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},            // |r[0]| below 65536
      {-65535, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},           // idem, negative
      {n, n, 0, 0, 0, 0, 0, 0, 0, 0, 0},                // r[1] = r[0]: the K test at a later order
      {n, 2 * (n - 1), 0, 0, 0, 0, 0, 0, 0, 0, 0},      // |r[1]| > r[0]: quotient saturates
      {n, 0, -(n - n / 4000), 0, 0, 0, 0, 0, 0, 0, 0},  // K2 = 0.99975: high word 32759 > 32750
  };
  vt::for_each_level([&](int level) {
    for (const auto& r : cases) {
      auto a = sentinel_lpc();
      EXPECT_EQ(legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r.data(), a.data()), vspStsLPCUnstable)
          << "level " << level << " r0 " << r[0] << " r1 " << r[1] << " r2 " << r[2];
      EXPECT_EQ(a, sentinel_lpc());
    }
  });
}

// Order 1 has no stability test: an AR(1) autocorrelation with rho = 0.9995
// (K1 high word -32751) still gives a[1] = -0.9995 in Q12 and a flat rest.
TEST(AmrLevinson, FirstOrderCoefficientIsNotTested) {
  std::vector<int32_t> r(11);
  double v = 1073741824.0;
  for (auto& x : r) {
    x = static_cast<int32_t>(v);
    v *= 0.9995;
  }
  vt::for_each_level([&](int level) {
    auto a = sentinel_lpc();
    ASSERT_EQ(legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r.data(), a.data()), vspStsNoErr) << "level " << level;
    EXPECT_EQ(a[0], 4096);
    EXPECT_NEAR(a[1], -4094, 2);
    for (int i = 2; i < 11; ++i) EXPECT_NEAR(a[i], 0, 2) << i;
  });
}

// Inputs outside the reference's division domain run to a deterministic end
// (documented decision): no correlation gives the identity filter.
TEST(AmrLevinson, UnnormalisedOrNegativeR0RunsDeterministically) {
  for (const int32_t r0 : {65536, 0x3FFEFFFF, -(1 << 30)}) {
    std::vector<int32_t> r(11, 0);
    r[0] = r0;
    vt::for_each_level([&](int level) {
      auto a = sentinel_lpc();
      ASSERT_EQ(legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r.data(), a.data()), vspStsNoErr) << "level " << level;
      EXPECT_EQ(a, (std::vector<Vsp16s>{4096, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0})) << "r0 " << r0;
    });
  }
}

TEST(AmrLsfToLsp, TableEndsClampAndNegativeStop) {
  const std::vector<int16_t> lsf = {0, 4096, 8192, 16383, 16384, 20000, 32767, 255, 256, 12000};
  // 255 ends interval 0 at table[1] - 38*255/256 floor = 32729, where interval 1 starts.
  const std::vector<int16_t> expectedHead = {32767, 23170, 0, -32768, -32729, -32734, -32768, 32729, 32729};
  vt::for_each_level([&](int level) {
    std::vector<int16_t> lsp(10, 0x1111);
    ASSERT_EQ(legacy90vspsLSFToLSP_GSMAMR_16s(lsf.data(), lsp.data()), vspStsNoErr);
    EXPECT_EQ(std::vector<int16_t>(lsp.begin(), lsp.begin() + 9), expectedHead) << "level " << level;

    std::vector<int16_t> bad = lsf;
    bad[3] = -1;
    std::vector<int16_t> part(10, 0x1111);
    EXPECT_EQ(legacy90vspsLSFToLSP_GSMAMR_16s(bad.data(), part.data()), vspStsLSFRangeErr);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(part[i], i < 3 ? lsp[i] : 0x1111) << i;
  });
}

// A strongly non-minimum-phase filter (A(z) = 1 + 2 z^-10) has fewer than 10
// roots on the unit circle: the previous LSPs come back with status 0.
TEST(AmrLpcToLsp, FewerThanTenRootsKeepsPreviousLsp) {
  std::vector<int16_t> a(11, 0);
  a[0] = 4096;
  a[10] = 8192;
  const std::vector<int16_t> prev(amrt::kResetLsp.begin(), amrt::kResetLsp.end());
  vt::for_each_level([&](int level) {
    std::vector<int16_t> lsp(10, 0);
    EXPECT_EQ(legacy90vspsLPCToLSP_GSMAMR_16s(a.data(), prev.data(), lsp.data()), vspStsNoErr);
    EXPECT_EQ(lsp, prev) << "level " << level;
  });
}

// LSPToLPC is the G.729 routine, on ordered and arbitrary vectors alike.
TEST(AmrLspToLpc, SameAsG729Routine) {
  std::mt19937 rng(11);
  vt::for_each_level([&](int level) {
    for (int trial = 0; trial < 200; ++trial) {
      std::vector<int16_t> lsp = amrt::random_lsp(rng);
      if (trial % 2) std::generate(lsp.begin(), lsp.end(), [&] { return static_cast<int16_t>(rng()); });
      std::vector<int16_t> amr(11), g729(11);
      ASSERT_EQ(legacy90vspsLSPToLPC_GSMAMR_16s(lsp.data(), amr.data()), vspStsNoErr);
      ASSERT_EQ(legacy90vspsLSPToLPC_G729_16s(lsp.data(), g729.data()), vspStsNoErr);
      ASSERT_EQ(amr, g729) << "level " << level << " trial " << trial;
    }
  });
}

TEST(AmrInterpolate, InPlaceAndFloorShifts) {
  const std::vector<int16_t> cur = {-1, -32768, 32767, 4, -4, 100, 0, 7};
  const std::vector<int16_t> prev = {-1, -32768, 32767, -4, 4, 0, 100, 7};
  // prev - (prev >> 2) + (cur >> 2), floor shifts
  const std::vector<int16_t> expected = {-1, -32768, 32767, -2, 2, 25, 75, 7};
  vt::for_each_level([&](int level) {
    std::vector<int16_t> out(8), a = cur, b = prev;
    ASSERT_EQ(legacy90vspsInterpolate_GSMAMR_16s(cur.data(), prev.data(), out.data(), 8), vspStsNoErr);
    EXPECT_EQ(out, expected) << "level " << level;
    ASSERT_EQ(legacy90vspsInterpolate_GSMAMR_16s(a.data(), prev.data(), a.data(), 8), vspStsNoErr);
    ASSERT_EQ(legacy90vspsInterpolate_GSMAMR_16s(cur.data(), b.data(), b.data(), 8), vspStsNoErr);
    EXPECT_EQ(a, expected);
    EXPECT_EQ(b, expected);
  });
}

TEST(AmrPreemphasize, SaturationAndMemory) {
  struct Case {
    int16_t gamma, mem, x, y;
  };
  const Case cases[] = {
      {-32768, -32768, 0, -32767},                                 // mult(-32768, -32768) saturates to 32767
      {-32768, -32768, -32768, -32768},                            // and the difference saturates
      {32767, 32767, -32768, -32768},   {22938, 1000, 1000, 300},  // 0.7: 1000 - floor(700.0...)
      {22938, -1000, 0, 701},                                      // floor of -700.0... is -701
  };
  vt::for_each_level([&](int level) {
    for (const Case& c : cases) {
      int16_t mem = c.mem, y = 0;
      ASSERT_EQ(legacy90vspsPreemphasize_GSMAMR_16s(c.gamma, &c.x, &y, 1, &mem), vspStsNoErr);
      EXPECT_EQ(y, c.y) << "level " << level << " gamma " << c.gamma << " mem " << c.mem << " x " << c.x;
      EXPECT_EQ(mem, c.x);
    }
    // In place over a block equals the out-of-place result.
    std::mt19937 rng(3);
    std::vector<int16_t> x(160);
    for (auto& v : x) v = static_cast<int16_t>(rng());
    std::vector<int16_t> y(160), z = x;
    int16_t m1 = 123, m2 = 123;
    ASSERT_EQ(legacy90vspsPreemphasize_GSMAMR_16s(-22938, x.data(), y.data(), 160, &m1), vspStsNoErr);
    ASSERT_EQ(legacy90vspsPreemphasize_GSMAMR_16s(-22938, z.data(), z.data(), 160, &m2), vspStsNoErr);
    EXPECT_EQ(y, z);
    EXPECT_EQ(m1, x[159]);
    EXPECT_EQ(m2, x[159]);
  });
}

}  // namespace
