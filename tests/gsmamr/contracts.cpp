// Contracts of the GSM-AMR LP analysis and LSP quantisation exports.
#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/contract.h"
#include "tests/support/fuzz_input.h"

namespace {

// Every rate outside the accepted set gives vspStsRangeErr.
std::vector<vt::Check> bad_modes() {
  std::vector<vt::Check> v;
  for (int m : amrt::kInvalidModes) v.push_back(vt::bad("mode", m, vspStsRangeErr));
  return v;
}

template <class T>
void put(vt::Call& call, const char* name, const std::vector<T>& values) {
  auto b = call.buf<T>(name);
  for (std::size_t i = 0; i < values.size() && i < b.size(); ++i) b[i] = values[i];
}

void random_state(vt::Call& call, const char* name, std::mt19937& rng, int spread) {
  for (auto& v : call.buf<int16_t>(name)) v = static_cast<int16_t>(static_cast<int>(rng() % (2 * spread + 1)) - spread);
}

// Fuzz hook of the rate-taking functions: any rate around the accepted set
// (the valid calls are sized for 12.2 kbit/s, the largest), fuzzed inputs.
bool fuzz_with_mode(vt::Call& call, vt::FuzzInput& in) {
  call.scalar("mode", in.scalar("mode", -2, 27));
  for (const vt::ParamInfo& p : call.fn().params)
    if (p.isPointer && (call.role(p.name) == vt::Role::In || call.role(p.name) == vt::Role::InOut))
      in.fill(p.name, call.buf<uint8_t>(p.name));
  return true;
}

}  // namespace

VT_CONTRACT(legacy90vspsAutoCorr_GSMAMR_16s32s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrc", 240).out("pDst", 22).scalar("mode", 12); };
  c.checks = bad_modes();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    put(call, "pSrc", amrt::random_speech(rng, 240));
    call.scalar("mode", amrt::random_mode(rng));
  };
  c.fuzz = fuzz_with_mode;
  return c;
}

VT_CONTRACT(legacy90vspsLevinsonDurbin_GSMAMR_32s16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrcAutoCorr", std::vector<int32_t>{1317054584, 906796402, 249384726, -222608538, -324502550, -282080492,
                                                 -312406404, -284142128, -301267890, -273654452, -286487146})
        .out("pDstLpc", 11);
  };
  c.validStatuses = {vspStsNoErr, vspStsLPCUnstable};
  // Realistic inputs: the autocorrelation of random speech-like frames.
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const auto x = amrt::random_speech(rng, 240);
    Vsp32s r[22];
    legacy90vspsAutoCorr_GSMAMR_16s32s(x.data(), r, vspRate12200);
    const Vsp32s* half = r + 11 * (rng() % 2);
    put(call, "pSrcAutoCorr", std::vector<int32_t>(half, half + 11));
  };
  return c;
}

VT_CONTRACT(legacy90vspsLSFToLSP_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrcLsf", std::vector<int16_t>{0, 255, 256, 4000, 8192, 12000, 16383, 16384, 20000, 32767})
        .out("pDstLsp", 10);
  };
  c.checks = {vt::custom(
      "negative first LSF", {"pSrcLsf"}, [](vt::Call& call) { call.buf<int16_t>("pSrcLsf")[0] = -1; },
      vspStsLSFRangeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    for (auto& v : call.buf<int16_t>("pSrcLsf")) v = static_cast<int16_t>(rng() % 32768);
  };
  // A negative LSF after the first stops the call part-way with earlier
  // values written (documented): the fuzzer keeps negatives to the first.
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    auto lsf = call.buf<int16_t>("pSrcLsf");
    in.fill("pSrcLsf", call.buf<uint8_t>("pSrcLsf"));
    for (std::size_t i = 1; i < lsf.size(); ++i) lsf[i] = static_cast<int16_t>(lsf[i] & 0x7FFF);
    return true;
  };
  return c;
}

