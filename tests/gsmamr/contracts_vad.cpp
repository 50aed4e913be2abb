// Contracts of the GSM-AMR encoder's VAD (options 1 and 2) and DTX steps.
// The valid calls use freshly formatted state blocks; the cross-level
// comparison also feeds them random bytes.
#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/contract.h"

namespace {

using SizeFn = VspStatus (*)(int*);
using InitFn = VspStatus (*)(Vsp8u*);

constexpr int kSpeechModes[] = {0, 1, 3, 6, 7, 8, 11, 12};

int block_size(SizeFn size) {
  int n = 0;
  size(&n);
  return n;
}

vt::Call& with_block(vt::Call& call, SizeFn size, InitFn init, std::size_t misalign) {
  call.bytes("pState", static_cast<std::size_t>(block_size(size)), misalign);
  init(call.buf<Vsp8u>("pState").data());
  return call;
}

std::vector<vt::Check> bad_modes() {
  std::vector<vt::Check> v;
  for (int m : amrt::kInvalidModes) v.push_back(vt::bad("mode", m, vspStsRangeErr));
  v.push_back(vt::bad("mode", 25, vspStsRangeErr));
  return v;
}

void random_mode(vt::Call& call, std::mt19937& rng) {
  call.randomize_inputs(rng);
  call.scalar("mode", kSpeechModes[rng() % 8]);
}

vt::Contract size_contract(const char* name) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pSize", 1); };
  return c;
}

vt::Contract init_contract(const char* name, SizeFn size) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).bytes("pState", static_cast<std::size_t>(block_size(size)), 3); };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsVAD1StateSize_GSMAMR) { return size_contract(name); }
VT_CONTRACT(legacy90vspsVAD2StateSize_GSMAMR) { return size_contract(name); }
VT_CONTRACT(legacy90vspsDTXEncStateSize_GSMAMR) { return size_contract(name); }
VT_CONTRACT(legacy90vspsVAD1Init_GSMAMR) { return init_contract(name, legacy90vspsVAD1StateSize_GSMAMR); }
VT_CONTRACT(legacy90vspsVAD2Init_GSMAMR) { return init_contract(name, legacy90vspsVAD2StateSize_GSMAMR); }
VT_CONTRACT(legacy90vspsDTXEncInit_GSMAMR) { return init_contract(name, legacy90vspsDTXEncStateSize_GSMAMR); }

VT_CONTRACT(legacy90vspsVAD1_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrc", 200);
    with_block(call, legacy90vspsVAD1StateSize_GSMAMR, legacy90vspsVAD1Init_GSMAMR, 1).out("pDstVad", 1);
    return call;
  };
  return c;
}

VT_CONTRACT(legacy90vspsVAD1PitchUpdate_GSMAMR_32s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcOpenLoop", 18).in("pSrcLag", 2);
    with_block(call, legacy90vspsVAD1StateSize_GSMAMR, legacy90vspsVAD1Init_GSMAMR, 2).scalar("mode", 1);
    return call;
  };
  c.checks = bad_modes();
  c.randomize = random_mode;
  return c;
}

VT_CONTRACT(legacy90vspsVAD2_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrc", 80);
    with_block(call, legacy90vspsVAD2StateSize_GSMAMR, legacy90vspsVAD2Init_GSMAMR, 1).out("pDstVad", 1);
    return call;
  };
  return c;
}

VT_CONTRACT(legacy90vspsVAD2LTPFlag_GSMAMR_32s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcOpenLoop", 18);
    with_block(call, legacy90vspsVAD2StateSize_GSMAMR, legacy90vspsVAD2Init_GSMAMR, 3).scalar("mode", 11);
    return call;
  };
  c.checks = bad_modes();
  c.randomize = random_mode;
  return c;
}

VT_CONTRACT(legacy90vspsDTXTxHandler_GSMAMR) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.scalar("vad", 0);
    with_block(call, legacy90vspsDTXEncStateSize_GSMAMR, legacy90vspsDTXEncInit_GSMAMR, 1);
    call.out("pDstUsedMode", 1).out("pDstComputeSid", 1).scalar("mode", 7);
    return call;
  };
  c.checks = {vt::bad("vad", -1, vspStsRangeErr), vt::bad("vad", 2, vspStsRangeErr)};
  for (const vt::Check& k : bad_modes()) c.checks.push_back(k);
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    random_mode(call, rng);
    call.scalar("vad", static_cast<int64_t>(rng() % 2));
  };
  return c;
}

VT_CONTRACT(legacy90vspsDTXBuffer_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsp", std::vector<Vsp16s>(amrt::kResetLsp.begin(), amrt::kResetLsp.end())).in("pSrcSpeech", 160);
    return with_block(call, legacy90vspsDTXEncStateSize_GSMAMR, legacy90vspsDTXEncInit_GSMAMR, 2);
  };
  return c;
}

VT_CONTRACT(legacy90vspsDTXEncode_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.scalar("computeSid", 1).inout("pSrcDstPastQuaEn", 8).out("pDstPrm", 5);
    return with_block(call, legacy90vspsDTXEncStateSize_GSMAMR, legacy90vspsDTXEncInit_GSMAMR, 3);
  };
  c.checks = {vt::bad("computeSid", -1, vspStsRangeErr), vt::bad("computeSid", 2, vspStsRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("computeSid", static_cast<int64_t>(rng() % 2));
  };
  return c;
}
