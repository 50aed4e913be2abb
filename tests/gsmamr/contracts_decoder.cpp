// Contracts of the GSM-AMR decoder steps. The state blocks are formatted by
// their Init in the valid calls; the cross-level comparison also feeds them
// random bytes (every step must stay inside its tables on any block).
#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/contract.h"

namespace {

constexpr int kSpeechModes[] = {0, 1, 3, 6, 7, 8, 11, 12};

std::vector<vt::Check> bad_speech_modes(bool accept25) {
  std::vector<vt::Check> v;
  for (int m : amrt::kInvalidModes) v.push_back(vt::bad("mode", m, vspStsRangeErr));
  if (!accept25) v.push_back(vt::bad("mode", 25, vspStsRangeErr));
  return v;
}

int dec_size() {
  int n = 0;
  legacy90vspsDecoderStateSize_GSMAMR(&n);
  return n;
}

// A decoder state block, freshly formatted.
vt::Call& with_decoder(vt::Call& call) {
  call.bytes("pState", dec_size(), 1);
  legacy90vspsDecoderInit_GSMAMR(call.buf<Vsp8u>("pState").data());
  return call;
}

// Random parameters of a random speech rate (valid field widths are not
// required: every step masks or bounds what it indexes with).
void random_speech_call(vt::Call& call, std::mt19937& rng) {
  call.randomize_inputs(rng);
  call.scalar("mode", kSpeechModes[rng() % 8]);
}

}  // namespace

VT_CONTRACT(legacy90vspsDecoderStateSize_GSMAMR) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsDecoderInit_GSMAMR) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).bytes("pState", dec_size(), 3); };
  return c;
}

VT_CONTRACT(legacy90vspsDecoderFrameStart_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.inout("pSrcDstPrm", 57).scalar("rxType", 0);
    with_decoder(call).out("pDstLpc", 44).out("pDtxState", 1).scalar("mode", 12);
    return call;
  };
  c.checks = {vt::bad("rxType", -1, vspStsRangeErr), vt::bad("rxType", 8, vspStsRangeErr)};
  for (const vt::Check& k : bad_speech_modes(false)) c.checks.push_back(k);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    random_speech_call(call, rng);
    call.scalar("rxType", static_cast<int64_t>(rng() % 8));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecodeExcitation_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcPrm", 57);
    with_decoder(call).out("pDstExc", 40).scalar("subfr", 1).scalar("mode", 8);
    return call;
  };
  c.checks = {vt::bad("subfr", -1, vspStsRangeErr), vt::bad("subfr", 4, vspStsRangeErr)};
  for (const vt::Check& k : bad_speech_modes(false)) c.checks.push_back(k);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    random_speech_call(call, rng);
    call.scalar("subfr", static_cast<int64_t>(rng() % 4));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecoderSynthesis_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLpc", 11).in("pSrcExc", 40);
    with_decoder(call).out("pDstSynth", 40);
    call.buf<Vsp16s>("pSrcLpc")[0] = 4096;
    return call;
  };
  return c;
}

VT_CONTRACT(legacy90vspsDecoderFrameEnd_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcSynth", 160);
    return with_decoder(call);
  };
  return c;
}

VT_CONTRACT(legacy90vspsComfortNoise_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcSid", 5);
    with_decoder(call).out("pDstLpc", 44).out("pDstSynth", 160).scalar("mode", 0);
    return call;
  };
  c.checks = bad_speech_modes(false);
  c.randomize = random_speech_call;
  return c;
}

VT_CONTRACT(legacy90vspsHomingFrameTest_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pSrcPrm", 57).scalar("firstSubframe", 0).out("pResult", 1).scalar("mode", 12);
  };
  c.checks = bad_speech_modes(false);
  c.randomize = random_speech_call;
  return c;
}

VT_CONTRACT(legacy90vspsPostFilterStateSize_GSMAMR) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilterInit_GSMAMR) {
  vt::Contract c;
  c.valid = [=] {
    int n = 0;
    legacy90vspsPostFilterStateSize_GSMAMR(&n);
    return vt::Call(name).bytes("pState", n, 1);
  };
  return c;
}

VT_CONTRACT(legacy90vspsPostFilter_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    int n = 0;
    legacy90vspsPostFilterStateSize_GSMAMR(&n);
    vt::Call call(name);
    call.in("pSrcLpc", 44).inout("pSrcDstSpeech", 160).bytes("pState", n, 2).scalar("mode", 25);
    legacy90vspsPostFilterInit_GSMAMR(call.buf<Vsp8u>("pState").data());
    for (int k = 0; k < 4; ++k) call.buf<Vsp16s>("pSrcLpc")[11 * k] = 4096;
    return call;
  };
  c.checks = bad_speech_modes(true);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("mode", amrt::random_mode(rng));
  };
  return c;
}
