// G.729 Annex E forward LSP quantiser (reference Qua_lspe):
// legacy90vspsLSPQuant_G729E_16s and its single-precision twin
// legacy90vspsLSPQuant_G729E_32f. The quantisation is the main body's; the MA
// memory is only read, and the rearranged residual of the frame is returned
// so that the caller can push it into the memory when the frame is coded in
// forward mode.
#include <cmath>

#include "g729/float_out.h"
#include "g729/lsf_vq.h"
#include "g729/lsp_lsf.h"

namespace vsps::VSPS_NS {

namespace {
namespace t = tables::g729;
constexpr int M = t::kOrder;
}  // namespace

VspStatus legacy90vspsLSPQuant_G729E_16s(const Vsp16s* pSrcLsp, const Vsp16s* pSrcPrevFreq, Vsp16s* pDstQLsp,
                                         Vsp16s* pDstFreqCur, Vsp16s* pDstQuantIndex) {
  if (pSrcLsp == nullptr || pSrcPrevFreq == nullptr || pDstQLsp == nullptr || pDstFreqCur == nullptr ||
      pDstQuantIndex == nullptr)
    return vspStsNullPtrErr;
  int16_t lsf[M];
  lsp::lsp_to_lsf_radian(pSrcLsp, lsf);
  int codes[4];
  lsfvq::quantise(lsf, pSrcPrevFreq, codes);
  int16_t buf[M];
  lsfvq::residual(codes[1], codes[2], codes[3], buf);
  int16_t q[M];
  lsfvq::prev_compose(buf, codes[0], pSrcPrevFreq, q);
  lsfvq::stability(q);
  for (int j = 0; j < M; ++j) pDstQLsp[j] = lsp::lsf_to_lsp_radian(q[j]);
  for (int j = 0; j < M; ++j) pDstFreqCur[j] = buf[j];
  pDstQuantIndex[0] = static_cast<Vsp16s>(codes[0] << 7 | codes[1]);
  pDstQuantIndex[1] = static_cast<Vsp16s>(codes[2] << 5 | codes[3]);
  return vspStsNoErr;
}

namespace {
constexpr float kPi04 = 0.12566371f;  // pi * 0.04
constexpr float kPi92 = 2.8902652f;   // pi * 0.92
constexpr float kGap1 = 0.0012f;
constexpr float kGap2 = 0.0006f;
constexpr float kGap3 = 0.0392f;
constexpr float kLowLimit = 0.005f;
constexpr float kHighLimit = 3.135f;

inline const float* cb1(int i) { return t::kLspCb1F + i * M; }
inline const float* cb2(int i) { return t::kLspCb2F + i * M; }
inline const float* ma_pred(int mode, int k) { return t::kMaPredF + (mode * t::kMaOrder + k) * M; }

inline void expand(float* buf, float gap) {
  for (int j = 1; j < M; ++j) {
    const float tmp = (buf[j - 1] - buf[j] + gap) * 0.5f;
    if (tmp > 0.0f) {
      buf[j - 1] -= tmp;
      buf[j] += tmp;
    }
  }
}

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
    const float* inv = t::kMaPredSumInvF + mode * M;
    float target[M];
    for (int j = 0; j < M; ++j) {
      float tmp = lsf[j];
      for (int k = 0; k < t::kMaOrder; ++k) tmp -= pSrcPrevFreq[k * M + j] * ma_pred(mode, k)[j];
      target[j] = tmp * inv[j];
    }
    int best1 = 0;
    float dmin = 1.0e38f;
    for (int i = 0; i < t::kCb1Size; ++i) {
      const float d = weighted_error(target, cb1(i), one, 0, M);
      if (d < dmin) {
        dmin = d;
        best1 = i;
      }
    }
    float rest[M];
    for (int j = 0; j < M; ++j) rest[j] = target[j] - cb1(best1)[j];
    int best2[2] = {0, 0};
    for (int half = 0; half < 2; ++half) {
      float dmin2 = 1.0e38f;
      for (int i = 0; i < t::kCb2Size; ++i) {
        const float d = weighted_error(rest, cb2(i), w, 5 * half, 5 * half + 5);
        if (d < dmin2) {
          dmin2 = d;
          best2[half] = i;
        }
      }
    }
    float* buf = bufs[mode];
    for (int j = 0; j < M; ++j) buf[j] = cb1(best1)[j] + cb2(j < 5 ? best2[0] : best2[1])[j];
    expand(buf, kGap1);
    expand(buf, kGap2);
    const float* sum = t::kMaPredSumF + mode * M;
    float d = 0.0f;
    for (int j = 0; j < M; ++j) {
      const float e = (buf[j] - target[j]) * sum[j];
      d += w[j] * e * e;
    }
    dist[mode] = d;
    cand[mode][0] = best1;
    cand[mode][1] = best2[0];
    cand[mode][2] = best2[1];
  }
  const int mode = dist[1] < dist[0] ? 1 : 0;
  const float* buf = bufs[mode];
  const float* sum = t::kMaPredSumF + mode * M;
  float q[M];
  for (int j = 0; j < M; ++j) {
    q[j] = buf[j] * sum[j];
    for (int k = 0; k < t::kMaOrder; ++k) q[j] += pSrcPrevFreq[k * M + j] * ma_pred(mode, k)[j];
  }
  for (int j = 0; j < M - 1; ++j) {  // stability: one swap pass, clamps, minimum gap
    if (q[j + 1] - q[j] < 0.0f) {
      const float tmp = q[j + 1];
      q[j + 1] = q[j];
      q[j] = tmp;
    }
  }
  if (q[0] < kLowLimit) q[0] = kLowLimit;
  for (int j = 0; j < M - 1; ++j)
    if (q[j + 1] - q[j] < kGap3) q[j + 1] = q[j] + kGap3;
  if (q[M - 1] > kHighLimit) q[M - 1] = kHighLimit;
  for (int j = 0; j < M; ++j) pDstQLsp[j] = fout::canonical(static_cast<float>(std::cos(static_cast<double>(q[j]))));
  for (int j = 0; j < M; ++j) pDstFreqCur[j] = fout::canonical(buf[j]);
  pDstQuantIndex[0] = mode << 7 | cand[mode][0];
  pDstQuantIndex[1] = cand[mode][1] << 5 | cand[mode][2];
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
