// GSM-AMR 4.75 kbit/s joint gain quantisation of two subframes (TS 26.073
// calc_target_energy, MR475_update_unq_pred, MR475_gain_quant). Variant
// code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "gsmamr/dec_gain.h"
#include "gsmamr/gain_common.h"

namespace vsps::VSPS_NS::amr::gq {

// Energy of the target: exponent and mantissa.
inline void calc_target_energy(const int16_t* xn, int16_t& exp, int16_t& frac) {
  int32_t s = 0;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, xn[i], xn[i]);
  const int16_t e = bop::norm_l(s);
  frac = bop::extract_h(bop::L_shl(s, e));
  exp = bop::sub(16, e);
}

// Update of the "unquantised" predictor with the optimum code gain.
inline void update_unq_pred(State& st, int16_t exp_gcode0, int16_t frac_gcode0, int16_t cge, int16_t cgf) {
  int16_t qua_ener, qua_ener_MR122;
  if (cgf <= 0) {
    qua_ener = -5443;
    qua_ener_MR122 = -32768;
  } else {
    const int16_t fg = bop::extract_l(pow2(14, frac_gcode0));
    if (bop::sub(cgf, fg) >= 0) {
      cgf = bop::shr(cgf, 1);
      cge = bop::add(cge, 1);
    }
    int16_t frac = bop::div_s(cgf, fg);
    const int16_t tmp = bop::sub(bop::sub(cge, exp_gcode0), 1);
    int16_t exp;
    log2(bop::L_deposit_l(frac), exp, frac);
    exp = bop::add(exp, tmp);
    qua_ener_MR122 = bop::add(bop::shr_r(frac, 5), bop::shl(exp, 10));
    if (bop::sub(qua_ener_MR122, 18284) > 0) {  // the reference's upper limit, log2 domain
      qua_ener = 3037;
      qua_ener_MR122 = 18284;
    } else {
      qua_ener = bop::round(bop::L_shl(dpf::Mpy_32_16(exp, frac, 24660), 13));
    }
  }
  gc_pred_update(st.unq_qua_en, st.unq_qua_en_MR122, qua_ener_MR122, qua_ener);
}

// Gains of one subframe from a table row's pair (p[0] pitch, p[1] code
// factor) and the predictor update.
inline void store_gains(State& st, const int16_t* p, int16_t gcode0, int16_t exp_gcode0, int16_t& gain_pit,
                        int16_t& gain_cod) {
  gain_pit = p[0];
  gain_cod = bop::extract_h(bop::L_shr(bop::L_mult(p[1], gcode0), bop::sub(10, exp_gcode0)));
  int16_t e2, f2;
  log2(bop::L_deposit_l(p[1]), e2, f2);
  e2 = bop::sub(e2, 12);
  const int16_t qua_ener_MR122 = bop::add(bop::shr_r(f2, 5), bop::shl(e2, 10));
  const int16_t qua_ener = bop::round(bop::L_shl(dpf::Mpy_32_16(e2, f2, 24660), 13));
  gc_pred_update(st.past_qua_en, st.past_qua_en_MR122, qua_ener_MR122, qua_ener);
}

// The joint search over the 256 rows for both subframes; sf1's data as
// arguments, sf0's from the state. Returns the index; gains of both.
inline int16_t mr475_gain_quant(State& st, const int16_t* code, int16_t sf1_exp_gcode0, int16_t sf1_frac_gcode0,
                                const int16_t* sf1_exp_coeff, const int16_t* sf1_frac_coeff, int16_t sf1_exp_target_en,
                                int16_t sf1_frac_target_en, int16_t gp_limit, int16_t* gains) {
  // the stored fraction is 0..32767 (L_Extract); the mask keeps a damaged block in the table
  const int16_t g0 = bop::extract_l(pow2(14, static_cast<int16_t>(st.sf0_frac_gcode0 & 0x7FFF)));
  const int16_t g1 = bop::extract_l(pow2(14, sf1_frac_gcode0));
  int16_t exp_max[10], frac_coeff[10];
  coeff_exponents(st.sf0_exp_coeff, bop::sub(st.sf0_exp_gcode0, 11), exp_max);
  coeff_exponents(sf1_exp_coeff, bop::sub(sf1_exp_gcode0, 11), exp_max + 5);
  for (int i = 0; i < 5; ++i) {
    frac_coeff[i] = st.sf0_frac_coeff[i];
    frac_coeff[i + 5] = sf1_frac_coeff[i];
  }
  // weighting by the target energies of the two subframes
  int16_t f0 = st.sf0_frac_target_en, f1 = sf1_frac_target_en;
  const int16_t d = bop::sub(st.sf0_exp_target_en, sf1_exp_target_en);
  if (d > 0)
    f1 = bop::shr(f1, d);
  else
    f0 = bop::shl(f0, d);
  int16_t x = 0;
  if (bop::sub(bop::shr_r(f1, 1), f0) > 0)
    x = 1;
  else if (bop::sub(bop::shr(bop::add(f0, 3), 2), f1) > 0)
    x = -1;
  for (int i = 0; i < 5; ++i) exp_max[i] = bop::add(exp_max[i], x);
  int16_t c[10], l[10];
  align_coeffs(frac_coeff, exp_max, 10, c, l);
  int32_t dist_min = bop::kMax32;
  int16_t index = 0;
  for (int i = 0; i < 256; ++i) {
    const int16_t* p = &gsmamr::kGainMr475[4 * i];
    int16_t g_pitch = p[0];
    int16_t g_code = bop::mult(p[1], g0);
    int32_t L = dpf::Mpy_32_16(c[0], l[0], bop::mult(g_pitch, g_pitch));
    L = mac_32_16(L, c[1], l[1], g_pitch);
    L = mac_32_16(L, c[2], l[2], bop::mult(g_code, g_code));
    L = mac_32_16(L, c[3], l[3], g_code);
    L = mac_32_16(L, c[4], l[4], bop::mult(g_code, g_pitch));
    const int16_t t = bop::sub(g_pitch, gp_limit);
    g_pitch = p[2];
    g_code = p[3];
    if (t <= 0 && bop::sub(g_pitch, gp_limit) <= 0) {
      g_code = bop::mult(g_code, g1);
      L = mac_32_16(L, c[5], l[5], bop::mult(g_pitch, g_pitch));
      L = mac_32_16(L, c[6], l[6], g_pitch);
      L = mac_32_16(L, c[7], l[7], bop::mult(g_code, g_code));
      L = mac_32_16(L, c[8], l[8], g_code);
      L = mac_32_16(L, c[9], l[9], bop::mult(g_code, g_pitch));
      if (bop::L_sub(L, dist_min) < 0) {
        dist_min = L;
        index = static_cast<int16_t>(i);
      }
    }
  }
  const int16_t* p = &gsmamr::kGainMr475[4 * index];
  store_gains(st, p, g0, st.sf0_exp_gcode0, gains[2], gains[3]);
  int16_t exp1, frac1;
  gc_pred(st.past_qua_en, st.past_qua_en_MR122, MR475, code, exp1, frac1);
  store_gains(st, p + 2, bop::extract_l(pow2(14, frac1)), exp1, gains[0], gains[1]);
  return index;
}

}  // namespace vsps::VSPS_NS::amr::gq
