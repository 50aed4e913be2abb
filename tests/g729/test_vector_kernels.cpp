// Cross-level checks of the G.729 vector kernels on adversarial inputs
// (full-scale values that saturate the reference arithmetic): every level
// must give level 0's bits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <set>
#include <vector>

#include "g729/internal_ops.h"
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

// A stable LP filter (Q12) from random reflection coefficients in -0.9..0.9
// (step-up recursion in double precision).
std::vector<int16_t> stable_lpc(std::mt19937& rng) {
  double a[11] = {1.0};
  for (int i = 1; i <= 10; ++i) {
    const double k = (static_cast<double>(rng() % 1801) - 900.0) / 1000.0;
    double next[11];
    for (int j = 0; j <= 10; ++j) next[j] = a[j] + (j >= 1 && j <= i ? k * a[i - j] : 0.0);
    for (int j = 0; j <= 10; ++j) a[j] = next[j];
  }
  std::vector<int16_t> q(11);
  for (int j = 0; j <= 10; ++j) {
    const double v = a[j] * 4096.0;
    q[static_cast<std::size_t>(j)] = static_cast<int16_t>(v > 32767 ? 32767 : (v < -32768 ? -32768 : v));
  }
  return q;
}

// The Chebyshev evaluations on the grid and the bisection trees: full-scale
// LP coefficients saturate the polynomial sums (the Q10 fallback) and the
// DPF recursion (every saturating step of the evaluation), ordinary ones find
// ten roots; both search variants and the GSM-AMR form.
TEST(G729VectorKernels, RootSearchesAgreeOnSaturatingInputs) {
  using Fn = VspStatus (*)(const Vsp16s*, const Vsp16s*, Vsp16s*);
  const Fn fns[] = {legacy90vspsLPCToLSP_G729_16s, legacy90vspsLPCToLSP_G729A_16s, legacy90vspsLPCToLSP_GSMAMR_16s};
  const std::vector<int16_t> prev = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};
  std::mt19937 rng(3023);
  int tenRoots = 0;
  for (int trial = 0; trial < 1500; ++trial) {
    // Kinds: a stable filter (ten roots); the same with one coefficient at
    // full scale or random; all coefficients adversarial.
    std::vector<int16_t> a = stable_lpc(rng);
    if (trial % 3 == 1) a[1 + rng() % 10] = vt::adversarial16(rng, 32767);
    if (trial % 3 == 2)
      for (int k = 1; k <= 10; ++k) a[static_cast<std::size_t>(k)] = vt::adversarial16(rng, trial % 2 ? 32767 : 6000);
    for (Fn fn : fns) {
      const std::vector<int16_t> lsp = vt::expect_levels_agree(
          [&] {
            std::vector<int16_t> out(10);
            fn(a.data(), prev.data(), out.data());
            return out;
          },
          "LPCToLSP trial " + std::to_string(trial));
      tenRoots += lsp != prev;
    }
    if (HasFailure()) return;
  }
  EXPECT_GT(tenRoots, 100);  // the searches found roots, not only the fallback
}

// The vector Chebyshev evaluation itself against the scalar one of level 0,
// point by point: full-scale polynomial coefficients and points saturate
// every step of the DPF recursion (sums, the doubling, the b2 terms, the
// final shift).
TEST(G729VectorKernels, ChebyshevEvaluationAgreesPointByPoint) {
  std::mt19937 rng(1105);
  int saturatedResults = 0;
  for (int trial = 0; trial < 3000; ++trial) {
    const std::vector<int16_t> f = vt::adversarial16(rng, 6, trial % 2 ? 32767 : 3000);
    const std::vector<int16_t> x = vt::adversarial16(rng, 16, 32767);
    const int form = trial % 3;
    std::vector<int16_t> expected(16);
    for (int k = 0; k < 16; ++k)
      expected[static_cast<std::size_t>(k)] =
          vsps::lsp_search_ops(0).chebyshev(x[static_cast<std::size_t>(k)], f.data(), form);
    for (int16_t y : expected) saturatedResults += y == INT16_MAX || y == INT16_MIN;
    for (int level : vt::supported_levels()) {
      std::vector<int16_t> y(16);
      vsps::lsp_search_ops(level).chebyshev_many(x.data(), 16, f.data(), form, y.data());
      ASSERT_EQ(y, expected) << "trial " << trial << " at " << vt::level_name(level);
    }
  }
  EXPECT_GT(saturatedResults, 1000);
}

