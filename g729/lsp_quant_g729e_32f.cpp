// legacy90vspsLSPQuant_G729E_32f: the single-precision Annex E forward LSP
// quantiser (the floating-point annex's qua_lspe with lsp_get_quante): the
// MA memory is only read and the frame's rearranged residual is returned.
#include <cmath>

#include "core/float_canonical.h"
#include "g729/lsf_vq_32f.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
namespace vq = lsfvq32f;
constexpr int M = vq::M;
constexpr float kPi04 = 0.12566371f;  // pi * 0.04
constexpr float kPi92 = 2.8902652f;   // pi * 0.92

inline void weights(const float* lsf, float* w) {
  for (int i = 0; i < M; ++i) {
    float tmp;
    if (i == 0)
      tmp = lsf[1] - kPi04 - 1.0f;
    else if (i == M - 1)
      tmp = kPi92 - lsf[M - 2] - 1.0f;
    else
      tmp = lsf[i + 1] - lsf[i - 1] - 1.0f;
    w[i] = tmp > 0.0f ? 1.0f : 10.0f * tmp * tmp + 1.0f;
  }
  w[4] *= 1.2f;
  w[5] *= 1.2f;
}

// Weighted squared error of `row` against `target` over coefficients lo..hi-1.
inline float weighted_error(const float* target, const float* row, const float* w, int lo, int hi) {
  float d = 0.0f;
  for (int j = lo; j < hi; ++j) {
    const float e = target[j] - row[j];
    d += w[j] * e * e;
  }
  return d;
}

// Index of the row of `rows` with the smallest error (strictly smaller wins, from 1e38).
inline int best_row(const float* target, const float* (*row)(int), int count, const float* w, int lo, int hi) {
  int best = 0;
  float dmin = 1.0e38f;
  for (int i = 0; i < count; ++i) {
    const float d = weighted_error(target, row(i), w, lo, hi);
    if (d < dmin) {
      dmin = d;
      best = i;
    }
  }
  return best;
}
}  // namespace

VspStatus legacy90vspsLSPQuant_G729E_32f(const Vsp32f* pSrcLsp, const Vsp32f* pSrcPrevFreq, Vsp32f* pDstQLsp,
                                         Vsp32f* pDstFreqCur, int* pDstQuantIndex) {
  if (pSrcLsp == nullptr || pSrcPrevFreq == nullptr || pDstQLsp == nullptr || pDstFreqCur == nullptr ||
      pDstQuantIndex == nullptr)
    return vspStsNullPtrErr;
  float lsf[M];
  for (int j = 0; j < M; ++j) lsf[j] = static_cast<float>(std::acos(static_cast<double>(pSrcLsp[j])));
  float w[M];
  weights(lsf, w);
  const float one[M] = {1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  float dist[2];
  int cand[2][3];
  float bufs[2][M];
  for (int mode = 0; mode < 2; ++mode) {
    float target[M];
    vq::prev_extract(lsf, mode, pSrcPrevFreq, target);
    const int best1 = best_row(target, vq::cb1, tables::g729::kCb1Size, one, 0, M);
    float rest[M];
    for (int j = 0; j < M; ++j) rest[j] = target[j] - vq::cb1(best1)[j];
    const int lo = best_row(rest, vq::cb2, tables::g729::kCb2Size, w, 0, 5);
    const int hi = best_row(rest, vq::cb2, tables::g729::kCb2Size, w, 5, M);
    float* buf = bufs[mode];
    vq::residual(best1, lo, hi, buf);
    float d = 0.0f;
    for (int j = 0; j < M; ++j) {
      const float e = (buf[j] - target[j]) * vq::ma_sum(mode)[j];
      d += w[j] * e * e;
    }
    dist[mode] = d;
    cand[mode][0] = best1;
    cand[mode][1] = lo;
    cand[mode][2] = hi;
  }
  const int mode = dist[1] < dist[0] ? 1 : 0;
  float q[M];
  vq::prev_compose(bufs[mode], mode, pSrcPrevFreq, q);
  vq::stability(q);
  for (int j = 0; j < M; ++j) pDstQLsp[j] = fout::canonical(static_cast<float>(std::cos(static_cast<double>(q[j]))));
  for (int j = 0; j < M; ++j) pDstFreqCur[j] = fout::canonical(bufs[mode][j]);
  pDstQuantIndex[0] = mode << 7 | cand[mode][0];
  pDstQuantIndex[1] = cand[mode][1] << 5 | cand[mode][2];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
