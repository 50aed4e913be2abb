// GSM-AMR 7.95 kbit/s gain quantisation (TS 26.073 MR795_gain_quant: pitch
// candidates, MR795_gain_code_quant3, calc_unfilt_energies, gain_adapt,
// MR795_gain_code_quant_mod). Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "gsmamr/gain_common.h"

namespace vsps::VSPS_NS::amr::gq {

// Code gain (Q1) of row `index` of qua_gain_code with the predicted gain
// gcode0 * 2^exp_gcode0, and the row's energies for the predictor.
inline void code_gain_row(int16_t index, int16_t exp_gcode0, int16_t gcode0, int16_t& gain_cod, int16_t& qua_ener_MR122,
                          int16_t& qua_ener) {
  const int16_t* row = &gsmamr::kQuaGainCode[3 * index];
  gain_cod = bop::extract_h(bop::L_shr(bop::L_mult(row[0], gcode0), bop::sub(9, exp_gcode0)));
  qua_ener_MR122 = row[1];
  qua_ener = row[2];
}

// Joint search of the three pitch candidates and the 32 code gains.
inline void code_quant3(int16_t exp_gcode0, int16_t gcode0, const int16_t* cand, const int16_t* cind,
                        const int16_t* frac_coeff, const int16_t* exp_coeff, int16_t& gain_pit, int16_t& gain_pit_ind,
                        int16_t& gain_cod, int16_t& gain_cod_ind, int16_t& qua_ener_MR122, int16_t& qua_ener) {
  int16_t exp_max[5], c[5], l[5];
  coeff_exponents(exp_coeff, bop::sub(exp_gcode0, 10), exp_max);
  align_coeffs(frac_coeff, exp_max, 5, c, l);
  int32_t dist_min = bop::kMax32;
  int16_t cod_ind = 0, pit_ind = 0;
  for (int16_t j = 0; j < 3; ++j) {
    const int16_t g_pitch = cand[j];
    const int32_t L0 = mac_32_16(dpf::Mpy_32_16(c[0], l[0], bop::mult(g_pitch, g_pitch)), c[1], l[1], g_pitch);
    for (int16_t i = 0; i < 32; ++i) {
      const int16_t g_code = bop::mult(gsmamr::kQuaGainCode[3 * i], gcode0);
      const dpf::Dpf g2 = dpf::L_Extract(bop::L_mult(g_code, g_code));
      const dpf::Dpf gp = dpf::L_Extract(bop::L_mult(g_code, g_pitch));
      int32_t L = mac_32(L0, c[2], l[2], g2.hi, g2.lo);
      L = mac_32_16(L, c[3], l[3], g_code);
      L = mac_32(L, c[4], l[4], gp.hi, gp.lo);
      if (bop::L_sub(L, dist_min) < 0) {
        dist_min = L;
        cod_ind = i;
        pit_ind = j;
      }
    }
  }
  code_gain_row(cod_ind, exp_gcode0, gcode0, gain_cod, qua_ener_MR122, qua_ener);
  gain_cod_ind = cod_ind;
  gain_pit = cand[pit_ind];
  gain_pit_ind = cind[pit_ind];
}

// Energies of the residual, the adaptive vector, their cross term with the
// code, the LTP residual; ltpg = log2 of the LTP coding gain (Q13).
inline void calc_unfilt_energies(const int16_t* res, const int16_t* exc, const int16_t* code, int16_t gp, int16_t* frac,
                                 int16_t* exp, int16_t& ltpg) {
  int32_t s = 0;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, res[i], res[i]);
  if (bop::L_sub(s, 400) < 0) {
    frac[0] = 0;
    exp[0] = -15;
  } else {
    const int16_t e = bop::norm_l(s);
    frac[0] = bop::extract_h(bop::L_shl(s, e));
    exp[0] = bop::sub(15, e);
  }
  s = 0;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, exc[i], exc[i]);
  int16_t e = bop::norm_l(s);
  frac[1] = bop::extract_h(bop::L_shl(s, e));
  exp[1] = bop::sub(15, e);
  s = 0;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, exc[i], code[i]);
  e = bop::norm_l(s);
  frac[2] = bop::extract_h(bop::L_shl(s, e));
  exp[2] = bop::sub(2, e);
  s = 0;
  for (int i = 0; i < kSubfr; ++i) {
    const int16_t t = bop::sub(res[i], bop::round(bop::L_shl(bop::L_mult(exc[i], gp), 1)));
    s = bop::L_mac(s, t, t);
  }
  e = bop::norm_l(s);
  frac[3] = bop::extract_h(bop::L_shl(s, e));
  exp[3] = bop::sub(15, e);
  if (frac[3] > 0 && frac[0] != 0) {
    const int16_t pg = bop::div_s(bop::shr(frac[0], 1), frac[3]);
    const int16_t x = bop::sub(exp[3], exp[0]);
    int16_t le, lf;
    log2(bop::L_shr(bop::L_deposit_h(pg), bop::add(x, 3)), le, lf);
    ltpg = bop::round(bop::L_shl(dpf::L_Comp(bop::sub(le, 27), lf), 13));
  } else {
    ltpg = 0;
  }
}

