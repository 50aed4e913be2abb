// Contracts of the G.729 Annex B comfort-noise steps.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {
int64_t pick(std::mt19937& rng, int64_t lo, int64_t hi) {
  return lo + static_cast<int64_t>(rng() % static_cast<uint32_t>(hi - lo + 1));
}
}  // namespace

VT_CONTRACT(legacy90vspsDecodeSID_G729B_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pIndex", g729t::V16{1, 17, 9}).inout("pSrcDstPrevFreq", g729t::reset_memory()).out(
        "pDstLsp", 10);
  };
  c.checks = {vt::custom("mode 2", {"pIndex"}, [](vt::Call& k) { k.buf<Vsp16s>("pIndex")[0] = 2; }, vspStsRangeErr),
              vt::custom("index 32", {"pIndex"}, [](vt::Call& k) { k.buf<Vsp16s>("pIndex")[1] = 32; }, vspStsRangeErr),
              vt::custom("index 16", {"pIndex"}, [](vt::Call& k) { k.buf<Vsp16s>("pIndex")[2] = 16; }, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    auto idx = call.buf<Vsp16s>("pIndex");
    idx[0] = static_cast<Vsp16s>(pick(rng, 0, 1));
    idx[1] = static_cast<Vsp16s>(pick(rng, 0, 31));
    idx[2] = static_cast<Vsp16s>(pick(rng, 0, 15));
    for (auto& x : call.buf<Vsp16s>("pSrcDstPrevFreq")) x = static_cast<Vsp16s>(pick(rng, 1000, 24000));
  };
  return c;
}

VT_CONTRACT(legacy90vspsQuantSidEnergy_G729B_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pEner", g729t::V16{20000, 18000}).in("pShEner", g729t::V16{-20, -21}).scalar("nb", 2).out(
        "pDstEnergyQ", 1).out("pDstIndex", 1);
  };
  c.checks = {vt::bad("nb", 3, vspStsRangeErr), vt::bad("nb", -1, vspStsRangeErr),
              vt::custom("shift 65", {"pShEner"}, [](vt::Call& k) { k.buf<Vsp16s>("pShEner")[0] = 65; },
                         vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (auto& x : call.buf<Vsp16s>("pEner")) x = static_cast<Vsp16s>(pick(rng, 16384, 32767));
    for (auto& x : call.buf<Vsp16s>("pShEner")) x = static_cast<Vsp16s>(pick(rng, -30, 10));
    call.scalar("nb", pick(rng, 0, 2));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecodeSidGain_G729B_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("index", 12).out("pDstGain", 1); };
  c.checks = {vt::bad("index", 32, vspStsRangeErr), vt::bad("index", -1, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) { call.scalar("index", pick(rng, 0, 31)); };
  return c;
}

VT_CONTRACT(legacy90vspsComfortNoiseExcitation_G729B_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.scalar("sidGain", 60).scalar("first", 1).inout("pSrcDstCurGain", g729t::V16{0});
    call.inout("pSrcDstSeed", g729t::V16{11111}).inout("pSrcDstExc", 234);
    return call.inout("pSrcDstExcErr", std::vector<Vsp32s>{16384, 16384, 16384, 16384});
  };
  c.nullable = {"pSrcDstExcErr"};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (auto& x : call.buf<Vsp16s>("pSrcDstExc")) x = static_cast<Vsp16s>(pick(rng, -3000, 3000));
    call.scalar("sidGain", pick(rng, 0, 2000)).scalar("first", pick(rng, 0, 1));
    call.buf<Vsp16s>("pSrcDstCurGain")[0] = static_cast<Vsp16s>(pick(rng, 0, 2000));
    call.buf<Vsp16s>("pSrcDstSeed")[0] = static_cast<Vsp16s>(pick(rng, -32768, 32767));
  };
  return c;
}

VT_CONTRACT(legacy90vspsExcitationEnergy_G729B_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pExc", 80).out("pDstEnergy", 1).out("pDstShift", 1); };
  return c;
}

namespace {
int state_bytes(VspStatus (*get)(int*)) {
  int n = 0;
  get(&n);
  return n;
}
// A realistic autocorrelation r[0..n-1] (normalised) from a coloured signal.
std::vector<Vsp32s> autocorr(std::mt19937& rng, int n) {
  std::vector<Vsp16s> x(240);
  int v = 0;
  for (auto& s : x) {
    v = v * 3 / 4 + static_cast<int>(pick(rng, -2000, 2000));
    s = static_cast<Vsp16s>(v);
  }
  std::vector<Vsp32s> r(static_cast<std::size_t>(n));
  int norm = 0;
  legacy90vspsAutoCorr_NormE_G729_16s32s(x.data(), r.data(), n, &norm);
  return r;
}
}  // namespace

