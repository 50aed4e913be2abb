// The G.726 ADPCM blocks shared by the encoder and the decoder (ITU-T G.726
// clause 4, with the bit widths and wrap-arounds of the ITU-T G.191 reference
// module): adaptive predictor, scale-factor and speed-control adaptation,
// quantiser, inverse quantiser, tone and transition detectors. Every value
// is held as the unsigned pattern of its m-bit two's-complement (TC) or
// sign-magnitude format and wrapped to its width after each step; the masks
// are part of the bit-exact definition. Variant code: level namespace.
#pragma once

#include <cstdint>
#include <cstring>
#if defined(__AVX2__)
#include <immintrin.h>
#endif

#include "core/level_ns.h"
#include "g726/g726_tables.h"
#include "g726/state_layout.h"

namespace vsps::VSPS_NS::g726 {

using vsps::g726::State;
using vsps::tables::g726::RateTables;

// Number of significant bits: 0 -> 0, 1 -> 1, 5 -> 3.
inline int32_t bitlen(int32_t x) { return x == 0 ? 0 : 32 - __builtin_clz(static_cast<uint32_t>(x)); }
inline int32_t sx14to16(int32_t v) { return v < 8192 ? v : v + 49152; }
inline int32_t sx15to16(int32_t v) { return v < 16384 ? v : v + 32768; }

// The 11-bit float format of the stored SR and DQ (FLOATA, FLOATB): sign,
// 4-bit exponent, 6-bit mantissa normalised to 32..63 (32 also for zero).
inline int32_t to_float11(int32_t sign, int32_t mag) {
  const int32_t e = bitlen(mag);
  const int32_t mant = mag == 0 ? 32 : (mag << 6) >> e;
  return (sign << 10) | (e << 6) | mant;
}

// The code-word length of an accepted rate selector (vspRate16000 ..
// vspRate40000), 0 for any other value.
inline int bits_of_rate(int rate) {
  switch (rate) {
    case 17:
      return 2;
    case 22:
      return 3;
    case 23:
      return 4;
    case 24:
      return 5;
    default:
      return 0;
  }
}

// The reset state (G.726 clause 4.2, initial values): float zero (32) for
// the stored signals, YU = 544 (1.0625 in Q9), YL = 34816 (the same in Q15),
// everything else 0.
inline State reset_state(int bits, int law) {
  State s{};
  s.sr[0] = s.sr[1] = 32;
  for (int32_t& v : s.dq) v = 32;
  s.yu = 544;
  s.yl = 34816;
  s.bits = bits;
  s.law = law;
  return s;
}

// Reads a caller's block, wrapping every field to its width (so any bytes
// give a defined run) and the code-word length to 2..5.
inline State load_state(const void* block) {
  State s;
  std::memcpy(&s, block, sizeof s);
  for (int k = 0; k < 2; ++k) {
    s.sr[k] &= 2047;
    s.a[k] &= 65535;
    s.pk[k] &= 1;
  }
  for (int k = 0; k < 6; ++k) {
    s.b[k] &= 65535;
    s.dq[k] &= 2047;
  }
  s.dms &= 4095;
  s.dml &= 16383;
  s.ap &= 1023;
  s.yu &= 8191;
  s.td &= 1;
  s.yl &= 524287;
  s.bits = 2 + static_cast<int32_t>((static_cast<uint32_t>(s.bits) - 2u) & 3u);
  return s;
}

// FMULT: a 16-bit TC coefficient (Q14) times an 11-bit float value; 16-bit TC.
inline int32_t fmult(int32_t an, int32_t srn) {
  const int32_t s = an >> 15;
  const int32_t mag = s == 0 ? an >> 2 : (16384 - (an >> 2)) & 8191;  // 13-bit magnitude of An/4
  const int32_t e = bitlen(mag);
  const int32_t mant = mag == 0 ? 32 : (mag << 6) >> e;
  const int32_t ws = (srn >> 10) ^ s;
  const int32_t we = ((srn >> 6) & 15) + e;
  const int32_t wm = ((srn & 63) * mant + 48) >> 4;
  // (wm << 7) >> (26 - we) below WE = 27, (wm << 7) << (we - 26) above, in one
  // shift: wm <= 251, so nothing reaches bit 15 before the mask for we <= 26.
  const int32_t wmag = ((wm << 9) >> (28 - we)) & 32767;
  return ws == 0 ? wmag : (65536 - wmag) & 65535;
}

// What a sample starts from: the signal estimate and its zero-section part
// (15-bit TC) and the quantiser scale factor Y (13 bits, Q9).
struct Estimate {
  int32_t se, sez, y;
};

#if defined(__AVX2__)
// The eight FMULTs of ACCUM in one register, lane by lane as fmult() above:
// lanes (A1, SR1), (A2, SR2), (B1, DQ1) .. (B6, DQ6). The significant-bit
// count of a 13-bit magnitude comes from its exact float conversion (the
// exponent field minus 126, 0 for zero); the products fit 16 bits. The sums
// are modulo 2^16, so their order is free. Sets the zero-section sum SEZI
// and returns SEI (both 16-bit TC).
inline int32_t accum(const State& s, int32_t* sezi) {
  const auto* w = reinterpret_cast<const __m256i*>(&s.sr[0]);  // sr[2] a[2] b[6] dq[6]: 16 words
  const __m256i an = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(&s.a[0]));
  const __m256i srn = _mm256_blend_epi32(_mm256_loadu_si256(w + 1), _mm256_loadu_si256(w), 0x03);
  const __m256i zero = _mm256_setzero_si256();
  const __m256i sign = _mm256_srli_epi32(an, 15);
  const __m256i an4 = _mm256_srli_epi32(an, 2);
  const __m256i neg = _mm256_and_si256(_mm256_sub_epi32(_mm256_set1_epi32(16384), an4), _mm256_set1_epi32(8191));
  const __m256i mag = _mm256_blendv_epi8(an4, neg, _mm256_cmpgt_epi32(sign, zero));
  const __m256i field = _mm256_srli_epi32(_mm256_castps_si256(_mm256_cvtepi32_ps(mag)), 23);
  const __m256i e = _mm256_max_epi32(_mm256_sub_epi32(field, _mm256_set1_epi32(126)), zero);
  const __m256i isZero = _mm256_cmpeq_epi32(mag, zero);
  const __m256i mant =
      _mm256_blendv_epi8(_mm256_srlv_epi32(_mm256_slli_epi32(mag, 6), e), _mm256_set1_epi32(32), isZero);
  const __m256i ws = _mm256_xor_si256(_mm256_srli_epi32(srn, 10), sign);
  const __m256i we = _mm256_add_epi32(_mm256_and_si256(_mm256_srli_epi32(srn, 6), _mm256_set1_epi32(15)), e);
  const __m256i prod = _mm256_mullo_epi16(_mm256_and_si256(srn, _mm256_set1_epi32(63)), mant);  // < 2^12
  const __m256i wm = _mm256_srli_epi32(_mm256_add_epi32(prod, _mm256_set1_epi32(48)), 4);
  const __m256i wmag =
      _mm256_and_si256(_mm256_srlv_epi32(_mm256_slli_epi32(wm, 9), _mm256_sub_epi32(_mm256_set1_epi32(28), we)),
                       _mm256_set1_epi32(32767));
  const __m256i wneg = _mm256_and_si256(_mm256_sub_epi32(_mm256_set1_epi32(65536), wmag), _mm256_set1_epi32(65535));
  const __m256i r = _mm256_blendv_epi8(wmag, wneg, _mm256_cmpgt_epi32(ws, zero));
  alignas(32) int32_t lanes[8];
  _mm256_store_si256(reinterpret_cast<__m256i*>(lanes), r);
  const int32_t zeros = lanes[2] + lanes[3] + lanes[4] + lanes[5] + lanes[6] + lanes[7];
  *sezi = zeros & 65535;
  return (zeros + lanes[0] + lanes[1]) & 65535;
}
#else
inline int32_t accum(const State& s, int32_t* sezi) {
  int32_t z = 0;
  for (int k = 0; k < 6; ++k) z += fmult(s.b[k], s.dq[k]);
  *sezi = z & 65535;
  return (*sezi + fmult(s.a[0], s.sr[0]) + fmult(s.a[1], s.sr[1])) & 65535;
}
#endif

