// Cross-level checks of the GSM-AMR vector kernels on adversarial inputs
// (full-scale values that saturate the reference arithmetic): every level
// must give level 0's bits.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

#include "tests/support/adversarial.h"
#include "vsps.h"

namespace {

struct QuantOut {
  VspStatus status = 0;
  std::vector<int16_t> q, idx, pastRq;
  bool operator==(const QuantOut&) const = default;
};

// Unordered full-scale LSPs and past residuals give saturated LSFs, negative
// and saturated weights and residuals far outside the codebooks: errors at
// the cap (ties to the first row), saturating subtractions and additions
// (signed search), and ordinary minima in between.
TEST(AmrVectorKernels, VqSearchesAgreeOnSaturatingInputs) {
  for (int mode : {vspRate4750, vspRate5150, vspRate6700, vspRate7950, vspRate12200}) {
    std::mt19937 rng(static_cast<unsigned>(mode) + 26073);
    std::set<int> firstIndices;
    for (int trial = 0; trial < 600; ++trial) {
      const int spread = trial % 3 == 0 ? 32000 : 3000;
      const std::vector<int16_t> lsp = vt::adversarial16(rng, 20, spread);
      const std::vector<int16_t> pastRq = vt::adversarial16(rng, 10, spread);
      const QuantOut out = vt::expect_levels_agree(
          [&] {
            QuantOut o{0, std::vector<int16_t>(20), std::vector<int16_t>(5), pastRq};
            o.status = legacy90vspsLSPQuant_GSMAMR_16s(lsp.data(), o.pastRq.data(), o.q.data(), o.idx.data(), mode);
            return o;
          },
          "mode " + std::to_string(mode) + " trial " + std::to_string(trial));
      firstIndices.insert(out.idx[2]);
      if (HasFailure()) return;
    }
    EXPECT_GT(firstIndices.size(), 20u) << "mode " << mode;
  }
}

}  // namespace

// Windowing (mult_r), the energy test and the cross sums of both window
// sets: full-scale frames need one or two divisions by 4.
TEST(AmrVectorKernels, AutocorrelationAgreesOnFullScaleInputs) {
  std::mt19937 rng(2407);
  for (int trial = 0; trial < 600; ++trial) {
    const std::vector<int16_t> x = vt::adversarial16(rng, 240, trial % 2 ? 32767 : 2000);
    const int mode = trial % 3 ? vspRate4750 : vspRate12200;
    vt::expect_levels_agree(
        [&] {
          std::vector<int32_t> r(22);
          legacy90vspsAutoCorr_GSMAMR_16s32s(x.data(), r.data(), mode);
          return r;
        },
        "AutoCorr trial " + std::to_string(trial));
    if (HasFailure()) return;
  }
}

// Pre-emphasis: full-scale samples and gamma (mult saturating at -32768 x
// -32768, sub saturating), every length 1..70, in place and out of place.
TEST(AmrVectorKernels, PreemphasisAgreesOnFullScaleInputs) {
  std::mt19937 rng(1601);
  for (int len = 1; len <= 70; ++len) {
    const std::vector<int16_t> x = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
    const int16_t gamma = len % 3 == 0 ? INT16_MIN : vt::adversarial16(rng, 32767);
    for (bool inPlace : {false, true}) {
      vt::expect_levels_agree(
          [&] {
            std::vector<int16_t> buf = x, out(x.size());
            int16_t mem = len % 2 ? INT16_MIN : 123;
            legacy90vspsPreemphasize_GSMAMR_16s(gamma, buf.data(), inPlace ? buf.data() : out.data(), len, &mem);
            std::vector<int16_t> r = inPlace ? buf : out;
            r.push_back(mem);
            return r;
          },
          "Preemphasize len " + std::to_string(len));
    }
    if (HasFailure()) return;
  }
}

// First-subframe interpolation: full-scale vectors (saturating sub and add),
// every length 1..70, with the output on either source, apart, or
// overlapping a source at an offset (the scalar order at every level).
TEST(AmrVectorKernels, InterpolationAgreesOnFullScaleAndAliasedInputs) {
  std::mt19937 rng(1300);
  for (int len = 1; len <= 70; ++len) {
    const std::vector<int16_t> cur = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
    const std::vector<int16_t> prev = vt::adversarial16(rng, static_cast<std::size_t>(len), 32767);
    for (int layout = 0; layout < 4; ++layout) {
      vt::expect_levels_agree(
          [&] {
            std::vector<int16_t> buf(3 * static_cast<std::size_t>(len) + 8);
            std::copy(cur.begin(), cur.end(), buf.begin());
            std::copy(prev.begin(), prev.end(), buf.begin() + len + 4);
            int16_t* c = buf.data();
            int16_t* p = buf.data() + len + 4;
            int16_t* d = layout == 0 ? buf.data() + 2 * len + 8 : (layout == 1 ? c : (layout == 2 ? p : c + 3));
            legacy90vspsInterpolate_GSMAMR_16s(c, p, d, len);
            return buf;
          },
          "Interpolate len " + std::to_string(len) + " layout " + std::to_string(layout));
    }
    if (HasFailure()) return;
  }
}
