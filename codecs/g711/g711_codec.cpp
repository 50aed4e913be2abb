// G.711 driver: compression and expansion of whole buffers in either law.
#include "vsps_codecs.h"

extern "C" VspStatus vspcG711Encode(int law, const Vsp16s* pcm, int n, Vsp8u* codes) {
  if (law == vspPcmALaw) return legacy90vspsLinToALaw_G711_16s8u(pcm, codes, n);
  if (law == vspPcmMuLaw) return legacy90vspsLinToMuLaw_G711_16s8u(pcm, codes, n);
  return vspStsRangeErr;
}

extern "C" VspStatus vspcG711Decode(int law, const Vsp8u* codes, int n, Vsp16s* pcm) {
  if (law == vspPcmALaw) return legacy90vspsALawToLin_G711_8u16s(codes, pcm, n);
  if (law == vspPcmMuLaw) return legacy90vspsMuLawToLin_G711_8u16s(codes, pcm, n);
  return vspStsRangeErr;
}
