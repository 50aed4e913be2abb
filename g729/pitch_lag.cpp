// Pitch-lag coding of G.729 (clause 3.7.2 and 4.1.3): the parity bit of the
// first subframe's index (Parity_Pitch) and the lag decoder with the
// erasure concealment of clause 4.4.1 (Dec_lag3 and the old_T0 rule).
#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
// 1 + the number of set bits among bits 2..7 of the 8-bit index.
int16_t parity_sum(int16_t index) {
  int16_t t = bop::shr(index, 1);
  int16_t sum = 1;
  for (int i = 0; i < 6; ++i) {
    t = bop::shr(t, 1);
    sum = bop::add(sum, static_cast<int16_t>(t & 1));
  }
  return sum;
}
}  // namespace

VspStatus legacy90vspsPitchParity_G729_16s(Vsp16s index, Vsp16s* pDstParity) {
  if (pDstParity == nullptr) return vspStsNullPtrErr;
  if (index < 0 || index > 255) return vspStsRangeErr;
  *pDstParity = static_cast<Vsp16s>(parity_sum(index) & 1);
  return vspStsNoErr;
}

VspStatus legacy90vspsDecodePitchLag_G729_16s(Vsp16s index, int subframe, int erased, Vsp16s* pSrcDstOldT0,
                                              Vsp16s* pSrcDstT0, Vsp16s* pDstFrac) {
  using namespace bop;
  if (pSrcDstOldT0 == nullptr || pSrcDstT0 == nullptr || pDstFrac == nullptr) return vspStsNullPtrErr;
  if (subframe < 0 || subframe > 1) return vspStsRangeErr;
  if (index < 0 || index > (subframe == 0 ? 255 : 31)) return vspStsRangeErr;
  if (*pSrcDstOldT0 < g729c::kLagMin || *pSrcDstOldT0 > g729c::kLagMax) return vspStsRangeErr;
  if (subframe == 1 && !erased && (*pSrcDstT0 < g729c::kLagMin || *pSrcDstT0 > g729c::kLagMax)) return vspStsRangeErr;
  int16_t t0, frac;
  if (erased) {
    t0 = *pSrcDstOldT0;
    frac = 0;
    int16_t old = add(*pSrcDstOldT0, 1);
    if (old > g729c::kPitMax) old = g729c::kPitMax;
    *pSrcDstOldT0 = old;
  } else {
    if (subframe == 0) {
      if (index < 197) {
        t0 = add(mult(add(index, 2), 10923), 19);
        frac = add(sub(index, add(add(t0, t0), t0)), 58);
      } else {
        t0 = sub(index, 112);
        frac = 0;
      }
    } else {
      int16_t tMin = sub(*pSrcDstT0, 5);
      if (tMin < g729c::kPitMin) tMin = g729c::kPitMin;
      const int16_t tMax = add(tMin, 9);
      if (tMax > g729c::kPitMax) tMin = sub(g729c::kPitMax, 9);
      const int16_t i = sub(mult(add(index, 2), 10923), 1);
      t0 = add(i, tMin);
      frac = sub(sub(index, 2), add(add(i, i), i));
    }
    *pSrcDstOldT0 = t0;
  }
  *pSrcDstT0 = t0;
  *pDstFrac = frac;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
