// G.722 driver: encoder and decoder objects over the library's whole-codec
// state blocks (16 kHz PCM <-> octets), plus the sub-band configuration of
// the Appendix II test sequences (QMF bypassed) over the sub-band steps.
#include <cstring>

#include "vsps_codecs.h"

namespace {

constexpr int kStateCapacity = 256;  // bytes reserved for the library's state block
constexpr int kBand = 26;            // words of a sub-band state

struct Codec {
  int32_t mode;                                    // decoder: 1, 2 or 3
  alignas(8) unsigned char state[kStateCapacity];  // whole codec
  Vsp16s low[kBand], high[kBand];                  // sub-band configuration
};

void reset_bands(Codec* c) {
  std::memset(c->low, 0, sizeof c->low);
  std::memset(c->high, 0, sizeof c->high);
  c->low[8] = 32;  // det of the lower band
  c->high[8] = 8;  // det of the higher band
}

bool fits(VspStatus (*size_fn)(int*)) {
  int size = 0;
  return size_fn(&size) == vspStsNoErr && size <= kStateCapacity;
}

}  // namespace

extern "C" {

VspStatus vspcG722EncoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(Codec));
  return vspStsNoErr;
}

VspStatus vspcG722EncoderInit(VspcG722Encoder* enc) {
  if (enc == nullptr) return vspStsNullPtrErr;
  if (!fits(legacy90vspsEncodeGetStateSize_G722_16s8u)) return vspStsErr;
  auto* c = reinterpret_cast<Codec*>(enc);
  c->mode = 1;
  reset_bands(c);
  return legacy90vspsEncodeInit_G722_16s8u(reinterpret_cast<VspsEncoderState_G722_16s*>(c->state));
}

VspStatus vspcG722Encode(VspcG722Encoder* enc, const Vsp16s* pcm, int n, Vsp8u* octets) {
  if (enc == nullptr) return vspStsNullPtrErr;
  auto* c = reinterpret_cast<Codec*>(enc);
  return legacy90vspsEncode_G722_16s8u(pcm, octets, n, reinterpret_cast<VspsEncoderState_G722_16s*>(c->state));
}

VspStatus vspcG722EncodeBands(VspcG722Encoder* enc, const Vsp16s* xl, const Vsp16s* xh, int n, Vsp8u* octets) {
  if (enc == nullptr || xl == nullptr || xh == nullptr || octets == nullptr) return vspStsNullPtrErr;
  if (n < 1) return vspStsSizeErr;
  auto* c = reinterpret_cast<Codec*>(enc);
  for (int i = 0; i < n; ++i) {  // sample by sample: the octets may not hold 16-bit codes
    Vsp16s il = 0, ih = 0;
    VspStatus st = legacy90vspsEncodeLowband_G722_16s(xl + i, &il, 1, c->low);
    if (st == vspStsNoErr) st = legacy90vspsEncodeHighband_G722_16s(xh + i, &ih, 1, c->high);
    if (st != vspStsNoErr) return st;
    octets[i] = static_cast<Vsp8u>((ih << 6) | il);
  }
  return vspStsNoErr;
}

VspStatus vspcG722DecoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(Codec));
  return vspStsNoErr;
}

VspStatus vspcG722DecoderInit(VspcG722Decoder* dec, int mode) {
  if (dec == nullptr) return vspStsNullPtrErr;
  if (mode < 1 || mode > 3) return vspStsRangeErr;
  if (!fits(legacy90vspsDecodeGetStateSize_G722_8u16s)) return vspStsErr;
  auto* c = reinterpret_cast<Codec*>(dec);
  c->mode = mode;
  reset_bands(c);
  return legacy90vspsDecodeInit_G722_8u16s(reinterpret_cast<VspsDecoderState_G722_16s*>(c->state));
}

VspStatus vspcG722Decode(VspcG722Decoder* dec, const Vsp8u* octets, int n, Vsp16s* pcm) {
  if (dec == nullptr) return vspStsNullPtrErr;
  auto* c = reinterpret_cast<Codec*>(dec);
  return legacy90vspsDecode_G722_8u16s(octets, pcm, n, reinterpret_cast<VspsDecoderState_G722_16s*>(c->state), c->mode);
}

VspStatus vspcG722DecodeBands(VspcG722Decoder* dec, const Vsp8u* octets, int n, Vsp16s* rl, Vsp16s* rh) {
  if (dec == nullptr || octets == nullptr || rl == nullptr || rh == nullptr) return vspStsNullPtrErr;
  if (n < 1) return vspStsSizeErr;
  auto* c = reinterpret_cast<Codec*>(dec);
  for (int i = 0; i < n; ++i) {
    const Vsp16s il = static_cast<Vsp16s>(octets[i] & 63), ih = static_cast<Vsp16s>(octets[i] >> 6);
    VspStatus st = legacy90vspsDecodeLowband_G722_16s(&il, rl + i, 1, c->low, c->mode);
    if (st == vspStsNoErr) st = legacy90vspsDecodeHighband_G722_16s(&ih, rh + i, 1, c->high);
    if (st != vspStsNoErr) return st;
  }
  return vspStsNoErr;
}

}  // extern "C"
