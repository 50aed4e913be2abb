// LSF helpers of TS 26.073 shared by the GSM-AMR quantiser, its decoder and
// the LSF-to-LSP export: Lsf_lsp, Lsp_lsf, Lsf_wt and Reorder_lsf, in the
// reference's saturating arithmetic. LSFs are normalised Q15 (16384 = 4 kHz),
// LSPs Q15 cosines. Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "gsmamr/amr_tables.h"

namespace vsps::VSPS_NS::amr {

inline constexpr int16_t kLsfGap = 205;  // minimum LSF distance (Reorder_lsf)

// Lsf_lsp for one value lsfQ15 >= 0: table interval lsf >> 8, clamped to 63
// (the reference reads past its table from 16384 on), linear interpolation
// with the 8-bit offset.
inline int16_t lsf_to_lsp_one(int16_t lsfQ15) {
  int ind = lsfQ15 >> 8;
  if (ind > 63) ind = 63;
  const int32_t offset = lsfQ15 & 0xFF;
  return static_cast<int16_t>(gsmamr::kCosTable[ind] + ((offset * gsmamr::kCosSlope[ind]) >> 8));
}

// Lsf_lsp on a vector whose values are known to be non-negative (quantised
// LSFs after Reorder_lsf).
inline void lsf_to_lsp(const int16_t* lsfQ15, int16_t* lspQ15) {
  for (int i = 0; i < gsmamr::kOrder; ++i) lspQ15[i] = lsf_to_lsp_one(lsfQ15[i]);
}

// Lsp_lsf: walks the cosine table down from index 63 (never up again, so an
// unordered input gives large offsets, saturated as the reference does).
inline void lsp_to_lsf(const int16_t* lspQ15, int16_t* lsfQ15) {
  int16_t ind = 63;
  for (int i = gsmamr::kOrder - 1; i >= 0; --i) {
    while (bop::sub(gsmamr::kCosTable[ind], lspQ15[i]) < 0) --ind;
    const int32_t t = bop::L_mult(bop::sub(lspQ15[i], gsmamr::kCosTable[ind]), gsmamr::kAcosSlope[ind]);
    const int16_t frac = bop::round(bop::L_shl(t, 3));
    lsfQ15[i] = bop::add(frac, bop::shl(ind, 8));
  }
}

// Lsf_wt: weighting factors (Q13) of the VQ search from the LSF spacing.
inline void lsf_weights(const int16_t* lsfQ15, int16_t* wfQ13) {
  int16_t d[gsmamr::kOrder];
  d[0] = lsfQ15[1];
  for (int i = 1; i < gsmamr::kOrder - 1; ++i) d[i] = bop::sub(lsfQ15[i + 1], lsfQ15[i - 1]);
  d[gsmamr::kOrder - 1] = bop::sub(16384, lsfQ15[gsmamr::kOrder - 2]);
  for (int i = 0; i < gsmamr::kOrder; ++i) {
    const int16_t t = bop::sub(d[i], 1843);  // 450 Hz
    const int16_t w = t < 0 ? bop::sub(3427, bop::mult(d[i], 28160)) : bop::sub(1843, bop::mult(t, 6242));
    wfQ13[i] = bop::shl(w, 3);
  }
}

// Reorder_lsf: pushes each LSF up to at least kLsfGap above the previous one
// (the first to at least kLsfGap); no sorting, no upper limit.
inline void reorder_lsf(int16_t* lsfQ15) {
  int16_t lmin = kLsfGap;
  for (int i = 0; i < gsmamr::kOrder; ++i) {
    if (bop::sub(lsfQ15[i], lmin) < 0) lsfQ15[i] = lmin;
    lmin = bop::add(lsfQ15[i], kLsfGap);
  }
}

}  // namespace vsps::VSPS_NS::amr
