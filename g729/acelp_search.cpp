// The 17-bit algebraic codebook searches of G.729: the main body's focused
// depth-first search with its time budget (clause 3.8.2, D4i40_17) and the
// Annex A depth-first tree search (clause A.3.8.1, D4i40_17_fast), with the
// pitch sharpening of the impulse response and of the chosen code vector.
#include "g729/codec_ops.h"
#include "speech/corr/mac_sums.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

using namespace g729c;

namespace {

using Matrix = int16_t[kSubfr][kSubfr];

int track_of(int p) { return p % 5; }

void sharpen(int16_t* x, int T0, int16_t prevGainPitch) {
  int16_t sharp = prevGainPitch;
  if (sharp > 13017) sharp = 13017;
  if (sharp < 3277) sharp = 3277;
  const int16_t g = shl(sharp, 1);
  for (int i = T0; i < kSubfr; ++i) x[i] = add(x[i], mult(x[i - T0], g));
}

// Cor_h: correlations of the (scaled) impulse response; rr[p][q] =
// extract_h(sum_{n=0..39-max(p,q)} h[n] h[n+|p-q|]), symmetric.
// When the scaled response's energy is below 2^30, no running sum (at most
// that energy, Cauchy-Schwarz) saturates and plain 32-bit sums give the
// same values.
void cor_h(const int16_t* H, Matrix rr) {
  const int32_t E = speech::mac_energy(0, H, kSubfr);
  int16_t h[kSubfr];
  if (sub(extract_h(E), 32000) > 0) {
    for (int i = 0; i < kSubfr; ++i) h[i] = shr(H[i], 1);
  } else {
    const int16_t k = shr(norm_l(E), 1);
    for (int i = 0; i < kSubfr; ++i) h[i] = shl(H[i], k);
  }
  const bool exact = speech::energy(h, kSubfr) < (int64_t{1} << 30);
  for (int d = 0; d < kSubfr; ++d) {
    int32_t S = 0;
    for (int n = 0; n < kSubfr - d; ++n) {
      S = exact ? S + 2 * h[n] * h[n + d] : L_mac(S, h[n], h[n + d]);
      const int m = kSubfr - 1 - n, p = m - d;
      rr[p][m] = rr[m][p] = extract_h(S);
    }
  }
}

// rr[p][q] = mult(rr[p][q], sign[p][q]) off the tracks' diagonal blocks,
// sign[p][q] a product of signs (never -32768 for the main body; Annex A
// passes +-32767 and -32768): as (rr c) >> 15 in 32 bits, saturated to 16
// bits, the loop the compiler vectorises.
template <class Sign>
void apply_signs(Matrix rr, Sign sign) {
  for (int p = 0; p < kSubfr; ++p) {
    int16_t c[kSubfr];
    bool same[kSubfr];
    for (int q = 0; q < kSubfr; ++q) {
      same[q] = track_of(p) == track_of(q);
      c[q] = same[q] ? int16_t(32767) : sign(p, q);
    }
    for (int q = 0; q < kSubfr; ++q) {
      const int32_t v = (int32_t{rr[p][q]} * c[q]) >> 15;
      rr[p][q] = same[q] ? rr[p][q] : static_cast<int16_t>(v > 32767 ? 32767 : v);
    }
  }
}

// Signs of dn (32767 / -32768), dn made non-negative.
void signs_of(int16_t* dn, int16_t* s) {
  for (int i = 0; i < kSubfr; ++i) {
    if (dn[i] >= 0) {
      s[i] = 32767;
    } else {
      s[i] = -32768;
      dn[i] = negate(dn[i]);
    }
  }
}

// Code vector, filtered vector and indices of the four pulses.
void output(const int* ip, const int16_t* s, const int16_t* h, int16_t* code, int16_t* y, Vsp16s* index) {
  for (int i = 0; i < kSubfr; ++i) code[i] = 0, y[i] = 0;
  int signs = 0;
  for (int k = 0; k < 4; ++k) {
    const int p = ip[k];
    code[p] = shr(s[p], 2);
    if (s[p] > 0) {
      signs += 1 << k;
      for (int j = 0; j < kSubfr - p; ++j) y[p + j] = add(y[p + j], h[j]);
    } else {
      for (int j = 0; j < kSubfr - p; ++j) y[p + j] = sub(y[p + j], h[j]);
    }
  }
  const int i3 = mult(static_cast<int16_t>(ip[3]), 6554);
  const int pos3 = 2 * i3 + (ip[3] - (5 * i3 + 3));
  index[0] = static_cast<Vsp16s>(mult(static_cast<int16_t>(ip[0]), 6554) + 8 * mult(static_cast<int16_t>(ip[1]), 6554) +
                                 64 * mult(static_cast<int16_t>(ip[2]), 6554) + 512 * pos3);
  index[1] = static_cast<Vsp16s>(signs);
}

bool args_ok(Vsp16s T0) { return T0 >= kLagMin && T0 <= kLagMax; }

// Common start of both searches: sharpened h, its correlations, the
// backward-filtered target made non-negative with its signs.
void prepare(const Vsp16s* target, const Vsp16s* imp, int T0, int16_t prevGainPitch, int16_t* h, Matrix rr, int16_t* dn,
             int16_t* s) {
  for (int i = 0; i < kSubfr; ++i) h[i] = imp[i];
  if (T0 < kSubfr) sharpen(h, T0, prevGainPitch);
  cor_h(h, rr);
  cor_h_x(h, target, dn);
  signs_of(dn, s);
}

// Common end: the vectors and indices of the pulses, the code sharpened.
void finish(const int* ip, const int16_t* s, const int16_t* h, int T0, int16_t prevGainPitch, Vsp16s* code, Vsp16s* y,
            Vsp16s* index) {
  int16_t c[kSubfr], f[kSubfr];
  output(ip, s, h, c, f, index);
  if (T0 < kSubfr) sharpen(c, T0, prevGainPitch);
  for (int i = 0; i < kSubfr; ++i) code[i] = c[i], y[i] = f[i];
}

}  // namespace

