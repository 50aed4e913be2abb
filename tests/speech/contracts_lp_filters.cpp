// Contracts of the shared LP synthesis and residual filters.
#include "tests/g729/g729_test_util.h"
#include "tests/support/contract.h"

VT_CONTRACT(legacy90vspsSynthesisFilter_NR_16s_Sfs) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pLpc", g729t::lpc_of(g729t::V16{30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000}));
    call.scalar("order", 10).in("pSrc", 60).out("pDst", 60).scalar("len", 60).scalar("scaleFactor", 12);
    return call.inout("pSrcDstMem", 10);
  };
  c.checks = {vt::bad("order", 0, vspStsSizeErr), vt::bad("order", 31, vspStsSizeErr), vt::bad("len", 0, vspStsSizeErr),
              vt::bad("scaleFactor", -1, vspStsRangeErr), vt::bad("scaleFactor", 16, vspStsRangeErr)};
  c.validStatuses = {vspStsNoErr, vspStsOverflow};
  return c;
}

VT_CONTRACT(legacy90vspsResidualFilter_NR_16s_Sfs) {
  vt::Contract c;
  c.valid = [=] {
    vt::Call call(name);
    call.in("pLpc", g729t::lpc_of(g729t::V16{30000, 26000, 21000, 15000, 8000, 0, -8000, -15000, -21000, -26000}));
    return call.scalar("order", 10).in("pSrc", 70).out("pDst", 60).scalar("len", 60).scalar("scaleFactor", 12);
  };
  c.checks = {vt::bad("order", 0, vspStsSizeErr), vt::bad("order", 31, vspStsSizeErr), vt::bad("len", 0, vspStsSizeErr),
              vt::bad("scaleFactor", -1, vspStsRangeErr), vt::bad("scaleFactor", 16, vspStsRangeErr)};
  return c;
}

VT_CONTRACT(legacy90vspsConvPartial_NR_16s_Sfs) {
  vt::Contract c;
  c.valid = [=] {
    return vt::Call(name).in("pSrc1", 40).in("pSrc2", 40).out("pDst", 40).scalar("len", 40).scalar("scaleFactor", 12);
  };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("scaleFactor", -1, vspStsRangeErr),
              vt::bad("scaleFactor", 16, vspStsRangeErr)};
  return c;
}
