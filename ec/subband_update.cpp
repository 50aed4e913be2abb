// Coefficient updates of the sub-band echo-path filters (normalised least
// mean squares per sub-band): H_m[k] += mu_k E[k] conj(X_m[k]).
#if defined(__AVX__)
#include "core/simd/intrinsics.h"
#endif

#include "core/float_canonical.h"
#include "core/simd/x86.h"
#include "ec/subband_filter.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

// t = (mantissa * e + 2^30) >> 31 per component, 64-bit.
inline Vsp32sc step_times_error(int32_t mantissa, Vsp32sc e) {
  const int64_t half = int64_t(1) << 30;
  return {static_cast<int32_t>((int64_t(mantissa) * e.re + half) >> 31),
          static_cast<int32_t>((int64_t(mantissa) * e.im + half) >> 31)};
}

// H + (t conj(x)) * 2^-count, with 32-bit saturation of the result. The
// product's two terms are combined with 64-bit saturation (kSaturate) or
// in wrapping 64-bit arithmetic.
template <bool kSaturate>
inline Vsp32sc update_one(Vsp32sc h, Vsp32sc t, Vsp32sc x, int64_t count) {
  int64_t re, im;
  if constexpr (kSaturate) {
    re = ec::add_sat64(int64_t(t.re) * x.re, int64_t(t.im) * x.im);
    im = ec::sub_sat64(int64_t(t.im) * x.re, int64_t(t.re) * x.im);
  } else {
    re = ec::wrap_add64(int64_t(t.re) * x.re, int64_t(t.im) * x.im);
    im = ec::wrap_sub64(int64_t(t.im) * x.re, int64_t(t.re) * x.im);
  }
  // Clamp before adding: anything beyond 2^40 saturates the 32-bit result.
  auto add = [count](int32_t a, int64_t d) {
    d = ec::shift_sat64(d, count);
    const int64_t lim = int64_t(1) << 40;
    d = d > lim ? lim : (d < -lim ? -lim : d);
    return ec::sat32(a + d);
  };
  return {add(h.re, re), add(h.im, im)};
}

}  // namespace

VspStatus legacy90vspsFIRSubbandCoeffUpdate_EC_32fc_I(const Vsp64f* step, const Vsp32fc* const* inputFrames,
                                                      const Vsp32fc* errorFrame, Vsp32fc** coeffFrames, int numSegments,
                                                      int numSubbands) {
  if (step == nullptr || inputFrames == nullptr || errorFrame == nullptr || coeffFrames == nullptr)
    return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments) return vspStsRangeErr;
  for (int k = 0; k < numSubbands; ++k)
    if (step[k] < 0.0) return vspStsSizeErr;
  double t[2 * ec::kMaxSubbands];  // mu_k E[k], double precision
  for (int k = 0; k < numSubbands; ++k) {
    t[2 * k] = step[k] * double(errorFrame[k].re);
    t[2 * k + 1] = step[k] * double(errorFrame[k].im);
  }
  for (int m = 0; m < numSegments; ++m) {
    const Vsp32fc* x = inputFrames[m];
    Vsp32fc* h = coeffFrames[m];
    int k0 = 0;
#if defined(__AVX__)
    // Two sub-bands per vector of four doubles (re, im interleaved), each
    // value formed as in the scalar loop: with P1 = xr (tr, ti) and
    // P2 = xi (ti, tr), re = P1 + P2 and im = P1 - P2, taken as
    // addsub(P1, -P2) (a - (-b) is exactly a + b). Only when the
    // coefficient frame is the input frame or apart from it.
    const std::size_t bytes = sizeof(Vsp32fc) * static_cast<std::size_t>(numSubbands);
    if (simd::same_or_disjoint(h, x, bytes)) {
      const __m256d sign = _mm256_set1_pd(-0.0);
      const __m128 qnan = _mm_castsi128_ps(_mm_set1_epi32(0x7FC00000));
      for (; k0 + 2 <= numSubbands; k0 += 2) {
        const __m256d tv = _mm256_loadu_pd(&t[2 * k0]);
        const __m256d xv = _mm256_cvtps_pd(_mm_loadu_ps(&x[k0].re));
        const __m256d p1 = _mm256_mul_pd(_mm256_movedup_pd(xv), tv);
        const __m256d p2 = _mm256_mul_pd(_mm256_permute_pd(xv, 0xF), _mm256_permute_pd(tv, 0x5));
        const __m256d d = _mm256_addsub_pd(p1, _mm256_xor_pd(p2, sign));
        const __m256d hv = _mm256_add_pd(_mm256_cvtps_pd(_mm_loadu_ps(&h[k0].re)), d);
        const __m128 r = _mm256_cvtpd_ps(hv);
        _mm_storeu_ps(&h[k0].re, _mm_blendv_ps(r, qnan, _mm_cmpunord_ps(r, r)));  // canonical NaN
      }
    }
#endif
    for (int k = k0; k < numSubbands; ++k) {
      const double tr = t[2 * k], ti = t[2 * k + 1];
      const double xr = x[k].re, xi = x[k].im;
      const double re = tr * xr + ti * xi;
      const double im = ti * xr - tr * xi;
      h[k].re = fout::canonical(static_cast<float>(double(h[k].re) + re));
      h[k].im = fout::canonical(static_cast<float>(double(h[k].im) + im));
    }
  }
  return vspStsNoErr;
}

