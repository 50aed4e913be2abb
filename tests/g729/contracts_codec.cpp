// Contracts of the G.729 codec steps: pitch lag, adaptive and fixed
// codebook vectors, sharpening, gains, excitation, synthesis, post-filters.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {

int state_size(VspStatus (*get)(int*)) {
  int n = 0;
  get(&n);
  return n;
}

// Random integer in lo..hi.
int64_t pick(std::mt19937& rng, int64_t lo, int64_t hi) {
  return lo + static_cast<int64_t>(rng() % static_cast<uint32_t>(hi - lo + 1));
}

// A stable random Q12 LP filter: the LPC of a random descending LSP set.
g729t::V16 random_lpc(std::mt19937& rng) {
  g729t::V16 lsp(10);
  int v = 32000;
  for (auto& x : lsp) {
    v -= 1000 + static_cast<int>(rng() % 4500);
    x = static_cast<Vsp16s>(v);
  }
  return g729t::lpc_of(lsp);
}

}  // namespace

VT_CONTRACT(legacy90vspsPitchParity_G729_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("index", 77).out("pDstParity", 1); };
  c.checks = {vt::bad("index", -1, vspStsRangeErr), vt::bad("index", 256, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) { call.scalar("index", pick(rng, 0, 255)); };
  return c;
}

VT_CONTRACT(legacy90vspsDecodePitchLag_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.scalar("index", 20).scalar("subframe", 1).scalar("erased", 0);
    call.inout("pSrcDstOldT0", std::vector<Vsp16s>{60}).inout("pSrcDstT0", std::vector<Vsp16s>{60});
    return call.out("pDstFrac", 1);
  };
  c.checks = {vt::bad("subframe", 2, vspStsRangeErr), vt::bad("index", 32, vspStsRangeErr),
              vt::bad("index", -1, vspStsRangeErr),
              vt::custom("old T0 18", {"pSrcDstOldT0"}, [](vt::Call& k) { k.buf<Vsp16s>("pSrcDstOldT0")[0] = 18; },
                         vspStsRangeErr),
              vt::custom("T0 145", {"pSrcDstT0"}, [](vt::Call& k) { k.buf<Vsp16s>("pSrcDstT0")[0] = 145; },
                         vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const int64_t sf = pick(rng, 0, 1);
    call.scalar("subframe", sf).scalar("erased", pick(rng, 0, 1)).scalar("index", pick(rng, 0, sf ? 31 : 255));
    call.buf<Vsp16s>("pSrcDstOldT0")[0] = static_cast<Vsp16s>(pick(rng, 19, 144));
    call.buf<Vsp16s>("pSrcDstT0")[0] = static_cast<Vsp16s>(pick(rng, 19, 144));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecodeAdaptiveVector_G729_16s_I) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("T0", 30).scalar("frac", 1).inout("pSrcDstExc", 194); };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr),
              vt::bad("frac", 2, vspStsRangeErr), vt::bad("frac", -2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("T0", pick(rng, 19, 144)).scalar("frac", pick(rng, -1, 1));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecodeFixedCodebook_G729_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("index", 5000).scalar("signs", 9).out("pDstCode", 40); };
  c.checks = {vt::bad("index", 8192, vspStsRangeErr), vt::bad("index", -1, vspStsRangeErr),
              vt::bad("signs", 16, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.scalar("index", pick(rng, 0, 8191)).scalar("signs", pick(rng, 0, 15));
  };
  return c;
}

VT_CONTRACT(legacy90vspsPitchSharpening_G729_16s_I) {
  vt::Contract c;
  c.valid = [=] {
    g729t::V16 v(40, 0);
    v[3] = 8191;
    v[17] = -8192;
    return vt::Call(name).inout("pSrcDst", v).scalar("T0", 19).scalar("prevGainPitch", 9000);
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("T0", pick(rng, 19, 60)).scalar("prevGainPitch", pick(rng, -32768, 32767));
  };
  return c;
}

VT_CONTRACT(legacy90vspsRandom_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).inout("pSrcDstSeed", std::vector<Vsp16s>{21845}).out("pDst", 16).scalar("len", 16);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsDecodeGain_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    g729t::V16 code(40, 0);
    code[5] = 8191;
    code[21] = -8192;
    call.scalar("index", 93).scalar("erased", 0).in("pCode", code);
    call.inout("pSrcDstPastQuaEn", g729t::V16{-14336, -14336, -14336, -14336});
    return call.inout("pSrcDstGains", g729t::V16{8000, 500});
  };
  c.checks = {vt::bad("index", 128, vspStsRangeErr), vt::bad("index", -1, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("index", pick(rng, 0, 127)).scalar("erased", pick(rng, 0, 1));
    for (auto& e : call.buf<Vsp16s>("pSrcDstPastQuaEn")) e = static_cast<Vsp16s>(pick(rng, -14336, 10000));
  };
  return c;
}

VT_CONTRACT(legacy90vspsBuildExcitation_G729_16s_I) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pCode", 40).scalar("gainPitch", 9000).scalar("gainCode", 300).inout("pSrcDstExc", 40).scalar(
        "len", 40);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("gainPitch", pick(rng, -32768, 32767)).scalar("gainCode", pick(rng, -32768, 32767));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecodeSynthesis_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    std::mt19937 rng(7);
    call.in("pLpc", random_lpc(rng)).inout("pSrcDstExc", 194).scalar("excLen", 194).out("pDstSyn", 40);
    return call.inout("pSrcDstMem", 10);
  };
  c.checks = {vt::bad("excLen", 39, vspStsSizeErr)};
  c.validStatuses = {vspStsNoErr, vspStsOverflow};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    g729t::put(call, "pLpc", random_lpc(rng));
  };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilterGetStateSize_G729) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilterInit_G729) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).bytes("pState", static_cast<std::size_t>(state_size(legacy90vspsPostFilterGetStateSize_G729)), 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilter_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    std::mt19937 rng(3);
    call.in("pLpc", random_lpc(rng)).in("pSrc", 40).out("pDst", 40).scalar("T0", 50).scalar("vad", 1);
    call.out("pDstVoicing", 1).bytes("pState", static_cast<std::size_t>(state_size(legacy90vspsPostFilterGetStateSize_G729)), 3);
    legacy90vspsPostFilterInit_G729(call.buf<Vsp8u>("pState").data());
    return call;
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 144, vspStsRangeErr), vt::bad("vad", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    g729t::put(call, "pLpc", random_lpc(rng));
    call.scalar("T0", pick(rng, 19, 143)).scalar("vad", pick(rng, 0, 1));
    legacy90vspsPostFilterInit_G729(call.buf<Vsp8u>("pState").data());
  };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilterGetStateSize_G729A) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilterInit_G729A) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).bytes("pState", static_cast<std::size_t>(state_size(legacy90vspsPostFilterGetStateSize_G729A)), 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilter_G729A_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    std::mt19937 rng(5);
    call.in("pLpc", random_lpc(rng)).in("pSrc", 40).out("pDst", 40).scalar("T0", 50).scalar("vad", 1);
    call.bytes("pState", static_cast<std::size_t>(state_size(legacy90vspsPostFilterGetStateSize_G729A)), 3);
    legacy90vspsPostFilterInit_G729A(call.buf<Vsp8u>("pState").data());
    return call;
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr), vt::bad("vad", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    g729t::put(call, "pLpc", random_lpc(rng));
    call.scalar("T0", pick(rng, 19, 144)).scalar("vad", pick(rng, 0, 1));
    legacy90vspsPostFilterInit_G729A(call.buf<Vsp8u>("pState").data());
  };
  return c;
}
