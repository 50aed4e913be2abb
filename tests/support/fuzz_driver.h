// One fuzz input against the contracts: the input chooses an export and,
// through its contract's fuzz hook (or the default: the valid call with
// fuzzer-filled inputs and a fuzzer-chosen subset of its checks), the
// arguments. The call runs at level 0 and at the highest level. Properties:
// a negative status leaves every buffer untouched; where the checks applied
// determine the status, it is the status of the first of them; a successful
// call gives the same bytes at both levels.
#pragma once

#include <string>
#include <vector>

#include "tests/support/contract.h"
#include "tests/support/fuzz_input.h"

namespace vt {

// The contracts in name order; the "export" choice indexes this list.
const std::vector<const Contract*>& fuzz_targets();

// Runs one input; returns "" or a description of the broken property.
std::string fuzz_one(FuzzInput& in);

}  // namespace vt
