// Contracts of the G.729 encoder steps: weighting, pitch searches, lag
// coding, pitch gain, taming, codebook searches, gain quantisation and the
// memory updates.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

namespace {

int64_t pick(std::mt19937& rng, int64_t lo, int64_t hi) {
  return lo + static_cast<int64_t>(rng() % static_cast<uint32_t>(hi - lo + 1));
}

const g729t::V16 kLsp = {30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000};

// A decaying impulse response (Q12) as the encoder's h.
g729t::V16 impulse_response() {
  g729t::V16 h(40);
  int v = 4096;
  for (auto& x : h) {
    x = static_cast<Vsp16s>(v);
    v = -v * 3 / 5;
  }
  return h;
}

// Random values of small amplitude (a target, a filtered vector).
void small(vt::Call& call, const char* name, std::mt19937& rng, int amp) {
  for (auto& x : call.buf<Vsp16s>(name)) x = static_cast<Vsp16s>(pick(rng, -amp, amp));
}

}  // namespace

VT_CONTRACT(legacy90vspsWeightingGamma_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pRc", g729t::V16{-30000, 20000, 0, 0, 0, 0, 0, 0, 0, 0});
    call.in("pLsfInt", g729t::V16{900, 1800, 3000, 4500, 6000, 8000, 9500, 11000, 12500, 14000});
    call.in("pLsfNew", g729t::V16{1000, 1900, 3100, 4600, 6100, 8100, 9600, 11100, 12600, 14100});
    return call.inout("pSrcDstMem", g729t::V16{1, 0, 0}).out("pDstGamma", 4);
  };
  c.checks = {vt::custom("smooth 2", {"pSrcDstMem"}, [](vt::Call& k) { k.buf<Vsp16s>("pSrcDstMem")[0] = 2; },
                         vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.buf<Vsp16s>("pSrcDstMem")[0] = static_cast<Vsp16s>(pick(rng, 0, 1));
  };
  return c;
}

VT_CONTRACT(legacy90vspsWeightLPC_G729_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pLpc", g729t::lpc_of(kLsp)).scalar("gamma", 30802).out("pDst", 11); };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("gamma", pick(rng, 0, 32767));
  };
  return c;
}

VT_CONTRACT(legacy90vspsWeightLPC_G729A_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pLpc", g729t::lpc_of(kLsp)).out("pDstAp", 11).out("pDstAp1", 11); };
  return c;
}

VT_CONTRACT(legacy90vspsOpenLoopPitch_G729_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrc", 223).out("pDstLag", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsOpenLoopPitch_G729A_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrc", 223).out("pDstLag", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsClosedLoopPitch_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pExc", 194).in("pTarget", 40).in("pImp", impulse_response()).scalar("refLag", 60).scalar("subframe", 0);
    return call.out("pDstT0", 1).out("pDstFrac", 1);
  };
  c.checks = {vt::bad("refLag", 18, vspStsRangeErr), vt::bad("refLag", 145, vspStsRangeErr),
              vt::bad("subframe", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    small(call, "pExc", rng, 3000);
    small(call, "pTarget", rng, 3000);
    call.scalar("refLag", pick(rng, 20, 143)).scalar("subframe", pick(rng, 0, 1));
  };
  return c;
}

VT_CONTRACT(legacy90vspsClosedLoopPitch_G729A_16s_I) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.inout("pSrcDstExc", 194).in("pTarget", 40).in("pImp", impulse_response()).scalar("refLag", 60);
    return call.scalar("subframe", 0).out("pDstT0", 1).out("pDstFrac", 1);
  };
  c.checks = {vt::bad("refLag", 18, vspStsRangeErr), vt::bad("refLag", 145, vspStsRangeErr),
              vt::bad("subframe", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    small(call, "pSrcDstExc", rng, 3000);
    small(call, "pTarget", rng, 3000);
    call.scalar("refLag", pick(rng, 20, 143)).scalar("subframe", pick(rng, 0, 1));
  };
  return c;
}

VT_CONTRACT(legacy90vspsEncodePitchLag_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).scalar("T0", 62).scalar("frac", -1).scalar("refLag", 60).scalar("subframe", 1).out(
        "pDstIndex", 1);
  };
  c.checks = {vt::bad("subframe", 2, vspStsRangeErr), vt::bad("frac", 2, vspStsRangeErr),
              vt::bad("T0", 145, vspStsRangeErr), vt::bad("refLag", 18, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const int64_t ref = pick(rng, 20, 143);
    call.scalar("refLag", ref).scalar("subframe", pick(rng, 0, 1)).scalar("frac", pick(rng, -1, 1));
    call.scalar("T0", std::min<int64_t>(144, std::max<int64_t>(19, ref + pick(rng, -6, 5))));
  };
  return c;
}

VT_CONTRACT(legacy90vspsPitchGain_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    g729t::V16 x(40), y(40);
    for (int i = 0; i < 40; ++i) x[i] = static_cast<Vsp16s>(100 * (i % 7) - 300), y[i] = static_cast<Vsp16s>(90 * (i % 7) - 250);
    call.in("pTarget", x).in("pFiltAdapt", y).scalar("taming", 0).out("pDstGain", 1).out("pDstCoeff", 4);
    return call.out("pDstTarget2", 40);
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("taming", pick(rng, 0, 1));
  };
  return c;
}

