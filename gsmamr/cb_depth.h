// GSM-AMR algebraic codebooks of 8 and 10 pulses (TS 26.073
// code_8i40_31bits at 10.2 kbit/s, code_10i40_35bits at 12.2 kbit/s): the
// depth-first pair search search_10and8i40 and the index coding. Variant
// code.
#pragma once

#include <cstdint>

#include "gsmamr/cb_common.h"

namespace vsps::VSPS_NS::amr::cb {

// One pair stage of the depth-first search: pulses a, b on tracks ipos[a],
// ipos[b] added to the fixed pulses pos[0..a-1] (ps0, alp0). Weights: the
// pair energy rrv[ib] = rr[ib][ib] w_d2 + sum rr[fixed][ib] w_f2 (rounded),
// alp1 = alp0 + rr[ia][ia] w_d1 + sum rr[fixed][ia] w_f1,
// alp2 = alp1 + rrv[ib] w_v + rr[ia][ib] w_x.
struct PairWeights {
  int16_t d2, f2, d1, f1, v, x;
};
inline void pair_stage(int a, int step, const int16_t* ipos, const int16_t* dn, const Matrix rr, int16_t* pos,
                       int16_t ps0, int32_t alp0, const PairWeights& w, int16_t& ps, int16_t& alp, int16_t& sq) {
  int16_t rrv[kSubfr];
  const int ta = ipos[a], tb = ipos[a + 1];
  for (int ib = tb; ib < kSubfr; ib += step) {
    int32_t s = bop::L_mult(rr[ib][ib], w.d2);
    for (int k = 0; k < a; ++k) s = bop::L_mac(s, rr[pos[k]][ib], w.f2);
    rrv[ib] = bop::round(s);
  }
  sq = -1;
  alp = 1;
  ps = 0;
  int16_t best_a = static_cast<int16_t>(ta), best_b = static_cast<int16_t>(tb);
  for (int ia = ta; ia < kSubfr; ia += step) {
    const int16_t ps1 = bop::add(ps0, dn[ia]);
    int32_t alp1 = bop::L_mac(alp0, rr[ia][ia], w.d1);
    for (int k = 0; k < a; ++k) alp1 = bop::L_mac(alp1, rr[pos[k]][ia], w.f1);
    for (int ib = tb; ib < kSubfr; ib += step) {
      const int16_t ps2 = bop::add(ps1, dn[ib]);
      int32_t alp2 = bop::L_mac(alp1, rrv[ib], w.v);
      alp2 = bop::L_mac(alp2, rr[ia][ib], w.x);
      const int16_t sq2 = bop::mult(ps2, ps2), alp_16 = bop::round(alp2);
      if (better(sq2, alp_16, sq, alp)) {
        sq = sq2;
        ps = ps2;
        alp = alp_16;
        best_a = static_cast<int16_t>(ia);
        best_b = static_cast<int16_t>(ib);
      }
    }
  }
  pos[a] = best_a;
  pos[a + 1] = best_b;
}

// search_10and8i40: pulse 0 fixed at the maximum of track ipos[0], pulse 1
// at the maximum of each other track in turn, then the pairs (2,3), (4,5),
// (6,7) and at 10 pulses (8,9), the track order rotated after each turn.
inline void search_depth(int nb_pulse, int step, int nb_tracks, const int16_t* dn, const Matrix rr, int16_t* ipos,
                         const int16_t* pos_max, int16_t* codvec) {
  static constexpr PairWeights kW[4] = {{k1_8, k1_4, k1_16, k1_8, k1_2, k1_8},
                                        {k1_8, k1_4, k1_32, k1_16, k1_4, k1_16},
                                        {k1_16, k1_8, k1_64, k1_32, k1_4, k1_32},
                                        {k1_16, k1_8, k1_128, k1_64, k1_8, k1_64}};
  int16_t pos[10];
  pos[0] = pos_max[ipos[0]];
  int16_t psk = -1, alpk = 1;
  for (int i = 0; i < nb_pulse; ++i) codvec[i] = static_cast<int16_t>(i);
  for (int t = 1; t < nb_tracks; ++t) {
    pos[1] = pos_max[ipos[1]];
    int16_t ps = bop::add(dn[pos[0]], dn[pos[1]]);
    int32_t alp0 = bop::L_mult(rr[pos[0]][pos[0]], k1_16);
    alp0 = bop::L_mac(alp0, rr[pos[1]][pos[1]], k1_16);
    alp0 = bop::L_mac(alp0, rr[pos[0]][pos[1]], k1_8);
    int16_t alp = 0, sq = -1;
    for (int a = 2, stage = 0; a < nb_pulse; a += 2, ++stage) {
      if (stage > 0) alp0 = bop::L_mult(alp, k1_2);
      pair_stage(a, step, ipos, dn, rr, pos, ps, alp0, kW[stage], ps, alp, sq);
    }
    if (better(sq, alp, psk, alpk)) {
      psk = sq;
      alpk = alp;
      for (int k = 0; k < nb_pulse; ++k) codvec[k] = pos[k];
    }
    const int16_t first = ipos[1];
    for (int j = 1; j < nb_pulse - 1; ++j) ipos[j] = ipos[j + 1];
    ipos[nb_pulse - 1] = first;
  }
}

// 12.2 kbit/s: 10 pulses, two per track; code Q12 (+-4096 added), y with
// signs +-8192, indices sign+Gray position (tracks) then Gray position.
inline void code_10i40(const int16_t* x, const int16_t* cn, const int16_t* h, int16_t* code, int16_t* y,
                       int16_t* indx) {
  int16_t dn[kSubfr], sign[kSubfr], pos_max[5], ipos[10], codvec[10], s[10];
  Matrix rr;
  cor_h_x(h, x, dn, 2, 5, 5);
  set_sign12k2(dn, cn, sign, pos_max, 5, ipos, 5);
  cor_h(h, sign, rr);
  search_depth(10, 5, 5, dn, rr, ipos, pos_max, codvec);
  for (int i = 0; i < kSubfr; ++i) code[i] = 0;
  for (int i = 0; i < 10; ++i) indx[i] = -1;
  for (int k = 0; k < 10; ++k) {
    const int16_t i = codvec[k];
    int16_t index = bop::mult(i, 6554);
    const int16_t track = bop::sub(i, bop::extract_l(bop::L_shr(bop::L_mult(index, 5), 1)));
    if (sign[i] > 0) {
      code[i] = bop::add(code[i], 4096);
      s[k] = 8192;
    } else {
      code[i] = bop::sub(code[i], 4096);
      s[k] = -8192;
      index = bop::add(index, 8);
    }
    int16_t& first = indx[track];
    int16_t& second = indx[track + 5];
    if (first < 0) {
      first = index;
    } else if (((index ^ first) & 8) == 0) {  // same sign: smaller position first
      if (bop::sub(first, index) <= 0) {
        second = index;
      } else {
        second = first;
        first = index;
      }
    } else if (bop::sub(static_cast<int16_t>(first & 7), static_cast<int16_t>(index & 7)) <= 0) {
      second = first;  // different signs: larger position first
      first = index;
    } else {
      second = index;
    }
  }
  filter_code(h, codvec, s, 10, y);
  for (int k = 0; k < 10; ++k) {
    const int16_t g = gsmamr::kGray[indx[k] & 7];
    indx[k] = k < 5 ? static_cast<int16_t>((indx[k] & 8) | g) : g;
  }
}

// Three position indices of a track pair packed into 10 bits (compress10).
inline int16_t compress10(int16_t a, int16_t b, int16_t c) {
  int16_t ia = bop::shr(a, 1);
  const int16_t ib = bop::extract_l(bop::L_shr(bop::L_mult(bop::shr(b, 1), 5), 1));
  const int16_t ic = bop::extract_l(bop::L_shr(bop::L_mult(bop::shr(c, 1), 25), 1));
  ia = bop::shl(bop::add(ia, bop::add(ib, ic)), 3);
  const int16_t lsb = bop::add(static_cast<int16_t>(a & 1), bop::add(bop::shl(static_cast<int16_t>(b & 1), 1),
                                                                     bop::shl(static_cast<int16_t>(c & 1), 2)));
  return bop::add(ia, lsb);
}

// 10.2 kbit/s: 8 pulses, two per track of 4; code Q13 (+-8191 added), y with
// signs 32767/-32768, indices 4 signs and 3 compressed position words.
inline void code_8i40(const int16_t* x, const int16_t* cn, const int16_t* h, int16_t* code, int16_t* y, int16_t* indx) {
  int16_t dn[kSubfr], sign[kSubfr], pos_max[4], ipos[8], codvec[8], s[8];
  Matrix rr;
  cor_h_x(h, x, dn, 2, 4, 4);
  set_sign12k2(dn, cn, sign, pos_max, 4, ipos, 4);
  cor_h(h, sign, rr);
  search_depth(8, 4, 4, dn, rr, ipos, pos_max, codvec);
  for (int i = 0; i < kSubfr; ++i) code[i] = 0;
  int16_t pos_indx[8], sign_indx[4];
  for (int i = 0; i < 8; ++i) pos_indx[i] = -1;
  for (int i = 0; i < 4; ++i) sign_indx[i] = -1;
  for (int k = 0; k < 8; ++k) {
    const int16_t i = codvec[k];
    const int16_t pos_index = bop::shr(i, 2);
    const int track = i & 3;
    int16_t sign_index;
    if (sign[i] > 0) {
      code[i] = bop::add(code[i], 8191);
      s[k] = 32767;
      sign_index = 0;
    } else {
      code[i] = bop::sub(code[i], 8191);
      s[k] = -32768;
      sign_index = 1;
    }
    int16_t& first = pos_indx[track];
    int16_t& second = pos_indx[track + 4];
    if (first < 0) {
      first = pos_index;
      sign_indx[track] = sign_index;
    } else if (((sign_index ^ sign_indx[track]) & 1) == 0) {  // same sign: smaller position first
      if (bop::sub(first, pos_index) <= 0) {
        second = pos_index;
      } else {
        second = first;
        first = pos_index;
        sign_indx[track] = sign_index;
      }
    } else if (bop::sub(first, pos_index) <= 0) {  // different signs: larger position first
      second = first;
      first = pos_index;
      sign_indx[track] = sign_index;
    } else {
      second = pos_index;
    }
  }
  filter_code(h, codvec, s, 8, y);
  for (int k = 0; k < 4; ++k) indx[k] = sign_indx[k];
  indx[4] = compress10(pos_indx[0], pos_indx[4], pos_indx[1]);
  indx[5] = compress10(pos_indx[2], pos_indx[6], pos_indx[5]);
  int16_t ib = static_cast<int16_t>(bop::shr(pos_indx[7], 1) & 1);
  int16_t ia = bop::shr(pos_indx[3], 1);
  if (ib == 1) ia = bop::sub(4, ia);
  ib = bop::extract_l(bop::L_shr(bop::L_mult(bop::shr(pos_indx[7], 1), 5), 1));
  const int16_t ic = bop::shl(bop::mult(bop::add(bop::shl(bop::add(ia, ib), 5), 12), 1311), 2);
  indx[6] =
      bop::add(bop::add(static_cast<int16_t>(pos_indx[3] & 1), bop::shl(static_cast<int16_t>(pos_indx[7] & 1), 1)), ic);
}

}  // namespace vsps::VSPS_NS::amr::cb
