// Contracts of the G.729 LP <-> LSP conversions.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {

vt::Contract lpc_to_lsp_contract(const char* name) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLpc", 11).in("pSrcPrevLsp", 10).out("pDstLsp", 10);
    g729t::put(call, "pSrcLpc", g729t::V16{4096, -3000, 2000, -1000, 500, -200, 100, -50, 20, -10, 5});
    return call;
  };
  // Realistic filters (from ordered LSPs) and, one time in four, raw random
  // coefficients that exercise the Q10 path and the fallback.
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    if (rng() % 4 != 0) g729t::put(call, "pSrcLpc", g729t::lpc_of(g729t::random_lsp(rng)));
  };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsLPCToLSP_G729_16s) { return lpc_to_lsp_contract(name); }
VT_CONTRACT(legacy90vspsLPCToLSP_G729A_16s) { return lpc_to_lsp_contract(name); }

VT_CONTRACT(legacy90vspsLSPToLPC_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsp", 10).out("pDstLpc", 11);
    g729t::put(call, "pSrcLsp", g729t::kLsfReset);
    return call;
  };
  return c;
}
