// LP <-> LSP conversions: reference anchors of the G.729 fixed-point
// arithmetic, the fallback, aliasing, and the shared root search's
// evaluator forms (also used by GSM-AMR).
#include <gtest/gtest.h>

#include <random>

#include "g729/g729_tables.h"
#include "speech/lpc/lsp_root_search.h"
#include "speech/lpc/lsp_to_lpc.h"
#include "tests/g729/g729_test_util.h"

namespace {

namespace lsp = vsps::VSPS_NS::lsp;
using g729t::V16;

// Values produced by the G.729 reference routines.
const V16 kResetLsp = {31435, 27561, 21458, 13613, 4664, -4659, -13609, -21450, -27556, -31435};

TEST(G729LspToLpc, ReferenceAnchors) {
  V16 a(11);
  ASSERT_EQ(legacy90vspsLSPToLPC_G729_16s(kResetLsp.data(), a.data()), vspStsNoErr);
  EXPECT_EQ(a, (V16{4096, -3, 8, -1, 6, 1, 3, 1, 1, 0, 1}));
  const V16 lsp = {31568, 28144, 22880, 16097, 8138, -413, -9135, -17583, -25081, -30603};
  ASSERT_EQ(legacy90vspsLSPToLPC_G729_16s(lsp.data(), a.data()), vspStsNoErr);
  EXPECT_EQ(a, (V16{4096, -3001, 2000, -1000, 500, -201, 100, -50, 20, -10, 5}));
}

TEST(G729LpcToLsp, ReferenceAnchors) {
  const V16 prev(10, 0);
  V16 out(10);
  const V16 flat = {4096, -3, 8, -1, 6, 1, 3, 1, 1, 0, 1};
  ASSERT_EQ(legacy90vspsLPCToLSP_G729_16s(flat.data(), prev.data(), out.data()), vspStsNoErr);
  EXPECT_EQ(out, (V16{31436, 27562, 21457, 13613, 4664, -4657, -13607, -21448, -27556, -31435}));
  const V16 a = {4096, -3000, 2000, -1000, 500, -200, 100, -50, 20, -10, 5};
  ASSERT_EQ(legacy90vspsLPCToLSP_G729_16s(a.data(), prev.data(), out.data()), vspStsNoErr);
  EXPECT_EQ(out, (V16{31568, 28144, 22880, 16097, 8138, -413, -9135, -17583, -25081, -30603}));
}

// A filter with all its zeros outside the unit circle has no interlaced
// roots on the grid: both variants copy the previous LSP, also in place.
TEST(G729LpcToLsp, FallsBackToThePreviousLspAlsoInPlace) {
  const V16 a = {4096, 32767, 32767, 32767, 32767, 32767, 32767, 32767, 32767, 32767, 32767};
  for (auto fn : {legacy90vspsLPCToLSP_G729_16s, legacy90vspsLPCToLSP_G729A_16s}) {
    V16 out(10, 7);
    EXPECT_EQ(fn(a.data(), kResetLsp.data(), out.data()), vspStsNoErr);
    EXPECT_EQ(out, kResetLsp);
    V16 inplace = kResetLsp;
    EXPECT_EQ(fn(a.data(), inplace.data(), inplace.data()), vspStsNoErr);
    EXPECT_EQ(inplace, kResetLsp);
  }
}

// Round trip LSP -> LP -> LSP on well-separated random LSPs: both grids
// find all ten roots, close to the originals, whenever the Q11 form holds.
TEST(G729LpcToLsp, RoundTripOfSeparatedLsps) {
  std::mt19937 rng(3);
  for (int k = 0; k < 300; ++k) {
    const V16 lsp = g729t::random_lsp(rng, 0.1);
    const V16 a = g729t::lpc_of(lsp);
    int16_t f1[6], f2[6];
    if (lsp::sum_diff_polys_q11(a.data(), f1, f2)) continue;  // the coarse Q10 form may miss roots
    const V16 prev(10, 1);
    for (auto fn : {legacy90vspsLPCToLSP_G729_16s, legacy90vspsLPCToLSP_G729A_16s}) {
      V16 out(10);
      ASSERT_EQ(fn(a.data(), prev.data(), out.data()), vspStsNoErr);
      for (int i = 0; i < 10; ++i) ASSERT_NEAR(out[i], lsp[i], 80) << "case " << k << " index " << i;
    }
  }
}

// The three evaluator forms compute the same polynomial value in different
// fixed-point layouts: they agree within a few LSB of the Q14 result, and the
// Q11 polynomials of a filter are those in Q10 scaled by two.
TEST(LspRootSearch, EvaluatorFormsAgree) {
  std::mt19937 rng(5);
  for (int k = 0; k < 200; ++k) {
    const V16 a = g729t::lpc_of(g729t::random_lsp(rng));
    int16_t f1[6], f2[6], g1[6], g2[6];
    if (lsp::sum_diff_polys_q11(a.data(), f1, f2)) continue;  // no Q11 form
    lsp::sum_diff_polys_q10(a.data(), g1, g2);
    for (int i = 0; i <= 5; ++i) {
      EXPECT_NEAR(f1[i], 2 * g1[i], i);  // each recursion step floors once more
      EXPECT_NEAR(f2[i], 2 * g2[i], i);
    }
    for (int x = -32760; x <= 32760; x += 4095) {
      const int16_t x16 = static_cast<int16_t>(x);
      const int q11 = lsp::chebyshev(x16, f1, lsp::kChebyshevQ11);
      const int q10 = lsp::chebyshev(x16, g1, lsp::kChebyshevQ10);
      const int amr = lsp::chebyshev(x16, g1, lsp::kChebyshevAmrQ10);
      EXPECT_NEAR(q10, amr, 2);
      EXPECT_NEAR(q11, amr, 80);  // Q10 coefficients are coarser by 16 Q14 LSB
    }
  }
}

// Coefficients whose half sums exceed the Q11 range switch to Q10.
TEST(LspRootSearch, Q11OverflowIsDetected) {
  const V16 big = {4096, 30000, -30000, 0, 0, 0, 0, 0, 0, -30000, 30000};
  int16_t f1[6], f2[6];
  EXPECT_TRUE(lsp::sum_diff_polys_q11(big.data(), f1, f2));
  const V16 small = {4096, -3000, 2000, -1000, 500, -200, 100, -50, 20, -10, 5};
  EXPECT_FALSE(lsp::sum_diff_polys_q11(small.data(), f1, f2));
}

// The root search with the AMR evaluator on Q10 polynomials finds the same
// ten roots (within interpolation error) as the G.729 Q11 search.
TEST(LspRootSearch, AmrFormFindsTheSameRoots) {
  const lsp::SearchGrid kGridG729{vsps::tables::g729::kGrid60Q15, 60, 4};
  std::mt19937 rng(9);
  for (int k = 0; k < 100; ++k) {
    const V16 a = g729t::lpc_of(g729t::random_lsp(rng, 0.1));
    int16_t f1[6], f2[6], g1[6], g2[6], r11[10], r10[10];
    if (lsp::sum_diff_polys_q11(a.data(), f1, f2)) continue;  // no Q11 form
    lsp::sum_diff_polys_q10(a.data(), g1, g2);
    ASSERT_EQ(lsp::find_roots(f1, f2, lsp::kChebyshevQ11, kGridG729, r11), 10);
    ASSERT_EQ(lsp::find_roots(g1, g2, lsp::kChebyshevAmrQ10, kGridG729, r10), 10);
    for (int i = 0; i < 10; ++i) EXPECT_NEAR(r11[i], r10[i], 64);
  }
}

}  // namespace
