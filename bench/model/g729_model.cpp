// The plain scalar model of the G.729 LP front end (see g729_model.h).
#include "bench/model/g729_model.h"

#include "bench/model/ref_ops.h"
#include "g729/g729_tables.h"

namespace model::g729 {

namespace t = vsps::tables::g729;
constexpr int M = 10;
constexpr int NC = 5;

// ---- Pre_Process (high-pass 140 Hz, input divided by 2) --------------------
void pre_process(PreProcessState& s, int16_t* signal, int lg) {
  static const int16_t b[3] = {1899, -3798, 1899};
  static const int16_t a[3] = {4096, 7807, -3733};
  for (int i = 0; i < lg; ++i) {
    const int16_t x2 = s.x1;
    s.x1 = s.x0;
    s.x0 = signal[i];
    int32_t L = Mpy_32_16(s.y1_hi, s.y1_lo, a[1]);
    L = L_add(L, Mpy_32_16(s.y2_hi, s.y2_lo, a[2]));
    L = L_mac(L, s.x0, b[0]);
    L = L_mac(L, s.x1, b[1]);
    L = L_mac(L, x2, b[2]);
    L = L_shl(L, 3);
    signal[i] = round_l(L);
    s.y2_hi = s.y1_hi;
    s.y2_lo = s.y1_lo;
    L_Extract(L, &s.y1_hi, &s.y1_lo);
  }
}

// ---- Autocorr --------------------------------------------------------------
void autocorr(const int16_t* x, int m, int16_t* r_h, int16_t* r_l) {
  int16_t y[240];
  for (int i = 0; i < 240; ++i) y[i] = mult_r(x[i], t::kHammingWindowQ15[i]);
  int32_t sum;
  do {
    Overflow = 0;
    sum = 1;
    for (int i = 0; i < 240; ++i) sum = L_mac(sum, y[i], y[i]);
    if (Overflow != 0)
      for (int i = 0; i < 240; ++i) y[i] = shr(y[i], 2);
  } while (Overflow != 0);
  const int16_t norm = norm_l(sum);
  sum = L_shl(sum, norm);
  L_Extract(sum, &r_h[0], &r_l[0]);
  for (int i = 1; i <= m; ++i) {
    sum = 0;
    for (int j = 0; j < 240 - i; ++j) sum = L_mac(sum, y[j], y[j + i]);
    sum = L_shl(sum, norm);
    L_Extract(sum, &r_h[i], &r_l[i]);
  }
}

void lag_window(int m, int16_t* r_h, int16_t* r_l) {
  for (int i = 1; i <= m; ++i) {
    const int32_t w = t::kLagWindowQ31[i - 1];
    const int32_t x = Mpy_32(r_h[i], r_l[i], extract_h(w), static_cast<int16_t>((w & 0xFFFF) >> 1));
    L_Extract(x, &r_h[i], &r_l[i]);
  }
}

// ---- Levinson ----------------------------------------------------------------
bool levinson(const int16_t* Rh, const int16_t* Rl, int16_t* A, int16_t* rc) {
  int16_t Ah[M + 1], Al[M + 1], Anh[M + 1], Anl[M + 1];
  int16_t hi, lo, Kh, Kl, alp_h, alp_l, alp_exp;
  int32_t t0, t1, t2;
  t1 = L_Comp(Rh[1], Rl[1]);
  t2 = L_abs(t1);
  t0 = Div_32(t2, Rh[0], Rl[0]);
  if (t1 > 0) t0 = L_negate(t0);
  L_Extract(t0, &Kh, &Kl);
  rc[0] = Kh;
  t0 = L_shr(t0, 4);
  L_Extract(t0, &Ah[1], &Al[1]);
  t0 = Mpy_32(Kh, Kl, Kh, Kl);
  t0 = L_abs(t0);
  t0 = L_sub(0x7FFFFFFF, t0);
  L_Extract(t0, &hi, &lo);
  t0 = Mpy_32(Rh[0], Rl[0], hi, lo);
  alp_exp = norm_l(t0);
  t0 = L_shl(t0, alp_exp);
  L_Extract(t0, &alp_h, &alp_l);
  for (int i = 2; i <= M; ++i) {
    t0 = 0;
    for (int j = 1; j < i; ++j) t0 = L_add(t0, Mpy_32(Rh[j], Rl[j], Ah[i - j], Al[i - j]));
    t0 = L_shl(t0, 4);
    t1 = L_Comp(Rh[i], Rl[i]);
    t0 = L_add(t0, t1);
    t1 = L_abs(t0);
    t2 = Div_32(t1, alp_h, alp_l);
    if (t0 > 0) t2 = L_negate(t2);
    t2 = L_shl(t2, alp_exp);
    L_Extract(t2, &Kh, &Kl);
    rc[i - 1] = Kh;
    if (sub(abs_s(Kh), 32750) > 0) return false;
    for (int j = 1; j < i; ++j) {
      t0 = Mpy_32(Kh, Kl, Ah[i - j], Al[i - j]);
      t0 = L_add(t0, L_Comp(Ah[j], Al[j]));
      L_Extract(t0, &Anh[j], &Anl[j]);
    }
    t2 = L_shr(t2, 4);
    L_Extract(t2, &Anh[i], &Anl[i]);
    t0 = Mpy_32(Kh, Kl, Kh, Kl);
    t0 = L_abs(t0);
    t0 = L_sub(0x7FFFFFFF, t0);
    L_Extract(t0, &hi, &lo);
    t0 = Mpy_32(alp_h, alp_l, hi, lo);
    const int16_t j = norm_l(t0);
    t0 = L_shl(t0, j);
    L_Extract(t0, &alp_h, &alp_l);
    alp_exp = add(alp_exp, j);
    for (int k = 1; k <= i; ++k) {
      Ah[k] = Anh[k];
      Al[k] = Anl[k];
    }
  }
  A[0] = 4096;
  for (int i = 1; i <= M; ++i) {
    t0 = L_Comp(Ah[i], Al[i]);
    A[i] = round_l(L_shl(t0, 1));
  }
  return true;
}

// ---- Az_lsp ------------------------------------------------------------------
// Chebps_11 (b2 = 1.0 in Q24: 256, 2x: 512, f[i]: 4096, f[n]/2: 2048,
// final shift 6), Chebps_10 (Q23: 128, 256, 4096, 2048, 7) and the GSM-AMR
// Chebps (Q24 on Q10 polynomials: 256, 512, 8192, 4096, 6): one recursion
// with the form's constants.
int16_t chebps_form(int16_t x, const int16_t* f, int n, int16_t one, int16_t two, int16_t coef, int16_t last,
                    int16_t shift) {
  int16_t b1_h, b1_l, b2_h = one, b2_l = 0, b0_h, b0_l;
  int32_t t0 = L_mult(x, two);
  t0 = L_mac(t0, f[1], coef);
  L_Extract(t0, &b1_h, &b1_l);
  for (int i = 2; i < n; ++i) {
    t0 = Mpy_32_16(b1_h, b1_l, x);
    t0 = L_shl(t0, 1);
    t0 = L_mac(t0, b2_h, -32768);
    t0 = L_msu(t0, b2_l, 1);
    t0 = L_mac(t0, f[i], coef);
    L_Extract(t0, &b0_h, &b0_l);
    b2_l = b1_l;
    b2_h = b1_h;
    b1_l = b0_l;
    b1_h = b0_h;
  }
  t0 = Mpy_32_16(b1_h, b1_l, x);
  t0 = L_mac(t0, b2_h, -32768);
  t0 = L_msu(t0, b2_l, 1);
  t0 = L_mac(t0, f[n], last);
  t0 = L_shl(t0, shift);
  return extract_h(t0);
}

int16_t chebps_11(int16_t x, const int16_t* f, int n) { return chebps_form(x, f, n, 256, 512, 4096, 2048, 6); }
static int16_t chebps_10(int16_t x, const int16_t* f, int n) { return chebps_form(x, f, n, 128, 256, 4096, 2048, 7); }

// The root search of Az_lsp (60-point grid, 4 bisections, interpolation,
// alternating polynomials, the old LSPs when fewer than 10 roots).
void root_search(const int16_t* f1, const int16_t* f2, Chebps chebps, int16_t* lsp, const int16_t* old_lsp) {
  root_search_grid(f1, f2, chebps, lsp, old_lsp, t::kGrid60Q15, 60, 4);
}

void root_search_grid(const int16_t* f1, const int16_t* f2, Chebps chebps, int16_t* lsp, const int16_t* old_lsp,
                      const int16_t* grid, int points, int bisections) {
  int nf = 0, ip = 0;
  const int16_t* coef = f1;
  int16_t xlow = grid[0];
  int16_t ylow = chebps(xlow, coef, NC);
  int j = 0;
  while (nf < M && j < points) {
    j = j + 1;
    int16_t xhigh = xlow, yhigh = ylow;
    xlow = grid[j];
    ylow = chebps(xlow, coef, NC);
    if (L_mult(ylow, yhigh) <= 0) {
      for (int i = 0; i < bisections; ++i) {
        const int16_t xmid = add(shr(xlow, 1), shr(xhigh, 1));
        const int16_t ymid = chebps(xmid, coef, NC);
        if (L_mult(ylow, ymid) <= 0) {
          yhigh = ymid;
          xhigh = xmid;
        } else {
          ylow = ymid;
          xlow = xmid;
        }
      }
      int16_t x = sub(xhigh, xlow), y = sub(yhigh, ylow), xint;
      if (y == 0) {
        xint = xlow;
      } else {
        const int16_t sign = y;
        y = abs_s(y);
        const int16_t exp = norm_s(y);
        y = shl(y, exp);
        y = div_s(16383, y);
        int32_t t0 = L_mult(x, y);
        t0 = L_shr(t0, sub(20, exp));
        y = extract_l(t0);
        if (sign < 0) y = negate(y);
        t0 = L_mult(ylow, y);
        t0 = L_shr(t0, 11);
        xint = sub(xlow, extract_l(t0));
      }
      lsp[nf] = xint;
      xlow = xint;
      nf++;
      if (ip == 0) {
        ip = 1;
        coef = f2;
      } else {
        ip = 0;
        coef = f1;
      }
      ylow = chebps(xlow, coef, NC);
    }
  }
  if (sub(static_cast<int16_t>(nf), M) < 0)
    for (int i = 0; i < M; ++i) lsp[i] = old_lsp[i];
}

void az_lsp(const int16_t* a, int16_t* lsp, const int16_t* old_lsp) { az_lsp_grid(a, lsp, old_lsp, false); }

void az_lsp_grid(const int16_t* a, int16_t* lsp, const int16_t* old_lsp, bool annexA) {
  int16_t f1[NC + 1], f2[NC + 1];
  int ovf_coef = 0;
  int16_t (*pChebps)(int16_t, const int16_t*, int) = chebps_11;
  f1[0] = 2048;
  f2[0] = 2048;
  for (int i = 0; i < NC; ++i) {
    Overflow = 0;
    int32_t t0 = L_mult(a[i + 1], 16384);
    t0 = L_mac(t0, a[M - i], 16384);
    int16_t x = extract_h(t0);
    f1[i + 1] = sub(x, f1[i]);
    if (Overflow != 0) ovf_coef = 1;
    Overflow = 0;
    t0 = L_mult(a[i + 1], 16384);
    t0 = L_msu(t0, a[M - i], 16384);
    x = extract_h(t0);
    f2[i + 1] = add(x, f2[i]);
    if (Overflow != 0) ovf_coef = 1;
  }
  if (ovf_coef != 0) {
    pChebps = chebps_10;
    f1[0] = 1024;
    f2[0] = 1024;
    for (int i = 0; i < NC; ++i) {
      int32_t t0 = L_mult(a[i + 1], 8192);
      t0 = L_mac(t0, a[M - i], 8192);
      f1[i + 1] = sub(extract_h(t0), f1[i]);
      t0 = L_mult(a[i + 1], 8192);
      t0 = L_msu(t0, a[M - i], 8192);
      f2[i + 1] = add(extract_h(t0), f2[i]);
    }
  }
  if (annexA)
    root_search_grid(f1, f2, pChebps, lsp, old_lsp, t::kGrid50Q15, 50, 2);
  else
    root_search(f1, f2, pChebps, lsp, old_lsp);
}

// ---- Lsp_Az ------------------------------------------------------------------
static void get_lsp_pol(const int16_t* lsp, int32_t* f) {
  f[0] = L_mult(4096, 2048);
  f[1] = L_msu(0, lsp[0], 512);
  for (int i = 2; i <= 5; ++i) {
    const int16_t q = lsp[2 * (i - 1)];
    f[i] = f[i - 2];
    for (int j = i; j >= 2; --j) {
      int16_t hi, lo;
      L_Extract(f[j - 1], &hi, &lo);
      int32_t t0 = Mpy_32_16(hi, lo, q);
      t0 = L_shl(t0, 1);
      f[j] = L_add(f[j], f[j - 2]);
      f[j] = L_sub(f[j], t0);
    }
    f[1] = L_msu(f[1], q, 512);
  }
}

void lsp_az(const int16_t* lsp, int16_t* a) {
  int32_t f1[6], f2[6];
  get_lsp_pol(&lsp[0], f1);
  get_lsp_pol(&lsp[1], f2);
  for (int i = 5; i > 0; --i) {
    f1[i] = L_add(f1[i], f1[i - 1]);
    f2[i] = L_sub(f2[i], f2[i - 1]);
  }
  a[0] = 4096;
  for (int i = 1, j = 10; i <= 5; ++i, --j) {
    a[i] = extract_l(L_shr_r(L_add(f1[i], f2[i]), 13));
    a[j] = extract_l(L_shr_r(L_sub(f1[i], f2[i]), 13));
  }
}

// ---- Qua_lsp -------------------------------------------------------------------
QuantState::QuantState() {
  for (auto& row : freq_prev)
    for (int j = 0; j < M; ++j) row[j] = t::kLsfResetQ13[j];
}

static const int16_t* cb1(int i) { return t::kLspCb1Q13 + i * M; }
static const int16_t* cb2(int i) { return t::kLspCb2Q13 + i * M; }
static const int16_t* fg(int mode, int k) { return t::kMaPredQ15 + (mode * 4 + k) * M; }

void lsp_lsf2(const int16_t* lsp, int16_t* lsf) {
  int16_t ind = 63;
  for (int i = M - 1; i >= 0; --i) {
    while (sub(t::kCosTableQ15[ind], lsp[i]) < 0) {
      ind = sub(ind, 1);
      if (ind <= 0) break;
    }
    const int16_t offset = sub(lsp[i], t::kCosTableQ15[ind]);
    const int32_t L = L_mult(t::kAcosSlopeQ12[ind], offset);
    const int16_t freq = add(shl(ind, 9), extract_l(L_shr(L, 12)));
    lsf[i] = mult(freq, 25736);
  }
}

void lsf_lsp2(const int16_t* lsf, int16_t* lsp) {
  for (int i = 0; i < M; ++i) {
    const int16_t freq = mult(lsf[i], 20861);
    int16_t ind = shr(freq, 8);
    const int16_t offset = static_cast<int16_t>(freq & 0x00FF);
    if (sub(ind, 63) > 0) ind = 63;
    const int32_t L = L_mult(t::kCosSlopeQ12[ind], offset);
    lsp[i] = add(t::kCosTableQ15[ind], extract_l(L_shr(L, 13)));
  }
}

static void get_wegt(const int16_t* flsp, int16_t* wegt) {
  int16_t buf[M];
  buf[0] = sub(flsp[1], 1029 + 8192);
  for (int i = 1; i < M - 1; ++i) buf[i] = sub(sub(flsp[i + 1], flsp[i - 1]), 8192);
  buf[M - 1] = sub(23677 - 8192, flsp[M - 2]);
  for (int i = 0; i < M; ++i) {
    if (buf[i] > 0) {
      wegt[i] = 2048;
    } else {
      int32_t L = L_mult(buf[i], buf[i]);
      int16_t tmp = extract_h(L_shl(L, 2));
      L = L_mult(tmp, 20480);
      tmp = extract_h(L_shl(L, 2));
      wegt[i] = add(tmp, 2048);
    }
  }
  wegt[4] = extract_h(L_shl(L_mult(wegt[4], 19661), 1));
  wegt[5] = extract_h(L_shl(L_mult(wegt[5], 19661), 1));
  int16_t tmp = 0;
  for (int i = 0; i < M; ++i)
    if (sub(wegt[i], tmp) > 0) tmp = wegt[i];
  const int16_t sft = norm_s(tmp);
  for (int i = 0; i < M; ++i) wegt[i] = shl(wegt[i], sft);
}

static void lsp_prev_extract(const int16_t* lsp, int16_t* lsp_ele, int mode, const int16_t (*prev)[M]) {
  for (int j = 0; j < M; ++j) {
    int32_t L = L_deposit_h(lsp[j]);
    for (int k = 0; k < 4; ++k) L = L_msu(L, prev[k][j], fg(mode, k)[j]);
    const int16_t temp = extract_h(L);
    L = L_mult(temp, t::kMaPredSumInvQ12[mode * M + j]);
    lsp_ele[j] = extract_h(L_shl(L, 3));
  }
}

static void lsp_expand_1_2(int16_t* buf, int16_t gap) {
  for (int j = 1; j < M; ++j) {
    const int16_t diff = sub(buf[j - 1], buf[j]);
    const int16_t tmp = shr(add(diff, gap), 1);
    if (tmp > 0) {
      buf[j - 1] = sub(buf[j - 1], tmp);
      buf[j] = add(buf[j], tmp);
    }
  }
}

static void lsp_prev_compose(const int16_t* lsp_ele, int16_t* lsp, int mode, const int16_t (*prev)[M]) {
  for (int j = 0; j < M; ++j) {
    int32_t L = L_mult(lsp_ele[j], t::kMaPredSumQ15[mode * M + j]);
    for (int k = 0; k < 4; ++k) L = L_mac(L, prev[k][j], fg(mode, k)[j]);
    lsp[j] = extract_h(L);
  }
}

static void lsp_prev_update(const int16_t* lsp_ele, int16_t (*prev)[M]) {
  for (int k = 3; k > 0; --k)
    for (int j = 0; j < M; ++j) prev[k][j] = prev[k - 1][j];
  for (int j = 0; j < M; ++j) prev[0][j] = lsp_ele[j];
}

static void lsp_stability(int16_t* buf) {
  for (int j = 0; j < M - 1; ++j) {
    if (L_sub(L_deposit_l(buf[j + 1]), L_deposit_l(buf[j])) < 0) {
      const int16_t tmp = buf[j + 1];
      buf[j + 1] = buf[j];
      buf[j] = tmp;
    }
  }
  if (sub(buf[0], 40) < 0) buf[0] = 40;
  for (int j = 0; j < M - 1; ++j)
    if (L_sub(L_sub(L_deposit_l(buf[j + 1]), L_deposit_l(buf[j])), 321) < 0) buf[j + 1] = add(buf[j], 321);
  if (sub(buf[M - 1], 25681) > 0) buf[M - 1] = 25681;
}

static void lsp_get_quant(int16_t (*prev)[M], const int* codes, int16_t* lspq) {
  int16_t buf[M];
  for (int j = 0; j < 5; ++j) buf[j] = add(cb1(codes[1])[j], cb2(codes[2])[j]);
  for (int j = 5; j < M; ++j) buf[j] = add(cb1(codes[1])[j], cb2(codes[3])[j]);
  lsp_expand_1_2(buf, 10);
  lsp_expand_1_2(buf, 5);
  lsp_prev_compose(buf, lspq, codes[0], prev);
  lsp_prev_update(buf, prev);
  lsp_stability(lspq);
}

void qua_lsp(QuantState& s, const int16_t* lsp, int16_t* lsp_q, int* codes) {
  int16_t flsp[M], wegt[M], rbuf[M], buf[M], flsp_q[M];
  lsp_lsf2(lsp, flsp);
  get_wegt(flsp, wegt);
  int cand[2], tindex1[2], tindex2[2];
  int32_t L_tdist[2];
  for (int mode = 0; mode < 2; ++mode) {
    lsp_prev_extract(flsp, rbuf, mode, s.freq_prev);
    // Lsp_pre_select
    int32_t L_dmin = 0x7FFFFFFF;
    cand[mode] = 0;
    for (int i = 0; i < 128; ++i) {
      int32_t L_tmp = 0;
      for (int j = 0; j < M; ++j) {
        const int16_t tmp = sub(rbuf[j], cb1(i)[j]);
        L_tmp = L_mac(L_tmp, tmp, tmp);
      }
      if (L_sub(L_tmp, L_dmin) < 0) {
        L_dmin = L_tmp;
        cand[mode] = i;
      }
    }
    for (int j = 0; j < M; ++j) buf[j] = sub(rbuf[j], cb1(cand[mode])[j]);
    // Lsp_select_1 / Lsp_select_2
    for (int half = 0; half < 2; ++half) {
      L_dmin = 0x7FFFFFFF;
      int idx = 0;
      for (int k = 0; k < 32; ++k) {
        int32_t L_dist = 0;
        for (int j = 5 * half; j < 5 * half + 5; ++j) {
          const int16_t tmp = sub(buf[j], cb2(k)[j]);
          const int16_t tmp2 = mult(wegt[j], tmp);
          L_dist = L_mac(L_dist, tmp2, tmp);
        }
        if (L_sub(L_dist, L_dmin) < 0) {
          L_dmin = L_dist;
          idx = k;
        }
      }
      (half == 0 ? tindex1 : tindex2)[mode] = idx;
    }
    // Lsp_get_tdist
    int16_t qbuf[M];
    for (int j = 0; j < 5; ++j) qbuf[j] = add(cb1(cand[mode])[j], cb2(tindex1[mode])[j]);
    for (int j = 5; j < M; ++j) qbuf[j] = add(cb1(cand[mode])[j], cb2(tindex2[mode])[j]);
    lsp_expand_1_2(qbuf, 10);
    lsp_expand_1_2(qbuf, 5);
    int32_t L_acc = 0;
    for (int j = 0; j < M; ++j) {
      int16_t tmp = sub(qbuf[j], rbuf[j]);
      tmp = mult(tmp, t::kMaPredSumQ15[mode * M + j]);
      int32_t L = L_mult(wegt[j], tmp);
      L = L_shl(L, 4);
      const int16_t tmp2 = extract_h(L);
      L_acc = L_mac(L_acc, tmp2, tmp);
    }
    L_tdist[mode] = L_acc;
  }
  const int mode = L_sub(L_tdist[1], L_tdist[0]) < 0 ? 1 : 0;
  codes[0] = mode;
  codes[1] = cand[mode];
  codes[2] = tindex1[mode];
  codes[3] = tindex2[mode];
  lsp_get_quant(s.freq_prev, codes, flsp_q);
  lsf_lsp2(flsp_q, lsp_q);
}

void lsf_decode(QuantState& s, const int* codes, int16_t* lsf_q) { lsp_get_quant(s.freq_prev, codes, lsf_q); }

void lsf_decode_erased(QuantState& s, int mode, const int16_t* lsf) {
  int16_t buf[M];
  lsp_prev_extract(lsf, buf, mode, s.freq_prev);
  lsp_prev_update(buf, s.freq_prev);
}

void lsp_lsf(const int16_t* lsp, int16_t* lsf) {
  int16_t ind = 63;
  for (int i = M - 1; i >= 0; --i) {
    while (sub(t::kCosTableNormQ15[ind], lsp[i]) < 0) ind = sub(ind, 1);
    const int32_t L = L_mult(sub(lsp[i], t::kCosTableNormQ15[ind]), t::kAcosSlopeNormQ12[ind]);
    const int16_t tmp = round_l(L_shl(L, 3));
    lsf[i] = add(tmp, shl(ind, 8));
  }
}

void lsp_decode(QuantState& s, const int* codes, int16_t* lsp_q) {
  int16_t lsf[M];
  lsp_get_quant(s.freq_prev, codes, lsf);
  lsf_lsp2(lsf, lsp_q);
}

// ---- floating-point annex ------------------------------------------------------
static void get_lsp_pol_f(const float* lsp, float* f) {
  f[0] = 1.0f;
  f[1] = -2.0f * lsp[0];
  for (int i = 2; i <= 5; i++) {
    const float b = -2.0f * lsp[2 * i - 2];
    f[i] = b * f[i - 1] + 2.0f * f[i - 2];
    for (int j = i - 1; j > 1; j--) f[j] += b * f[j - 1] + f[j - 2];
    f[1] += b;
  }
}

void lsp_az_f(const float* lsp, float* a) {
  float f1[6], f2[6];
  get_lsp_pol_f(&lsp[0], f1);
  get_lsp_pol_f(&lsp[1], f2);
  for (int i = 5; i > 0; i--) {
    f1[i] += f1[i - 1];
    f2[i] -= f2[i - 1];
  }
  a[0] = 1.0f;
  for (int i = 1, j = 10; i <= 5; i++, j--) {
    a[i] = 0.5f * (f1[i] + f2[i]);
    a[j] = 0.5f * (f1[i] - f2[i]);
  }
}

float levinson_f(const float* r, float* a, float* rc) {
  rc[0] = -r[1] / r[0];
  a[0] = 1.0f;
  a[1] = rc[0];
  float err = r[0] + r[1] * rc[0];
  for (int i = 2; i <= M; i++) {
    float s = 0.0f;
    for (int j = 0; j < i; j++) s += r[i - j] * a[j];
    rc[i - 1] = -s / err;
    for (int j = 1; j <= i / 2; j++) {
      const int l = i - j;
      const float at = a[j] + rc[i - 1] * a[l];
      a[l] += rc[i - 1] * a[j];
      a[j] = at;
    }
    a[i] = rc[i - 1];
    err += rc[i - 1] * s;
    if (err <= 0.0f) err = 0.001f;
  }
  return err;
}

}  // namespace model::g729