VT_CONTRACT(legacy90vspsVADGetStateSize_G729B) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsVADInit_G729B) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).bytes("pState", static_cast<std::size_t>(state_bytes(legacy90vspsVADGetStateSize_G729B)), 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsVAD_G729B_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    std::mt19937 rng(9);
    call.in("pAutoCorr", autocorr(rng, 13)).scalar("norm", 3).scalar("rc", 12000);
    call.in("pLsf", g729t::V16{900, 1800, 3000, 4500, 6000, 8000, 9500, 11000, 12500, 14000}).in("pSpeech", 240);
    call.out("pDstVad", 1).bytes("pState", static_cast<std::size_t>(state_bytes(legacy90vspsVADGetStateSize_G729B)), 2);
    legacy90vspsVADInit_G729B(call.buf<Vsp8u>("pState").data());
    return call;
  };
  c.checks = {vt::bad("norm", 65, vspStsRangeErr), vt::bad("norm", -65, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    g729t::put(call, "pAutoCorr", autocorr(rng, 13));
    for (auto& x : call.buf<Vsp16s>("pSpeech")) x = static_cast<Vsp16s>(pick(rng, -5000, 5000));
    call.scalar("norm", pick(rng, -10, 20)).scalar("rc", pick(rng, -32000, 32000));
    legacy90vspsVADInit_G729B(call.buf<Vsp8u>("pState").data());
  };
  return c;
}

VT_CONTRACT(legacy90vspsDTXGetStateSize_G729B) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsDTXInit_G729B) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).bytes("pState", static_cast<std::size_t>(state_bytes(legacy90vspsDTXGetStateSize_G729B)), 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsDTXUpdate_G729B) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    std::mt19937 rng(4);
    call.in("pAutoCorr", autocorr(rng, 11)).scalar("norm", 2).scalar("vad", 1);
    call.bytes("pState", static_cast<std::size_t>(state_bytes(legacy90vspsDTXGetStateSize_G729B)), 3);
    legacy90vspsDTXInit_G729B(call.buf<Vsp8u>("pState").data());
    return call;
  };
  c.checks = {vt::bad("norm", 65, vspStsRangeErr), vt::bad("vad", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    g729t::put(call, "pAutoCorr", autocorr(rng, 11));
    call.scalar("norm", pick(rng, -10, 20)).scalar("vad", pick(rng, 0, 1));
    legacy90vspsDTXInit_G729B(call.buf<Vsp8u>("pState").data());
  };
  return c;
}

VT_CONTRACT(legacy90vspsDTXEncode_G729B_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    std::mt19937 rng(6);
    call.scalar("annexA", 0).inout("pSrcDstPrevFreq", g729t::reset_memory());
    call.inout("pSrcDstLpcMem", g729t::V16{4096, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}).inout("pSrcDstRcMem", 10);
    call.inout("pSrcDstLspOldQ", g729t::V16{30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000});
    call.inout("pSrcDstExc", 234).inout("pSrcDstExcErr", std::vector<Vsp32s>{16384, 16384, 16384, 16384});
    call.out("pDstLpcQ", 22).out("pDstPrm", 5);
    call.bytes("pState", static_cast<std::size_t>(state_bytes(legacy90vspsDTXGetStateSize_G729B)), 1);
    Vsp8u* st = call.buf<Vsp8u>("pState").data();
    legacy90vspsDTXInit_G729B(st);
    const auto r = autocorr(rng, 11);
    legacy90vspsDTXUpdate_G729B(r.data(), 2, 1, st);
    legacy90vspsDTXUpdate_G729B(r.data(), 2, 0, st);
    return call;
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (auto& x : call.buf<Vsp16s>("pSrcDstExc")) x = static_cast<Vsp16s>(pick(rng, -3000, 3000));
    call.scalar("annexA", pick(rng, 0, 1));
    Vsp8u* st = call.buf<Vsp8u>("pState").data();
    legacy90vspsDTXInit_G729B(st);
    for (int k = 0; k < 3; ++k) {
      const auto r = autocorr(rng, 11);
      legacy90vspsDTXUpdate_G729B(r.data(), static_cast<int>(pick(rng, -5, 10)), static_cast<int>(pick(rng, 0, 1)), st);
    }
  };
  return c;
}

VT_CONTRACT(legacy90vspsNoiseMemoryUpdate_G729B_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    const auto a = g729t::lpc_of(g729t::V16{30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000});
    call.in("pLpcQ", a).in("pAp1", a).in("pAp2", a).in("pSpeech", 40).in("pExc", 40);
    return call.inout("pSrcDstMemSyn", 10).inout("pSrcDstMemErr", 10).inout("pSrcDstMemW0", 10);
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (const char* n : {"pSpeech", "pExc", "pSrcDstMemSyn", "pSrcDstMemErr", "pSrcDstMemW0"})
      for (auto& x : call.buf<Vsp16s>(n)) x = static_cast<Vsp16s>(pick(rng, -2000, 2000));
  };
  return c;
}

VT_CONTRACT(legacy90vspsNoiseMemoryUpdate_G729AB_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pLpcQ", g729t::lpc_of(g729t::V16{30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000}));
    call.in("pSpeech", 50).in("pExc", 40).out("pDstWsp", 40);
    return call.inout("pSrcDstMemW", 10).inout("pSrcDstMemW0", 10);
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (const char* n : {"pSpeech", "pExc", "pSrcDstMemW", "pSrcDstMemW0"})
      for (auto& x : call.buf<Vsp16s>(n)) x = static_cast<Vsp16s>(pick(rng, -2000, 2000));
  };
  return c;
}
