// G.722 quadrature mirror filters over blocks: the transmit analysis into
// two sub-bands at 8 kHz and the receive synthesis back to 16 kHz.
#include "g722/g722_ops.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsQMFAnalysis_G722_16s(const Vsp16s* pSrc, Vsp16s* pDstLow, Vsp16s* pDstHigh, int len,
                                           Vsp16s* pDelay) {
  if (pSrc == nullptr || pDstLow == nullptr || pDstHigh == nullptr || pDelay == nullptr) return vspStsNullPtrErr;
  if (len < 2 || len % 2 != 0) return vspStsSizeErr;
  g722::QmfLine line(pDelay);
  for (int j = 0; j < len / 2; ++j) {
    int16_t xl = 0, xh = 0;
    g722::qmf_analysis(line, pSrc[2 * j], pSrc[2 * j + 1], &xl, &xh);
    pDstLow[j] = xl;
    pDstHigh[j] = xh;
  }
  line.store(pDelay);
  return vspStsNoErr;
}

VspStatus legacy90vspsQMFSynthesis_G722_16s(const Vsp16s* pSrcLow, const Vsp16s* pSrcHigh, Vsp16s* pDst, int len,
                                            Vsp16s* pDelay) {
  if (pSrcLow == nullptr || pSrcHigh == nullptr || pDst == nullptr || pDelay == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  g722::QmfLine line(pDelay);
  for (int j = 0; j < len; ++j) {
    int16_t y[2];
    g722::qmf_synthesis(line, pSrcLow[j], pSrcHigh[j], y);  // both sources read before pDst is written
    pDst[2 * j] = y[0];
    pDst[2 * j + 1] = y[1];
  }
  line.store(pDelay);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
