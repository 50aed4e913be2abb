// Contracts of the GSM-AMR encoder's frame-flow and pitch steps: one row
// each (valid call, range checks); random contents at random speech rates
// for the cross-level comparison (every step must stay in bounds on any
// input words).
#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/contract.h"

namespace {

constexpr int kSpeechModes[] = {0, 1, 3, 6, 7, 8, 11, 12};

std::vector<vt::Check> bad_modes(std::vector<vt::Check> more = {}) {
  for (int m : amrt::kInvalidModes) more.push_back(vt::bad("mode", m, vspStsRangeErr));
  more.push_back(vt::bad("mode", 25, vspStsRangeErr));
  return more;
}

void random_call(vt::Call& call, std::mt19937& rng) {
  call.randomize_inputs(rng);
  call.scalar("mode", kSpeechModes[rng() % 8]);
}

// A contract of a mode-taking step from its valid call and extra checks.
vt::Contract step(std::function<vt::Call()> valid, std::vector<vt::Check> checks = {}) {
  vt::Contract c;
  c.valid = std::move(valid);
  c.checks = bad_modes(std::move(checks));
  c.randomize = random_call;
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsInterpolateLPC_GSMAMR_16s) {
  return step(
      [=] { return vt::Call(name).in("pSrcPrevLsp", 10).in("pSrcLsp", 20).out("pDstLpc", 44).scalar("mode", 12); });
}

VT_CONTRACT(legacy90vspsWeightedSpeech_GSMAMR_16s) {
  return step([=] {
    vt::Call call(name);
    call.in("pSrcSpeech", 90).in("pSrcLpc", 22).out("pDstWsp", 80).inout("pMemW", 10).scalar("mode", 7);
    return call;
  });
}

VT_CONTRACT(legacy90vspsOpenLoopPitch_GSMAMR_16s) {
  vt::Contract c = step(
      [=] {
        vt::Call call(name);
        call.in("pSrcWsp", 303).inout("pSrcDstState", std::vector<int16_t>{40, 0, 0, 40, 40, 40, 40, 40, 0, 0});
        return call.out("pDstVad", 9).out("pDstLag", 1).scalar("half", 1).scalar("mode", 11);
      },
      {vt::bad("half", -1, vspStsRangeErr), vt::bad("half", 2, vspStsRangeErr)});
  c.validStatuses = {vspStsNoErr, vspStsRangeErr};  // random states may hold a weighted lag out of range
  return c;
}

VT_CONTRACT(legacy90vspsToneStabCheck_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrcLsp", 10).inout("pSrcDstToneState", 8).out("pFlag", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsToneStabUpdate_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("gain", 12000).inout("pSrcDstToneState", 8); };
  return c;
}

VT_CONTRACT(legacy90vspsSubframePreProc_GSMAMR_16s) {
  return step([=] {
    vt::Call call(name);
    call.in("pSrcLpc", 11).in("pSrcQLpc", 11).in("pSrcSpeech", 50).in("pSrcMemErr", 10).in("pSrcMemW0", 10);
    return call.out("pDstImp", 40).out("pDstRes", 40).out("pDstTarget", 40).scalar("mode", 6);
  });
}

VT_CONTRACT(legacy90vspsAdaptiveCodebookSearch_GSMAMR_16s) {
  return step(
      [=] {
        vt::Call call(name);
        call.in("pSrcTarget", 40).in("pSrcImp", 40).inout("pSrcDstExc", 194);
        call.in("pSrcOpenLoopLag", std::vector<int16_t>{57, 60}).inout("pSrcDstPrevLag", std::vector<int16_t>{55});
        return call.out("pDstLag", 3).out("pDstFltAdapt", 40).scalar("subfr", 1).scalar("mode", 0);
      },
      {vt::bad("subfr", -1, vspStsRangeErr), vt::bad("subfr", 4, vspStsRangeErr)});
}

VT_CONTRACT(legacy90vspsAdaptiveVector_GSMAMR_16s) {
  vt::Contract c = step(
      [=] {
        vt::Call call(name);
        call.inout("pSrcDstExc", 194).in("pSrcImp", 40).in("pSrcLag", std::vector<int16_t>{30, -1});
        return call.out("pDstFltAdapt", 40).scalar("mode", 8);
      },
      {vt::custom(
          "lag 145", {"pSrcLag"}, [](vt::Call& call) { call.buf<int16_t>("pSrcLag")[0] = 145; }, vspStsRangeErr)});
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    random_call(call, rng);
    call.buf<int16_t>("pSrcLag")[0] = static_cast<int16_t>(19 + rng() % 125);
    call.buf<int16_t>("pSrcLag")[1] = static_cast<int16_t>(static_cast<int>(rng() % 3) - 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsPitchGain_GSMAMR_16s) {
  return step([=] {
    vt::Call call(name);
    call.in("pSrcTarget", 40).in("pSrcFltAdapt", 40).in("pSrcAdapt", 40).in("pSrcToneState", 8);
    call.inout("pSrcDstRes", 40).out("pDstTarget2", 40).out("pDstGain", 3).out("pDstCoeff", 4);
    return call.scalar("lspFlag", 1).scalar("mode", 12);
  });
}

VT_CONTRACT(legacy90vspsSubframePostProc_GSMAMR_16s) {
  return step([=] {
    vt::Call call(name);
    call.in("pSrcSpeech", 40).in("pSrcQLpc", 11).in("pSrcTarget", 40).in("pSrcCode", 40).in("pSrcFltAdapt", 40);
    call.in("pSrcFltCode", 40).in("pSrcGain", std::vector<int16_t>{12000, 300}).inout("pSrcDstExc", 40);
    call.inout("pMemSyn", 10).inout("pMemErr", 10).inout("pMemW0", 10).out("pDstSynth", 40).out("pDstSharp", 1);
    return call.scalar("mode", 3);
  });
}
