// GSM-AMR encoder gain quantisation: the state block and the pieces shared
// by the rates (TS 26.073 q_gain_pitch, G_code, q_gain_code,
// calc_filt_energies, Qua_gain and the rescaling of the error-energy
// coefficients). Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "core/dpf.h"
#include "gsmamr/amr_ops.h"
#include "gsmamr/dec_state.h"

namespace vsps::VSPS_NS::amr::gq {

// The state block of gainQuant: the 4.75 kbit/s "unquantised" code-gain
// predictor (past energies, Q10, 20 log10 and log2 domains) and the even
// subframe's search data, the 7.95 kbit/s gain adaptation.
struct Block {
  int16_t unq_qua_en[4], unq_qua_en_MR122[4];
  // 4.75 kbit/s even subframe: predicted gain, coefficients, target energy
  int16_t sf0_exp_gcode0, sf0_frac_gcode0, sf0_exp_target_en, sf0_frac_target_en;
  int16_t sf0_frac_coeff[5], sf0_exp_coeff[5];
  // 7.95 kbit/s gain adaptation
  int16_t onset, prev_alpha, prev_gc, ltpg_mem[5];
};
// A call's working copy: the block and the caller's code-gain predictor.
struct State : Block {
  int16_t past_qua_en[4], past_qua_en_MR122[4];
};

inline void reset(Block& s) {
  s = Block{};
  for (int i = 0; i < 4; ++i) {
    s.unq_qua_en[i] = -14336;
    s.unq_qua_en_MR122[i] = -2381;
  }
}

// q_gain_pitch: nearest table gain among entry 0 and the entries <= limit.
inline int16_t q_gain_pitch(int16_t m, int16_t gp_limit, int16_t& gain, int16_t* cand = nullptr,
                            int16_t* cind = nullptr) {
  const int16_t* qua = gsmamr::kQuaGainPitch;
  int16_t err_min = bop::abs_s(bop::sub(gain, qua[0]));
  int16_t index = 0;
  for (int16_t i = 1; i < 16; ++i) {
    if (bop::sub(qua[i], gp_limit) <= 0) {
      const int16_t err = bop::abs_s(bop::sub(gain, qua[i]));
      if (bop::sub(err, err_min) < 0) {
        err_min = err;
        index = i;
      }
    }
  }
  if (m == MR795) {
    int16_t ii;
    if (index == 0)
      ii = 0;
    else if (index == 15 || bop::sub(qua[index + 1], gp_limit) > 0)
      ii = bop::sub(index, 2);
    else
      ii = bop::sub(index, 1);
    if (ii < 0) ii = 0;  // index 1 with a limit below entry 2: keep the candidates in the table
    for (int k = 0; k < 3; ++k) {
      cind[k] = static_cast<int16_t>(ii + k);
      cand[k] = qua[ii + k];
    }
    gain = qua[index];
  } else {
    gain = static_cast<int16_t>(qua[index] & 0xFFFC);
  }
  return index;
}

// G_code: optimum code gain <xn2,y2>/<y2,y2> (Q1) at 12.2 kbit/s.
inline int16_t g_code(const int16_t* xn2, const int16_t* y2) {
  int16_t scal[kSubfr];
  for (int i = 0; i < kSubfr; ++i) scal[i] = bop::shr(y2[i], 1);
  int32_t s = 1;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, xn2[i], scal[i]);
  const int16_t exp_xy = bop::norm_l(s);
  const int16_t xy = bop::extract_h(bop::L_shl(s, exp_xy));
  if (xy <= 0) return 0;
  s = 0;
  for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, scal[i], scal[i]);
  const int16_t exp_yy = bop::norm_l(s);
  const int16_t yy = bop::extract_h(bop::L_shl(s, exp_yy));
  const int16_t gain = bop::div_s(bop::shr(xy, 1), yy);
  const int16_t i = bop::sub(bop::add(exp_xy, 5), exp_yy);
  return bop::shl(bop::shr(gain, i), 1);
}

