// The Annex E quantiser against the main-body quantiser: same codes and
// quantised LSP, its residual equal to the row the main body pushes into the
// memory, the memory itself untouched; the float twin close to both.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/g729/g729_test_util.h"

namespace {

using g729t::V16;

TEST(G729AnnexE, MatchesTheMainBodyQuantiserWithoutUpdatingTheMemory) {
  std::mt19937 rng(31);
  V16 mem = g729t::reset_memory();
  int floatSameCodes = 0;
  const int frames = 400;
  for (int n = 0; n < frames; ++n) {
    const V16 lsp = g729t::random_lsp(rng);
    V16 qE(10), cur(10), wordsE(2);
    const V16 memBefore = mem;
    ASSERT_EQ(legacy90vspsLSPQuant_G729E_16s(lsp.data(), mem.data(), qE.data(), cur.data(), wordsE.data()),
              vspStsNoErr);
    ASSERT_EQ(mem, memBefore);
    V16 q(10), words(2);
    ASSERT_EQ(legacy90vspsLSPQuant_G729_16s(lsp.data(), mem.data(), q.data(), words.data()), vspStsNoErr);
    EXPECT_EQ(wordsE, words);
    EXPECT_EQ(qE, q);
    EXPECT_EQ(cur, V16(mem.begin(), mem.begin() + 10));  // the main body pushed the residual

    std::vector<Vsp32f> lspF(10), memF(40), qF(10), curF(10);
    for (int i = 0; i < 10; ++i) lspF[i] = static_cast<float>(lsp[i]) / 32768.0f;
    for (int i = 0; i < 40; ++i) memF[i] = static_cast<float>(memBefore[i]) / 8192.0f;
    int wordsF[2];
    ASSERT_EQ(legacy90vspsLSPQuant_G729E_32f(lspF.data(), memF.data(), qF.data(), curF.data(), wordsF), vspStsNoErr);
    if (wordsF[0] == words[0] && wordsF[1] == words[1]) {
      ++floatSameCodes;
      for (int i = 0; i < 10; ++i) {
        EXPECT_NEAR(qF[i], q[i] / 32768.0, 2e-3) << n;
        EXPECT_NEAR(curF[i], cur[i] / 8192.0, 2e-3) << n;
      }
    }
  }
  EXPECT_GT(floatSameCodes, frames * 9 / 10);  // near-ties may go the other way in float
}

}  // namespace
