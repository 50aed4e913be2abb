// Helpers of the GSM-AMR encoder steps (TS 26.073 cod_amr and below):
// the per-mode parameters of the closed-loop pitch search, Convolve,
// Interpol_3or6 and the weighting factors of a mode.
// Variant code: lives in the level namespace.
#pragma once

#include <cstdint>

#include "gsmamr/dec_state.h"
#include "speech/filter/lp_filters.h"

namespace vsps::VSPS_NS::amr {

// A speech mode 0..7 from a rate, -1 for the SID rate or anything else.
inline int16_t speech_mode(int rate) {
  const int16_t m = ref_mode(rate);
  return m >= MR475 && m <= MR122 ? m : static_cast<int16_t>(-1);
}

// Weighting factors g1 (0.94^i, or 0.9^i at 10.2 and 12.2) of W(z).
inline const int16_t* gamma1_of(int16_t m) { return m == MR102 || m == MR122 ? gsmamr::kGamma1_12k2 : gsmamr::kGamma1; }

// Convolve: y[n] = extract_h(L_shl(sum_{i<=n} x[i] h[n-i], 3)), h Q12.
inline void convolve(const int16_t* x, const int16_t* h, int16_t* y) { speech::convolve_sat(x, h, y, kSubfr, 12); }

// Interpol_3or6: interpolated correlation at x (= &corr[lag]) and the
// fraction (thirds with flag3, else sixths).
inline int16_t interpol_3or6(const int16_t* x, int16_t frac, bool flag3) {
  if (flag3) frac = bop::shl(frac, 1);
  if (frac < 0) {
    frac = bop::add(frac, 6);
    --x;
  }
  const int16_t* c = gsmamr::kInter6Interpol;
  int32_t s = 0;
  for (int i = 0, k = 0; i < 4; ++i, k += 6) {
    s = bop::L_mac(s, x[-i], c[frac + k]);
    s = bop::L_mac(s, x[1 + i], c[6 - frac + k]);
  }
  return bop::round(s);
}

// Per-mode parameters of the closed-loop pitch search (mode_dep_parm).
struct PitchParams {
  int16_t max_frac_lag, flag3, first_frac, last_frac;
  int16_t delta_int_low, delta_int_range, delta_frc_low, delta_frc_range, pit_min;
};
inline PitchParams pitch_params(int16_t m) {
  if (m == MR475 || m == MR515) return {84, 1, -2, 2, 5, 10, 5, 9, 20};
  if (m == MR795) return {84, 1, -2, 2, 3, 6, 10, 19, 20};
  if (m == MR122) return {94, 0, -3, 3, 3, 6, 5, 9, 18};
  return {84, 1, -2, 2, 3, 6, 5, 9, 20};
}

// The lag around which the 4-bit relative lag code is centred (Enc_lag3
// and the fractional-search rule of the four lowest modes).
inline int16_t centre_lag(int16_t T0_prev, int16_t t0_min, int16_t t0_max) {
  int16_t tmp = T0_prev;
  if (bop::sub(bop::sub(tmp, t0_min), 5) > 0) tmp = bop::add(t0_min, 5);
  if (bop::sub(bop::sub(t0_max, tmp), 4) > 0) tmp = bop::sub(t0_max, 4);
  return tmp;
}

}  // namespace vsps::VSPS_NS::amr
