// G.711 driver: compression and expansion of whole buffers in either law.
#include "vsps_codecs.h"

namespace {

// The library's checks (null pointers, size) come first; then the law.
template <class In, class Out, class F>
VspStatus convert(int law, const In* in, int n, Out* out, F alaw, F mulaw) {
  if (law == vspPcmALaw) return alaw(in, out, n);
  if (law == vspPcmMuLaw) return mulaw(in, out, n);
  if (in == nullptr || out == nullptr) return vspStsNullPtrErr;
  return n < 1 ? vspStsSizeErr : vspStsRangeErr;
}

}  // namespace

extern "C" VspStatus vspscodecG711Encode(int law, const Vsp16s* pcm, int n, Vsp8u* codes) {
  return convert(law, pcm, n, codes, &legacy90vspsLinToALaw_G711_16s8u, &legacy90vspsLinToMuLaw_G711_16s8u);
}

extern "C" VspStatus vspscodecG711Decode(int law, const Vsp8u* codes, int n, Vsp16s* pcm) {
  return convert(law, codes, n, pcm, &legacy90vspsALawToLin_G711_8u16s, &legacy90vspsMuLawToLin_G711_8u16s);
}