VspStatus legacy90vspsFIRSubbandCoeffUpdate_EC_32sc_I(const Vsp32s* step, const Vsp32sc* const* inputFrames,
                                                      const Vsp32sc* errorFrame, Vsp32sc** coeffFrames, int numSegments,
                                                      int numSubbands, int scaleFactor) {
  if (step == nullptr || inputFrames == nullptr || errorFrame == nullptr || coeffFrames == nullptr)
    return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments) return vspStsRangeErr;
  if (scaleFactor < 0 || scaleFactor > 31) return vspStsRangeErr;
  for (int k = 0; k < numSubbands; ++k)
    if (step[2 * k] < 0) return vspStsSizeErr;
  Vsp32sc t[ec::kMaxSubbands];
  for (int k = 0; k < numSubbands; ++k) t[k] = step_times_error(step[2 * k], errorFrame[k]);
  for (int m = 0; m < numSegments; ++m) {
    const Vsp32sc* x = inputFrames[m];
    Vsp32sc* h = coeffFrames[m];
    for (int k = 0; k < numSubbands; ++k)
      h[k] = update_one<true>(h[k], t[k], x[k], int64_t(step[2 * k + 1]) - scaleFactor - 31);
  }
  return vspStsNoErr;
}

VspStatus legacy90vspsFIRSubbandLowCoeffUpdate_EC_32sc_I(const Vsp32sc* const* inputFrames, const Vsp32sc* errorFrame,
                                                         Vsp32sc** coeffFrames, int numSegments, Vsp32sc* workFrame,
                                                         const Vsp32s* step, int firstSubband, int numSubbands,
                                                         int scaleFactor) {
  if (inputFrames == nullptr || errorFrame == nullptr || coeffFrames == nullptr || workFrame == nullptr ||
      step == nullptr)
    return vspStsNullPtrErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments || firstSubband < 0 || firstSubband > numSubbands)
    return vspStsRangeErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (scaleFactor < 0 || scaleFactor > 31) return vspStsRangeErr;
  for (int k = firstSubband; k < numSubbands; ++k) workFrame[k] = step_times_error(step[2 * k], errorFrame[k]);
  for (int m = 0; m < numSegments; ++m) {
    const Vsp32sc* x = inputFrames[m];
    Vsp32sc* h = coeffFrames[m];
    for (int k = firstSubband; k < numSubbands; ++k)
      h[k] = update_one<false>(h[k], workFrame[k], x[k], int64_t(step[2 * k + 1]) - scaleFactor - 31);
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