// Windowing, energies and cross sums of the autocorrelations: full-scale
// samples force one or more divisions by 4 (shifted vector sums), every
// length 1..300 exercises the vector blocks and the scalar tails.
TEST(G729VectorKernels, AutocorrelationsAgreeOnFullScaleInputs) {
  std::mt19937 rng(4111);
  for (int len = 1; len <= 300; ++len) {
    const std::vector<int16_t> x = vt::adversarial16(rng, static_cast<std::size_t>(len), len % 2 ? 32767 : 300);
    const int lenDst = len < 13 ? len : 13 + len % 7;
    vt::expect_levels_agree(
        [&] {
          std::vector<int32_t> r(static_cast<std::size_t>(lenDst) + 1);
          int norm = 0;
          legacy90vspsAutoCorr_NormE_16s32s(x.data(), len, r.data(), lenDst, &norm);
          r.back() = norm;
          return r;
        },
        "AutoCorr_NormE len " + std::to_string(len));
    if (HasFailure()) return;
  }
  for (int trial = 0; trial < 300; ++trial) {
    const std::vector<int16_t> x = vt::adversarial16(rng, 240, trial % 2 ? 32767 : 2000);
    vt::expect_levels_agree(
        [&] {
          std::vector<int32_t> r(12);
          int norm = 0;
          legacy90vspsAutoCorr_NormE_G729_16s32s(x.data(), r.data(), 11, &norm);
          r.back() = norm;
          return r;
        },
        "AutoCorr_NormE_G729 trial " + std::to_string(trial));
    if (HasFailure()) return;
  }
}

namespace {

// Float LSF erasure step (128-bit rows at levels 5-6): ordinary LSFs,
// huge, tiny and denormal values, signed zeros, infinities and NaN in the
// memory and the LSFs (NaN results canonical), both predictors, ten calls
// back to back on one memory.
TEST(G729VectorKernels, FloatErasedLsfStepAgreesOnWildInputs) {
  std::mt19937 rng(729);
  auto wild = [&rng] {
    const float u = static_cast<float>(static_cast<int32_t>(rng())) * 0x1p-31f;
    switch (rng() % 8) {
      case 0:
        return u * 3e38f;
      case 1:
        return u * 1e-40f;
      case 2:
        return rng() % 2 ? -0.0f : 0.0f;
      case 3:
        return rng() % 2 ? INFINITY : -INFINITY;
      case 4:
        return rng() % 2 ? NAN : -NAN;
      default:
        return u * 3.1f;
    }
  };
  for (int trial = 0; trial < 40; ++trial) {
    std::vector<float> mem0(40), lsf0(10 * 10);
    for (auto& v : mem0) v = wild();
    for (auto& v : lsf0) v = wild();
    vt::expect_levels_agree(
        [&] {
          std::vector<float> mem = mem0, lsf = lsf0;
          for (int call = 0; call < 10; ++call)
            EXPECT_EQ(legacy90vspsLSFDecodeErased_G729_32f((trial + call) % 2, mem.data(), lsf.data() + 10 * call),
                      vspStsNoErr);
          std::vector<uint32_t> bits(mem.size() + lsf.size());
          std::memcpy(bits.data(), mem.data(), 4 * mem.size());
          std::memcpy(bits.data() + mem.size(), lsf.data(), 4 * lsf.size());
          return bits;
        },
        "LSFDecodeErased_G729_32f trial " + std::to_string(trial));
    if (HasFailure()) return;
  }
}

}  // namespace
