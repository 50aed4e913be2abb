// LP <-> LSP conversions: reference anchors of the G.729 fixed-point
// arithmetic, the fallback (also in place) and the round trip.
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

}  // namespace
