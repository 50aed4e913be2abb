// LSP <-> LSF conversions of G.729 (reference Lsp_lsf2, Lsp_lsf, Lsf_lsp2),
// shared by the conversion exports and the LSP quantiser.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/level_ns.h"
#include "g729/g729_tables.h"

namespace vsps::VSPS_NS::lsp {

// LSP (Q15, descending) to radian LSF (Q13): table walk down the 64-entry
// cosine table (the index carries over between coefficients), arc-cosine
// slope interpolation, then x 2 pi.
inline void lsp_to_lsf_radian(const int16_t* lspQ15, int16_t* lsfQ13) {
  namespace t = tables::g729;
  int16_t ind = 63;
  for (int i = 9; i >= 0; --i) {
    while (bop::sub(t::kCosTableQ15[ind], lspQ15[i]) < 0) {
      ind = bop::sub(ind, 1);
      if (ind <= 0) break;
    }
    const int16_t offset = bop::sub(lspQ15[i], t::kCosTableQ15[ind]);
    const int32_t L = bop::L_mult(t::kAcosSlopeQ12[ind], offset);
    const int16_t freq = bop::add(bop::shl(ind, 9), bop::extract_l(bop::L_shr(L, 12)));  // Q15 of 2 pi
    lsfQ13[i] = bop::mult(freq, 25736);                                                  // x 2 pi (Q12)
  }
}

// LSP (Q15) to normalised LSF (Q15, 0..0.5 of the sampling rate) over the
// 65-entry table; the walk starts at entry 63 and has no lower guard (entry
// 0 is 32767, which stops it).
inline void lsp_to_lsf_norm(const int16_t* lspQ15, int16_t* lsfQ15) {
  namespace t = tables::g729;
  int16_t ind = 63;
  for (int i = 9; i >= 0; --i) {
    while (ind > 0 && bop::sub(t::kCosTableNormQ15[ind], lspQ15[i]) < 0) ind = bop::sub(ind, 1);
    const int32_t L = bop::L_mult(bop::sub(lspQ15[i], t::kCosTableNormQ15[ind]), t::kAcosSlopeNormQ12[ind]);
    const int16_t tmp = bop::round(bop::L_shl(L, 3));
    lsfQ15[i] = bop::add(tmp, bop::shl(ind, 8));
  }
}

// Radian LSF (Q13) to LSP (Q15). The table index is clamped to 63 above (LSF
// >= pi, as the reference does) and, a decision of this library, to 0 below
// (negative LSF, where the reference reads before its table).
inline int16_t lsf_to_lsp_radian(int16_t lsfQ13) {
  namespace t = tables::g729;
  const int16_t freq = bop::mult(lsfQ13, 20861);  // / 2 pi, normalised frequency Q15
  int16_t ind = bop::shr(freq, 8);
  const int16_t offset = static_cast<int16_t>(freq & 0x00FF);
  if (ind > 63) ind = 63;
  if (ind < 0) ind = 0;
  const int32_t L = bop::L_mult(t::kCosSlopeQ12[ind], offset);
  return bop::add(t::kCosTableQ15[ind], bop::extract_l(bop::L_shr(L, 13)));
}

}  // namespace vsps::VSPS_NS::lsp
