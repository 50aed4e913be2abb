// G.722 driver: encoder and decoder objects over the library's whole-codec
// state blocks (16 kHz PCM <-> octets), plus the sub-band configuration of
// the digital test sequences (QMF bypassed) over the sub-band steps.
#include <cstddef>
#include <cstring>

#include "vsps_codecs.h"

namespace {

constexpr int kStateCapacity = 256;  // bytes reserved for the library's state block
constexpr int kBand = 26;            // words of a sub-band state

// Object layout; objects take any alignment, so the fields are reached by
// copies (the library's state block itself takes any alignment).
struct Codec {
  int32_t mode;                         // decoder: 1, 2 or 3
  Vsp16s low[kBand], high[kBand];       // sub-band configuration
  unsigned char state[kStateCapacity];  // whole codec
};

unsigned char* state_of(void* p) { return static_cast<unsigned char*>(p) + offsetof(Codec, state); }

void reset_bands(void* p) {
  Vsp16s low[kBand] = {}, high[kBand] = {};
  low[8] = 32;  // det of the lower band
  high[8] = 8;  // det of the higher band
  std::memcpy(static_cast<unsigned char*>(p) + offsetof(Codec, low), low, sizeof low);
  std::memcpy(static_cast<unsigned char*>(p) + offsetof(Codec, high), high, sizeof high);
}

bool fits(VspStatus (*size_fn)(int*)) {
  int size = 0;
  return size_fn(&size) == vspStsNoErr && size <= kStateCapacity;
}

// Runs `step` on copies of the two sub-band states and stores them back.
template <class Step>
VspStatus with_bands(void* p, Step step) {
  Vsp16s low[kBand], high[kBand];
  auto* bytes = static_cast<unsigned char*>(p);
  std::memcpy(low, bytes + offsetof(Codec, low), sizeof low);
  std::memcpy(high, bytes + offsetof(Codec, high), sizeof high);
  const VspStatus st = step(low, high);
  std::memcpy(bytes + offsetof(Codec, low), low, sizeof low);
  std::memcpy(bytes + offsetof(Codec, high), high, sizeof high);
  return st;
}

int mode_of(const void* p) {
  int32_t mode = 0;
  std::memcpy(&mode, static_cast<const unsigned char*>(p) + offsetof(Codec, mode), sizeof mode);
  return mode;
}

}  // namespace

extern "C" {

VspStatus vspscodecG722EncoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(Codec));
  return vspStsNoErr;
}

VspStatus vspscodecG722EncoderInit(VspscodecG722Encoder* enc) {
  if (enc == nullptr) return vspStsNullPtrErr;
  if (!fits(legacy90vspsEncodeGetStateSize_G722_16s8u)) return vspStsErr;
  std::memset(static_cast<void*>(enc), 0, sizeof(Codec));
  reset_bands(enc);
  return legacy90vspsEncodeInit_G722_16s8u(reinterpret_cast<VspsEncoderState_G722_16s*>(state_of(enc)));
}

VspStatus vspscodecG722EncoderEncode(VspscodecG722Encoder* enc, const Vsp16s* pcm, int n, Vsp8u* octets) {
  if (enc == nullptr) return vspStsNullPtrErr;
  return legacy90vspsEncode_G722_16s8u(pcm, octets, n, reinterpret_cast<VspsEncoderState_G722_16s*>(state_of(enc)));
}

VspStatus vspscodecG722EncoderEncodeBands(VspscodecG722Encoder* enc, const Vsp16s* xl, const Vsp16s* xh, int n,
                                          Vsp8u* octets) {
  if (enc == nullptr || xl == nullptr || xh == nullptr || octets == nullptr) return vspStsNullPtrErr;
  if (n < 1) return vspStsSizeErr;
  return with_bands(enc, [&](Vsp16s* low, Vsp16s* high) -> VspStatus {
    for (int i = 0; i < n; ++i) {  // sample by sample: the codes go into octets
      Vsp16s il = 0, ih = 0;
      VspStatus st = legacy90vspsEncodeLowband_G722_16s(xl + i, &il, 1, low);
      if (st == vspStsNoErr) st = legacy90vspsEncodeHighband_G722_16s(xh + i, &ih, 1, high);
      if (st != vspStsNoErr) return st;
      octets[i] = static_cast<Vsp8u>((ih << 6) | il);
    }
    return vspStsNoErr;
  });
}

VspStatus vspscodecG722DecoderGetSize(int* size) {
  if (size == nullptr) return vspStsNullPtrErr;
  *size = static_cast<int>(sizeof(Codec));
  return vspStsNoErr;
}

VspStatus vspscodecG722DecoderInit(VspscodecG722Decoder* dec, int mode) {
  if (dec == nullptr) return vspStsNullPtrErr;
  if (mode < 1 || mode > 3) return vspStsRangeErr;
  if (!fits(legacy90vspsDecodeGetStateSize_G722_8u16s)) return vspStsErr;
  std::memset(static_cast<void*>(dec), 0, sizeof(Codec));
  const int32_t m = mode;
  std::memcpy(reinterpret_cast<unsigned char*>(dec) + offsetof(Codec, mode), &m, sizeof m);
  reset_bands(dec);
  return legacy90vspsDecodeInit_G722_8u16s(reinterpret_cast<VspsDecoderState_G722_16s*>(state_of(dec)));
}

VspStatus vspscodecG722DecoderDecode(VspscodecG722Decoder* dec, const Vsp8u* octets, int n, Vsp16s* pcm) {
  if (dec == nullptr) return vspStsNullPtrErr;
  return legacy90vspsDecode_G722_8u16s(octets, pcm, n, reinterpret_cast<VspsDecoderState_G722_16s*>(state_of(dec)),
                                       mode_of(dec));
}

VspStatus vspscodecG722DecoderDecodeBands(VspscodecG722Decoder* dec, const Vsp8u* octets, int n, Vsp16s* rl,
                                          Vsp16s* rh) {
  if (dec == nullptr || octets == nullptr || rl == nullptr || rh == nullptr) return vspStsNullPtrErr;
  if (n < 1) return vspStsSizeErr;
  const int mode = mode_of(dec);
  return with_bands(dec, [&](Vsp16s* low, Vsp16s* high) -> VspStatus {
    for (int i = 0; i < n; ++i) {
      const auto il = static_cast<Vsp16s>(octets[i] & 63), ih = static_cast<Vsp16s>(octets[i] >> 6);
      VspStatus st = legacy90vspsDecodeLowband_G722_16s(&il, rl + i, 1, low, mode);
      if (st == vspStsNoErr) st = legacy90vspsDecodeHighband_G722_16s(&ih, rh + i, 1, high);
      if (st != vspStsNoErr) return st;
    }
    return vspStsNoErr;
  });
}

}  // extern "C"
