// GSM 06.10 frame formats: the 33-octet frame (signature 0xD, then the 76
// fields most significant bit first) and the test-sequence words (one
// 16-bit little-endian word per parameter).
#include <cstdint>

#include "vsps_codecs.h"

namespace {

constexpr int kParams = 76, kPacked = 33;

// Field width of each parameter: LARc[1..8], then per subframe Nc, bc, Mc,
// xmaxc and 13 pulses.
constexpr struct FieldBits {
  int bits[kParams];
  constexpr FieldBits() : bits{} {
    constexpr int kLar[8] = {6, 6, 5, 5, 4, 4, 3, 3};
    constexpr int kSub[4] = {7, 2, 2, 6};
    for (int i = 0; i < kParams; ++i) bits[i] = i < 8 ? kLar[i] : ((i - 8) % 17 < 4 ? kSub[(i - 8) % 17] : 3);
  }
} kFields;

bool fields_ok(const Vsp16s* params) {
  bool ok = true;
  for (int i = 0; i < kParams; ++i) ok &= static_cast<unsigned>(params[i]) < (1u << kFields.bits[i]);
  return ok;
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
  // Fields enter a bit accumulator most significant bit first; whole
  // octets leave it from the top (4 + 260 bits = 33 octets exactly).
  Vsp8u out[kPacked];  // the frame may overlap the parameters
  uint64_t acc = 0xD;
  int held = 4, at = 0;
  for (int i = 0; i < kParams; ++i) {
    acc = (acc << kFields.bits[i]) | static_cast<uint64_t>(params[i]);
    held += kFields.bits[i];
    while (held >= 8) {
      held -= 8;
      out[at++] = static_cast<Vsp8u>(acc >> held);
    }
  }
  for (int k = 0; k < kPacked; ++k) frame[k] = out[k];
  return vspStsNoErr;
}

VspStatus vspscodecGsmfrUnpack(const Vsp8u* frame, Vsp16s* params) {
  if (frame == nullptr || params == nullptr) return vspStsNullPtrErr;
  if ((frame[0] >> 4) != 0xD) return vspStsBadArgErr;
  uint64_t acc = frame[0] & 0xF;  // bits not yet taken, in the low `held` bits
  int held = 4, at = 1;
  for (int i = 0; i < kParams; ++i) {
    const int n = kFields.bits[i];
    while (held < n) {
      acc = (acc << 8) | frame[at++];
      held += 8;
    }
    held -= n;
    params[i] = static_cast<Vsp16s>((acc >> held) & ((1u << n) - 1));
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
