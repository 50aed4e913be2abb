// LSP to LP conversion shared by G.729 and GSM-AMR (ITU-T G.729 clause 3.2.6
// Lsp_Az with Get_lsp_pol; TS 26.073 Lsp_Az is the same arithmetic).
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/dpf.h"
#include "core/level_ns.h"

namespace vsps::VSPS_NS::lsp {

// Coefficients f[0..5] (Q24, 32-bit) of the product of the five factors
// 1 - 2 q z^-1 + z^-2 for q = lsp[0], lsp[2], .. lsp[8] (stride 2, Q15).
inline void lsp_polynomial(const int16_t* lsp, int32_t* f) {
  f[0] = bop::L_mult(4096, 2048);     // 1.0 in Q24
  f[1] = bop::L_msu(0, lsp[0], 512);  // -2 q0
  for (int i = 2; i <= 5; ++i) {
    const int16_t q = lsp[2 * (i - 1)];
    f[i] = f[i - 2];
    for (int m = i; m >= 2; --m) {
      const int32_t t = bop::L_shl(dpf::Mpy_32_16(dpf::L_Extract(f[m - 1]), q), 1);  // 2 q f[m-1]
      f[m] = bop::L_sub(bop::L_add(f[m], f[m - 2]), t);
    }
    f[1] = bop::L_msu(f[1], q, 512);
  }
}

// a[0..10] (Q12, a[0] = 4096) from lsp[0..9] (Q15): F1 from the even-indexed
// LSPs times (1 + z^-1), F2 from the odd-indexed ones times (1 - z^-1),
// a[i] = (F1[i] + F2[i]) / 2 and a[11-i] = (F1[i] - F2[i]) / 2 rounded, the
// low 16 bits kept without saturation. lsp and a may not overlap.
inline void lsp_to_lpc_q12(const int16_t* lsp, int16_t* a) {
  int32_t f1[6];
  int32_t f2[6];
  lsp_polynomial(lsp, f1);
  lsp_polynomial(lsp + 1, f2);
  for (int i = 5; i > 0; --i) {
    f1[i] = bop::L_add(f1[i], f1[i - 1]);
    f2[i] = bop::L_sub(f2[i], f2[i - 1]);
  }
  a[0] = 4096;
  for (int i = 1; i <= 5; ++i) {
    a[i] = bop::extract_l(bop::L_shr_r(bop::L_add(f1[i], f2[i]), 13));
    a[11 - i] = bop::extract_l(bop::L_shr_r(bop::L_sub(f1[i], f2[i]), 13));
  }
}

}  // namespace vsps::VSPS_NS::lsp
