#include "tests/support/fuzz_driver.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>

#include "tests/support/levels.h"

namespace vt {

const std::vector<const Contract*>& fuzz_targets() {
  static const std::vector<const Contract*> list = [] {
    std::vector<const Contract*> v;
    for (const Contract& c : all_contracts()) v.push_back(&c);
    std::sort(v.begin(), v.end(), [](auto* a, auto* b) { return a->name < b->name; });
    return v;
  }();
  return list;
}

namespace {

void default_fill(Call& call, FuzzInput& in) {
  for (const ParamInfo& p : call.fn().params) {
    if (!p.isPointer || !call.has(p.name) || p.elem == Elem::Opaque || p.elem == Elem::Pointer) continue;
    const Role r = call.role(p.name);
    if (r == Role::In || r == Role::InOut) in.fill(p.name, call.buf<uint8_t>(p.name));
  }
}

bool touches_any(const Check& c, const std::vector<std::string>& used) {
  for (const std::string& t : c.touches)
    if (std::find(used.begin(), used.end(), t) != used.end()) return true;
  return false;
}

}  // namespace

std::string fuzz_one(FuzzInput& in) {
  const auto& targets = fuzz_targets();
  if (targets.empty()) return "";
  const Contract& c = *targets[static_cast<std::size_t>(in.scalar("export", 0, int64_t(targets.size()) - 1))];
  Call call = c.valid();
  int expected = INT_MIN;
  bool mayWrite = false;
  if (c.fuzz) {
    try {
      if (!c.fuzz(call, in)) return "";
    } catch (const FuzzSkip&) {
      return "";
    }
    if (in.expected() != FuzzInput::kUnknown) expected = in.expected();
    mayWrite = in.may_write();
  } else {
    default_fill(call, in);
    std::vector<std::string> used;
    for (const Check& check : c.ordered_checks()) {
      if (!in.choice("check") || touches_any(check, used)) continue;
      check.apply(call);
      if (expected == INT_MIN) expected = check.expected;
      used.insert(used.end(), check.touches.begin(), check.touches.end());
    }
  }

  const auto before = call.snapshot();
  Call low = call, high = call;
  int64_t stLow = 0, stHigh = 0;
  {
    ScopedLevel level(0);
    stLow = low.invoke();
  }
  {
    ScopedLevel level(highest_supported_level());
    stHigh = high.invoke();
  }
  const std::string what = call.describe();
  if (expected == FuzzInput::kAnyValid) {
    if (std::find(c.validStatuses.begin(), c.validStatuses.end(), stLow) == c.validStatuses.end())
      return what + ": status " + std::to_string(stLow) + ", expected a valid call";
  } else if (expected != INT_MIN && stLow != expected) {
    return what + ": status " + std::to_string(stLow) + ", expected " + std::to_string(expected);
  }
  if (call.fn().returnsStatus && stLow < 0 && !mayWrite && low.snapshot() != before)
    return what + ": status " + std::to_string(stLow) + " but a buffer was written";
  if (c.sameAtEveryLevel && (stLow != stHigh || low.snapshot() != high.snapshot()))
    return what + ": level " + level_name(highest_supported_level()) + " differs from level mx";
  return "";
}

}  // namespace vt
