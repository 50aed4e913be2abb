// Sub-band echo-path filters: y[k] = sum over segments m of X_m[k] H_m[k]
// (plain complex products), float and 32-bit integer.
#include "ec/subband_filter.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsFIRSubband_EC_32fc(const Vsp32fc* const* inputFrames, const Vsp32fc* const* coeffFrames,
                                         Vsp32fc* output, int numSegments, int numSubbands) {
  if (inputFrames == nullptr || coeffFrames == nullptr || output == nullptr) return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments) return vspStsRangeErr;
  for (int k = 0; k < numSubbands; ++k) {
    float re = 0.0f, im = 0.0f;
    for (int m = 0; m < numSegments; ++m) {
      const Vsp32fc x = inputFrames[m][k], h = coeffFrames[m][k];
      re = re + (x.re * h.re - x.im * h.im);
      im = im + (x.re * h.im + x.im * h.re);
    }
    output[k] = {re, im};
  }
  return vspStsNoErr;
}

VspStatus legacy90vspsFIRSubband_EC_32sc_Sfs(const Vsp32sc* const* inputFrames, const Vsp32sc* const* coeffFrames,
                                             Vsp32sc* output, int numSegments, int numSubbands, int scaleFactor) {
  if (inputFrames == nullptr || coeffFrames == nullptr || output == nullptr) return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments) return vspStsRangeErr;
  if (scaleFactor < -31 || scaleFactor > 31) return vspStsRangeErr;
  // Division by 2^s rounding toward zero, or multiplication with saturation.
  auto scale = [scaleFactor](int64_t v) -> int32_t {
    if (scaleFactor > 0) {
      const int64_t low = v & ((int64_t(1) << scaleFactor) - 1);
      if (v < 0 && low != 0) v += int64_t(1) << scaleFactor;
      return ec::sat32(v >> scaleFactor);
    }
    return ec::sat32(ec::shift_sat64(v, scaleFactor));
  };
  for (int k = 0; k < numSubbands; ++k) {
    int64_t re = 0, im = 0;
    for (int m = 0; m < numSegments; ++m) {
      const Vsp32sc x = inputFrames[m][k], h = coeffFrames[m][k];
      re = ec::add_sat64(re, ec::sub_sat64(int64_t(x.re) * h.re, int64_t(x.im) * h.im));
      im = ec::add_sat64(im, ec::add_sat64(int64_t(x.re) * h.im, int64_t(x.im) * h.re));
    }
    output[k] = {scale(re), scale(im)};
  }
  return vspStsNoErr;
}

VspStatus legacy90vspsFIRSubbandLow_EC_32sc_Sfs(const Vsp32sc* const* inputFrames, const Vsp32sc* const* coeffFrames,
                                                int numSegments, Vsp32sc* output, int firstSubband, int numSubbands,
                                                int scaleFactor) {
  if (inputFrames == nullptr || coeffFrames == nullptr || output == nullptr) return vspStsNullPtrErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments || firstSubband < 0 || firstSubband > numSubbands)
    return vspStsRangeErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (scaleFactor < 0 || scaleFactor > 31) return vspStsRangeErr;
  for (int k = firstSubband; k < numSubbands; ++k) {
    int64_t re = 0, im = 0;  // plain wrapping sums
    for (int m = 0; m < numSegments; ++m) {
      const Vsp32sc x = inputFrames[m][k], h = coeffFrames[m][k];
      re = ec::wrap_add64(re, ec::wrap_sub64(int64_t(x.re) * h.re, int64_t(x.im) * h.im));
      im = ec::wrap_add64(im, ec::wrap_add64(int64_t(x.re) * h.im, int64_t(x.im) * h.re));
    }
    output[k] = {static_cast<int32_t>(re >> scaleFactor), static_cast<int32_t>(im >> scaleFactor)};
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
