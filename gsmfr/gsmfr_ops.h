// Steps shared by the GSM 06.10 encoder and decoder exports: LAR decoding
// and interpolation (clauses 4.2.8 to 4.2.9), and the APCM exponent and
// inverse quantiser (clauses 4.2.15 to 4.2.17). Variant code only.
#pragma once

#include <cstdint>

#include "core/basic_ops.h"
#include "core/level_ns.h"
#include "gsmfr/gsmfr_tables.h"

namespace vsps::VSPS_NS::gsmfr {

using vsps::gsmfr::kOrder;

// True when every transmitted LAR code lies in its field: 0..MAC-MIC.
inline bool lar_codes_valid(const int16_t* larc) {
  for (int i = 0; i < kOrder; ++i)
    if (larc[i] < 0 || larc[i] > vsps::gsmfr::kLarMac[i] - vsps::gsmfr::kLarMic[i]) return false;
  return true;
}

// Decoded LARs LARpp (Q15 scale of the LAR domain) from the codes.
inline void decode_lars(const int16_t* larc, int16_t* larpp) {
  for (int i = 0; i < kOrder; ++i) {
    int16_t t = static_cast<int16_t>((larc[i] + vsps::gsmfr::kLarMic[i]) * 1024);  // signed LARc, Q10
    t = bop::sub(t, static_cast<int16_t>(vsps::gsmfr::kLarB[i] * 2));
    t = bop::mult_r(vsps::gsmfr::kLarInvA[i], t);
    larpp[i] = bop::add(t, t);
  }
}

// The four interpolation segments of a frame: samples 0..12, 13..26,
// 27..39, 40..159.
inline constexpr int kSegmentStart[5] = {0, 13, 27, 40, 160};

// Reflection coefficients rp (Q15) of segment `seg` from the previous and
// the current decoded LARs.
inline void segment_coefficients(const int16_t* prev, const int16_t* cur, int seg, int16_t* rp) {
  for (int i = 0; i < kOrder; ++i) {
    const int16_t p = prev[i], c = cur[i];
    int16_t lar;
    switch (seg) {
      case 0:  // 3/4 previous + 1/4 current
        lar = bop::add(bop::add(static_cast<int16_t>(p >> 2), static_cast<int16_t>(c >> 2)),
                       static_cast<int16_t>(p >> 1));
        break;
      case 1:
        lar = bop::add(static_cast<int16_t>(p >> 1), static_cast<int16_t>(c >> 1));
        break;
      case 2:  // 1/4 previous + 3/4 current
        lar = bop::add(bop::add(static_cast<int16_t>(p >> 2), static_cast<int16_t>(c >> 2)),
                       static_cast<int16_t>(c >> 1));
        break;
      default:
        lar = c;
        break;
    }
    const int16_t t = bop::abs_s(lar);
    int16_t r;
    if (t < 11059)
      r = static_cast<int16_t>(t << 1);
    else if (t < 20070)
      r = static_cast<int16_t>(t + 11059);
    else
      r = bop::add(static_cast<int16_t>(t >> 2), 26112);
    rp[i] = lar < 0 ? static_cast<int16_t>(-r) : r;
  }
}

// Exponent and mantissa of the coded block maximum xmaxc (0..63).
inline void xmaxc_exp_mant(int xmaxc, int* expOut, int* mantOut) {
  int e = xmaxc > 15 ? (xmaxc >> 3) - 1 : 0;
  int m = xmaxc - (e << 3);
  if (m == 0) {
    e = -4;
    m = 7;
  } else {
    while (m <= 7) {
      m = (m << 1) | 1;
      --e;
    }
    m -= 8;
  }
  *expOut = e;
  *mantOut = m;
}

// Shifts of the reference that accept negative counts: asl(a, -n) = a >> n;
// counts of 16 or more give 0 (or -1 for negative a on the right shift).
inline int16_t asr(int16_t a, int n);
inline int16_t asl(int16_t a, int n) {
  if (n >= 16) return 0;
  if (n <= -16) return static_cast<int16_t>(a < 0 ? -1 : 0);
  if (n < 0) return asr(a, -n);
  return static_cast<int16_t>(a * (1 << n));
}
inline int16_t asr(int16_t a, int n) {
  if (n >= 16) return static_cast<int16_t>(a < 0 ? -1 : 0);
  if (n <= -16) return 0;
  if (n < 0) return static_cast<int16_t>(a * (1 << -n));
  return static_cast<int16_t>(a >> n);
}

// APCM inverse quantisation of the 13 pulses and their placement on grid
// `mc` of a 40-sample excitation (zeros elsewhere).
inline void rpe_decode(int xmaxc, int mc, const int16_t* xmc, int16_t* ep) {
  int e = 0, m = 0;
  xmaxc_exp_mant(xmaxc, &e, &m);
  const int16_t fac = vsps::gsmfr::kRpeFac[m];
  const int sh = 6 - e;
  const int16_t rnd = asl(1, sh - 1);
  int16_t xmp[vsps::gsmfr::kPulses];
  for (int i = 0; i < vsps::gsmfr::kPulses; ++i) {
    const auto q = static_cast<int16_t>(((xmc[i] << 1) - 7) << 12);  // -7..7 in Q12
    xmp[i] = asr(bop::add(bop::mult_r(fac, q), rnd), sh);
  }
  for (int k = 0; k < vsps::gsmfr::kSubframe; ++k) ep[k] = 0;
  for (int i = 0; i < vsps::gsmfr::kPulses; ++i) ep[mc + 3 * i] = xmp[i];
}

}  // namespace vsps::VSPS_NS::gsmfr