VspStatus legacy90vspsFixedCodebookSearch_G729_16s(const Vsp16s* pTarget2, const Vsp16s* pImp, Vsp16s T0,
                                                   Vsp16s prevGainPitch, int subframe, Vsp16s* pSrcDstExtra,
                                                   Vsp16s* pDstCode, Vsp16s* pDstFiltCode, Vsp16s* pDstIndex) {
  if (pTarget2 == nullptr || pImp == nullptr || pSrcDstExtra == nullptr || pDstCode == nullptr ||
      pDstFiltCode == nullptr || pDstIndex == nullptr)
    return vspStsNullPtrErr;
  if (!args_ok(T0) || subframe < 0 || subframe > 1) return vspStsRangeErr;
  int16_t h[kSubfr], dn[kSubfr], s[kSubfr];
  Matrix rr;
  prepare(pTarget2, pImp, T0, prevGainPitch, h, rr, dn, s);
  const int16_t extra = subframe == 0 ? int16_t(30) : *pSrcDstExtra;
  int16_t max0 = dn[0], max1 = dn[1], max2 = dn[2];
  for (int i = 5; i < kSubfr; i += 5) {
    if (sub(dn[i], max0) > 0) max0 = dn[i];
    if (sub(dn[i + 1], max1) > 0) max1 = dn[i + 1];
    if (sub(dn[i + 2], max2) > 0) max2 = dn[i + 2];
  }
  max0 = add(add(max0, max1), max2);
  int32_t L = 0;
  for (int i = 0; i < kSubfr; i += 5) {
    L = L_mac(L, dn[i], 1);
    L = L_mac(L, dn[i + 1], 1);
    L = L_mac(L, dn[i + 2], 1);
  }
  const int16_t average = extract_l(L_shr(L, 4));
  const int16_t thres = add(mult(sub(max0, average), 13107), average);
  apply_signs(rr, [&](int p, int q) { return mult(s[p], s[q]); });
  int16_t psc = 0, alpha = 32767;
  int ip[4] = {0, 1, 2, 3};
  int16_t time = add(75, extra);
  bool done = false;
  for (int i0 = 0; i0 < kSubfr && !done; i0 += 5) {
    const int16_t ps0 = dn[i0];
    const int16_t alp0 = rr[i0][i0];
    for (int i1 = 1; i1 < kSubfr && !done; i1 += 5) {
      const int16_t ps1 = add(ps0, dn[i1]);
      const int32_t alp1 = L_mac(L_mac(L_mult(alp0, 1), rr[i1][i1], 1), rr[i0][i1], 2);
      for (int i2 = 2; i2 < kSubfr && !done; i2 += 5) {
        const int16_t ps2 = add(ps1, dn[i2]);
        const int32_t alp2 = L_mac(L_mac(L_mac(alp1, rr[i2][i2], 1), rr[i0][i2], 2), rr[i1][i2], 2);
        if (sub(ps2, thres) > 0) {
          for (int n = 0; n < 16; ++n) {
            const int i3 = n < 8 ? 3 + 5 * n : 4 + 5 * (n - 8);
            const int16_t ps3 = add(ps2, dn[i3]);
            const int32_t alp3 =
                L_mac(L_mac(L_mac(L_mac(alp2, rr[i3][i3], 1), rr[i0][i3], 2), rr[i1][i3], 2), rr[i2][i3], 2);
            const int16_t alp = extract_l(L_shr(alp3, 5));
            const int16_t ps3c = mult(ps3, ps3);
            if (L_msu(L_mult(ps3c, alpha), psc, alp) > 0) {
              psc = ps3c;
              alpha = alp;
              ip[0] = i0, ip[1] = i1, ip[2] = i2, ip[3] = i3;
            }
          }
          time = sub(time, 1);
          if (time <= 0) done = true;
        }
      }
    }
  }
  finish(ip, s, h, T0, prevGainPitch, pDstCode, pDstFiltCode, pDstIndex);
  *pSrcDstExtra = time;
  return vspStsNoErr;
}

