// Double-precision model for the filter-bank tests: the inverse DFT of a
// real block's bins 0..N/2 (divided by N).
#pragma once

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace ect {

using cplx = std::complex<double>;

// x[n] = (1/N) sum over all N bins (N/2+1..N-1 the conjugates); the
// imaginary parts of bins 0 and N/2 are ignored.
inline std::vector<double> idft_real(const std::vector<cplx>& bins, std::size_t n) {
  std::vector<double> v(n);
  for (std::size_t i = 0; i < n; ++i) {
    double s = bins[0].real() + ((i % 2) ? -bins[n / 2].real() : bins[n / 2].real());
    for (std::size_t k = 1; k < n / 2; ++k) {
      const double a = 2.0 * std::numbers::pi * double((k * i) % n) / double(n);
      s += 2.0 * (bins[k].real() * std::cos(a) - bins[k].imag() * std::sin(a));
    }
    v[i] = s / double(n);
  }
  return v;
}

}  // namespace ect
