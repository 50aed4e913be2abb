// Contracts of the library services and the kernel's exports.
#include "tests/support/contract.h"
#include "tests/support/fuzz_hooks.h"

VT_CONTRACT(legacy90vspscInit) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name); };
  c.validStatuses = {vspStsNoErr, vspStsForeignCpu};
  c.sameAtEveryLevel = false;  // it chooses the level itself
  return c;
}

VT_CONTRACT(legacy90vspscGetLibVersion) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name); };
  c.sameAtEveryLevel = false;  // each level reports its own record
  return c;
}

VT_CONTRACT(legacy90vspscGetNumThreads) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).out("pNumThr", 1); };
  c.validStatuses = {1};
  return c;
}

VT_CONTRACT(legacy90vspscSetNumThreads) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).scalar("numThr", 4); };
  c.validStatuses = {1};
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {  // any count is ignored
    call.scalar("numThr", vt::fz::pick(in, "numThr", -2, 64));
    return vt::fz::Expect().to(in);
  };
  return c;
}

VT_CONTRACT(legacy90vspsInvSqrt_32s_I) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).inout("pSrcDst", 97).scalar("len", 97); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr),
              vt::bad("len", INT32_MIN, vspStsSizeErr)};
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) { return vt::fz::len_hook(call, in, {}, {}, {"pSrcDst"}); };
  return c;
}

VT_CONTRACT(legacy90vspsConvPartial_16s_Sfs) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pSrc1", 40).in("pSrc2", 40).out("pDst", 40).scalar("len", 40).scalar("scaleFactor", 12);
  };
  c.checks = {vt::bad("scaleFactor", -1, vspStsBadArgErr), vt::bad("len", 0, vspStsSizeErr),
              vt::bad("len", -3, vspStsSizeErr)};
  c.randomize = [](vt::Call& call, std::mt19937& rng) {
    call.randomize_inputs(rng);
    call.scalar("scaleFactor", static_cast<int64_t>(rng() % 40));
  };
  c.fuzz = [](vt::Call& call, vt::FuzzInput& in) {
    const int64_t len = vt::fz::pick(in, "len", -2, 1200), sf = vt::fz::pick(in, "scaleFactor", -2, 40);
    const auto n = vt::fz::count(len >= 1 && sf >= 0, len, 2);
    if (n > 20000) return false;  // quadratic in len
    call.in("pSrc1", n).in("pSrc2", n).out("pDst", n).scalar("len", len).scalar("scaleFactor", sf);
    vt::fz::fill_inputs(call, in);
    return vt::fz::Expect()
        .fail_if(vt::fz::nulls(call, in), vspStsNullPtrErr)
        .fail_if(sf < 0, vspStsBadArgErr)
        .fail_if(len < 1, vspStsSizeErr)
        .to(in);
  };
  return c;
}
