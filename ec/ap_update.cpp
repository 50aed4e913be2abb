// Affine-projection coefficient update of the float sub-band filter.
//
// Per sub-band k, with P = projectionOrder and L = numSegments, the
// regressor of frame n-p is x_p = (X_p[k], X_{p+1}[k], .., X_{p+L-1}[k])
// (inputFrames holds L+P-1 frames, 0 the newest) and the filter output is
// x_p^T h (plain products, as FIRSubband_EC_32fc). In double precision:
//   A[p][q] = x_p^T conj(x_q) + delta_k [p == q]     (P x P, Hermitian)
//   solve A g = e, e_p = errorFrames[p][k]          (Cholesky)
//   H_m[k] += (mu_k / P) sum_p g_p conj(X_{p+m}[k])  (stored in single precision)
// P = 1 is the normalised LMS update mu E conj(X) / (|x|^2 + delta).
#include "core/float_canonical.h"
#include "ec/subband_filter.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

inline constexpr int kMaxProjectionOrder = 16;

struct Cplx {
  double re, im;
};

// Cholesky solve of the Hermitian system a g = e (row-major p x p, lower
// factor in place). False when a pivot is not positive (singular system).
inline bool cholesky_solve(Cplx* a, Cplx* g, int p) {
  for (int j = 0; j < p; ++j) {
    double d = a[j * p + j].re;
    for (int i = 0; i < j; ++i) d -= a[j * p + i].re * a[j * p + i].re + a[j * p + i].im * a[j * p + i].im;
    if (!(d > 0.0)) return false;
    const double l = __builtin_sqrt(d);
    a[j * p + j] = {l, 0.0};
    for (int r = j + 1; r < p; ++r) {
      // L[r][j] = (A[r][j] - sum_i L[r][i] conj(L[j][i])) / L[j][j]
      double sr = a[r * p + j].re, si = a[r * p + j].im;
      for (int i = 0; i < j; ++i) {
        const Cplx x = a[r * p + i], y = a[j * p + i];
        sr -= x.re * y.re + x.im * y.im;
        si -= x.im * y.re - x.re * y.im;
      }
      a[r * p + j] = {sr / l, si / l};
    }
  }
  for (int r = 0; r < p; ++r) {  // L y = e
    double sr = g[r].re, si = g[r].im;
    for (int i = 0; i < r; ++i) {
      const Cplx x = a[r * p + i];
      sr -= x.re * g[i].re - x.im * g[i].im;
      si -= x.re * g[i].im + x.im * g[i].re;
    }
    g[r] = {sr / a[r * p + r].re, si / a[r * p + r].re};
  }
  for (int r = p - 1; r >= 0; --r) {  // L^H g = y
    double sr = g[r].re, si = g[r].im;
    for (int i = r + 1; i < p; ++i) {
      const Cplx x = a[i * p + r];  // conj(L[i][r])
      sr -= x.re * g[i].re + x.im * g[i].im;
      si -= x.re * g[i].im - x.im * g[i].re;
    }
    g[r] = {sr / a[r * p + r].re, si / a[r * p + r].re};
  }
  return true;
}

}  // namespace

VspStatus legacy90vspsFIRSubbandAPCoeffUpdate_EC_32fc_I(const Vsp64f* stepData, const Vsp32fc* const* inputFrames,
                                                        const Vsp32fc* const* errorFrames, Vsp32fc** coeffFrames,
                                                        int numSegments, int numSubbands, int projectionOrder) {
  if (stepData == nullptr || inputFrames == nullptr || errorFrames == nullptr || coeffFrames == nullptr)
    return vspStsNullPtrErr;
  if (numSubbands < 1 || numSubbands > ec::kMaxSubbands) return vspStsFIRLenErr;
  if (numSegments < 1 || numSegments > ec::kMaxSegments || projectionOrder < 1 || projectionOrder > kMaxProjectionOrder)
    return vspStsRangeErr;
  for (int k = 0; k < 2 * numSubbands; ++k)
    if (!(stepData[k] >= 0.0)) return vspStsSizeErr;  // negative or NaN
  const int p = projectionOrder;
  const int len = numSegments;
  for (int k = 0; k < numSubbands; ++k) {
    Cplx a[kMaxProjectionOrder * kMaxProjectionOrder];
    Cplx g[kMaxProjectionOrder];
    for (int r = 0; r < p; ++r) {
      for (int c = 0; c <= r; ++c) {  // A[r][c] = sum_m X_{r+m} conj(X_{c+m})
        double sr = 0.0, si = 0.0;
        for (int m = 0; m < len; ++m) {
          const Vsp32fc x = inputFrames[r + m][k], y = inputFrames[c + m][k];
          sr += double(x.re) * y.re + double(x.im) * y.im;
          si += double(x.im) * y.re - double(x.re) * y.im;
        }
        a[r * p + c] = {sr, si};
        a[c * p + r] = {sr, -si};
      }
      a[r * p + r].re += stepData[2 * k + 1];
      a[r * p + r].im = 0.0;
      g[r] = {double(errorFrames[r][k].re), double(errorFrames[r][k].im)};
    }
    if (!cholesky_solve(a, g, p)) continue;  // singular: this sub-band is left unchanged
    const double mu = stepData[2 * k] / double(p);
    for (int m = 0; m < len; ++m) {
      double re = 0.0, im = 0.0;  // sum_p g_p conj(X_{p+m})
      for (int r = 0; r < p; ++r) {
        const Vsp32fc x = inputFrames[r + m][k];
        re += g[r].re * x.re + g[r].im * x.im;
        im += g[r].im * x.re - g[r].re * x.im;
      }
      Vsp32fc& h = coeffFrames[m][k];
      h.re = fout::canonical(static_cast<float>(double(h.re) + mu * re));
      h.im = fout::canonical(static_cast<float>(double(h.im) + mu * im));
    }
  }
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
