// GSM-AMR decoder gains (TS 26.073 gc_pred, gc_pred_update, Dec_gain,
// d_gain_code, ec_gain_pitch/_code and their updates). Variant code: lives
// in the level namespace.
#pragma once

#include <cstdint>

#include "core/dpf.h"
#include "gsmamr/amr_ops.h"
#include "gsmamr/dec_state.h"

namespace vsps::VSPS_NS::amr {

// gc_pred: predicted code gain (exponent, fraction) from the innovation
// energy and the past quantised energies.
inline void gc_pred(const int16_t* past_qua_en, const int16_t* past_qua_en_MR122, int16_t m, const int16_t* code,
                    int16_t& exp_gcode0, int16_t& frac_gcode0) {
  int32_t L = 0;
  for (int i = 0; i < kSubfr; ++i) L = bop::L_mac(L, code[i], code[i]);
  if (m == MR122) {
    int32_t ener_code = bop::L_mult(bop::round(L), 26214);
    int16_t e, f;
    log2(ener_code, e, f);
    ener_code = dpf::L_Comp(bop::sub(e, 30), f);
    int32_t ener = 783741;
    for (int i = 0; i < 4; ++i) ener = bop::L_mac(ener, past_qua_en_MR122[i], gsmamr::kGcPredCoefMr122[i]);
    ener = bop::L_shr(bop::L_sub(ener, ener_code), 1);
    const dpf::Dpf d = dpf::L_Extract(ener);
    exp_gcode0 = d.hi;
    frac_gcode0 = d.lo;
    return;
  }
  const int16_t e = bop::norm_l(L);
  int16_t ex, fr;
  log2_norm(bop::L_shl(L, e), e, ex, fr);
  L = dpf::Mpy_32_16(ex, fr, -24660);
  switch (m) {
    case MR67:
      L = bop::L_mac(L, 32268, 32);
      break;
    case MR74:
      L = bop::L_mac(L, 32588, 32);
      break;
    case MR795:
      L = bop::L_mac(L, 17062, 64);
      break;
    default:
      L = bop::L_mac(L, 16678, 64);
      break;
  }
  L = bop::L_shl(L, 10);
  for (int i = 0; i < 4; ++i) L = bop::L_mac(L, gsmamr::kGcPredCoef[i], past_qua_en[i]);
  const int16_t g = bop::extract_h(L);
  L = bop::L_mult(g, m == MR74 ? int16_t(5439) : int16_t(5443));
  const dpf::Dpf d = dpf::L_Extract(bop::L_shr(L, 8));
  exp_gcode0 = d.hi;
  frac_gcode0 = d.lo;
}

inline void gc_pred_update(int16_t* past_qua_en, int16_t* past_qua_en_MR122, int16_t qua_ener_MR122, int16_t qua_ener) {
  for (int i = 3; i > 0; --i) {
    past_qua_en_MR122[i] = past_qua_en_MR122[i - 1];
    past_qua_en[i] = past_qua_en[i - 1];
  }
  past_qua_en_MR122[0] = qua_ener_MR122;
  past_qua_en[0] = qua_ener;
}

// Dec_gain: joint gains of 4.75 .. 10.2 kbit/s (not 7.95).
inline void dec_gain(DecState& s, int16_t m, int16_t index, const int16_t* code, bool even, int16_t& gain_pit,
                     int16_t& gain_cod) {
  int16_t g, qua_ener_MR122, qua_ener;
  if (m == MR67 || m == MR74 || m == MR102) {
    const int16_t* p = &gsmamr::kGainHighRates[4 * (index & 127)];
    gain_pit = p[0];
    g = p[1];
    qua_ener_MR122 = p[2];
    qua_ener = p[3];
  } else if (m == MR475) {
    const int16_t* p = &gsmamr::kGainMr475[4 * (index & 255) + (even ? 0 : 2)];
    gain_pit = p[0];
    g = p[1];
    int16_t e, f;
    log2(bop::L_deposit_l(g), e, f);
    e = bop::sub(e, 12);
    qua_ener_MR122 = bop::add(bop::shr_r(f, 5), bop::shl(e, 10));
    qua_ener = bop::round(bop::L_shl(dpf::Mpy_32_16(e, f, 24660), 13));
  } else {
    const int16_t* p = &gsmamr::kGainLowRates[4 * (index & 63)];
    gain_pit = p[0];
    g = p[1];
    qua_ener_MR122 = p[2];
    qua_ener = p[3];
  }
  int16_t exp, frac;
  gc_pred(s.past_qua_en, s.past_qua_en_MR122, m, code, exp, frac);
  const int16_t gcode0 = bop::extract_l(pow2(14, frac));
  gain_cod = bop::extract_h(bop::L_shr(bop::L_mult(g, gcode0), bop::sub(10, exp)));
  gc_pred_update(s.past_qua_en, s.past_qua_en_MR122, qua_ener_MR122, qua_ener);
}

// d_gain_code: scalar code gain of 7.95 and 12.2 kbit/s.
inline int16_t d_gain_code(DecState& s, int16_t m, int16_t index, const int16_t* code) {
  const int16_t* row = &gsmamr::kQuaGainCode[3 * (index & 31)];
  int16_t exp, frac;
  gc_pred(s.past_qua_en, s.past_qua_en_MR122, m, code, exp, frac);
  int16_t gain;
  if (m == MR122) {
    const int16_t gcode0 = bop::shl(bop::extract_l(pow2(exp, frac)), 4);
    gain = bop::shl(bop::mult(gcode0, row[0]), 1);
  } else {
    const int16_t gcode0 = bop::extract_l(pow2(14, frac));
    gain = bop::extract_h(bop::L_shr(bop::L_mult(row[0], gcode0), bop::sub(9, exp)));
  }
  gc_pred_update(s.past_qua_en, s.past_qua_en_MR122, row[1], row[2]);
  return gain;
}

// Concealed gains of a bad frame.
inline int16_t ec_gain_pitch(const DecState& s) {
  int16_t t = gmed_n(s.pbuf, 5);
  if (bop::sub(t, s.past_gain_pit) > 0) t = s.past_gain_pit;
  return bop::mult(t, gsmamr::kEcGainPdown[s.state]);
}
inline int16_t ec_gain_code(DecState& s) {
  int16_t t = gmed_n(s.gbuf, 5);
  if (bop::sub(t, s.past_gain_code) > 0) t = s.past_gain_code;
  t = bop::mult(t, gsmamr::kEcGainCdown[s.state]);
  // gc_pred_average_limited, then an update with the averages
  int16_t a122 = 0, a = 0;
  for (int i = 0; i < 4; ++i) {
    a122 = bop::add(a122, s.past_qua_en_MR122[i]);
    a = bop::add(a, s.past_qua_en[i]);
  }
  a122 = bop::mult(a122, 8192);
  if (bop::sub(a122, -2381) < 0) a122 = -2381;
  a = bop::mult(a, 8192);
  if (bop::sub(a, -14336) < 0) a = -14336;
  gc_pred_update(s.past_qua_en, s.past_qua_en_MR122, a122, a);
  return t;
}

inline void ec_gain_pitch_update(DecState& s, int16_t* gain) {
  if (s.bfi == 0) {
    if (s.prev_bf != 0 && bop::sub(*gain, s.prev_gp) > 0) *gain = s.prev_gp;
    s.prev_gp = *gain;
  }
  s.past_gain_pit = *gain;
  if (bop::sub(s.past_gain_pit, 16384) > 0) s.past_gain_pit = 16384;
  for (int i = 1; i < 5; ++i) s.pbuf[i - 1] = s.pbuf[i];
  s.pbuf[4] = s.past_gain_pit;
}
inline void ec_gain_code_update(DecState& s, int16_t* gain) {
  if (s.bfi == 0) {
    if (s.prev_bf != 0 && bop::sub(*gain, s.prev_gc) > 0) *gain = s.prev_gc;
    s.prev_gc = *gain;
  }
  s.past_gain_code = *gain;
  for (int i = 1; i < 5; ++i) s.gbuf[i - 1] = s.gbuf[i];
  s.gbuf[4] = s.past_gain_code;
}

}  // namespace vsps::VSPS_NS::amr
