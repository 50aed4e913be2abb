// SID LSF reconstruction of G.729 Annex B (clause B.4.2), shared by the
// encoder's SID quantiser and the decoder: the SID sub-codebooks, one
// rearrangement pass, the noise MA predictor, the speech coder's MA memory.
#pragma once

#include "g729/codec_ops.h"
#include "g729/lsf_vq.h"
#include "g729/lsp_lsf.h"

namespace vsps::VSPS_NS::sid {

using namespace g729c;

// noise_fg[mode][k][j]: mode 0 the speech set 0, mode 1 0.6 set 0 + 0.4 set 1.
inline int16_t noise_fg(int mode, int k, int j) {
  const int16_t f0 = lsfvq::ma_pred(0, k)[j];
  if (mode == 0) return f0;
  return extract_h(L_mac(L_mult(f0, 19660), lsfvq::ma_pred(1, k)[j], 13107));
}

// Residual vector of the SID indices i1 (0..31), i2 (0..15), before rearrangement.
inline void residual(int i1, int i2, int16_t* buf) {
  const int16_t* row1 = lsfvq::cb1_row(tb::kSidPtrTab1[i1]);
  for (int l = 0; l < 5; ++l) buf[l] = add(row1[l], lsfvq::cb2_row(tb::kSidPtrTab2[i2])[l]);
  for (int l = 5; l < kM; ++l) buf[l] = add(row1[l], lsfvq::cb2_row(tb::kSidPtrTab2[16 + i2])[l]);
}

// LSP of the SID indices; updates the MA memory prev (4 x 10).
inline void reconstruct(int mode, int i1, int i2, int16_t* prev, int16_t* lspOut) {
  int16_t buf[kM], lsf[kM];
  residual(i1, i2, buf);
  lsfvq::expand(buf, lsfvq::kGap1);
  for (int j = 0; j < kM; ++j) {
    int32_t L = L_mult(buf[j], tb::kSidNoiseFgSum[mode * kM + j]);
    for (int k = 0; k < 4; ++k) L = L_mac(L, prev[k * kM + j], noise_fg(mode, k, j));
    lsf[j] = extract_h(L);
  }
  lsfvq::prev_update(buf, prev);
  lsfvq::stability(lsf);
  for (int j = 0; j < kM; ++j) lspOut[j] = lsp::lsf_to_lsp_radian(lsf[j]);
}

}  // namespace vsps::VSPS_NS::sid
