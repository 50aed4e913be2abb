// Packing of G.726 code words into octets and back, in the two orders in
// use: RTP (RFC 3551, ITU-T X.420: the first word in the least significant
// bits) and AAL2 (ITU-T I.366.2 Annex E: the first word in the most
// significant bits). A word that does not fit continues in the next octet.
#include <cstdint>

#include "g726/adpcm.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

VspStatus check(const Vsp8u* pSrc, const Vsp8u* pDst, int len, int rate, int order) {
  if (pSrc == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (g726::bits_of_rate(rate) == 0 || (order != vspPackRtp && order != vspPackAal2)) return vspStsRangeErr;
  return vspStsNoErr;
}

}  // namespace

VspStatus legacy90vspsPack_G726_8u(const Vsp8u* pSrc, Vsp8u* pDst, int len, int rate, int order) {
  if (const VspStatus st = check(pSrc, pDst, len, rate, order); st != vspStsNoErr) return st;
  const int n = g726::bits_of_rate(rate);
  const uint32_t mask = (1u << n) - 1;
  uint32_t acc = 0;  // pending bits: RTP in the low end (first bit lowest), AAL2 in the high end
  int pending = 0;
  int out = 0;
  for (int k = 0; k < len; ++k) {
    const uint32_t code = pSrc[k] & mask;
    if (order == vspPackRtp) {
      acc |= code << pending;
      pending += n;
      if (pending >= 8) {
        pDst[out++] = static_cast<Vsp8u>(acc & 0xFF);
        acc >>= 8;
        pending -= 8;
      }
    } else {
      acc = (acc << n) | code;
      pending += n;
      if (pending >= 8) {
        pending -= 8;
        pDst[out++] = static_cast<Vsp8u>((acc >> pending) & 0xFF);
      }
    }
  }
  if (pending > 0)  // the last octet is padded with zero bits
    pDst[out] = static_cast<Vsp8u>(order == vspPackRtp ? acc & 0xFF : (acc << (8 - pending)) & 0xFF);
  return vspStsNoErr;
}

VspStatus legacy90vspsUnpack_G726_8u(const Vsp8u* pSrc, Vsp8u* pDst, int len, int rate, int order) {
  if (const VspStatus st = check(pSrc, pDst, len, rate, order); st != vspStsNoErr) return st;
  const int n = g726::bits_of_rate(rate);
  const uint32_t mask = (1u << n) - 1;
  uint32_t acc = 0;
  int pending = 0;
  int in = 0;
  for (int k = 0; k < len; ++k) {
    if (pending < n) {
      if (order == vspPackRtp)
        acc |= uint32_t(pSrc[in++]) << pending;
      else
        acc = (acc << 8) | pSrc[in++];
      pending += 8;
    }
    if (order == vspPackRtp) {
      pDst[k] = static_cast<Vsp8u>(acc & mask);
      acc >>= n;
    } else {
      pDst[k] = static_cast<Vsp8u>((acc >> (pending - n)) & mask);
    }
    pending -= n;
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
