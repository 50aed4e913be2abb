// Contracts of the G.711 conversions: two pointers and a length.
#include "tests/support/contract.h"

namespace {

vt::Contract conversion(const char* name) {
  vt::Contract c;
  c.valid = [=] { return vt::Call(name).in("pSrc", 256).out("pDst", 256).scalar("len", 256); };
  c.checks = {vt::bad("len", 0, vspStsSizeErr), vt::bad("len", -1, vspStsSizeErr)};
  return c;
}

}  // namespace

VT_CONTRACT(legacy90vspsLinToALaw_G711_16s8u) { return conversion(name); }
VT_CONTRACT(legacy90vspsLinToMuLaw_G711_16s8u) { return conversion(name); }
VT_CONTRACT(legacy90vspsALawToLin_G711_8u16s) { return conversion(name); }
VT_CONTRACT(legacy90vspsMuLawToLin_G711_8u16s) { return conversion(name); }
VT_CONTRACT(legacy90vspsALawToMuLaw_G711_8u) { return conversion(name); }
VT_CONTRACT(legacy90vspsMuLawToALaw_G711_8u) { return conversion(name); }
