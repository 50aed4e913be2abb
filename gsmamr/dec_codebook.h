// GSM-AMR algebraic codebook decoders (TS 26.073 decode_2i40_9bits,
// decode_2i40_11bits, decode_3i40_14bits, decode_4i40_17bits,
// dec_8i40_31bits, dec_10i40_35bits), lag decoders (Dec_lag3, Dec_lag6) and
// the parameter layout of a frame. Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "gsmamr/amr_ops.h"
#include "gsmamr/dec_state.h"

namespace vsps::VSPS_NS::amr {

// Offset of subframe sf's first parameter in the frame's parameter array.
inline int subframe_prm_offset(int16_t m, int sf) {
  switch (m) {
    case MR475:
      return 3 + (sf >> 1) * 7 + (sf & 1) * 4;
    case MR795:
      return 3 + 5 * sf;
    case MR102:
      return 3 + 9 * sf;
    case MR122:
      return 5 + 13 * sf;
    default:
      return 3 + 4 * sf;
  }
}

// Fixed-codebook vector (Q13, Q12 at 12.2 kbit/s) from the codebook
// parameters of one subframe: p points at the position index (the 10.2 and
// 12.2 kbit/s words in their order).
inline void decode_codebook(int16_t m, int sf, const int16_t* p, int16_t* code) {
  for (int i = 0; i < kSubfr; ++i) code[i] = 0;
  int16_t pos[4];
  int n = 0;
  int16_t index = p[0], sign = p[1];
  switch (m) {
    case MR475:
    case MR515: {
      const int j = ((index >> 6) & 1) * 8 + 2 * sf;
      pos[0] = static_cast<int16_t>(5 * (index & 7) + gsmamr::kC2_9pfStartPos[j]);
      pos[1] = static_cast<int16_t>(5 * ((index >> 3) & 7) + gsmamr::kC2_9pfStartPos[j + 1]);
      n = 2;
      break;
    }
    case MR59: {
      pos[0] = static_cast<int16_t>(5 * ((index >> 1) & 7) + 1 + 2 * (index & 1));
      const int j = (index >> 4) & 3, i = (index >> 6) & 7;
      pos[1] = static_cast<int16_t>(j == 3 ? 5 * i + 4 : 5 * i + j);
      n = 2;
      break;
    }
    case MR67:
      pos[0] = static_cast<int16_t>(5 * (index & 7));
      pos[1] = static_cast<int16_t>(5 * ((index >> 4) & 7) + 1 + 2 * ((index >> 3) & 1));
      pos[2] = static_cast<int16_t>(5 * ((index >> 8) & 7) + 2 + 2 * ((index >> 7) & 1));
      n = 3;
      break;
    case MR74:
    case MR795:
      pos[0] = static_cast<int16_t>(5 * gsmamr::kDgray[index & 7]);
      pos[1] = static_cast<int16_t>(5 * gsmamr::kDgray[(index >> 3) & 7] + 1);
      pos[2] = static_cast<int16_t>(5 * gsmamr::kDgray[(index >> 6) & 7] + 2);
      pos[3] = static_cast<int16_t>(5 * gsmamr::kDgray[(index >> 10) & 7] + 3 + ((index >> 9) & 1));
      n = 4;
      break;
    case MR102: {
      // dec_8i40_31bits: p[0..3] signs, p[4..6] compressed positions
      int16_t ps[8];
      auto decompress10 = [&](int16_t idx, int i1, int i2, int i3) {
        int16_t msbs = bop::shr(idx, 3);
        const int16_t lsbs = static_cast<int16_t>(idx & 7);
        if (bop::sub(msbs, 124) > 0) msbs = 124;
        const int16_t ia = bop::sub(msbs, bop::extract_l(bop::L_shr(bop::L_mult(bop::mult(msbs, 1311), 25), 1)));
        const int16_t q = bop::mult(ia, 6554);
        ps[i1] = bop::add(bop::shl(bop::sub(ia, bop::extract_l(bop::L_shr(bop::L_mult(q, 5), 1))), 1),
                          static_cast<int16_t>(lsbs & 1));
        const int16_t ic = bop::sub(lsbs, bop::shl(bop::shr(lsbs, 2), 2));
        ps[i2] = bop::add(bop::shl(q, 1), bop::shr(ic, 1));
        ps[i3] = bop::add(bop::shl(bop::mult(msbs, 1311), 1), bop::shr(lsbs, 2));
      };
      decompress10(p[4], 0, 4, 1);
      decompress10(p[5], 2, 6, 5);
      const int16_t msbs = bop::shr(p[6], 2), lsbs = static_cast<int16_t>(p[6] & 3);
      const int16_t mm = bop::shr(bop::add(bop::extract_l(bop::L_shr(bop::L_mult(msbs, 25), 1)), 12), 5);
      const int16_t q = bop::mult(mm, 6554);
      int16_t ib = bop::sub(mm, bop::extract_l(bop::L_shr(bop::L_mult(q, 5), 1)));
      if ((q & 1) == 1) ib = bop::sub(4, ib);
      ps[3] = bop::add(bop::shl(ib, 1), static_cast<int16_t>(lsbs & 1));
      ps[7] = bop::add(bop::shl(q, 1), bop::shr(lsbs, 1));
      for (int j = 0; j < 4; ++j) {
        const int p1 = 4 * ps[j] + j;
        int16_t v = p[j] == 0 ? int16_t(8191) : int16_t(-8191);
        if (p1 >= 0 && p1 < kSubfr) code[p1] = v;
        const int p2 = 4 * ps[j + 4] + j;
        if (p2 < p1) v = bop::negate(v);
        if (p2 >= 0 && p2 < kSubfr) code[p2] = bop::add(code[p2], v);
      }
      return;
    }
    default: {  // MR122: dec_10i40_35bits
      for (int j = 0; j < 5; ++j) {
        const int16_t i = p[j];
        const int p1 = 5 * gsmamr::kDgray[i & 7] + j;
        int16_t v = (i & 8) != 0 ? int16_t(-4096) : int16_t(4096);
        code[p1] = v;
        const int p2 = 5 * gsmamr::kDgray[p[j + 5] & 7] + j;
        if (p2 < p1) v = bop::negate(v);
        code[p2] = bop::add(code[p2], v);
      }
      return;
    }
  }
  for (int k = 0; k < n; ++k) {
    code[pos[k]] = (sign & 1) != 0 ? int16_t(8191) : int16_t(-8192);
    sign = bop::shr(sign, 1);
  }
}

// Dec_lag3: T0 and fraction (thirds) from the lag index.
inline void dec_lag3(int16_t index, int16_t t0_min, int16_t t0_max, bool relative, int16_t t0_prev, int16_t& T0,
                     int16_t& frac, bool flag4) {
  if (!relative) {
    if (bop::sub(index, 197) < 0) {
      T0 = bop::add(bop::mult(bop::add(index, 2), 10923), 19);
      frac = bop::add(bop::sub(index, bop::add(T0, bop::add(T0, T0))), 58);
    } else {
      T0 = bop::sub(index, 112);
      frac = 0;
    }
    return;
  }
  if (!flag4) {
    const int16_t i = bop::sub(bop::mult(bop::add(index, 2), 10923), 1);
    T0 = bop::add(i, t0_min);
    frac = bop::sub(bop::sub(index, 2), bop::add(i, bop::add(i, i)));
    return;
  }
  int16_t tmp_lag = t0_prev;
  if (bop::sub(bop::sub(tmp_lag, t0_min), 5) > 0) tmp_lag = bop::add(t0_min, 5);
  if (bop::sub(bop::sub(t0_max, tmp_lag), 4) > 0) tmp_lag = bop::sub(t0_max, 4);
  if (bop::sub(index, 4) < 0) {
    T0 = bop::add(bop::sub(tmp_lag, 5), index);
    frac = 0;
  } else if (bop::sub(index, 12) < 0) {
    const int16_t i = bop::sub(bop::mult(bop::sub(index, 5), 10923), 1);
    T0 = bop::add(i, tmp_lag);
    frac = bop::sub(bop::sub(index, 9), bop::add(i, bop::add(i, i)));
  } else {
    T0 = bop::add(bop::sub(index, 11), tmp_lag);
    frac = 0;
  }
}

// Dec_lag6: T0 and fraction (sixths) at 12.2 kbit/s; T0 in/out.
inline void dec_lag6(int16_t index, bool relative, int16_t& T0, int16_t& frac) {
  if (!relative) {
    if (bop::sub(index, 463) < 0) {
      T0 = bop::add(bop::mult(bop::add(index, 5), 5462), 17);
      frac = bop::add(bop::sub(index, bop::shl(bop::add(bop::shl(T0, 1), T0), 1)), 105);
    } else {
      T0 = bop::sub(index, 368);
      frac = 0;
    }
    return;
  }
  int16_t t0_min = bop::sub(T0, 5);
  if (bop::sub(t0_min, 18) < 0) t0_min = 18;
  int16_t t0_max = bop::add(t0_min, 9);
  if (bop::sub(t0_max, kPitMax) > 0) {
    t0_max = kPitMax;
    t0_min = bop::sub(t0_max, 9);
  }
  const int16_t i = bop::sub(bop::mult(bop::add(index, 5), 5462), 1);
  T0 = bop::add(i, t0_min);
  frac = bop::sub(bop::sub(index, 3), bop::shl(bop::add(bop::shl(i, 1), i), 1));
}

}  // namespace vsps::VSPS_NS::amr
