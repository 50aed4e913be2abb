// Generic harnesses over every export's contract: argument checks in their
// stated order with nothing written on failure, and identical results at
// every supported processor level (random, non-finite and hostile inputs).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <span>

#include "tests/support/contract.h"
#include "tests/support/exports.h"
#include "tests/support/fuzz_hooks.h"
#include "tests/support/levels.h"

namespace {

// The contracts a suite applies to, by name (a suite is instantiated only
// for these, so no case is skipped for an export it does not concern).
std::vector<const vt::Contract*> contract_list(bool (*applies)(const vt::Contract&) = nullptr) {
  std::vector<const vt::Contract*> v;
  for (const vt::Contract& c : vt::all_contracts())
    if (applies == nullptr || applies(c)) v.push_back(&c);
  std::sort(v.begin(), v.end(), [](auto* a, auto* b) { return a->name < b->name; });
  return v;
}

// The float arrays of an export's parameters (single and double precision,
// complex included).
std::vector<const vt::ParamInfo*> float_params(const vt::Contract& c) {
  std::vector<const vt::ParamInfo*> floats;
  for (const vt::ParamInfo& p : vt::find_export(c.name)->params) {
    const vt::Elem e = p.isFrames() ? p.frameElem : p.elem;
    if (p.isPointer && (e == vt::Elem::F32 || e == vt::Elem::C32F || e == vt::Elem::F64)) floats.push_back(&p);
  }
  return floats;
}

bool same_at_every_level(const vt::Contract& c) { return c.sameAtEveryLevel; }
bool same_at_every_level_and_reads_floats(const vt::Contract& c) {
  return c.sameAtEveryLevel && vt::find_export(c.name) != nullptr && !float_params(c).empty();
}

std::string contract_name(const testing::TestParamInfo<const vt::Contract*>& info) { return info.param->name; }

bool disjoint(const vt::Check& a, const vt::Check& b) {
  for (const std::string& x : a.touches)
    if (std::find(b.touches.begin(), b.touches.end(), x) != b.touches.end()) return false;
  return true;
}

TEST(ContractCoverage, EveryExportHasAContract) {
  for (const vt::ExportInfo& e : vt::all_exports())
    EXPECT_NE(vt::find_contract(e.name), nullptr) << e.name << " has no contract in tests/<family>/";
}

TEST(ContractCoverage, EveryContractNamesAnExport) {
  for (const vt::Contract& c : vt::all_contracts()) EXPECT_NE(vt::find_export(c.name), nullptr) << c.name;
}

class ArgumentChecks : public testing::TestWithParam<const vt::Contract*> {};

TEST_P(ArgumentChecks, ValidCallSucceeds) {
  const vt::Contract& c = *GetParam();
  vt::Call call = c.valid();
  const int64_t st = call.invoke();
  if (call.fn().returnsStatus)
    EXPECT_NE(std::find(c.validStatuses.begin(), c.validStatuses.end(), st), c.validStatuses.end())
        << call.describe() << " returned " << st;
}

vt::Call random_valid(const vt::Contract& c, std::mt19937& rng);

// The valid call (its scalars, on which the checks build) with the input
// contents of a random valid call.
vt::Call valid_with_random_contents(const vt::Contract& c, std::mt19937& rng) {
  vt::Call call = c.valid();
  vt::Call random = random_valid(c, rng);
  for (const vt::ParamInfo& p : call.fn().params) {
    if (!p.isPointer || p.elem == vt::Elem::Opaque || !call.has(p.name) || !random.has(p.name)) continue;
    const vt::Role r = call.role(p.name);
    // Frames: the contracts' pointer arrays have their own backing (as fz::fill_inputs assumes).
    if (r != vt::Role::In && r != vt::Role::InOut && r != vt::Role::Frames) continue;
    const auto from = random.buf<uint8_t>(p.name);
    const auto to = call.buf<uint8_t>(p.name);
    std::memcpy(to.data(), from.data(), std::min(from.size(), to.size()));
  }
  return call;
}

// Each check alone gives its status and leaves every buffer as it was, on
// the valid call and on random contents (where a write before the check
// changes something: on the valid call's zeros it may not show).
TEST_P(ArgumentChecks, EachCheckFailsAndWritesNothing) {
  const vt::Contract& c = *GetParam();
  std::mt19937 rng(static_cast<uint32_t>(std::hash<std::string>{}(c.name)) + 3u);
  for (const vt::Check& check : c.ordered_checks())
    for (int trial = 0; trial < 4; ++trial) {
      vt::Call call = trial == 0 ? c.valid() : valid_with_random_contents(c, rng);
      check.apply(call);
      const auto before = call.snapshot();
      const int64_t st = call.invoke();
      EXPECT_EQ(st, check.expected) << check.label << " (trial " << trial << "): " << call.describe();
      if (check.expected < 0) EXPECT_TRUE(call.snapshot() == before) << check.label << " wrote to a buffer";
    }
}

// Two failing checks together: the one listed first wins.
TEST_P(ArgumentChecks, EarlierCheckWins) {
  const vt::Contract& c = *GetParam();
  const auto checks = c.ordered_checks();
  for (std::size_t i = 0; i < checks.size(); ++i)
    for (std::size_t j = i + 1; j < checks.size(); ++j) {
      if (!disjoint(checks[i], checks[j]) || checks[i].expected == checks[j].expected) continue;
      vt::Call call = c.valid();
      checks[j].apply(call);
      checks[i].apply(call);
      const auto before = call.snapshot();
      EXPECT_EQ(call.invoke(), checks[i].expected) << checks[i].label << " with " << checks[j].label;
      EXPECT_TRUE(call.snapshot() == before) << checks[i].label << " with " << checks[j].label;
    }
}

INSTANTIATE_TEST_SUITE_P(All, ArgumentChecks, testing::ValuesIn(contract_list()), contract_name);

class LevelsAgree : public testing::TestWithParam<const vt::Contract*> {};

// The contract's valid call with random valid contents.
vt::Call random_valid(const vt::Contract& c, std::mt19937& rng) {
  vt::Call base = c.valid();
  if (c.randomize)
    c.randomize(base, rng);
  else
    base.randomize_inputs(rng);
  return base;
}

// Runs copies of the call at every level this machine supports: the same
// status and the same bytes in every buffer as at level 0.
void expect_same_at_every_level(const vt::Call& base, int trial) {
  std::vector<std::vector<uint8_t>> reference;
  int64_t referenceStatus = 0;
  vt::for_each_level([&](int level) {
    vt::Call call = base;
    const int64_t st = call.invoke();
    if (level == 0) {
      reference = call.snapshot();
      referenceStatus = st;
      return;
    }
    EXPECT_EQ(st, referenceStatus) << "trial " << trial << " at " << vt::level_name(level);
    EXPECT_TRUE(call.snapshot() == reference)
        << "trial " << trial << " at " << vt::level_name(level) << ": " << call.describe();
  });
}

// Valid calls on random inputs give the same status and the same bytes in
// every buffer at every level this machine supports.
TEST_P(LevelsAgree, OnRandomValidCalls) {
  const vt::Contract& c = *GetParam();
  std::mt19937 rng(static_cast<uint32_t>(std::hash<std::string>{}(c.name)));
  for (int trial = 0; trial < c.randomTrials; ++trial) {
    vt::Call base = c.valid();
    if (trial > 0) {
      if (c.randomize)
        c.randomize(base, rng);
      else
        base.randomize_inputs(rng);
    }
    expect_same_at_every_level(base, trial);
    if (HasFailure()) break;
  }
}

// Exports that differ by level by design are not instantiated.
INSTANTIATE_TEST_SUITE_P(All, LevelsAgree, testing::ValuesIn(contract_list(same_at_every_level)), contract_name);

// Non-finite floating-point inputs: NaNs of random sign and payload (two
// different NaNs meeting in one addition keep the one the code generator
// put first, which may differ by level) and infinities, sprinkled over the
// random valid inputs of every export that reads floats. Outputs and states
// must still agree byte for byte at every level.
class LevelsAgreeNonFinite : public testing::TestWithParam<const vt::Contract*> {};

template <class T, class Bits>
void sprinkle(std::span<T> v, std::mt19937& rng) {
  for (T& x : v) {
    const uint32_t pick = rng() % 16;
    if (pick > 2) continue;
    Bits bits;
    if constexpr (sizeof(T) == 4)
      bits = pick == 2 ? 0x7F800000u : (0x7F800000u | (static_cast<uint32_t>(rng()) & 0x7FFFFFu) | 1u);
    else
      bits = pick == 2 ? 0x7FF0000000000000ull
                       : (0x7FF0000000000000ull | ((uint64_t(rng()) << 32 | rng()) & 0xFFFFFFFFFFFFFull) | 1u);
    if (rng() & 1) bits |= Bits(1) << (8 * sizeof(T) - 1);
    std::memcpy(&x, &bits, sizeof x);
  }
}

TEST_P(LevelsAgreeNonFinite, OnNaNsAndInfinitiesInTheInputs) {
  const vt::Contract& c = *GetParam();
  const std::vector<const vt::ParamInfo*> floats = float_params(c);
  std::mt19937 rng(static_cast<uint32_t>(std::hash<std::string>{}(c.name)) + 1u);
  for (int trial = 0; trial < c.randomTrials; ++trial) {
    vt::Call base = random_valid(c, rng);
    for (const vt::ParamInfo* p : floats) {
      const vt::Role r = base.role(p->name);
      if (r != vt::Role::In && r != vt::Role::InOut && r != vt::Role::Frames) continue;
      // Each array in every other trial or so, so that calls which refuse
      // a NaN in one argument (a step size) still run on NaNs in the others.
      if (rng() % 2 == 0) continue;
      const vt::Elem e = p->isFrames() ? p->frameElem : p->elem;
      if (e == vt::Elem::F64)
        sprinkle<double, uint64_t>(base.buf<double>(p->name), rng);
      else
        sprinkle<float, uint32_t>(base.buf<float>(p->name), rng);
    }
    expect_same_at_every_level(base, trial);
    if (HasFailure()) break;
  }
}

// Only exports that read floating-point arrays.
INSTANTIATE_TEST_SUITE_P(All, LevelsAgreeNonFinite,
                         testing::ValuesIn(contract_list(same_at_every_level_and_reads_floats)), contract_name);

// Hostile contents: on the contract's random valid scalars, every input
// word is redrawn as -32768, 32767, uniform or small (vt::Adversarial), so
// that the saturating arithmetic saturates and searches meet ties at their
// caps; statuses and bytes must still agree at every level.
class LevelsAgreeHostile : public testing::TestWithParam<const vt::Contract*> {};

TEST_P(LevelsAgreeHostile, OnFullScaleInputs) {
  const vt::Contract& c = *GetParam();
  if (!c.sameAtEveryLevel) GTEST_SKIP() << "differs by level by design";
  const auto seed = static_cast<uint32_t>(std::hash<std::string>{}(c.name)) + 2u;
  std::mt19937 rng(seed);
  vt::Adversarial words(seed);
  for (int trial = 0; trial < c.hostileTrials; ++trial) {
    vt::Call base = random_valid(c, rng);
    vt::fz::fill_inputs(base, words);
    expect_same_at_every_level(base, trial);
    if (HasFailure()) break;
  }
}

INSTANTIATE_TEST_SUITE_P(All, LevelsAgreeHostile, testing::ValuesIn(contract_list()), contract_name);

}  // namespace