// ACCUM over FMULT (clause 4.2.6), LIMA and MIX (clause 4.2.4).
inline Estimate estimate(const State& s) {
  int32_t sezi = 0;
  const int32_t sei = accum(s, &sezi);
  const int32_t al = s.ap >= 256 ? 64 : s.ap >> 2;  // Q6
  const int32_t dif = (s.yu + 16384 - (s.yl >> 6)) & 16383;
  const int32_t difs = dif >> 13;
  const int32_t difm = difs == 0 ? dif : (16384 - dif) & 8191;
  const int32_t prodm = (difm * al) >> 6;
  const int32_t prod = difs == 0 ? prodm : (16384 - prodm) & 16383;
  return {sei >> 1, sezi >> 1, ((s.yl >> 6) + prod) & 8191};
}

struct LogDiff {
  int32_t sign;  // DS
  int32_t dln;   // DLN: log2 |D| - Y/4, 12-bit TC, Q7
};

// LOG and SUBTB of a 16-bit TC difference (clause 4.2.3).
inline LogDiff log_diff(int32_t d, int32_t y) {
  const int32_t ds = d >> 15;
  const int32_t dqm = ds == 0 ? d : (65536 - d) & 32767;
  const int32_t e = dqm > 1 ? bitlen(dqm) - 1 : 0;
  const int32_t dl = (e << 7) + (((dqm << 7) >> e) & 127);
  return {ds, (dl + 4096 - (y >> 2)) & 4095};
}

