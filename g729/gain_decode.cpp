// G.729 gain decoding (clause 4.1.5, Dec_gain) with the MA prediction of the
// fixed-codebook gain and the erasure concealment of clause 4.4.2.
#include "g729/codec_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

VspStatus legacy90vspsDecodeGain_G729_16s(int index, int erased, const Vsp16s* pCode, Vsp16s* pSrcDstPastQuaEn,
                                          Vsp16s* pSrcDstGains) {
  if (pCode == nullptr || pSrcDstPastQuaEn == nullptr || pSrcDstGains == nullptr) return vspStsNullPtrErr;
  if (!erased && (index < 0 || index > 127)) return vspStsRangeErr;
  if (erased) {
    int16_t gp = mult(pSrcDstGains[0], 29491);
    if (gp > 29491) gp = 29491;
    pSrcDstGains[0] = gp;
    pSrcDstGains[1] = mult(pSrcDstGains[1], 32111);
    gain_update_erasure(pSrcDstPastQuaEn);
    return vspStsNoErr;
  }
  const int i1 = tb::kImap1[index >> 4];
  const int i2 = tb::kImap2[index & 15];
  int16_t gcode0, expGcode0;
  gain_predict(pSrcDstPastQuaEn, pCode, &gcode0, &expGcode0);
  const int32_t gbk12 = L_add(L_deposit_l(tb::kGbk1[2 * i1 + 1]), L_deposit_l(tb::kGbk2[2 * i2 + 1]));
  pSrcDstGains[0] = add(tb::kGbk1[2 * i1], tb::kGbk2[2 * i2]);
  pSrcDstGains[1] = code_gain(gbk12, gcode0, expGcode0);
  gain_update(pSrcDstPastQuaEn, gbk12);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