// q_gain_code at 12.2 kbit/s: nearest of gcode0 * qua_gain_code (Q1 gain).
inline int16_t q_gain_code_122(int16_t exp_gcode0, int16_t frac_gcode0, int16_t& gain, int16_t& qua_ener_MR122,
                               int16_t& qua_ener) {
  const int16_t g_q0 = bop::shr(gain, 1);
  const int16_t gcode0 = bop::shl(bop::extract_l(pow2(exp_gcode0, frac_gcode0)), 4);
  const int16_t* t = gsmamr::kQuaGainCode;
  int16_t err_min = bop::abs_s(bop::sub(g_q0, bop::mult(gcode0, t[0])));
  int16_t index = 0;
  for (int16_t i = 1; i < 32; ++i) {
    const int16_t err = bop::abs_s(bop::sub(g_q0, bop::mult(gcode0, t[3 * i])));
    if (bop::sub(err, err_min) < 0) {
      err_min = err;
      index = i;
    }
  }
  gain = bop::shl(bop::mult(gcode0, t[3 * index]), 1);
  qua_ener_MR122 = t[3 * index + 1];
  qua_ener = t[3 * index + 2];
  return index;
}

// calc_filt_energies: the five (mantissa, exponent) coefficients of the
// weighted-error energy and, at 4.75/7.95 kbit/s, the optimum code gain.
inline void calc_filt_energies(int16_t m, const int16_t* xn, const int16_t* xn2, const int16_t* y1, const int16_t* y2,
                               const int16_t* g_coeff, int16_t* frac, int16_t* exp, int16_t& cod_gain_frac,
                               int16_t& cod_gain_exp) {
  const int32_t ener_init = (m == MR795 || m == MR475) ? 0 : 1;
  int16_t y2s[kSubfr];
  for (int i = 0; i < kSubfr; ++i) y2s[i] = bop::shr(y2[i], 3);
  frac[0] = g_coeff[0];
  exp[0] = g_coeff[1];
  frac[1] = bop::negate(g_coeff[2]);
  exp[1] = bop::add(g_coeff[3], 1);
  auto sum = [&](const int16_t* a) {
    int32_t s = ener_init;
    for (int i = 0; i < kSubfr; ++i) s = bop::L_mac(s, a[i], y2s[i]);
    return s;
  };
  int32_t s = sum(y2s);
  int16_t e = bop::norm_l(s);
  frac[2] = bop::extract_h(bop::L_shl(s, e));
  exp[2] = bop::sub(-3, e);
  s = sum(xn);
  e = bop::norm_l(s);
  frac[3] = bop::negate(bop::extract_h(bop::L_shl(s, e)));
  exp[3] = bop::sub(7, e);
  s = sum(y1);
  e = bop::norm_l(s);
  frac[4] = bop::extract_h(bop::L_shl(s, e));
  exp[4] = bop::sub(7, e);
  if (m == MR475 || m == MR795) {
    s = sum(xn2);
    e = bop::norm_l(s);
    const int16_t f = bop::extract_h(bop::L_shl(s, e));
    e = bop::sub(6, e);
    if (f <= 0) {
      cod_gain_frac = 0;
      cod_gain_exp = 0;
    } else {
      cod_gain_frac = bop::div_s(bop::shr(f, 1), frac[2]);
      cod_gain_exp = bop::sub(bop::sub(e, exp[2]), 14);
    }
  }
}

// Exponents of the five coefficients in the quantiser's scale (e = the
// predicted gain's exponent minus 11, or 10 at 7.95 kbit/s).
inline void coeff_exponents(const int16_t* exp_coeff, int16_t e, int16_t* exp_max) {
  exp_max[0] = bop::sub(exp_coeff[0], 13);
  exp_max[1] = bop::sub(exp_coeff[1], 14);
  exp_max[2] = bop::add(exp_coeff[2], bop::add(15, bop::shl(e, 1)));
  exp_max[3] = bop::add(exp_coeff[3], e);
  exp_max[4] = bop::add(exp_coeff[4], bop::add(1, e));
}

