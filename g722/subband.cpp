// G.722 sub-band ADPCM over blocks: the lower-band 6-bit and higher-band
// 2-bit encoders and decoders, each continuing from a caller-held state.
#include <cstring>

#include "g722/g722_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

using vsps::g722::kBandState;

bool codes_valid(const Vsp16s* codes, int len, int limit) {
  for (int i = 0; i < len; ++i)
    if (codes[i] < 0 || codes[i] > limit) return false;
  return true;
}

template <class Step>
void run_band(const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState, Step step) {
  int16_t st[kBandState];
  std::memcpy(st, pState, sizeof st);
  for (int i = 0; i < len; ++i) pDst[i] = step(st, pSrc[i]);
  std::memcpy(pState, st, sizeof st);
}

}  // namespace

VspStatus legacy90vspsEncodeLowband_G722_16s(const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState) {
  if (pSrc == nullptr || pDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (!g722::band_state_valid(pState, vsps::g722::kMaxNbl)) return vspStsRangeErr;
  run_band(pSrc, pDst, len, pState,
           [](int16_t* st, int16_t x) { return static_cast<int16_t>(g722::lower_encode(st, x)); });
  return vspStsNoErr;
}

VspStatus legacy90vspsEncodeHighband_G722_16s(const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState) {
  if (pSrc == nullptr || pDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (!g722::band_state_valid(pState, vsps::g722::kMaxNbh)) return vspStsRangeErr;
  run_band(pSrc, pDst, len, pState,
           [](int16_t* st, int16_t x) { return static_cast<int16_t>(g722::higher_encode(st, x)); });
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodeLowband_G722_16s(const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState, int mode) {
  if (pSrc == nullptr || pDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (mode < 1 || mode > 3 || !g722::band_state_valid(pState, vsps::g722::kMaxNbl) || !codes_valid(pSrc, len, 63))
    return vspStsRangeErr;
  run_band(pSrc, pDst, len, pState, [mode](int16_t* st, int16_t c) { return g722::lower_decode(st, c, mode); });
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodeHighband_G722_16s(const Vsp16s* pSrc, Vsp16s* pDst, int len, Vsp16s* pState) {
  if (pSrc == nullptr || pDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (!g722::band_state_valid(pState, vsps::g722::kMaxNbh) || !codes_valid(pSrc, len, 3)) return vspStsRangeErr;
  run_band(pSrc, pDst, len, pState, [](int16_t* st, int16_t c) { return g722::higher_decode(st, c); });
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