VT_CONTRACT(legacy90vspsTamingTest_G729_32s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).scalar("T0", 60).scalar("frac", 1).in("pExcErr", std::vector<Vsp32s>{16384, 16384, 16384, 16384}).out(
        "pDstFlag", 1);
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr), vt::bad("frac", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    const int64_t t0 = pick(rng, 19, 144);
    call.scalar("T0", t0).scalar("frac", t0 == 144 ? pick(rng, -1, 0) : pick(rng, -1, 1));
  };
  return c;
}

VT_CONTRACT(legacy90vspsTamingUpdate_G729_32s_I) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).scalar("gainPitch", 12000).scalar("T0", 30).inout(
        "pSrcDstExcErr", std::vector<Vsp32s>{16384, 20000, 30000, 16384});
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("T0", pick(rng, 19, 144)).scalar("gainPitch", pick(rng, 0, 19661));
  };
  return c;
}

VT_CONTRACT(legacy90vspsFixedCodebookSearch_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    g729t::V16 x(40);
    for (int i = 0; i < 40; ++i) x[i] = static_cast<Vsp16s>((i * 37) % 200 - 100);
    call.in("pTarget2", x).in("pImp", impulse_response()).scalar("T0", 30).scalar("prevGainPitch", 8000);
    call.scalar("subframe", 0).inout("pSrcDstExtra", std::vector<Vsp16s>{0});
    return call.out("pDstCode", 40).out("pDstFiltCode", 40).out("pDstIndex", 2);
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("subframe", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    small(call, "pTarget2", rng, 4000);
    call.scalar("T0", pick(rng, 19, 144)).scalar("subframe", pick(rng, 0, 1));
    call.buf<Vsp16s>("pSrcDstExtra")[0] = static_cast<Vsp16s>(pick(rng, 0, 40));
  };
  return c;
}

VT_CONTRACT(legacy90vspsFixedCodebookSearch_G729A_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    g729t::V16 x(40);
    for (int i = 0; i < 40; ++i) x[i] = static_cast<Vsp16s>((i * 37) % 200 - 100);
    call.in("pTarget2", x).in("pImp", impulse_response()).scalar("T0", 30).scalar("prevGainPitch", 8000);
    return call.out("pDstCode", 40).out("pDstFiltCode", 40).out("pDstIndex", 2);
  };
  c.checks = {vt::bad("T0", 18, vspStsRangeErr), vt::bad("T0", 145, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    small(call, "pTarget2", rng, 4000);
    call.scalar("T0", pick(rng, 19, 144));
  };
  return c;
}

VT_CONTRACT(legacy90vspsGainQuant_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    g729t::V16 code(40, 0), x(40), y1(40), y2(40);
    code[3] = 8191, code[11] = -8192, code[22] = 8191, code[34] = -8192;
    for (int i = 0; i < 40; ++i) {
      x[i] = static_cast<Vsp16s>((i * 53) % 300 - 150);
      y1[i] = static_cast<Vsp16s>((i * 29) % 250 - 120);
      y2[i] = static_cast<Vsp16s>((i * 71) % 2000 - 1000);
    }
    call.in("pCode", code).in("pTarget", x).in("pFiltAdapt", y1).in("pFiltCode", y2);
    call.in("pCoeff", g729t::V16{20000, 2, 18000, 3}).scalar("taming", 0);
    call.inout("pSrcDstPastQuaEn", g729t::V16{-14336, -14336, -14336, -14336});
    return call.out("pDstGains", 2).out("pDstIndex", 1);
  };
  c.checks = {vt::custom("exponent 65", {"pCoeff"}, [](vt::Call& k) { k.buf<Vsp16s>("pCoeff")[1] = 65; },
                         vspStsRangeErr),
              vt::custom("exponent -65", {"pCoeff"}, [](vt::Call& k) { k.buf<Vsp16s>("pCoeff")[3] = -65; },
                         vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    small(call, "pTarget", rng, 3000);
    small(call, "pFiltAdapt", rng, 3000);
    small(call, "pFiltCode", rng, 8000);
    call.scalar("taming", pick(rng, 0, 1));
  };
  return c;
}

VT_CONTRACT(legacy90vspsEncoderMemoryUpdate_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pLpc", g729t::lpc_of(kLsp)).in("pExc", 40).in("pSpeech", 40).in("pTarget", 40).in("pFiltAdapt", 40);
    call.in("pFiltCode", 40).scalar("gainPitch", 9000).scalar("gainCode", 200).inout("pSrcDstMemSyn", 10);
    return call.out("pDstMemErr", 10).out("pDstMemW0", 10);
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (const char* n : {"pExc", "pSpeech", "pTarget", "pFiltAdapt", "pFiltCode", "pSrcDstMemSyn"}) small(call, n, rng, 2000);
  };
  return c;
}

VT_CONTRACT(legacy90vspsEncoderMemoryUpdate_G729A_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pTarget", 40).in("pFiltAdapt", 40).in("pFiltCode", 40).scalar("gainPitch", 9000).scalar(
        "gainCode", 200).out("pDstMemW0", 10);
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("gainPitch", pick(rng, -32768, 32767)).scalar("gainCode", pick(rng, -32768, 32767));
  };
  return c;
}
