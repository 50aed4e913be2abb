// Contracts: for each export, how to build a valid call and the argument
// checks it makes, in the order it makes them. Three generic tests run over
// every contract: the argument-check order with nothing written on failure,
// identical results at every processor level on random valid inputs, and
// the completeness of the contracts against the list of exports.
//
// A family adds its contracts with VT_CONTRACT in tests/<family>/, e.g.
//
//   VT_CONTRACT(legacy90vspsInvSqrt_32s_I) {
//     vt::Contract c;
//     c.valid = [] { return vt::Call(name).inout("pSrcDst", 64).scalar("len", 64); };
//     c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr)};
//     return c;
//   }
//
// Null checks of every pointer parameter come first, in parameter order,
// unless the contract lists null checks itself (then its order holds) or
// names the parameter in `nullable`.
#pragma once

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/support/call.h"

namespace vt {

class FuzzInput;

struct Check {
  std::string label;
  std::vector<std::string> touches;  // parameters the check changes
  std::function<void(Call&)> apply;
  int expected = 0;
  bool isNull = false;
};

// A pointer parameter passed as null gives vspStsNullPtrErr.
Check null_check(const std::string& param);
// A scalar parameter with this value gives `expected`.
Check bad(const std::string& param, int64_t value, int expected);
// Any other change (e.g. a code word inside an input array).
Check custom(const std::string& label, std::vector<std::string> touches, std::function<void(Call&)> apply,
             int expected);

struct Contract {
  std::string name;
  // A valid call with deterministic contents.
  std::function<Call()> valid;
  // Random valid contents for the cross-level comparison; the default
  // fills every input uniformly (Call::randomize_inputs).
  std::function<void(Call&, std::mt19937&)> randomize;
  std::vector<Check> checks;
  std::vector<std::string> nullable;  // pointer parameters that may be null
  // Statuses a valid call may return (default: vspStsNoErr only).
  std::vector<int> validStatuses = {0};
  // False where the result differs by level by design (the version record).
  bool sameAtEveryLevel = true;
  int randomTrials = 24;
  // Trials of the same comparison on hostile contents (every input word
  // full-scale or random, see vt::Adversarial): more for exports whose
  // vector searches saturate only on rare inputs.
  int hostileTrials = 48;
  // Fuzzing: chooses the call's scalars (inside or outside their ranges)
  // through the FuzzInput, sizes every buffer to exactly what the call may
  // read and write for them, and fills the inputs. Returns false to skip
  // the input. Without a hook the fuzzer fills the inputs of the valid call
  // and applies a fuzzer-chosen subset of the checks.
  std::function<bool(Call&, FuzzInput&)> fuzz;

  // The checks with the default null checks in front.
  std::vector<Check> ordered_checks() const;
};

const std::vector<Contract>& all_contracts();
const Contract* find_contract(const std::string& name);

struct ContractRegistrar {
  ContractRegistrar(const char* name, Contract (*make)(const char* name));
};

}  // namespace vt

#define VT_CONTRACT(exportName)                                                                         \
  static vt::Contract vt_contract_##exportName(const char* name);                                       \
  static const vt::ContractRegistrar vt_registrar_##exportName(#exportName, &vt_contract_##exportName); \
  static vt::Contract vt_contract_##exportName([[maybe_unused]] const char* name)
