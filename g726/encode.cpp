// The G.726 ADPCM encoder (16, 24, 32, 40 kbit/s) over blocks of 16-bit
// linear samples, with its state block (ITU-T G.726 clause 4.2 and Annex A).
#include "g726/adpcm.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsEncode_G726_16s8u(const Vsp16s* pSrc, Vsp8u* pDst, int len,
                                        VspsEncoderState_G726_16s* pEncState) {
  if (pSrc == nullptr || pDst == nullptr || pEncState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  vsps::g726::State s = g726::load_state(pEncState);
  const vsps::tables::g726::RateTables& rt = vsps::tables::g726::kRates[s.bits - 2];
  for (int k = 0; k < len; ++k) {
    const g726::Estimate est = g726::estimate(s);
    const int32_t sl = (pSrc[k] >> 2) & 16383;                                // Annex A: 14-bit uniform PCM, TC
    const int32_t d = (g726::sx14to16(sl) - g726::sx15to16(est.se)) & 65535;  // SUBTA
    const int32_t i = g726::quantize(rt, d, est.y);
    g726::adapt(s, rt, i, est);
    pDst[k] = static_cast<Vsp8u>(i);
  }
  std::memcpy(pEncState, &s, sizeof s);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
