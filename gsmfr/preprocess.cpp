// GSM 06.10 clause 4.2.1 to 4.2.3: down-scaling, offset compensation and
// pre-emphasis of one 160-sample frame.
#include "core/basic_ops.h"
#include "gsmfr/gsmfr_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsPreprocess_GSMFR_16s(const Vsp16s* pSrc, Vsp16s* pDst, Vsp32s* pMem) {
  if (pSrc == nullptr || pDst == nullptr || pMem == nullptr) return vspStsNullPtrErr;
  if (pMem[0] < bop::kMin16 || pMem[0] > bop::kMax16 || pMem[2] < bop::kMin16 || pMem[2] > bop::kMax16)
    return vspStsRangeErr;
  auto z1 = static_cast<int16_t>(pMem[0]);  // offset-compensation input memory
  int32_t lz2 = pMem[1];                    // offset-compensation output memory, Q15
  auto mp = static_cast<int16_t>(pMem[2]);  // pre-emphasis memory
  for (int k = 0; k < vsps::gsmfr::kFrame; ++k) {
    const auto so = static_cast<int16_t>((pSrc[k] >> 3) * 4);  // top 13 bits, halved
    const int32_t s1 = so - z1;                                // within 17 bits
    z1 = so;
    const int32_t msp = lz2 >> 15;
    const int32_t lsp = lz2 - msp * 32768;
    // s1 << 15 plus the rounded low part; wraps (as 32-bit arithmetic) only
    // for a memory the reference itself could never hold.
    const auto ls2 =
        static_cast<int32_t>(static_cast<uint32_t>(s1) * 32768u + static_cast<uint32_t>((lsp * 32735 + 16384) >> 15));
    lz2 = bop::L_add(msp * 32735, ls2);
    const int32_t lt = bop::L_add(lz2, 16384);
    const auto emph = static_cast<int16_t>((mp * -28180 + 16384) >> 15);
    mp = static_cast<int16_t>(lt >> 15);
    pDst[k] = bop::add(mp, emph);
  }
  pMem[0] = z1;
  pMem[1] = lz2;
  pMem[2] = mp;
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