VT_CONTRACT(legacy90vspsLSPQuant_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    std::mt19937 rng(7);
    auto lsp = amrt::random_lsp(rng);
    const auto lsp2 = amrt::random_lsp(rng);
    lsp.insert(lsp.end(), lsp2.begin(), lsp2.end());
    return vt::Call(name)
        .in("pSrcLsp", lsp)
        .inout("pPastRq", 10)
        .out("pDstQLsp", 20)
        .out("pDstIdx", 5)
        .scalar("mode", 12);
  };
  c.checks = bad_modes();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    put(call, "pSrcLsp", amrt::random_lsp_pair(rng));
    random_state(call, "pPastRq", rng, 1500);
    call.scalar("mode", amrt::random_mode(rng));
  };
  c.fuzz = fuzz_with_mode;
  return c;
}

VT_CONTRACT(legacy90vspsQuantLSPDecode_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pIdx", std::vector<int16_t>{17, 130, 301, 44, 60})
        .inout("pPastRq", 10)
        .inout("pPastLsfQ", std::vector<int16_t>(amrt::kResetPastLsfQ.begin(), amrt::kResetPastLsfQ.end()))
        .inout("pLsp", std::vector<int16_t>(amrt::kResetLsp.begin(), amrt::kResetLsp.end()))
        .out("pDstLspSubfr", 40)
        .scalar("bfi", 0)
        .scalar("mode", 12);
  };
  c.checks = bad_modes();
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const int mode = amrt::random_mode(rng);
    call.scalar("mode", mode);
    call.scalar("bfi", rng() % 3 == 0 ? 1 : 0);
    const int sizes[5] = {mode == 12 ? 128 : 512, mode == 12 ? 256 : 512, 512, 256, 64};
    for (int k = 0; k < 5; ++k) call.buf<int16_t>("pIdx")[k] = static_cast<int16_t>(rng() % sizes[k]);
    random_state(call, "pPastRq", rng, 1500);
    auto past = call.buf<int16_t>("pPastLsfQ");
    auto lsp = call.buf<int16_t>("pLsp");
    const auto l = amrt::random_lsp(rng);
    for (int i = 0; i < 10; ++i) {
      past[i] = static_cast<int16_t>(amrt::kResetPastLsfQ[i] + static_cast<int>(rng() % 601) - 300);
      lsp[i] = l[i];
    }
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    call.scalar("bfi", in.scalar("bfi", -1, 2));
    return fuzz_with_mode(call, in);
  };
  return c;
}

VT_CONTRACT(legacy90vspsInterpolate_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrcCur", 10).in("pSrcPrev", 10).out("pDst", 10).scalar("len", 10); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr),
              vt::bad("len", INT32_MIN, vspStsSizeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsPreemphasize_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).scalar("gamma", 22938).in("pSrc", 40).out("pDst", 40).scalar("len", 40).inout("pMem", 1);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -5, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("gamma", static_cast<int16_t>(rng()));
  };
  return c;
}

VT_CONTRACT(legacy90vspsLPCToLSP_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrcLpc", std::vector<int16_t>{4096, -4659, 2815, 473, -926, 66, 2050, -2216, 2117, -954, 850})
        .in("pSrcPrevLsp", std::vector<int16_t>(amrt::kResetLsp.begin(), amrt::kResetLsp.end()))
        .out("pDstLsp", 10);
  };
  // Realistic filters (Levinson on random speech-like frames) and, one time
  // in four, arbitrary coefficients (the fallback to the previous LSPs).
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    if (rng() % 4 == 0) return;
    const auto x = amrt::random_speech(rng, 240);
    Vsp32s r[11];
    Vsp16s a[11] = {4096};
    legacy90vspsAutoCorr_GSMAMR_16s32s(x.data(), r, vspRate5900);
    legacy90vspsLevinsonDurbin_GSMAMR_32s16s(r, a);
    put(call, "pSrcLpc", std::vector<int16_t>(a, a + 11));
  };
  return c;
}

VT_CONTRACT(legacy90vspsLSPToLPC_GSMAMR_16s) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name)
        .in("pSrcLsp", std::vector<int16_t>(amrt::kResetLsp.begin(), amrt::kResetLsp.end()))
        .out("pDstLpc", 11);
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    if (rng() % 4 == 0)
      call.randomize_inputs(rng);  // unordered, extreme values
    else
      put(call, "pSrcLsp", amrt::random_lsp(rng));
  };
  return c;
}
