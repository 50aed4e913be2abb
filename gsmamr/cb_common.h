// Common elements of the GSM-AMR algebraic codebook searches (TS 26.073
// cor_h_x2, cor_h, set_sign, set_sign12k2, the pitch sharpening and the
// search criterion). Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "gsmamr/amr_ops.h"

namespace vsps::VSPS_NS::amr::cb {

inline constexpr int16_t k1_2 = 16384, k1_4 = 8192, k1_8 = 4096, k1_16 = 2048, k1_32 = 1024, k1_64 = 512, k1_128 = 256;

// Sign-weighted correlation matrix rr[i][j] (Q9-ish as the reference scales it).
using Matrix = int16_t[kSubfr][kSubfr];

// x[i] += x[i - T0] * sharp (Q14 * 2) for i = T0..39, ascending in place.
inline void sharpen(int16_t* x, int16_t T0, int16_t sharp) {
  for (int i = T0; i < kSubfr; ++i) x[i] = bop::add(x[i], bop::mult(x[i - T0], sharp));
}

// Backward-filtered target dn (cor_h_x2): correlation of x with h, scaled so
// that the sum of the track maxima (halved) is normalised, minus sf bits.
inline void cor_h_x(const int16_t* h, const int16_t* x, int16_t* dn, int16_t sf, int nb_track, int step) {
  int32_t y32[kSubfr];
  int32_t tot = 5;
  for (int k = 0; k < nb_track; ++k) {
    int32_t max = 0;
    for (int i = k; i < kSubfr; i += step) {
      int32_t s = 0;
      for (int j = i; j < kSubfr; ++j) s = bop::L_mac(s, x[j], h[j - i]);
      y32[i] = s;
      s = bop::L_abs(s);
      if (bop::L_sub(s, max) > 0) max = s;
    }
    tot = bop::L_add(tot, bop::L_shr(max, 1));
  }
  const int16_t j = bop::sub(bop::norm_l(tot), sf);
  for (int i = 0; i < kSubfr; ++i) dn[i] = bop::round(bop::L_shl(y32[i], j));
}

// rr[i][j] = sign[i] sign[j] sum h2[n-i] h2[n-j] with h normalised to 0.99
// of unit energy (cor_h); the diagonal unsigned.
inline void cor_h(const int16_t* h, const int16_t* sign, Matrix rr) {
  int16_t h2[kSubfr];
  int32_t s = 2;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, h[i], h[i]);
  if (bop::extract_h(s) == 32767) {
    for (int i = 0; i < kSubfr; ++i) h2[i] = bop::shr(h[i], 1);
  } else {
    const int16_t k = bop::mult(bop::extract_h(bop::L_shl(inv_sqrt(bop::L_shr(s, 1)), 7)), 32440);
    for (int i = 0; i < kSubfr; ++i) h2[i] = bop::round(bop::L_shl(bop::L_mult(h[i], k), 9));
  }
  s = 0;
  for (int k = 0; k < kSubfr; ++k) {
    s = bop::L_mac(s, h2[k], h2[k]);
    rr[kSubfr - 1 - k][kSubfr - 1 - k] = bop::round(s);
  }
  for (int dec = 1; dec < kSubfr; ++dec) {
    s = 0;
    for (int k = 0, j = kSubfr - 1, i = j - dec; k < kSubfr - dec; ++k, --i, --j) {
      s = bop::L_mac(s, h2[k], h2[k + dec]);
      rr[j][i] = bop::mult(bop::round(s), bop::mult(sign[i], sign[j]));
      rr[i][j] = rr[j][i];
    }
  }
}

// set_sign: signs from dn, dn made positive; dn2 = dn with the (8 - n)
// smallest of each of the 5 tracks set to -1.
inline void set_sign(int16_t* dn, int16_t* sign, int16_t* dn2, int n) {
  for (int i = 0; i < kSubfr; ++i) {
    int16_t val = dn[i];
    if (val >= 0) {
      sign[i] = 32767;
    } else {
      sign[i] = -32767;
      val = bop::negate(val);
    }
    dn[i] = val;
    dn2[i] = val;
  }
  for (int i = 0; i < 5; ++i) {
    for (int k = 0; k < 8 - n; ++k) {
      int16_t min = 32767;
      int pos = i;
      for (int j = i; j < kSubfr; j += 5) {
        if (dn2[j] >= 0 && bop::sub(dn2[j], min) < 0) {
          min = dn2[j];
          pos = j;
        }
      }
      dn2[pos] = -1;
    }
  }
}

// set_sign12k2: signs from the mix of the normalised target correlation and
// the normalised LTP residual cn; dn made positive; per track the position
// of the largest mix (pos_max) and the track order ipos (2 nb_track words),
// starting at the track of the overall maximum.
inline void set_sign12k2(int16_t* dn, const int16_t* cn, int16_t* sign, int16_t* pos_max, int nb_track, int16_t* ipos,
                         int step) {
  int16_t en[kSubfr];
  int32_t s = 256;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, cn[i], cn[i]);
  const int16_t k_cn = bop::extract_h(bop::L_shl(inv_sqrt(s), 5));
  s = 256;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, dn[i], dn[i]);
  const int16_t k_dn = bop::extract_h(bop::L_shl(inv_sqrt(s), 5));
  for (int i = 0; i < kSubfr; ++i) {
    int16_t val = dn[i];
    int16_t cor = bop::round(bop::L_shl(bop::L_mac(bop::L_mult(k_cn, cn[i]), k_dn, val), 10));
    if (cor >= 0) {
      sign[i] = 32767;
    } else {
      sign[i] = -32767;
      cor = bop::negate(cor);
      val = bop::negate(val);
    }
    dn[i] = val;
    en[i] = cor;
  }
  int16_t max_of_all = -1;
  ipos[0] = 0;
  for (int i = 0; i < nb_track; ++i) {
    int16_t max = -1;
    int16_t pos = static_cast<int16_t>(i);
    for (int j = i; j < kSubfr; j += step) {
      if (bop::sub(en[j], max) > 0) {
        max = en[j];
        pos = static_cast<int16_t>(j);
      }
    }
    pos_max[i] = pos;
    if (bop::sub(max, max_of_all) > 0) {
      max_of_all = max;
      ipos[0] = static_cast<int16_t>(i);
    }
  }
  int16_t pos = ipos[0];
  ipos[nb_track] = pos;
  for (int i = 1; i < nb_track; ++i) {
    pos = static_cast<int16_t>(pos + 1);
    if (pos >= nb_track) pos = 0;
    ipos[i] = pos;
    ipos[i + nb_track] = pos;
  }
}

// The search criterion: a candidate (sq1 = correlation squared, alp_16 =
// energy) beats the best (sq, alp) when alp * sq1 - sq * alp_16 > 0.
inline bool better(int16_t sq1, int16_t alp_16, int16_t sq, int16_t alp) {
  return bop::L_msu(bop::L_mult(alp, sq1), sq, alp_16) > 0;
}

// Filtered code y[i] = round(sum_k h[i - pos_k] * s_k), h[negative] = 0.
inline void filter_code(const int16_t* h, const int16_t* pos, const int16_t* s, int n, int16_t* y) {
  for (int i = 0; i < kSubfr; ++i) {
    int32_t L = 0;
    for (int k = 0; k < n; ++k) L = bop::L_mac(L, i >= pos[k] ? h[i - pos[k]] : int16_t(0), s[k]);
    y[i] = bop::round(L);
  }
}

}  // namespace vsps::VSPS_NS::amr::cb
