// The 128-point real FFT of the GSM-AMR VAD option 2 (TS 26.073 r_fft and
// c_fft): 64-point complex radix-2 FFT in place with a halving per stage,
// then the split into the real spectrum. Bin k (1..63) ends at x[2k],
// x[2k+1]; x[0] and x[1] hold the DC and Nyquist values.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "gsmamr/amr_codec_tables.h"

namespace vsps::VSPS_NS::amr {

inline void vad2_c_fft(int16_t* x) {
  constexpr int kSize = 128;
  const int16_t* c = gsmamr::kVad2PhsTbl;
  for (int i = 0, j = 0; i < kSize - 2; i += 2) {
    if (j > i) {
      const int16_t r = x[i], m = x[i + 1];
      x[i] = x[j];
      x[i + 1] = x[j + 1];
      x[j] = r;
      x[j + 1] = m;
    }
    int k = kSize / 2;
    while (j >= k) {
      j -= k;
      k >>= 1;
    }
    j += k;
  }
  for (int stage = 0; stage < 6; ++stage) {
    const int jj = 2 << stage, kk = 2 * jj, ii2 = 2 * (64 >> stage);
    int ji = 0;
    for (int j = 0; j < jj; j += 2) {
      for (int k = j; k < kSize; k += kk) {
        const int kj = k + jj;
        const int16_t re = bop::round(bop::L_msu(bop::L_mult(x[kj], c[ji]), x[kj + 1], c[ji + 1]));
        const int16_t im = bop::round(bop::L_mac(bop::L_mult(x[kj + 1], c[ji]), x[kj], c[ji + 1]));
        x[kj] = bop::shr(bop::sub(x[k], re), 1);
        x[kj + 1] = bop::shr(bop::sub(x[k + 1], im), 1);
        x[k] = bop::shr(bop::add(x[k], re), 1);
        x[k + 1] = bop::shr(bop::add(x[k + 1], im), 1);
      }
      ji += ii2;
    }
  }
}

inline void vad2_r_fft(int16_t* x) {
  const int16_t* c = gsmamr::kVad2PhsTbl;
  vad2_c_fft(x);
  const int16_t t1 = x[0], t2 = x[1];
  x[0] = bop::add(t1, t2);
  x[1] = bop::sub(t1, t2);
  for (int i = 2; i <= 64; i += 2) {
    const int j = 128 - i;
    const int16_t f1r = bop::add(x[i], x[j]), f1i = bop::sub(x[i + 1], x[j + 1]);
    const int16_t f2r = bop::add(x[i + 1], x[j + 1]), f2i = bop::sub(x[j], x[i]);
    const int32_t h1r = bop::L_deposit_h(f1r), h1i = bop::L_deposit_h(f1i);
    x[i] = bop::round(bop::L_shr(bop::L_msu(bop::L_mac(h1r, f2r, c[i]), f2i, c[i + 1]), 1));
    x[i + 1] = bop::round(bop::L_shr(bop::L_mac(bop::L_mac(h1i, f2i, c[i]), f2r, c[i + 1]), 1));
    x[j] = bop::round(bop::L_shr(bop::L_mac(bop::L_mac(h1r, f2r, c[j]), f2i, c[j + 1]), 1));
    x[j + 1] = bop::round(bop::L_shr(bop::L_mac(bop::L_msu(bop::L_negate(h1i), f2i, c[j]), f2r, c[j + 1]), 1));
  }
}

}  // namespace vsps::VSPS_NS::amr