VspStatus legacy90vspsFixedCodebookSearch_G729A_16s(const Vsp16s* pTarget2, const Vsp16s* pImp, Vsp16s T0,
                                                    Vsp16s prevGainPitch, Vsp16s* pDstCode, Vsp16s* pDstFiltCode,
                                                    Vsp16s* pDstIndex) {
  if (pTarget2 == nullptr || pImp == nullptr || pDstCode == nullptr || pDstFiltCode == nullptr || pDstIndex == nullptr)
    return vspStsNullPtrErr;
  if (!args_ok(T0)) return vspStsRangeErr;
  int16_t h[kSubfr], dn[kSubfr], s[kSubfr];
  Matrix rr;
  prepare(pTarget2, pImp, T0, prevGainPitch, h, rr, dn, s);
  apply_signs(rr, [&](int p, int q) { return s[p] == s[q] ? int16_t(32767) : int16_t(-32768); });
  // best position of a track by dn, skipping one position
  auto best_of = [&](int first, int skip) {
    int16_t mx = -1;
    int pos = first;
    for (int i = first; i < kSubfr; i += 5)
      if (i != skip && sub(dn[i], mx) > 0) mx = dn[i], pos = i;
    return pos;
  };
  int16_t psk = -1, alpk = 1;
  int ip[4] = {0, 1, 2, 3};
  for (int tx = 3; tx <= 4; ++tx) {
    // stage 1a: pair (T2, TX)
    int16_t sq = -1, alp = 1, ps = 0;
    int ix = 0, iy = 0, prev = -1;
    for (int rep = 0; rep < 2; ++rep) {
      const int i0 = best_of(2, prev);
      prev = i0;
      const int16_t ps1 = dn[i0];
      const int32_t a1 = L_mult(rr[i0][i0], 8192);
      for (int i1 = tx; i1 < kSubfr; i1 += 5) {
        const int16_t ps2 = add(ps1, dn[i1]);
        const int32_t a2 = L_mac(L_mac(a1, rr[i0][i1], 16384), rr[i1][i1], 8192);
        const int16_t sq2 = mult(ps2, ps2), al = round(a2);
        if (L_msu(L_mult(alp, sq2), sq, al) > 0) sq = sq2, ps = ps2, alp = al, ix = i0, iy = i1;
      }
    }
    int i0 = ix, i1 = iy;
    // stage 1b: pair (T0, T1)
    int16_t ps0 = ps;
    int32_t a0 = L_mult(alp, 8192);
    sq = -1, alp = 1;
    int16_t v[kSubfr];
    for (int j = 1; j < kSubfr; j += 5)
      v[j] = round(L_mac(L_mac(L_mult(rr[j][i0], 8192), rr[j][i1], 8192), rr[j][j], 4096));
    for (int i2 = 0; i2 < kSubfr; i2 += 5) {
      const int16_t ps1 = add(ps0, dn[i2]);
      const int32_t a1 = L_mac(L_mac(L_mac(a0, rr[i2][i0], 4096), rr[i2][i1], 4096), rr[i2][i2], 2048);
      for (int i3 = 1; i3 < kSubfr; i3 += 5) {
        const int16_t ps2 = add(ps1, dn[i3]);
        const int32_t a2 = L_mac(L_mac(a1, rr[i2][i3], 4096), v[i3], 16384);
        const int16_t sq2 = mult(ps2, ps2), al = round(a2);
        if (L_msu(L_mult(alp, sq2), sq, al) > 0) sq = sq2, alp = al, ix = i2, iy = i3;
      }
    }
    if (L_msu(L_mult(alpk, sq), psk, alp) > 0) psk = sq, alpk = alp, ip[0] = ix, ip[1] = iy, ip[2] = i0, ip[3] = i1;
    // stage 2a: pair (TX, T0)
    sq = -1, alp = 1, prev = -1;
    for (int rep = 0; rep < 2; ++rep) {
      const int j0 = best_of(tx, prev);
      prev = j0;
      const int16_t ps1 = dn[j0];
      const int32_t a1 = L_mult(rr[j0][j0], 8192);
      for (int j1 = 0; j1 < kSubfr; j1 += 5) {
        const int16_t ps2 = add(ps1, dn[j1]);
        const int32_t a2 = L_mac(L_mac(a1, rr[j1][j0], 16384), rr[j1][j1], 8192);
        const int16_t sq2 = mult(ps2, ps2), al = round(a2);
        if (L_msu(L_mult(alp, sq2), sq, al) > 0) sq = sq2, ps = ps2, alp = al, ix = j0, iy = j1;
      }
    }
    i0 = ix, i1 = iy;
    // stage 2b: pair (T1, T2)
    ps0 = ps;
    a0 = L_mult(alp, 8192);
    sq = -1, alp = 1;
    for (int j = 2; j < kSubfr; j += 5)
      v[j] = round(L_mac(L_mac(L_mult(rr[j][i0], 8192), rr[i1][j], 8192), rr[j][j], 4096));
    for (int i2 = 1; i2 < kSubfr; i2 += 5) {
      const int16_t ps1 = add(ps0, dn[i2]);
      const int32_t a1 = L_mac(L_mac(L_mac(a0, rr[i2][i0], 4096), rr[i1][i2], 4096), rr[i2][i2], 2048);
      for (int i3 = 2; i3 < kSubfr; i3 += 5) {
        const int16_t ps2 = add(ps1, dn[i3]);
        const int32_t a2 = L_mac(L_mac(a1, rr[i2][i3], 4096), v[i3], 16384);
        const int16_t sq2 = mult(ps2, ps2), al = round(a2);
        if (L_msu(L_mult(alp, sq2), sq, al) > 0) sq = sq2, alp = al, ix = i2, iy = i3;
      }
    }
    if (L_msu(L_mult(alpk, sq), psk, alp) > 0) psk = sq, alpk = alp, ip[3] = i0, ip[0] = i1, ip[1] = ix, ip[2] = iy;
  }
  finish(ip, s, h, T0, prevGainPitch, pDstCode, pDstFiltCode, pDstIndex);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
