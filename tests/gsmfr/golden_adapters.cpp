// The GSM 06.10 golden files carry the reference's names; each export's
// adapter binds them to its parameters. The reference's intermediate values
// (autocorrelation, reflection coefficients, weighted signal, exponent and
// mantissa) have no parameter and are not compared.
#include "tests/support/golden_rename.h"

VT_GOLDEN_ADAPTER(legacy90vspsPreprocess_GSMFR_16s) {
  return vt::renaming_adapter({{"s", "pSrc"}, {"so", "pDst"}, {"state", "pMem"}});
}
VT_GOLDEN_ADAPTER(legacy90vspsLPCAnalysis_GSMFR_16s_I) {
  return vt::renaming_adapter({{"s", "pSrcDst"}, {"LARc", "pDstLARc"}}, {"L_ACF", "r", "LAR"});
}
VT_GOLDEN_ADAPTER(legacy90vspsShortTermAnalysis_GSMFR_16s) {
  return vt::renaming_adapter({{"LARc", "pSrcLARc"},
                               {"s", "pSrc"},
                               {"d", "pDst"},
                               {"LARpp_prev", "pLARpp"},
                               {"LARpp", "pLARpp"},
                               {"u", "pMem"}});
}
VT_GOLDEN_ADAPTER(legacy90vspsLongTermPredictor_GSMFR_16s) {
  return vt::renaming_adapter({{"d", "pSrc"},
                               {"dp", "pSrcHist"},
                               {"dpp", "pDstPred"},
                               {"e", "pDstResidual"},
                               {"Nc", "pDstLag"},
                               {"bc", "pDstGain"}});
}
VT_GOLDEN_ADAPTER(legacy90vspsRPEEncode_GSMFR_16s) {
  return vt::renaming_adapter(
      {{"e", "pSrc"}, {"xmaxc", "pDstXmaxc"}, {"Mc", "pDstGrid"}, {"xMc", "pDstPulses"}, {"ep", "pDstExc"}},
      {"x", "exp", "mant"});
}
VT_GOLDEN_ADAPTER(legacy90vspsRPEDecode_GSMFR_16s) {
  return vt::renaming_adapter({{"xMc", "pSrcPulses"}, {"erp", "pDst"}, {"xmaxc", "xmaxc"}, {"Mc", "grid"}});
}
VT_GOLDEN_ADAPTER(legacy90vspsLongTermSynthesis_GSMFR_16s) {
  return vt::renaming_adapter(
      {{"erp", "pSrcExc"}, {"drp", "pHist"}, {"drp_new", "pDst"}, {"nrp", "pLastLag"}, {"Nc", "lag"}, {"bc", "gain"}});
}
VT_GOLDEN_ADAPTER(legacy90vspsShortTermSynthesis_GSMFR_16s) {
  return vt::renaming_adapter({{"LARc", "pSrcLARc"},
                               {"wt", "pSrc"},
                               {"sr", "pDst"},
                               {"LARpp_prev", "pLARpp"},
                               {"LARpp", "pLARpp"},
                               {"v", "pMem"}});
}
VT_GOLDEN_ADAPTER(legacy90vspsPostprocess_GSMFR_16s) {
  return vt::renaming_adapter({{"sr", "pSrc"}, {"s", "pDst"}, {"msr", "pMem"}});
}
