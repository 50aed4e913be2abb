// Single-precision LSF decoders: legacy90vspsLSFDecode_G729_32f and
// legacy90vspsLSFDecodeErased_G729_32f (the floating-point annex's
// lsp_get_quant and the erasure branch of lsp_iqua_cs).
#include "g729/float_out.h"
#include "g729/lsf_vq_32f.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsLSFDecode_G729_32f(const int* pQuantIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pDstQLsf) {
  namespace vq = lsfvq32f;
  if (pQuantIndex == nullptr || pSrcDstPrevFreq == nullptr || pDstQLsf == nullptr) return vspStsNullPtrErr;
  // The codes are masked to their bit widths as a bit-stream unpacker does.
  const int mode = pQuantIndex[0] & 1;
  float buf[vq::M];
  vq::residual(pQuantIndex[1] & 127, pQuantIndex[2] & 31, pQuantIndex[3] & 31, buf);
  float lsf[vq::M];
  vq::prev_compose(buf, mode, pSrcDstPrevFreq, lsf);
  vq::prev_update(buf, pSrcDstPrevFreq);
  vq::stability(lsf);
  for (int j = 0; j < vq::M; ++j) pDstQLsf[j] = fout::canonical(lsf[j]);
  return vspStsNoErr;
}

VspStatus legacy90vspsLSFDecodeErased_G729_32f(int maIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pSrcDstLsf) {
  namespace vq = lsfvq32f;
  if (pSrcDstPrevFreq == nullptr || pSrcDstLsf == nullptr) return vspStsNullPtrErr;
  if (maIndex != 0 && maIndex != 1) return vspStsBadIndexErr;
  float res[vq::M];
  vq::prev_extract(pSrcDstLsf, maIndex, pSrcDstPrevFreq, res);
  for (float& v : res) v = fout::canonical(v);
  vq::prev_update(res, pSrcDstPrevFreq);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
