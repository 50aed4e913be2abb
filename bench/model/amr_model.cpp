// The plain scalar model of the GSM-AMR LP front end (see amr_model.h).
#include "bench/model/amr_model.h"

#include "bench/model/g729_model.h"
#include "bench/model/ref_ops.h"
#include "g729/g729_tables.h"
#include "gsmamr/amr_tables.h"

namespace model::amr {

namespace t = vsps::gsmamr;
constexpr int M = 10;
constexpr int L_WINDOW = 240;

void autocorr_lag(const int16_t* x, const int16_t* window, int16_t* r_h, int16_t* r_l) {
  int16_t y[L_WINDOW];
  for (int i = 0; i < L_WINDOW; ++i) y[i] = mult_r(x[i], window[i]);
  int32_t sum;
  bool overfl;
  do {
    overfl = false;
    sum = 0;
    for (int i = 0; i < L_WINDOW; ++i) sum = L_mac(sum, y[i], y[i]);
    if (sum == 0x7FFFFFFF) {
      overfl = true;
      for (int i = 0; i < L_WINDOW; ++i) y[i] = shr(y[i], 2);
    }
  } while (overfl);
  sum = L_add(sum, 1);
  const int16_t norm = norm_l(sum);
  sum = L_shl(sum, norm);
  L_Extract(sum, &r_h[0], &r_l[0]);
  for (int i = 1; i <= M; ++i) {
    sum = 0;
    for (int j = 0; j < L_WINDOW - i; ++j) sum = L_mac(sum, y[j], y[j + i]);
    sum = L_shl(sum, norm);
    L_Extract(sum, &r_h[i], &r_l[i]);
  }
  for (int i = 1; i <= M; ++i) {
    const int32_t v = Mpy_32(r_h[i], r_l[i], t::kLagWindowHi[i - 1], t::kLagWindowLo[i - 1]);
    L_Extract(v, &r_h[i], &r_l[i]);
  }
}

bool levinson(const int16_t* Rh, const int16_t* Rl, int16_t* A) {
  int16_t rc[M];
  return model::g729::levinson(Rh, Rl, A, rc);  // TS 26.073 Levinson: the same recursion
}

static int16_t chebps(int16_t x, const int16_t* f, int n) {
  return model::g729::chebps_form(x, f, n, 256, 512, 8192, 4096, 6);
}

void az_lsp(const int16_t* a, int16_t* lsp, const int16_t* old_lsp) {
  int16_t f1[6], f2[6];
  f1[0] = 1024;
  f2[0] = 1024;
  for (int i = 0; i < 5; ++i) {
    int32_t t0 = L_mult(a[i + 1], 8192);
    t0 = L_mac(t0, a[M - i], 8192);
    f1[i + 1] = sub(extract_h(t0), f1[i]);
    t0 = L_mult(a[i + 1], 8192);
    t0 = L_msu(t0, a[M - i], 8192);
    f2[i + 1] = add(extract_h(t0), f2[i]);
  }
  model::g729::root_search(f1, f2, chebps, lsp, old_lsp);  // TS 26.073 Az_lsp: the same search
}

// ---- LSF helpers -------------------------------------------------------------
static void lsp_lsf(const int16_t* lsp, int16_t* lsf) {
  int16_t ind = 63;
  for (int i = M - 1; i >= 0; --i) {
    while (sub(t::kCosTable[ind], lsp[i]) < 0) ind--;
    const int32_t L = L_mult(sub(lsp[i], t::kCosTable[ind]), t::kAcosSlope[ind]);
    lsf[i] = round_l(L_shl(L, 3));
    lsf[i] = add(lsf[i], shl(ind, 8));
  }
}

static void lsf_lsp(const int16_t* lsf, int16_t* lsp) {
  for (int i = 0; i < M; ++i) {
    const int16_t ind = shr(lsf[i], 8);
    const int16_t offset = static_cast<int16_t>(lsf[i] & 0x00FF);
    const int32_t L = L_mult(sub(t::kCosTable[ind + 1], t::kCosTable[ind]), offset);
    lsp[i] = add(t::kCosTable[ind], extract_l(L_shr(L, 9)));
  }
}

static void lsf_wt(const int16_t* lsf, int16_t* wf) {
  wf[0] = lsf[1];
  for (int i = 1; i < 9; ++i) wf[i] = sub(lsf[i + 1], lsf[i - 1]);
  wf[9] = sub(16384, lsf[8]);
  for (int i = 0; i < 10; ++i) {
    const int16_t temp = sub(wf[i], 1843);
    if (temp < 0)
      wf[i] = sub(3427, mult(wf[i], 28160));
    else
      wf[i] = sub(1843, mult(temp, 6242));
    wf[i] = shl(wf[i], 3);
  }
}

static void reorder_lsf(int16_t* lsf, int16_t min_dist) {
  int16_t lsf_min = min_dist;
  for (int i = 0; i < M; ++i) {
    if (sub(lsf[i], lsf_min) < 0) lsf[i] = lsf_min;
    lsf_min = add(lsf[i], min_dist);
  }
}

// Vq_subvec3 / Vq_subvec4 (dim 3 or 4, row step 1 or 2).
static int16_t vq_subvec(int16_t* lsf_r1, const int16_t* wf1, const int16_t* dico, int dim, int dico_size, int step) {
  int32_t dist_min = 0x7FFFFFFF;
  int index = 0;
  for (int i = 0; i < dico_size; ++i) {
    const int16_t* p = dico + i * step * dim;
    int16_t temp = sub(lsf_r1[0], p[0]);
    temp = mult(wf1[0], temp);
    int32_t dist = L_mult(temp, temp);
    for (int k = 1; k < dim; ++k) {
      temp = sub(lsf_r1[k], p[k]);
      temp = mult(wf1[k], temp);
      dist = L_mac(dist, temp, temp);
    }
    if (L_sub(dist, dist_min) < 0) {
      dist_min = dist;
      index = i;
    }
  }
  const int16_t* p = dico + index * step * dim;
  for (int k = 0; k < dim; ++k) lsf_r1[k] = p[k];
  return static_cast<int16_t>(index);
}

void q_plsf_3(int16_t* past_rq, const int16_t* lsp, int16_t* lsp_q, int16_t* indice, bool reduced, bool mr795) {
  int16_t lsf1[M], wf1[M], lsf_p[M], lsf_r1[M], lsf1_q[M];
  lsp_lsf(lsp, lsf1);
  lsf_wt(lsf1, wf1);
  for (int i = 0; i < M; ++i) {
    lsf_p[i] = add(t::kMeanLsf3[i], mult(past_rq[i], t::kPredFac3[i]));
    lsf_r1[i] = sub(lsf1[i], lsf_p[i]);
  }
  if (reduced) {
    indice[0] = vq_subvec(&lsf_r1[0], &wf1[0], &t::kDico1Lsf3[0][0], 3, 256, 1);
    indice[1] = vq_subvec(&lsf_r1[3], &wf1[3], &t::kDico2Lsf3[0][0], 3, 256, 2);
    indice[2] = vq_subvec(&lsf_r1[6], &wf1[6], &t::kMr515Lsf3[0][0], 4, 128, 1);
  } else {
    indice[0] = mr795 ? vq_subvec(&lsf_r1[0], &wf1[0], &t::kMr795Lsf1[0][0], 3, 512, 1)
                      : vq_subvec(&lsf_r1[0], &wf1[0], &t::kDico1Lsf3[0][0], 3, 256, 1);
    indice[1] = vq_subvec(&lsf_r1[3], &wf1[3], &t::kDico2Lsf3[0][0], 3, 512, 1);
    indice[2] = vq_subvec(&lsf_r1[6], &wf1[6], &t::kDico3Lsf3[0][0], 4, 512, 1);
  }
  for (int i = 0; i < M; ++i) {
    lsf1_q[i] = add(lsf_r1[i], lsf_p[i]);
    past_rq[i] = lsf_r1[i];
  }
  reorder_lsf(lsf1_q, 205);
  lsf_lsp(lsf1_q, lsp_q);
}

// The weighted distance of Vq_subvec / Vq_subvec_s to the row p (sub) or
// to its negation (add).
static int32_t dist4(const int16_t* lsf_r1, const int16_t* lsf_r2, const int16_t* p, const int16_t* wf1,
                     const int16_t* wf2, bool negated) {
  int16_t (*op)(int16_t, int16_t) = negated ? add : sub;
  int16_t temp = op(lsf_r1[0], p[0]);
  temp = mult(wf1[0], temp);
  int32_t dist = L_mult(temp, temp);
  temp = op(lsf_r1[1], p[1]);
  temp = mult(wf1[1], temp);
  dist = L_mac(dist, temp, temp);
  temp = op(lsf_r2[0], p[2]);
  temp = mult(wf2[0], temp);
  dist = L_mac(dist, temp, temp);
  temp = op(lsf_r2[1], p[3]);
  temp = mult(wf2[1], temp);
  return L_mac(dist, temp, temp);
}

static int16_t vq_subvec_s(int16_t* lsf_r1, int16_t* lsf_r2, const int16_t* dico, const int16_t* wf1,
                           const int16_t* wf2, int dico_size) {
  int32_t dist_min = 0x7FFFFFFF;
  int index = 0, sign = 0;
  for (int i = 0; i < dico_size; ++i) {
    for (int neg = 0; neg < 2; ++neg) {
      const int32_t dist = dist4(lsf_r1, lsf_r2, dico + 4 * i, wf1, wf2, neg != 0);
      if (L_sub(dist, dist_min) < 0) {
        dist_min = dist;
        index = i;
        sign = neg;
      }
    }
  }
  const int16_t* p = dico + 4 * index;
  if (sign == 0) {
    lsf_r1[0] = p[0];
    lsf_r1[1] = p[1];
    lsf_r2[0] = p[2];
    lsf_r2[1] = p[3];
  } else {
    lsf_r1[0] = negate(p[0]);
    lsf_r1[1] = negate(p[1]);
    lsf_r2[0] = negate(p[2]);
    lsf_r2[1] = negate(p[3]);
  }
  return static_cast<int16_t>(shl(static_cast<int16_t>(index), 1) + sign);
}

static int16_t vq_subvec5(int16_t* lsf_r1, int16_t* lsf_r2, const int16_t* dico, const int16_t* wf1, const int16_t* wf2,
                          int dico_size) {
  int32_t dist_min = 0x7FFFFFFF;
  int index = 0;
  for (int i = 0; i < dico_size; ++i) {
    const int32_t dist = dist4(lsf_r1, lsf_r2, dico + 4 * i, wf1, wf2, false);
    if (L_sub(dist, dist_min) < 0) {
      dist_min = dist;
      index = i;
    }
  }
  const int16_t* p = dico + 4 * index;
  lsf_r1[0] = p[0];
  lsf_r1[1] = p[1];
  lsf_r2[0] = p[2];
  lsf_r2[1] = p[3];
  return static_cast<int16_t>(index);
}

void q_plsf_5(int16_t* past_rq, const int16_t* lsp, int16_t* lsp_q, int16_t* indice) {
  int16_t lsf1[M], lsf2[M], wf1[M], wf2[M], lsf_p[M], lsf_r1[M], lsf_r2[M], lsf1_q[M], lsf2_q[M];
  lsp_lsf(lsp, lsf1);
  lsp_lsf(lsp + M, lsf2);
  lsf_wt(lsf1, wf1);
  lsf_wt(lsf2, wf2);
  for (int i = 0; i < M; ++i) {
    lsf_p[i] = add(t::kMeanLsf5[i], mult(past_rq[i], 21299));
    lsf_r1[i] = sub(lsf1[i], lsf_p[i]);
    lsf_r2[i] = sub(lsf2[i], lsf_p[i]);
  }
  indice[0] = vq_subvec5(&lsf_r1[0], &lsf_r2[0], &t::kDico1Lsf5[0][0], &wf1[0], &wf2[0], 128);
  indice[1] = vq_subvec5(&lsf_r1[2], &lsf_r2[2], &t::kDico2Lsf5[0][0], &wf1[2], &wf2[2], 256);
  indice[2] = vq_subvec_s(&lsf_r1[4], &lsf_r2[4], &t::kDico3Lsf5[0][0], &wf1[4], &wf2[4], 256);
  indice[3] = vq_subvec5(&lsf_r1[6], &lsf_r2[6], &t::kDico4Lsf5[0][0], &wf1[6], &wf2[6], 256);
  indice[4] = vq_subvec5(&lsf_r1[8], &lsf_r2[8], &t::kDico5Lsf5[0][0], &wf1[8], &wf2[8], 64);
  for (int i = 0; i < M; ++i) {
    lsf1_q[i] = add(lsf_r1[i], lsf_p[i]);
    lsf2_q[i] = add(lsf_r2[i], lsf_p[i]);
    past_rq[i] = lsf_r2[i];
  }
  reorder_lsf(lsf1_q, 205);
  reorder_lsf(lsf2_q, 205);
  lsf_lsp(lsf1_q, lsp_q);
  lsf_lsp(lsf2_q, lsp_q + M);
}

}  // namespace model::amr