// gain_adapt: the weight alpha of the adaptive criterion (Q15).
inline int16_t gain_adapt(State& st, int16_t ltpg, int16_t gain_cod) {
  int16_t adapt = ltpg <= 2721 ? 0 : (ltpg <= 5443 ? 1 : 2);
  if (bop::sub(bop::shr_r(gain_cod, 1), st.prev_gc) > 0 && bop::sub(gain_cod, 200) > 0) {
    st.onset = 8;
  } else if (st.onset != 0) {
    st.onset = bop::sub(st.onset, 1);
  }
  if (st.onset != 0 && adapt < 2) adapt = static_cast<int16_t>(adapt + 1);
  st.ltpg_mem[0] = ltpg;
  const int16_t filt = gmed_n(st.ltpg_mem, 5);
  int16_t r = 0;
  if (adapt == 0) {
    if (filt > 5443)
      r = 0;
    else if (filt < 0)
      r = 16384;
    else
      r = bop::sub(16384, bop::mult(24660, bop::shl(filt, 2)));
  }
  if (st.prev_alpha == 0) r = bop::shr(r, 1);
  st.prev_alpha = r;
  st.prev_gc = gain_cod;
  for (int i = 4; i > 0; --i) st.ltpg_mem[i] = st.ltpg_mem[i - 1];
  return r;
}

// MR795_gain_code_quant_mod: code gain by the criterion mixing the
// weighted-error energy and the residual-energy match.
inline int16_t code_quant_mod(int16_t gain_pit, int16_t exp_gcode0, int16_t gcode0, const int16_t* frac_en,
                              const int16_t* exp_en, int16_t alpha, int16_t gain_cod_unq, int16_t& gain_cod,
                              int16_t& qua_ener_MR122, int16_t& qua_ener) {
  const int16_t gain_code = bop::shl(gain_cod, bop::sub(10, exp_gcode0));
  const int16_t g2_pitch = bop::mult(gain_pit, gain_pit);
  const int16_t one_alpha = bop::add(bop::sub(32767, alpha), 1);
  int16_t c[5], lo[5], ec[5];
  int32_t L_t1 = bop::L_mult(bop::extract_h(bop::L_shl(bop::L_mult(alpha, frac_en[1]), 1)), g2_pitch);
  ec[1] = bop::sub(exp_en[1], 15);
  c[2] = bop::mult(bop::extract_h(bop::L_shl(bop::L_mult(alpha, frac_en[2]), 1)), gain_pit);
  ec[2] = bop::add(exp_en[2], bop::sub(exp_gcode0, 10));
  c[3] = bop::extract_h(bop::L_shl(bop::L_mult(alpha, frac_en[3]), 1));
  ec[3] = bop::add(exp_en[3], bop::sub(bop::shl(exp_gcode0, 1), 7));
  c[4] = bop::mult(one_alpha, frac_en[3]);
  ec[4] = bop::add(ec[3], 1);
  int16_t x;
  int32_t L_t0 = sqrt_l_exp(bop::L_mult(alpha, frac_en[0]), x);
  ec[0] = bop::sub(exp_en[0], bop::add(x, 47));
  int16_t e_max = bop::add(ec[0], 31);
  for (int i = 1; i <= 4; ++i)
    if (bop::sub(ec[i], e_max) > 0) e_max = ec[i];
  L_t1 = bop::L_shr(L_t1, bop::sub(e_max, ec[1]));
  for (int i = 2; i <= 4; ++i) {
    const dpf::Dpf d = dpf::L_Extract(bop::L_shr(bop::L_deposit_h(c[i]), bop::sub(e_max, ec[i])));
    c[i] = d.hi;
    lo[i] = d.lo;
  }
  const int16_t t = bop::sub(bop::sub(e_max, 31), ec[0]);
  L_t0 = bop::L_shr(L_t0, bop::shr(t, 1));
  if ((t & 1) != 0) L_t0 = dpf::Mpy_32_16(dpf::L_Extract(L_t0), 23170);
  int32_t dist_min = bop::kMax32;
  int16_t index = 0;
  for (int16_t i = 0; i < 32; ++i) {
    const int16_t g_code = bop::mult(gsmamr::kQuaGainCode[3 * i], gcode0);
    if (bop::sub(g_code, gain_code) >= 0) break;
    const dpf::Dpf g2 = dpf::L_Extract(bop::L_mult(g_code, g_code));
    const int16_t dt = bop::sub(g_code, gain_cod_unq);
    const dpf::Dpf d2 = dpf::L_Extract(bop::L_mult(dt, dt));
    int32_t L = mac_32_16(L_t1, c[2], lo[2], g_code);
    L = mac_32(L, c[3], lo[3], g2.hi, g2.lo);
    L = sqrt_l_exp(L, x);
    L = bop::L_shr(L, bop::shr(x, 1));
    const int16_t tmp = bop::round(bop::L_sub(L, L_t0));
    L = bop::L_mult(tmp, tmp);
    L = mac_32(L, c[4], lo[4], d2.hi, d2.lo);
    if (bop::L_sub(L, dist_min) < 0) {
      dist_min = L;
      index = i;
    }
  }
  code_gain_row(index, exp_gcode0, gcode0, gain_cod, qua_ener_MR122, qua_ener);
  return index;
}

}  // namespace vsps::VSPS_NS::amr::gq
