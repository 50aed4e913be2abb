// Generic harnesses over every export's contract: argument checks in their
// stated order with nothing written on failure, and identical results at
// every supported processor level.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "tests/support/contract.h"
#include "tests/support/levels.h"

namespace {

std::vector<const vt::Contract*> contract_list() {
  std::vector<const vt::Contract*> v;
  for (const vt::Contract& c : vt::all_contracts()) v.push_back(&c);
  std::sort(v.begin(), v.end(), [](auto* a, auto* b) { return a->name < b->name; });
  return v;
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

// Each check alone gives its status and leaves every buffer as it was.
TEST_P(ArgumentChecks, EachCheckFailsAndWritesNothing) {
  const vt::Contract& c = *GetParam();
  for (const vt::Check& check : c.ordered_checks()) {
    vt::Call call = c.valid();
    check.apply(call);
    const auto before = call.snapshot();
    const int64_t st = call.invoke();
    EXPECT_EQ(st, check.expected) << check.label << ": " << call.describe();
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

// Valid calls on random inputs give the same status and the same bytes in
// every buffer at every level this machine supports.
TEST_P(LevelsAgree, OnRandomValidCalls) {
  const vt::Contract& c = *GetParam();
  if (!c.sameAtEveryLevel) GTEST_SKIP() << "differs by level by design";
  std::mt19937 rng(static_cast<uint32_t>(std::hash<std::string>{}(c.name)));
  for (int trial = 0; trial < c.randomTrials; ++trial) {
    vt::Call base = c.valid();
    if (trial > 0) {
      if (c.randomize)
        c.randomize(base, rng);
      else
        base.randomize_inputs(rng);
    }
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
    if (HasFailure()) break;
  }
}

INSTANTIATE_TEST_SUITE_P(All, LevelsAgree, testing::ValuesIn(contract_list()), contract_name);

}  // namespace
