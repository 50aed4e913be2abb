// Contracts of the library services and the kernel's exports.
#include "tests/support/contract.h"

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
  return c;
}

VT_CONTRACT(legacy90vspsInvSqrt_32s_I) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).inout("pSrcDst", 97).scalar("len", 97); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr),
              vt::bad("len", INT32_MIN, vspStsSizeErr)};
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
  return c;
}
