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

// Linear (Q0) -> code word: one lookup in the compression tables.
inline Vsp8u alaw_compress(int32_t x) { return tables::g711::kCompress.alaw[(x >> 4) + 2048]; }
inline Vsp8u ulaw_compress(int32_t x) { return tables::g711::kCompress.ulaw[(x >> 2) + 8192]; }

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
