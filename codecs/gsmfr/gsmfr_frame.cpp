// GSM 06.10 frame formats: the 33-octet frame (signature 0xD, then the 76
// fields most significant bit first) and the test-sequence words (one
// 16-bit little-endian word per parameter).
#include "vsps_codecs.h"

namespace {

constexpr int kParams = 76, kPacked = 33;

// Field width of parameter i (LARc[1..8], then per subframe Nc, bc, Mc,
// xmaxc and 13 pulses).
int field_bits(int i) {
  static constexpr int kLar[8] = {6, 6, 5, 5, 4, 4, 3, 3};
  static constexpr int kSub[4] = {7, 2, 2, 6};
  if (i < 8) return kLar[i];
  const int k = (i - 8) % 17;
  return k < 4 ? kSub[k] : 3;
}

bool fields_ok(const Vsp16s* params) {
  for (int i = 0; i < kParams; ++i)
    if (params[i] < 0 || params[i] >= (1 << field_bits(i))) return false;
  return true;
}

}  // namespace

extern "C" {

VspStatus vspscodecGsmfrCheckParams(const Vsp16s* params) {
  if (params == nullptr) return vspStsNullPtrErr;
  return fields_ok(params) ? vspStsNoErr : vspStsRangeErr;
}

VspStatus vspscodecGsmfrPack(const Vsp16s* params, Vsp8u* frame) {
  if (params == nullptr || frame == nullptr) return vspStsNullPtrErr;
  if (!fields_ok(params)) return vspStsRangeErr;
  Vsp8u out[kPacked] = {};
  int bit = 0;  // next bit position, 0 = most significant bit of octet 0
  auto put = [&](int value, int bits) {
    for (int b = bits - 1; b >= 0; --b, ++bit)
      if ((value >> b) & 1) out[bit >> 3] = static_cast<Vsp8u>(out[bit >> 3] | (0x80 >> (bit & 7)));
  };
  put(0xD, 4);
  for (int i = 0; i < kParams; ++i) put(params[i], field_bits(i));
  for (int k = 0; k < kPacked; ++k) frame[k] = out[k];
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrUnpack(const Vsp8u* frame, Vsp16s* params) {
  if (frame == nullptr || params == nullptr) return vspStsNullPtrErr;
  if ((frame[0] >> 4) != 0xD) return vspStsBadArgErr;
  int bit = 4;
  for (int i = 0; i < kParams; ++i) {
    int v = 0;
    for (int b = 0; b < field_bits(i); ++b, ++bit) v = (v << 1) | ((frame[bit >> 3] >> (7 - (bit & 7))) & 1);
    params[i] = static_cast<Vsp16s>(v);
  }
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrToCod(const Vsp16s* params, Vsp8u* words) {
  if (params == nullptr || words == nullptr) return vspStsNullPtrErr;
  if (!fields_ok(params)) return vspStsRangeErr;
  for (int i = 0; i < kParams; ++i) {
    words[2 * i] = static_cast<Vsp8u>(params[i] & 0xFF);
    words[2 * i + 1] = static_cast<Vsp8u>((params[i] >> 8) & 0xFF);
  }
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrFromCod(const Vsp8u* words, Vsp16s* params) {
  if (words == nullptr || params == nullptr) return vspStsNullPtrErr;
  Vsp16s p[kParams];
  for (int i = 0; i < kParams; ++i) p[i] = static_cast<Vsp16s>(words[2 * i] | (words[2 * i + 1] << 8));
  if (!fields_ok(p)) return vspStsRangeErr;
  for (int i = 0; i < kParams; ++i) params[i] = p[i];
  return vspStsNoErr;
}

}  // extern "C"
