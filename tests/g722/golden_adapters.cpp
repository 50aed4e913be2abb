// The G.722 golden files hold one reference call per case (one sample pair
// or one sample) with the reference's names; each adapter binds them to the
// block export's parameters with the length of one call.
#include "tests/support/golden_rename.h"

VT_GOLDEN_ADAPTER(legacy90vspsQMFAnalysis_G722_16s) {
  return vt::renaming_adapter({{"x", "pSrc"}, {"xl", "pDstLow"}, {"xh", "pDstHigh"}, {"delay", "pDelay"}}, {},
                              {{"len", 2}});
}
VT_GOLDEN_ADAPTER(legacy90vspsQMFSynthesis_G722_16s) {
  return vt::renaming_adapter({{"rl", "pSrcLow"}, {"rh", "pSrcHigh"}, {"y", "pDst"}, {"delay", "pDelay"}}, {},
                              {{"len", 1}});
}
VT_GOLDEN_ADAPTER(legacy90vspsEncodeLowband_G722_16s) {
  return vt::renaming_adapter({{"xl", "pSrc"}, {"il", "pDst"}, {"state", "pState"}}, {}, {{"len", 1}});
}
VT_GOLDEN_ADAPTER(legacy90vspsEncodeHighband_G722_16s) {
  return vt::renaming_adapter({{"xh", "pSrc"}, {"ih", "pDst"}, {"state", "pState"}}, {}, {{"len", 1}});
}
VT_GOLDEN_ADAPTER(legacy90vspsDecodeLowband_G722_16s) {
  return vt::renaming_adapter({{"ilr", "pSrc"}, {"rl", "pDst"}, {"state", "pState"}, {"mode", "mode"}}, {},
                              {{"len", 1}});
}
VT_GOLDEN_ADAPTER(legacy90vspsDecodeHighband_G722_16s) {
  return vt::renaming_adapter({{"ih", "pSrc"}, {"rh", "pDst"}, {"state", "pState"}}, {}, {{"len", 1}});
}
