// Sub-band echo-path filters: y[k] = sum over segments m of X_m[k] H_m[k]
// (plain complex products), float and 32-bit integer.
#if defined(__SSSE3__)
#include "core/simd/intrinsics.h"
#endif

#include "core/float_canonical.h"
#include "core/simd/x86.h"
#include "ec/subband_filter.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

VspStatus legacy90vspsFIRSubband_EC_32fc(const Vsp32fc* const* inputFrames, const Vsp32fc* const* coeffFrames,
                                         Vsp32fc* output, int numSegments, int numSubbands) {
  if (inputFrames == nullptr || coeffFrames == nullptr || output == nullptr) return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments) return vspStsRangeErr;
  int k0 = 0;
  // Blocks of sub-bands only when the output is each frame or apart from it.
  bool apart = true;
  const std::size_t bytes = sizeof(Vsp32fc) * static_cast<std::size_t>(numSubbands);
  for (int m = 0; m < numSegments; ++m)
    apart = apart && simd::same_or_disjoint(output, inputFrames[m], bytes) &&
            simd::same_or_disjoint(output, coeffFrames[m], bytes);
  if (!apart) k0 = numSubbands;
#if defined(__AVX__)
  // Four sub-bands per vector (re, im interleaved); per lane the segments in
  // increasing m and each product formed as in the scalar loop:
  // addsub([xr hr, xr hi], [xi hi, xi hr]) = [xr hr - xi hi, xr hi + xi hr].
  for (; k0 + 4 <= numSubbands; k0 += 4) {
    __m256 acc = _mm256_setzero_ps();
    for (int m = 0; m < numSegments; ++m) {
      const __m256 x = _mm256_loadu_ps(&inputFrames[m][k0].re);
      const __m256 h = _mm256_loadu_ps(&coeffFrames[m][k0].re);
      const __m256 p = _mm256_addsub_ps(_mm256_mul_ps(_mm256_moveldup_ps(x), h),
                                        _mm256_mul_ps(_mm256_movehdup_ps(x), _mm256_permute_ps(h, 0xB1)));
      acc = _mm256_add_ps(acc, p);
    }
    _mm256_storeu_ps(&output[k0].re, acc);
  }
#elif VSPS_LEVEL >= 2 && defined(__SSSE3__)
  for (; k0 + 2 <= numSubbands; k0 += 2) {
    __m128 acc = _mm_setzero_ps();
    for (int m = 0; m < numSegments; ++m) {
      const __m128 x = _mm_loadu_ps(&inputFrames[m][k0].re);
      const __m128 h = _mm_loadu_ps(&coeffFrames[m][k0].re);
      const __m128 p =
          _mm_addsub_ps(_mm_mul_ps(_mm_moveldup_ps(x), h), _mm_mul_ps(_mm_movehdup_ps(x), _mm_shuffle_ps(h, h, 0xB1)));
      acc = _mm_add_ps(acc, p);
    }
    _mm_storeu_ps(&output[k0].re, acc);
  }
#endif
  for (int k = k0; k < numSubbands; ++k) {
    float re = 0.0f, im = 0.0f;
    for (int m = 0; m < numSegments; ++m) {
      const Vsp32fc x = inputFrames[m][k], h = coeffFrames[m][k];
      re = re + (x.re * h.re - x.im * h.im);
      im = im + (x.re * h.im + x.im * h.re);
    }
    output[k] = {re, im};
  }
  fout::canonicalise(&output[0].re, 2 * static_cast<std::size_t>(numSubbands));
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
