// Contract of the G.729 LSF decoder on code words (its fuzzing puts the
// codes near their limits); the other LSF exports are rows in contracts.txt.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"
#include "tests/support/fuzz_hooks.h"

using g729t::V16;

VT_CONTRACT(legacy90vspsLSFDecode_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pQuantIndex", 4).inout("pSrcDstPrevFreq", 40).out("pDstQLsf", 10);
    g729t::put(call, "pQuantIndex", V16{1, 120, 10, 31});
    g729t::put(call, "pSrcDstPrevFreq", g729t::reset_memory());
    return call;
  };
  auto code = [](int index, Vsp16s value, int expected) {
    return vt::custom(
        "code " + std::to_string(index) + " = " + std::to_string(value), {"pQuantIndex"},
        [=](vt::Call& call) { call.buf<Vsp16s>("pQuantIndex")[static_cast<std::size_t>(index)] = value; }, expected);
  };
  c.checks = {code(0, 2, vspStsBadIndexErr),     code(0, -1, vspStsBadIndexErr), code(1, 128, vspStsBadIndexErr),
              code(1, -1, vspStsBadIndexErr),    code(2, 32, vspStsBadIndexErr), code(3, 32, vspStsBadIndexErr),
              code(3, -32768, vspStsBadIndexErr)};
  c.validStatuses = {vspStsNoErr, vspStsLsfLowClamped, vspStsLsfHighClamped, vspStsLsfBothClamped};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    g729t::put(call, "pQuantIndex",
               V16{static_cast<Vsp16s>(rng() % 2), static_cast<Vsp16s>(rng() % 128), static_cast<Vsp16s>(rng() % 32),
                   static_cast<Vsp16s>(rng() % 32)});
    g729t::put(call, "pSrcDstPrevFreq", g729t::random_memory(rng));
  };
  // Codes from the fuzzer's words or, by choice, near their limits.
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    vt::fz::fill_inputs(call, in);
    auto q = call.buf<Vsp16s>("pQuantIndex");
    constexpr int kLimit[4] = {2, 128, 32, 32};
    if (in.choice("codes near their limits"))
      for (int k = 0; k < 4; ++k) q[k] = static_cast<Vsp16s>((q[k] & 0x7FFF) % (kLimit[k] + 4) - 2);
    bool bad = false;
    for (int k = 0; k < 4; ++k) bad = bad || q[k] < 0 || q[k] >= kLimit[k];
    return vt::fz::Expect().fail_if(vt::fz::nulls(call, in), vspStsNullPtrErr).fail_if(bad, vspStsBadIndexErr).to(in);
  };
  return c;
}
