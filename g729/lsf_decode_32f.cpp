// Single-precision LSF decoders: legacy90vspsLSFDecode_G729_32f and
// legacy90vspsLSFDecodeErased_G729_32f (the floating-point annex's
// lsp_get_quant and the erasure branch of lsp_iqua_cs). Radian LSFs; the MA
// memory is 4 x 10 floats, newest row first.
#include "g729/float_out.h"
#include "g729/g729_tables.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
namespace t = tables::g729;
constexpr int M = t::kOrder;
constexpr float kGap1 = 0.0012f;
constexpr float kGap2 = 0.0006f;
constexpr float kGap3 = 0.0392f;
constexpr float kLowLimit = 0.005f;
constexpr float kHighLimit = 3.135f;

inline const float* ma_pred(int mode, int k) { return t::kMaPredF + (mode * t::kMaOrder + k) * M; }

inline void expand(float* buf, float gap) {
  for (int j = 1; j < M; ++j) {
    const float diff = buf[j - 1] - buf[j];
    const float tmp = (diff + gap) * 0.5f;
    if (tmp > 0.0f) {
      buf[j - 1] -= tmp;
      buf[j] += tmp;
    }
  }
}

inline void prev_update(const float* buf, float* prev) {
  for (int k = t::kMaOrder - 1; k > 0; --k)
    for (int j = 0; j < M; ++j) prev[k * M + j] = prev[(k - 1) * M + j];
  for (int j = 0; j < M; ++j) prev[j] = buf[j];
}
}  // namespace

VspStatus legacy90vspsLSFDecode_G729_32f(const int* pQuantIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pDstQLsf) {
  if (pQuantIndex == nullptr || pSrcDstPrevFreq == nullptr || pDstQLsf == nullptr) return vspStsNullPtrErr;
  // The codes are masked to their bit widths as a bit-stream unpacker does.
  const int mode = pQuantIndex[0] & 1;
  const float* cb1 = t::kLspCb1F + (pQuantIndex[1] & 127) * M;
  const float* cb2lo = t::kLspCb2F + (pQuantIndex[2] & 31) * M;
  const float* cb2hi = t::kLspCb2F + (pQuantIndex[3] & 31) * M;
  float buf[M];
  for (int j = 0; j < 5; ++j) buf[j] = cb1[j] + cb2lo[j];
  for (int j = 5; j < M; ++j) buf[j] = cb1[j] + cb2hi[j];
  expand(buf, kGap1);
  expand(buf, kGap2);
  float lsf[M];
  const float* sum = t::kMaPredSumF + mode * M;
  for (int j = 0; j < M; ++j) {
    lsf[j] = buf[j] * sum[j];
    for (int k = 0; k < t::kMaOrder; ++k) lsf[j] += pSrcDstPrevFreq[k * M + j] * ma_pred(mode, k)[j];
  }
  for (int j = 0; j < M; ++j) buf[j] = fout::canonical(buf[j]);
  prev_update(buf, pSrcDstPrevFreq);
  for (int j = 0; j < M - 1; ++j) {  // stability: one swap pass, clamps, minimum gap
    if (lsf[j + 1] - lsf[j] < 0.0f) {
      const float tmp = lsf[j + 1];
      lsf[j + 1] = lsf[j];
      lsf[j] = tmp;
    }
  }
  if (lsf[0] < kLowLimit) lsf[0] = kLowLimit;
  for (int j = 0; j < M - 1; ++j)
    if (lsf[j + 1] - lsf[j] < kGap3) lsf[j + 1] = lsf[j] + kGap3;
  if (lsf[M - 1] > kHighLimit) lsf[M - 1] = kHighLimit;
  for (int j = 0; j < M; ++j) pDstQLsf[j] = fout::canonical(lsf[j]);
  return vspStsNoErr;
}

VspStatus legacy90vspsLSFDecodeErased_G729_32f(int maIndex, Vsp32f* pSrcDstPrevFreq, Vsp32f* pSrcDstLsf) {
  if (pSrcDstPrevFreq == nullptr || pSrcDstLsf == nullptr) return vspStsNullPtrErr;
  if (maIndex != 0 && maIndex != 1) return vspStsBadIndexErr;
  const float* inv = t::kMaPredSumInvF + maIndex * M;
  float res[M];
  for (int j = 0; j < M; ++j) {
    float tmp = pSrcDstLsf[j];
    for (int k = 0; k < t::kMaOrder; ++k) tmp -= pSrcDstPrevFreq[k * M + j] * ma_pred(maIndex, k)[j];
    res[j] = fout::canonical(tmp * inv[j]);
  }
  prev_update(res, pSrcDstPrevFreq);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
