// Contracts as data: one row per export in tests/<family>/contracts.txt,
// read when the contracts are first listed. The grammar is described at
// the top of tests/core/contracts.txt. A row gives the valid call (buffers,
// scalars, named content generators), the argument checks in order (scalar
// rules such as `len>=1:SizeErr`, from which the boundary checks and the
// fuzzer's choices derive, and explicit checks `!len=-7:SizeErr`), the
// nullable pointers, the valid statuses and the random-trial rules.
#pragma once

#include <functional>
#include <random>
#include <string>
#include <string_view>

#include "tests/support/call.h"

namespace vt {

struct Contract;

// Fills the buffer `param` of a call whose scalars and buffers are set;
// rng is null for the deterministic valid call, else a random trial's.
using Generator = std::function<void(Call& call, std::string_view param, std::mt19937* rng)>;

struct GeneratorRegistrar {
  GeneratorRegistrar(const char* name, Generator g);
};

// Reads every tests/*/contracts.txt and appends their contracts; a bad row
// throws std::runtime_error naming its file and line.
void load_contract_rows(std::vector<Contract>& into);

}  // namespace vt

#define VT_GENERATOR_CAT2(a, b) a##b
#define VT_GENERATOR_CAT(a, b) VT_GENERATOR_CAT2(a, b)
// VT_GENERATOR("lsp", [](vt::Call& c, std::string_view p, std::mt19937* rng) { ... });
#define VT_GENERATOR(name, ...) \
  static const vt::GeneratorRegistrar VT_GENERATOR_CAT(vt_generator_, __LINE__)(name, __VA_ARGS__)
