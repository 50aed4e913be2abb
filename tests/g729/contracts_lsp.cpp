// Contracts of the G.729 LP <-> LSP conversions.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {

vt::Contract lpc_to_lsp_contract(const char* name) {
  vt::Contract c;
  c.hostileTrials = 300;  // saturating polynomial sums and root searches
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

namespace {
vt::Contract lpc_to_lsp_32f_contract(const char* name) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLpc", 11).in("pSrcPrevLsp", 10).out("pDstLsp", 10);
    g729t::put(call, "pSrcLpc",
               std::vector<Vsp32f>{1.0f, -0.73f, 0.49f, -0.24f, 0.12f, -0.05f, 0.02f, -0.01f, 0.005f, -0.002f, 0.001f});
    return call;
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    const g729t::V16 a = g729t::lpc_of(g729t::random_lsp(rng));
    std::vector<Vsp32f> f(11);
    for (int i = 0; i < 11; ++i) f[i] = static_cast<float>(a[i]) / 4096.0f;
    g729t::put(call, "pSrcLpc", f);
  };
  return c;
}
}  // namespace

VT_CONTRACT(legacy90vspsLPCToLSP_G729_32f) { return lpc_to_lsp_32f_contract(name); }
VT_CONTRACT(legacy90vspsLPCToLSP_G729A_32f) { return lpc_to_lsp_32f_contract(name); }

VT_CONTRACT(legacy90vspsLSPToLPC_G729_32f) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrcLsp", 10).out("pDstLpc", 11); };
  return c;
}
