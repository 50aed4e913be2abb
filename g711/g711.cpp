// G.711 A-law and mu-law: compression of 16-bit linear samples, expansion of
// code words and direct transcoding between the laws (ITU-T G.711 with the
// arithmetic of the ITU-T G.191 g711 module). Code words are as transmitted:
// A-law with the even bits inverted, mu-law with all bits inverted.
#include <cstdint>

#include "core/level_ns.h"
#include "g711/g711_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

// Linear (Q0) -> A-law. A 13-bit law: the magnitude is taken from the top 12
// bits, the negative side as the one's complement (-x - 1) so that the
// decision thresholds mirror around -1/2 LSB.
inline Vsp8u alaw_compress(int32_t x) {
  int32_t m = (x >= 0 ? x : -x - 1) >> 4;  // 0..2047
  int32_t v = m;
  if (m > 15) {
    int32_t e = 1;
    while (m > 31) {
      m >>= 1;
      ++e;
    }
    v = (e << 4) + (m - 16);  // segment 1..7, leading one dropped
  }
  if (x >= 0) v |= 0x80;
  return static_cast<Vsp8u>(v ^ 0x55);
}

// Linear (Q0) -> mu-law. A 14-bit law: the magnitude in 14-bit units plus
// the bias 33, clipped to 8191; all bits inverted on the line.
inline Vsp8u ulaw_compress(int32_t x) {
  int32_t a = ((x >= 0 ? x : -x - 1) >> 2) + 33;
  if (a > 8191) a = 8191;
  int32_t seg = 1;
  for (int32_t t = a >> 6; t != 0; t >>= 1) ++seg;  // 1..8
  const int32_t code = ((8 - seg) << 4) | (15 - ((a >> seg) & 15));
  return static_cast<Vsp8u>(x >= 0 ? code | 0x80 : code);
}

template <class Out, class In, class F>
VspStatus convert(const In* pSrc, Out* pDst, int len, F f) {
  if (pSrc == nullptr || pDst == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  for (int i = 0; i < len; ++i) pDst[i] = f(pSrc[i]);
  return vspStsNoErr;
}

}  // namespace

VspStatus legacy90vspsLinToALaw_G711_16s8u(const Vsp16s* pSrc, Vsp8u* pDst, int len) {
  return convert(pSrc, pDst, len, [](Vsp16s x) { return alaw_compress(x); });
}

VspStatus legacy90vspsLinToMuLaw_G711_16s8u(const Vsp16s* pSrc, Vsp8u* pDst, int len) {
  return convert(pSrc, pDst, len, [](Vsp16s x) { return ulaw_compress(x); });
}

VspStatus legacy90vspsALawToLin_G711_8u16s(const Vsp8u* pSrc, Vsp16s* pDst, int len) {
  return convert(pSrc, pDst, len, [](Vsp8u c) { return tables::g711::kALawToLinear[c]; });
}

VspStatus legacy90vspsMuLawToLin_G711_8u16s(const Vsp8u* pSrc, Vsp16s* pDst, int len) {
  return convert(pSrc, pDst, len, [](Vsp8u c) { return tables::g711::kMuLawToLinear[c]; });
}

VspStatus legacy90vspsALawToMuLaw_G711_8u(const Vsp8u* pSrc, Vsp8u* pDst, int len) {
  return convert(pSrc, pDst, len, [](Vsp8u c) { return ulaw_compress(tables::g711::kALawToLinear[c]); });
}

VspStatus legacy90vspsMuLawToALaw_G711_8u(const Vsp8u* pSrc, Vsp8u* pDst, int len) {
  return convert(pSrc, pDst, len, [](Vsp8u c) { return alaw_compress(tables::g711::kMuLawToLinear[c]); });
}

}  // namespace vsps::VSPS_NS
