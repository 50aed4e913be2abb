// Contracts of the G.729 LSP/LSF conversions, quantisers and decoders.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"
#include "tests/support/fuzz_hooks.h"

namespace {

using g729t::V16;

// A memory of four random stable LSF rows.
V16 random_memory(std::mt19937& rng) {
  V16 m;
  for (int k = 0; k < 4; ++k) {
    const V16 row = g729t::random_lsf(rng, 200);
    m.insert(m.end(), row.begin(), row.end());
  }
  return m;
}

vt::Contract lsp_to_lsf_contract(const char* name) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsp", 10).out("pDstLsf", 10);
    g729t::put(call, "pSrcLsp", V16{31435, 27561, 21458, 13613, 4664, -4659, -13609, -21450, -27556, -31435});
    return call;
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);  // also unordered words
    if (rng() % 2) g729t::put(call, "pSrcLsp", g729t::random_lsp(rng));
  };
  return c;
}

vt::Contract decode_erased_contract(const char* name, bool isFloat) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.scalar("maIndex", 1).inout("pSrcDstPrevFreq", 40).inout("pSrcDstLsf", 10);
    if (!isFloat) {
      g729t::put(call, "pSrcDstPrevFreq", g729t::reset_memory());
      g729t::put(call, "pSrcDstLsf", g729t::kLsfReset);
    }
    return call;
  };
  c.checks = {vt::bad("maIndex", 2, vspStsBadIndexErr), vt::bad("maIndex", -1, vspStsBadIndexErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("maIndex", static_cast<int64_t>(rng() % 2));
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    const int64_t ma = vt::fz::pick(in, "maIndex", -2, 3);
    call.scalar("maIndex", ma);
    vt::fz::fill_inputs(call, in);
    return vt::fz::Expect()
        .fail_if(vt::fz::nulls(call, in), vspStsNullPtrErr)
        .fail_if(ma != 0 && ma != 1, vspStsBadIndexErr)
        .to(in);
  };
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsLSPToLSF_G729_16s) { return lsp_to_lsf_contract(name); }
VT_CONTRACT(legacy90vspsLSPToLSF_Norm_G729_16s) { return lsp_to_lsf_contract(name); }

VT_CONTRACT(legacy90vspsLSFToLSP_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsf", 10).out("pDstLsp", 10);
    g729t::put(call, "pSrcLsf", g729t::kLsfReset);
    return call;
  };
  return c;  // any word, negative ones included, is a valid LSF input
}

VT_CONTRACT(legacy90vspsLSFQuant_G729_16s) {
  vt::Contract c;
  c.hostileTrials = 600;  // the searches saturate, or tie at their caps, only on rare targets
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsf", 10).inout("pSrcDstPrevFreq", 40).out("pDstQLsf", 10).out("pDstQuantIndex", 4);
    g729t::put(call, "pSrcLsf", V16{2338, 4677, 7016, 9357, 11697, 14036, 16377, 18716, 21055, 23396});
    g729t::put(call, "pSrcDstPrevFreq", g729t::reset_memory());
    return call;
  };
  c.validStatuses = {vspStsNoErr, vspStsLsfLowClamped, vspStsLsfHighClamped, vspStsLsfBothClamped};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    g729t::put(call, "pSrcLsf", g729t::random_lsf(rng));
    g729t::put(call, "pSrcDstPrevFreq", random_memory(rng));
  };
  return c;
}

VT_CONTRACT(legacy90vspsLSPQuant_G729_16s) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsp", 10).inout("pSrcDstPrevFreq", 40).out("pDstQLsp", 10).out("pDstQuantIndex", 2);
    g729t::put(call, "pSrcLsp", V16{31435, 27561, 21458, 13613, 4664, -4659, -13609, -21450, -27556, -31435});
    g729t::put(call, "pSrcDstPrevFreq", g729t::reset_memory());
    return call;
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    g729t::put(call, "pSrcLsp", g729t::random_lsp(rng));
    g729t::put(call, "pSrcDstPrevFreq", random_memory(rng));
  };
  return c;
}

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
    g729t::put(call, "pSrcDstPrevFreq", random_memory(rng));
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

VT_CONTRACT(legacy90vspsLSFDecode_G729_32f) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pQuantIndex", 4).inout("pSrcDstPrevFreq", 40).out("pDstQLsf", 10);
    g729t::put(call, "pQuantIndex", std::vector<int>{0, 54, 3, 21});
    return call;
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);  // any code words (masked) and memory
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {  // any code words: always a valid call
    vt::fz::fill_inputs(call, in);
    return vt::fz::Expect().fail_if(vt::fz::nulls(call, in), vspStsNullPtrErr).to(in);
  };
  return c;
}

VT_CONTRACT(legacy90vspsLSFDecodeErased_G729_16s) { return decode_erased_contract(name, false); }
VT_CONTRACT(legacy90vspsLSFDecodeErased_G729_32f) { return decode_erased_contract(name, true); }

VT_CONTRACT(legacy90vspsLSPQuant_G729E_16s) {
  vt::Contract c;
  c.hostileTrials = 300;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsp", 10).in("pSrcPrevFreq", 40).out("pDstQLsp", 10).out("pDstFreqCur", 10).out("pDstQuantIndex", 2);
    g729t::put(call, "pSrcLsp", V16{31435, 27561, 21458, 13613, 4664, -4659, -13609, -21450, -27556, -31435});
    g729t::put(call, "pSrcPrevFreq", g729t::reset_memory());
    return call;
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    g729t::put(call, "pSrcLsp", g729t::random_lsp(rng));
    g729t::put(call, "pSrcPrevFreq", random_memory(rng));
  };
  return c;
}

VT_CONTRACT(legacy90vspsLSPQuant_G729E_32f) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pSrcLsp", 10).in("pSrcPrevFreq", 40).out("pDstQLsp", 10).out("pDstFreqCur", 10).out("pDstQuantIndex", 2);
    return call;
  };
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    const V16 lsp = g729t::random_lsp(rng);
    const V16 mem = random_memory(rng);
    std::vector<Vsp32f> f(10), m(40);
    for (int i = 0; i < 10; ++i) f[i] = static_cast<float>(lsp[i]) / 32768.0f;
    for (int i = 0; i < 40; ++i) m[i] = static_cast<float>(mem[i]) / 8192.0f;
    g729t::put(call, "pSrcLsp", f);
    g729t::put(call, "pSrcPrevFreq", m);
  };
  return c;
}
