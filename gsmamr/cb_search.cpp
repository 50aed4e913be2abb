// legacy90vspsFixedCodebookSearch_GSMAMR_16s: the algebraic codebook search
// of one subframe (TS 26.073 cbsearch) for every rate.
#include "core/level_ns.h"
#include "gsmamr/cb_depth.h"
#include "gsmamr/cb_tracks.h"
#include "gsmamr/dec_state.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsFixedCodebookSearch_GSMAMR_16s(const Vsp16s* pTarget2, const Vsp16s* pImp,
                                                     const Vsp16s* pLtpResidual, Vsp16s T0, Vsp16s sharpGain,
                                                     int subframe, Vsp16s* pDstCode, Vsp16s* pDstFiltCode,
                                                     Vsp16s* pDstIndex, int mode) {
  if (!pTarget2 || !pImp || !pLtpResidual || !pDstCode || !pDstFiltCode || !pDstIndex) return vspStsNullPtrErr;
  const int16_t m = amr::ref_mode(mode);
  if (T0 < 17 || T0 > amr::kPitMax + 1 || subframe < 0 || subframe > 3 || m < 0 || m == amr::MRDTX)
    return vspStsRangeErr;
  int16_t h[amr::kSubfr], code[amr::kSubfr], y[amr::kSubfr], indx[10];
  for (int i = 0; i < amr::kSubfr; ++i) h[i] = pImp[i];
  const int16_t sharp = bop::shl(sharpGain, 1);
  if (T0 < amr::kSubfr) amr::cb::sharpen(h, T0, sharp);
  int n_indx = 2;
  if (m == amr::MR122) {
    amr::cb::code_10i40(pTarget2, pLtpResidual, h, code, y, indx);
    n_indx = 10;
  } else if (m == amr::MR102) {
    amr::cb::code_8i40(pTarget2, pLtpResidual, h, code, y, indx);
    n_indx = 7;
  } else {
    amr::cb::code_tracks(m, subframe, pTarget2, h, code, y, indx);
  }
  if (T0 < amr::kSubfr) amr::cb::sharpen(code, T0, sharp);
  for (int i = 0; i < amr::kSubfr; ++i) {
    pDstCode[i] = code[i];
    pDstFiltCode[i] = y[i];
  }
  for (int i = 0; i < n_indx; ++i) pDstIndex[i] = indx[i];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
