// Contracts of the GSM 06.10 full-rate step exports: valid calls on frame
// and subframe buffers, the range checks of the received codes and of the
// state values, and random inputs inside those ranges.
#include <random>

#include "tests/support/contract.h"

namespace {

constexpr int kLarMax[8] = {63, 63, 31, 31, 15, 15, 7, 7};

int16_t uniform(std::mt19937& rng, int lo, int hi) {
  return static_cast<int16_t>(lo + static_cast<int>(rng() % static_cast<unsigned>(hi - lo + 1)));
}

void random_lar_codes(vt::Call& call, std::mt19937& rng) {
  auto larc = call.buf<int16_t>("pSrcLARc");
  for (int i = 0; i < 8; ++i) larc[i] = uniform(rng, 0, kLarMax[i]);
}

vt::Check set16(const char* label, const char* param, std::size_t index, int16_t value, int expected) {
  return vt::custom(
      label, {param}, [=](vt::Call& call) { call.buf<int16_t>(param)[index] = value; }, expected);
}

// The two short-term filters share their shape (pMem: 8 or 9 values).
vt::Contract short_term(const char* name, std::size_t memory) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrcLARc", std::vector<int16_t>{29, 32, 20, 11, 8, 5, 6, 7})
        .in("pSrc", 160)
        .out("pDst", 160)
        .inout("pLARpp", 8)
        .inout("pMem", memory);
  };
  c.checks = {set16("LARc[1] above 63", "pSrcLARc", 0, 64, vspStsRangeErr),
              set16("LARc[8] negative", "pSrcLARc", 7, -1, vspStsRangeErr),
              set16("LARc[5] above 15", "pSrcLARc", 4, 16, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    random_lar_codes(call, rng);
  };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsPreprocess_GSMFR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pSrc", 160).out("pDst", 160).inout("pMem", std::vector<int32_t>{0, 0, 0});
  };
  c.checks = {
      vt::custom(
          "z1 above 16 bits", {"pMem"}, [](vt::Call& call) { call.buf<int32_t>("pMem")[0] = 32768; }, vspStsRangeErr),
      vt::custom(
          "mp below 16 bits", {"pMem"}, [](vt::Call& call) { call.buf<int32_t>("pMem")[2] = -32769; }, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    auto mem = call.buf<int32_t>("pMem");
    mem[0] = uniform(rng, -32768, 32767);
    mem[2] = uniform(rng, -32768, 32767);
  };
  return c;
}

VT_CONTRACT(legacy90vspsLPCAnalysis_GSMFR_16s_I) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).inout("pSrcDst", 160).out("pDstLARc", 8); };
  return c;
}

VT_CONTRACT(legacy90vspsShortTermAnalysis_GSMFR_16s) { return short_term(name, 8); }
VT_CONTRACT(legacy90vspsShortTermSynthesis_GSMFR_16s) { return short_term(name, 9); }

VT_CONTRACT(legacy90vspsLongTermPredictor_GSMFR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrc", 40)
        .in("pSrcHist", 120)
        .out("pDstPred", 40)
        .out("pDstResidual", 40)
        .out("pDstLag", 1)
        .out("pDstGain", 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsRPEEncode_GSMFR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrc", 40)
        .out("pDstXmaxc", 1)
        .out("pDstGrid", 1)
        .out("pDstPulses", 13)
        .out("pDstExc", 40);
  };
  return c;
}

VT_CONTRACT(legacy90vspsRPEDecode_GSMFR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrcPulses", std::vector<int16_t>{6, 4, 0, 3, 3, 6, 4, 2, 2, 4, 5, 4, 1})
        .out("pDst", 40)
        .scalar("xmaxc", 60)
        .scalar("grid", 1);
  };
  c.checks = {vt::bad("xmaxc", -1, vspStsRangeErr), vt::bad("xmaxc", 64, vspStsRangeErr),
              vt::bad("grid", -1, vspStsRangeErr), vt::bad("grid", 4, vspStsRangeErr),
              set16("pulse above 7", "pSrcPulses", 12, 8, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (auto& v : call.buf<int16_t>("pSrcPulses")) v = uniform(rng, 0, 7);
    call.scalar("xmaxc", uniform(rng, 0, 63));
    call.scalar("grid", uniform(rng, 0, 3));
  };
  return c;
}

VT_CONTRACT(legacy90vspsLongTermSynthesis_GSMFR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrcExc", 40)
        .inout("pHist", 120)
        .out("pDst", 40)
        .inout("pLastLag", std::vector<int16_t>{40})
        .scalar("lag", 45)
        .scalar("gain", 1);
  };
  c.checks = {vt::bad("lag", -1, vspStsRangeErr),
              vt::bad("lag", 128, vspStsRangeErr),
              vt::bad("gain", -1, vspStsRangeErr),
              vt::bad("gain", 4, vspStsRangeErr),
              set16("last lag below 40", "pLastLag", 0, 39, vspStsRangeErr),
              set16("last lag above 120", "pLastLag", 0, 121, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.buf<int16_t>("pLastLag")[0] = uniform(rng, 40, 120);
    call.scalar("lag", uniform(rng, 0, 127));  // a third of them substituted
    call.scalar("gain", uniform(rng, 0, 3));
  };
  return c;
}

VT_CONTRACT(legacy90vspsPostprocess_GSMFR_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrc", 160).out("pDst", 160).inout("pMem", 1); };
  return c;
}