// The interval of the quantiser (QUAN) that holds DLN.
// The thresholds fall strictly from row to row and the last is 0, so the
// row is the number of thresholds above DLN: counted without a data-
// dependent branch (speech makes the end of a search unpredictable).
inline const vsps::tables::g726::QuanRow& quan_row(const RateTables& rt, int32_t dln) {
  int r = 0;
  for (int k = 0; k + 1 < rt.quanRows; ++k) r += rt.quan[k].threshold > dln ? 1 : 0;
  return rt.quan[r];
}

// QUAN: the code word of a difference. The all-zero word is never sent
// above 16 kbit/s.
inline int32_t quantize(const RateTables& rt, int32_t d, int32_t y) {
  const LogDiff l = log_diff(d, y);
  const int32_t top = (1 << rt.bits) - 1;
  int32_t i = quan_row(rt, l.dln).code;
  if (l.sign != 0) i = top - i;
  if (i == 0 && rt.bits > 2) i = top;
  return i;
}

// Everything after the code word (clause 4.2.3 to 4.2.8): RECONST, ADDA,
// ANTILOG, the speed-control and scale-factor adaptation, TRANS, ADDC/ADDB,
// FLOATA/B and the predictor update with its triggers. Returns SR, the
// reconstructed signal (16-bit TC).
inline int32_t adapt(State& s, const RateTables& rt, int32_t i, const Estimate& est) {
  const int32_t n = rt.bits;
  const int32_t half = 1 << (n - 1);
  const int32_t y = est.y;

  // RECONST, ADDA, ANTILOG: DQ in sign-magnitude (bit 15 sign).
  const int32_t dqs = i >> (n - 1);
  const int32_t dql = (rt.dqln[i] + (y >> 2)) & 4095;
  int32_t dqmag = 0;
  if (dql < 2048) {
    const int32_t dex = (dql >> 7) & 15, mant = ((dql & 127) + 128) << 7;
    dqmag = (dex <= 14 ? mant >> (14 - dex) : mant << 1) & 32767;  // dex 15 needs Y/4 > 1900: never reached
  }
  const int32_t dq = (dqs << 15) | dqmag;

  // FUNCTF, FILTA, FILTB: DMS += (F - DMS)/32, DML += (F - DML)/128.
  const int32_t mi = dqs == 0 ? i : ((1 << n) - 1 - i) & (half - 1);
  const int32_t fi = rt.f[mi];
  int32_t dif = ((fi << 9) + 8192 - s.dms) & 8191;
  const int32_t dmsn = (((dif >> 12) == 0 ? dif >> 5 : (dif >> 5) + 3840) + s.dms) & 4095;
  dif = ((fi << 11) + 32768 - s.dml) & 32767;
  const int32_t dmln = (((dif >> 14) == 0 ? dif >> 7 : (dif >> 7) + 16128) + s.dml) & 16383;

  // FUNCTW, FILTD, LIMB, FILTE: YU = (1 - 2^-5) Y + 2^-5 W, YL += (YU - YL/64)/64.
  const int32_t wi = rt.w[mi];
  dif = ((wi << 5) + 131072 - y) & 131071;
  const int32_t yut = (y + ((dif >> 16) == 0 ? dif >> 5 : (dif >> 5) + 4096)) & 8191;
  const int32_t yun = yut < 544 ? 544 : (yut > 5120 ? 5120 : yut);
  dif = (yun + ((1048576 - s.yl) >> 6)) & 16383;
  const int32_t yln = (s.yl + ((dif >> 13) == 0 ? dif : dif + 507904)) & 524287;

  // TRANS with the old YL and TD.
  const int32_t ylint = s.yl >> 15, ylfrac = (s.yl >> 10) & 31;
  const int32_t thr = ylint > 9 ? 31744 : (ylfrac + 32) << ylint;
  const int32_t dqthr = (thr + (thr >> 1)) >> 1;
  const bool tr = s.td == 1 && (dq & 32767) > dqthr;

  // ADDC, ADDB: PK0, SIGPK and SR (16-bit TC, wraps on overload).
  const int32_t dqi = dqs == 0 ? dq : (65536 - (dq & 32767)) & 65535;
  const int32_t dqsez = (dqi + sx15to16(est.sez)) & 65535;
  const int32_t pk0 = dqsez >> 15;
  const bool sigpk = dqsez == 0;
  const int32_t sr = (dqi + sx15to16(est.se)) & 65535;

  // UPA2, LIMC: |A2| <= 0.75.
  const int32_t a1u = s.a[0], a2u = s.a[1];
  const int32_t pks1 = pk0 ^ s.pk[0], pks2 = pk0 ^ s.pk[1];
  const int32_t uga2a = pks2 == 0 ? 16384 : 114688;
  int32_t fa1;
  if (a1u < 32768)
    fa1 = a1u <= 8191 ? a1u << 2 : 8191 << 2;
  else
    fa1 = a1u >= 57345 ? (a1u << 2) & 131071 : 24577 << 2;
  const int32_t fa = pks1 != 0 ? fa1 : (131072 - fa1) & 131071;
  const int32_t uga2b = (uga2a + fa) & 131071;
  const int32_t uga2 = sigpk ? 0 : ((uga2b >> 16) != 0 ? (uga2b >> 7) + 64512 : uga2b >> 7);
  const int32_t ula2 = a2u < 32768 ? (65536 - (a2u >> 7)) & 65535 : (65536 - ((a2u >> 7) + 65024)) & 65535;
  const int32_t a2t = (a2u + ((uga2 + ula2) & 65535)) & 65535;
  int32_t a2p = a2t;
  if (a2t >= 32768 && a2t <= 53248) a2p = 53248;
  if (a2t >= 12288 && a2t <= 32767) a2p = 12288;

  // UPA1, LIMD: |A1| <= 0.9375 - A2.
  const int32_t uga1 = sigpk ? 0 : (pks1 == 0 ? 192 : 65344);
  const int32_t ash = a1u >> 8;
  const int32_t ula1 = (a1u < 32768 ? 65536 - ash : 65536 - (ash + 65280)) & 65535;
  const int32_t a1t = (a1u + ((uga1 + ula1) & 65535)) & 65535;
  const int32_t a1ul = (15360 + 65536 - a2p) & 65535, a1ll = (a2p + 65536 - 15360) & 65535;
  int32_t a1p = a1t;
  if (a1t >= 32768 && a1t <= a1ll) a1p = a1ll;
  if (a1t >= a1ul && a1t <= 32767) a1p = a1ul;

  // TONE (A2 < -0.71875), SUBTC, FILTC: AP += (2 AX - AP)/16.
  const int32_t tdp = (a2p >= 32768 && a2p < 53760) ? 1 : 0;
  dif = ((dmsn << 2) + 32768 - dmln) & 32767;
  const int32_t difm = (dif >> 14) == 0 ? dif : (32768 - dif) & 16383;
  const int32_t ax = (y >= 1536 && difm < (dmln >> 3) && tdp == 0) ? 0 : 1;
  dif = ((ax << 9) + 2048 - s.ap) & 2047;
  const int32_t app = (((dif >> 10) == 0 ? dif >> 4 : (dif >> 4) + 896) + s.ap) & 1023;

  // XOR, UPB: sign-sign update of the zero section with leakage.
  const int32_t leak = n == 5 ? 9 : 8, par = n == 5 ? 65408 : 65280;
  const int32_t ugbMag = (dq & 32767) == 0 ? 0 : 1;
  for (int k = 0; k < 6; ++k) {
    const int32_t bb = s.b[k];
    const int32_t u = (s.dq[k] >> 10) ^ (dq >> 15);
    const int32_t ugb = ugbMag == 0 ? 0 : (u == 0 ? 128 : 65408);
    const int32_t ulb = bb < 32768 ? (65536 - (bb >> leak)) & 65535 : (65536 - ((bb >> leak) + par)) & 65535;
    s.b[k] = tr ? 0 : (bb + ((ugb + ulb) & 65535)) & 65535;
  }

  // TRIGA, TRIGB and the delay line.
  s.a[0] = tr ? 0 : a1p;
  s.a[1] = tr ? 0 : a2p;
  s.td = tr ? 0 : tdp;
  s.ap = tr ? 256 : app;
  s.dms = dmsn;
  s.dml = dmln;
  s.yu = yun;
  s.yl = yln;
  s.pk[1] = s.pk[0];
  s.pk[0] = pk0;
  s.sr[1] = s.sr[0];
  s.sr[0] = to_float11(sr >> 15, (sr >> 15) == 0 ? sr : (65536 - sr) & 32767);
  for (int k = 5; k > 0; --k) s.dq[k] = s.dq[k - 1];
  s.dq[0] = to_float11(dqs, dq & 32767);
  return sr;
}

}  // namespace vsps::VSPS_NS::g726
