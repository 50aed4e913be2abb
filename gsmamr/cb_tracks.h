// GSM-AMR algebraic codebooks of 2, 3 and 4 pulses (TS 26.073
// code_2i40_9bits, code_2i40_11bits, code_3i40_14bits, code_4i40_17bits):
// nested track searches and their index coding. Variant code.
#pragma once

#include <cstdint>

#include "gsmamr/cb_common.h"
#include "gsmamr/dec_state.h"

namespace vsps::VSPS_NS::amr::cb {

// Best partner found by one inner track loop: position, correlation sum,
// rounded energy and squared correlation.
struct Pick {
  int16_t pos, ps, alp, sq;
};

// Overall best of the searches so far.
struct Best {
  int16_t psk = -1, alpk = 1;
  int16_t codvec[4] = {0, 1, 2, 3};
  void offer(const Pick& last, const int16_t* pos, int n) {
    if (!better(last.sq, last.alp, psk, alpk)) return;
    psk = last.sq;
    alpk = last.alp;
    for (int k = 0; k < n; ++k) codvec[k] = pos[k];
  }
};

// Best next pulse on the track starting at `first`, added to the k fixed
// pulses pos[0..k-1] (sum ps0, energy alp0): alp1 = alp0 + rr[i][i] d + the
// rr[pos[m]][i] f from the last fixed pulse back to the first.
inline Pick next_pulse(int first, int16_t ps0, int32_t alp0, int16_t d, int16_t f, const int16_t* pos, int k,
                       const int16_t* dn, const Matrix rr) {
  Pick p{static_cast<int16_t>(first), 0, 1, -1};
  for (int i = first; i < kSubfr; i += 5) {
    const int16_t ps1 = bop::add(ps0, dn[i]);
    int32_t alp1 = bop::L_mac(alp0, rr[i][i], d);
    for (int m = k - 1; m >= 0; --m) alp1 = bop::L_mac(alp1, rr[pos[m]][i], f);
    const int16_t sq1 = bop::mult(ps1, ps1), alp_16 = bop::round(alp1);
    if (better(sq1, alp_16, p.sq, p.alp)) p = Pick{static_cast<int16_t>(i), ps1, alp_16, sq1};
  }
  return p;
}

// Two pulses: pulse 0 on track t0, pulse 1 on track t1 (code_2i40_*).
inline void search_pair(int t0, int t1, const int16_t* dn, const Matrix rr, Best& best) {
  for (int i0 = t0; i0 < kSubfr; i0 += 5) {
    int16_t pos[2] = {static_cast<int16_t>(i0), 0};
    const Pick p = next_pulse(t1, dn[i0], bop::L_mult(rr[i0][i0], k1_4), k1_4, k1_2, pos, 1, dn, rr);
    pos[1] = p.pos;
    best.offer(p, pos, 2);
  }
}

// 3 or 4 pulses on the tracks ipos[0..n-1], the first only where dn2 >= 0.
inline void search_3_4(const int16_t* ipos, int n, const int16_t* dn, const int16_t* dn2, const Matrix rr, Best& best) {
  for (int i0 = ipos[0]; i0 < kSubfr; i0 += 5) {
    if (dn2[i0] < 0) continue;
    int16_t pos[4] = {static_cast<int16_t>(i0), 0, 0, 0};
    Pick p = next_pulse(ipos[1], dn[i0], bop::L_mult(rr[i0][i0], k1_4), k1_4, k1_2, pos, 1, dn, rr);
    pos[1] = p.pos;
    p = next_pulse(ipos[2], p.ps, bop::L_mult(p.alp, k1_4), k1_16, k1_8, pos, 2, dn, rr);
    pos[2] = p.pos;
    if (n == 4) {
      p = next_pulse(ipos[3], p.ps, bop::L_deposit_h(p.alp), k1_16, k1_8, pos, 3, dn, rr);
      pos[3] = p.pos;
    }
    best.offer(p, pos, n);
  }
}

// Pulse positions of 4.75..7.95 kbit/s: returns the number of pulses.
inline int search_tracks(int16_t m, int sf, const int16_t* dn, const int16_t* dn2, const Matrix rr, int16_t* codvec) {
  Best best;
  int n = 2;
  switch (m) {
    case MR475:
    case MR515:
      for (int j = 0; j < 2; ++j)
        search_pair(gsmamr::kC2_9pfStartPos[8 * j + 2 * sf], gsmamr::kC2_9pfStartPos[8 * j + 2 * sf + 1], dn, rr, best);
      break;
    case MR59:
      for (int i = 0; i < 2; ++i)
        for (int j = 0; j < 4; ++j)
          search_pair(gsmamr::kC2_11pfStartPos1[i], gsmamr::kC2_11pfStartPos2[j], dn, rr, best);
      break;
    case MR67:
      n = 3;
      for (int16_t t1 = 1; t1 < 4; t1 += 2)
        for (int16_t t2 = 2; t2 < 5; t2 += 2) {
          int16_t ipos[3] = {0, t1, t2};
          for (int r = 0; r < 3; ++r) {
            search_3_4(ipos, 3, dn, dn2, rr, best);
            const int16_t last = ipos[2];
            ipos[2] = ipos[1];
            ipos[1] = ipos[0];
            ipos[0] = last;
          }
        }
      break;
    default:  // MR74, MR795
      n = 4;
      for (int16_t t3 = 3; t3 < 5; ++t3) {
        int16_t ipos[4] = {0, 1, 2, t3};
        for (int r = 0; r < 4; ++r) {
          search_3_4(ipos, 4, dn, dn2, rr, best);
          const int16_t last = ipos[3];
          ipos[3] = ipos[2];
          ipos[2] = ipos[1];
          ipos[1] = ipos[0];
          ipos[0] = last;
        }
      }
      break;
  }
  for (int k = 0; k < n; ++k) codvec[k] = best.codvec[k];
  return n;
}

// Position word of pulse k at position p (track p mod 5) and the bit of its
// sign in the sign word.
inline void pulse_index(int16_t m, int sf, int k, int16_t p, int16_t& index, int16_t& sign_bit) {
  const int16_t q = bop::mult(p, 6554);  // p / 5
  const int16_t track = bop::sub(p, bop::extract_l(bop::L_shr(bop::L_mult(q, 5), 1)));
  switch (m) {
    case MR475:
    case MR515: {
      static constexpr int8_t kPairOf[4][5] = {{0, 1, 0, 1, -1}, {0, -1, 1, 0, 1}, {0, 1, 0, -1, 1}, {0, 1, -1, 0, 1}};
      index = k == 0 ? static_cast<int16_t>(q + (kPairOf[sf][track] != 0 ? 64 : 0)) : bop::shl(q, 3);
      sign_bit = static_cast<int16_t>(k);
      return;
    }
    case MR59:
      sign_bit = static_cast<int16_t>(k);
      if (track == 0)
        index = bop::shl(q, 6);
      else if (track == 1)
        index = k == 0 ? bop::shl(q, 1) : static_cast<int16_t>(bop::shl(q, 6) + 16);
      else if (track == 2)
        index = static_cast<int16_t>(bop::shl(q, 6) + 32);
      else if (track == 3)
        index = static_cast<int16_t>(bop::shl(q, 1) + 1);
      else
        index = static_cast<int16_t>(bop::shl(q, 6) + 48);
      return;
    case MR67:
      if (track == 0) {
        index = q;
        sign_bit = 0;
      } else if (track == 1) {
        index = bop::shl(q, 4);
        sign_bit = 1;
      } else if (track == 2) {
        index = bop::shl(q, 8);
        sign_bit = 2;
      } else if (track == 3) {
        index = static_cast<int16_t>(bop::shl(q, 4) + 8);
        sign_bit = 1;
      } else {
        index = static_cast<int16_t>(bop::shl(q, 8) + 128);
        sign_bit = 2;
      }
      return;
    default: {  // MR74, MR795
      const int16_t g = gsmamr::kGray[q];
      if (track == 0) {
        index = g;
        sign_bit = 0;
      } else if (track == 1) {
        index = bop::shl(g, 3);
        sign_bit = 1;
      } else if (track == 2) {
        index = bop::shl(g, 6);
        sign_bit = 2;
      } else if (track == 3) {
        index = bop::shl(g, 10);
        sign_bit = 3;
      } else {
        index = static_cast<int16_t>(bop::shl(g, 10) + 512);
        sign_bit = 3;
      }
      return;
    }
  }
}

// Search and code of 4.75..7.95 kbit/s (h sharpened by the caller); code
// without sharpening, y, {positions, signs}.
inline void code_tracks(int16_t m, int sf, const int16_t* x, const int16_t* h, int16_t* code, int16_t* y,
                        int16_t* indx) {
  int16_t dn[kSubfr], sign[kSubfr], dn2[kSubfr];
  Matrix rr;
  cor_h_x(h, x, dn, 1, 5, 5);
  const int n_keep = (m == MR67) ? 6 : ((m == MR74 || m == MR795) ? 4 : 8);
  set_sign(dn, sign, dn2, n_keep);
  cor_h(h, sign, rr);
  int16_t codvec[4];
  const int n = search_tracks(m, sf, dn, dn2, rr, codvec);
  for (int i = 0; i < kSubfr; ++i) code[i] = 0;
  int16_t s[4];
  int16_t positions = 0, signs = 0;
  for (int k = 0; k < n; ++k) {
    const int16_t p = codvec[k];
    int16_t index, bit;
    pulse_index(m, sf, k, p, index, bit);
    if (sign[p] > 0) {
      code[p] = 8191;
      s[k] = 32767;
      signs = bop::add(signs, bop::shl(1, bit));
    } else {
      code[p] = -8192;
      s[k] = -32768;
    }
    positions = bop::add(positions, index);
  }
  filter_code(h, codvec, s, n, y);
  indx[0] = positions;
  indx[1] = signs;
}

}  // namespace vsps::VSPS_NS::amr::cb
