// The whole G.722 codec over blocks with a state block: transmit QMF and
// both sub-band encoders into octets (ih << 6 | il), and the decoders and
// receive QMF back to 16 kHz samples in modes 1, 2 and 3.
#include <cstring>

#include "g722/g722_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

using vsps::g722::kBandState;
using vsps::g722::kDelay;

// Layout of both state blocks (copied in and out, so any alignment works).
struct Codec {
  int16_t delay[kDelay];
  int16_t low[kBandState];
  int16_t high[kBandState];
};

void reset(Codec* c) {
  std::memset(c, 0, sizeof *c);
  c->low[g722::kDet] = 32;
  c->high[g722::kDet] = 8;
}

// A block formatted by Init keeps both log scale factors in range; anything
// else would index outside the antilog table.
bool load(const void* block, Codec* c) {
  std::memcpy(c, block, sizeof *c);
  return g722::band_state_valid(c->low, vsps::g722::kMaxNbl) && g722::band_state_valid(c->high, vsps::g722::kMaxNbh);
}

}  // namespace

VspStatus legacy90vspsEncodeGetStateSize_G722_16s8u(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(Codec));
  return vspStsNoErr;
}

VspStatus legacy90vspsEncodeInit_G722_16s8u(VspsEncoderState_G722_16s* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  Codec c;
  reset(&c);
  std::memcpy(static_cast<void*>(pState), &c, sizeof c);
  return vspStsNoErr;
}

VspStatus legacy90vspsEncode_G722_16s8u(const Vsp16s* pSrc, Vsp8u* pDst, int len, VspsEncoderState_G722_16s* pState) {
  if (pSrc == nullptr || pDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (len < 2 || len % 2 != 0) return vspStsSizeErr;
  Codec c;
  if (!load(pState, &c)) return vspStsRangeErr;
  g722::QmfLine line(c.delay);
  for (int j = 0; j < len / 2; ++j) {
    int16_t xl = 0, xh = 0;
    g722::qmf_analysis(line, pSrc[2 * j], pSrc[2 * j + 1], &xl, &xh);
    const int il = g722::lower_encode(c.low, xl);
    const int ih = g722::higher_encode(c.high, xh);
    pDst[j] = static_cast<Vsp8u>((ih << 6) | il);
  }
  line.store(c.delay);
  std::memcpy(static_cast<void*>(pState), &c, sizeof c);
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodeGetStateSize_G722_8u16s(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = static_cast<int>(sizeof(Codec));
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodeInit_G722_8u16s(VspsDecoderState_G722_16s* pState) {
  if (pState == nullptr) return vspStsNullPtrErr;
  Codec c;
  reset(&c);
  std::memcpy(static_cast<void*>(pState), &c, sizeof c);
  return vspStsNoErr;
}

VspStatus legacy90vspsDecode_G722_8u16s(const Vsp8u* pSrc, Vsp16s* pDst, int len, VspsDecoderState_G722_16s* pState,
                                        int mode) {
  if (pSrc == nullptr || pDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (mode < 1 || mode > 3) return vspStsRangeErr;
  Codec c;
  if (!load(pState, &c)) return vspStsRangeErr;
  g722::QmfLine line(c.delay);
  for (int j = 0; j < len; ++j) {
    const int octet = pSrc[j];
    const int16_t rl = g722::lower_decode(c.low, octet & 63, mode);
    const int16_t rh = g722::higher_decode(c.high, (octet >> 6) & 3);
    g722::qmf_synthesis(line, rl, rh, pDst + 2 * j);
  }
  line.store(c.delay);
  std::memcpy(static_cast<void*>(pState), &c, sizeof c);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
