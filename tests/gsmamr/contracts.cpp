// Contracts of the GSM-AMR LP analysis and LSP quantisation exports.
#include "tests/gsmamr/amr_test_util.h"
#include "tests/support/contract.h"
#include "tests/support/fuzz_hooks.h"
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

namespace fz = vt::fz;

bool valid_mode(int64_t mode) {
  return std::find(amrt::kValidModes.begin(), amrt::kValidModes.end(), mode) != amrt::kValidModes.end();
}

// Fuzz hook of the rate-taking functions: any rate around the accepted set
// and far outside; each buffer {name, elements at 12.2 kbit/s, elements at
// the other rates} sized for the chosen rate (one element when the rate is
// refused), inputs from the fuzzer.
struct ModeBuffer {
  const char* name;
  vt::Role role;
  int64_t at122, others;
};
bool fuzz_with_mode(vt::Call& call, vt::FuzzInput& in, std::initializer_list<ModeBuffer> buffers) {
  const int64_t mode = fz::pick(in, "mode", -2, 27);
  const bool ok = valid_mode(mode);
  call.scalar("mode", mode);
  for (const ModeBuffer& b : buffers) {
    const std::size_t n = fz::count(ok, mode == 12 ? b.at122 : b.others);
    if (b.role == vt::Role::In)
      call.in(b.name, n);
    else if (b.role == vt::Role::InOut)
      call.inout(b.name, n);
    else
      call.out(b.name, n);
  }
  fz::fill_inputs(call, in);
  return fz::Expect().fail_if(fz::nulls(call, in), vspStsNullPtrErr).fail_if(!ok, vspStsRangeErr).to(in);
}

}  // namespace

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
  c.hostileTrials = 600;  // the searches saturate, or tie at their caps, only on rare targets
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
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    return fuzz_with_mode(call, in,
                          {{"pSrcLsp", vt::Role::In, 20, 10},
                           {"pPastRq", vt::Role::InOut, 10, 10},
                           {"pDstQLsp", vt::Role::Out, 20, 10},
                           {"pDstIdx", vt::Role::Out, 5, 3}});
  };
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
    call.scalar("bfi", in.choice("any bfi") ? in.scalar("bfi", INT16_MIN, INT16_MAX) : in.scalar("bfi", -1, 2));
    return fuzz_with_mode(call, in,
                          {{"pIdx", vt::Role::In, 5, 3},
                           {"pPastRq", vt::Role::InOut, 10, 10},
                           {"pPastLsfQ", vt::Role::InOut, 10, 10},
                           {"pLsp", vt::Role::InOut, 10, 10},
                           {"pDstLspSubfr", vt::Role::Out, 40, 40}});
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