// Largest exponent plus one, the coefficients aligned to it in hi/lo form.
inline void align_coeffs(const int16_t* frac_coeff, const int16_t* exp_max, int n, int16_t* hi, int16_t* lo) {
  int16_t e_max = exp_max[0];
  for (int i = 1; i < n; ++i)
    if (bop::sub(exp_max[i], e_max) > 0) e_max = exp_max[i];
  e_max = bop::add(e_max, 1);
  for (int i = 0; i < n; ++i) {
    const dpf::Dpf d = dpf::L_Extract(bop::L_shr(bop::L_deposit_h(frac_coeff[i]), bop::sub(e_max, exp_max[i])));
    hi[i] = d.hi;
    lo[i] = d.lo;
  }
}

// Qua_gain: joint VQ of pitch and code gain at 5.15, 5.9 (64 rows) and
// 6.7, 7.4, 10.2 kbit/s (128 rows).
inline int16_t qua_gain(int16_t m, int16_t exp_gcode0, int16_t frac_gcode0, const int16_t* frac_coeff,
                        const int16_t* exp_coeff, int16_t gp_limit, int16_t& gain_pit, int16_t& gain_cod,
                        int16_t& qua_ener_MR122, int16_t& qua_ener) {
  const bool high = (m == MR67 || m == MR74 || m == MR102);
  const int16_t* table = high ? gsmamr::kGainHighRates : gsmamr::kGainLowRates;
  const int rows = high ? 128 : 64;
  const int16_t gcode0 = bop::extract_l(pow2(14, frac_gcode0));
  int16_t exp_max[5], c[5], l[5];
  coeff_exponents(exp_coeff, bop::sub(exp_gcode0, 11), exp_max);
  align_coeffs(frac_coeff, exp_max, 5, c, l);
  int32_t dist_min = bop::kMax32;
  int16_t index = 0;
  for (int i = 0; i < rows; ++i) {
    const int16_t* p = &table[4 * i];
    const int16_t g_pitch = p[0];
    if (bop::sub(g_pitch, gp_limit) > 0) continue;
    const int16_t g_code = bop::mult(p[1], gcode0);
    int32_t L = dpf::Mpy_32_16(c[0], l[0], bop::mult(g_pitch, g_pitch));
    L = bop::L_add(L, dpf::Mpy_32_16(c[1], l[1], g_pitch));
    L = bop::L_add(L, dpf::Mpy_32_16(c[2], l[2], bop::mult(g_code, g_code)));
    L = bop::L_add(L, dpf::Mpy_32_16(c[3], l[3], g_code));
    L = bop::L_add(L, dpf::Mpy_32_16(c[4], l[4], bop::mult(g_code, g_pitch)));
    if (bop::L_sub(L, dist_min) < 0) {
      dist_min = L;
      index = static_cast<int16_t>(i);
    }
  }
  const int16_t* p = &table[4 * index];
  gain_pit = p[0];
  gain_cod = bop::extract_h(bop::L_shr(bop::L_mult(p[1], gcode0), bop::sub(10, exp_gcode0)));
  qua_ener_MR122 = p[2];
  qua_ener = p[3];
  return index;
}

// Mac_32_16 and Mac_32 of the reference's MR475 and MR795 searches.
inline int32_t mac_32_16(int32_t L, int16_t hi, int16_t lo, int16_t n) {
  return bop::L_mac(bop::L_mac(L, hi, n), bop::mult(lo, n), 1);
}
inline int32_t mac_32(int32_t L, int16_t h1, int16_t l1, int16_t h2, int16_t l2) {
  return bop::L_mac(bop::L_mac(bop::L_mac(L, h1, h2), bop::mult(h1, l2), 1), bop::mult(l1, h2), 1);
}

}  // namespace vsps::VSPS_NS::amr::gq
