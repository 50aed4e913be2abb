// Cross-level checks of the G.729 vector kernels on adversarial inputs
// (full-scale values that saturate the reference arithmetic): every level
// must give level 0's bits.
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "tests/support/adversarial.h"
#include "vsps.h"

namespace {

// Ten increasing radian LSFs (Q13) in 0..25000.
std::vector<int16_t> ordinary_lsf(std::mt19937& rng) {
  std::vector<int16_t> v(10);
  int x = 0;
  for (auto& e : v) {
    x += 300 + static_cast<int>(rng() % 2200);
    e = static_cast<int16_t>(x > 25000 ? 25000 : x);
  }
  return v;
}

struct QuantOut {
  VspStatus status = 0;
  std::vector<int16_t> q, idx, mem;
  bool operator==(const QuantOut&) const = default;
};

// The two codebook searches: targets far outside the codebooks make the
// distances saturate (keys at the cap, ties resolved to the first row),
// ordinary ones give unsaturated minima.
TEST(G729VectorKernels, LsfQuantiserSearchesAgreeOnSaturatingInputs) {
  std::mt19937 rng(729);
  std::set<int> firstStage;
  for (int trial = 0; trial < 1500; ++trial) {
    // Kinds of trial: everything adversarial; an ordinary LSF vector and
    // memory; an ordinary one with one or two coefficients at full scale.
    const int kind = trial % 3;
    std::vector<int16_t> lsf = ordinary_lsf(rng), mem(40);
    for (int k = 0; k < 40; ++k) mem[static_cast<std::size_t>(k)] = static_cast<int16_t>(ordinary_lsf(rng)[k % 10] / 4);
    if (kind == 0) {
      lsf = vt::adversarial16(rng, 10, 30000);
      mem = vt::adversarial16(rng, 40, 3000);
    } else if (kind == 2) {
      for (int n = 0; n < 2; ++n) lsf[rng() % 10] = vt::adversarial16(rng, 30000);
    }
    const QuantOut out = vt::expect_levels_agree(
        [&] {
          QuantOut o{0, std::vector<int16_t>(10), std::vector<int16_t>(4), mem};
          o.status = legacy90vspsLSFQuant_G729_16s(lsf.data(), o.mem.data(), o.q.data(), o.idx.data());
          return o;
        },
        "LSFQuant trial " + std::to_string(trial));
    firstStage.insert(out.idx[1]);
    if (HasFailure()) return;
  }
  EXPECT_GT(firstStage.size(), 20u);  // the searches really chose among the rows
}

TEST(G729VectorKernels, AnnexEQuantiserAgreesOnSaturatingInputs) {
  std::mt19937 rng(7291);
  for (int trial = 0; trial < 800; ++trial) {
    const std::vector<int16_t> lsp = vt::adversarial16(rng, 10, 32000);
    const std::vector<int16_t> mem = vt::adversarial16(rng, 40, 4000);
    vt::expect_levels_agree(
        [&] {
          std::vector<int16_t> out(22);
          legacy90vspsLSPQuant_G729E_16s(lsp.data(), mem.data(), out.data(), out.data() + 10, out.data() + 20);
          return out;
        },
        "LSPQuant_G729E trial " + std::to_string(trial));
    if (HasFailure()) return;
  }
}

}  // namespace
