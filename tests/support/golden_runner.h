// Runs golden-vector files through the exports: every case is bound to its
// export's parameters by name (arg/in/out lines), called, and its outputs
// and status compared; every file runs at every supported level and the
// levels must agree bit for bit as well.
//
// Functions whose cases need more than the generic binding (state blocks
// set up by an Init, pointer arrays, diagnostic outputs) register an
// adapter with VT_GOLDEN_ADAPTER in their family's tests.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/call.h"
#include "tests/support/golden.h"

namespace vt {

// What survives from one case of a seq to the next (state blocks).
struct SeqContext {
  std::string seq;
  bool first = true;
  std::vector<uint8_t> state;
};

struct GoldenAdapter {
  // Names of arg/in/out lines the adapter handles itself.
  std::vector<std::string> extraNames;
  // Before the generic binding: may set any arguments itself.
  std::function<void(Call&, const GoldenCase&, SeqContext&)> bind;
  // After the call: keep state for the seq, check extra outputs (append
  // messages to errors).
  std::function<void(Call&, const GoldenCase&, SeqContext&, std::vector<std::string>& errors)> after;
};

const GoldenAdapter* find_golden_adapter(const std::string& exportName);
struct GoldenAdapterRegistrar {
  GoldenAdapterRegistrar(const char* exportName, GoldenAdapter (*make)());
};

// Writes golden tokens into a pointer argument (element type from the
// signature; complex values are two tokens).
void fill_from_tokens(Call& call, const std::string& param, const std::vector<std::string>& tokens, Role role);
// Compares a pointer argument with golden tokens; "" when equal (within tol).
std::string compare_tokens(Call& call, const std::string& param, const std::vector<std::string>& tokens,
                           const GoldenCase& gc);

// Binds one case (after the adapter, if any).
Call bind_golden_case(const ExportInfo& fn, const GoldenCase& gc, const GoldenAdapter* adapter, SeqContext& seq);

struct GoldenReport {
  int cases = 0;
  int levels = 0;
  std::vector<std::string> failures;  // one message per failing case and level
};

// Runs a file whose name is <export>.txt at every supported level.
GoldenReport run_golden_file(const std::string& path);

}  // namespace vt

#define VT_GOLDEN_ADAPTER(exportName)                                                                        \
  static vt::GoldenAdapter vt_golden_adapter_##exportName();                                                 \
  static const vt::GoldenAdapterRegistrar vt_golden_registrar_##exportName(#exportName,                      \
                                                                           &vt_golden_adapter_##exportName); \
  static vt::GoldenAdapter vt_golden_adapter_##exportName()
