// Test helpers of the G.729 family: realistic random inputs and direct
// calls of the exports on std::vector buffers.
#pragma once

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "tests/support/call.h"
#include "vsps.h"

namespace g729t {

using V16 = std::vector<Vsp16s>;
using VF = std::vector<Vsp32f>;

// The MA memory reset row of G.729 clause 3.2.4 (Q13), and four copies of it.
inline const V16 kLsfReset = {2339, 4679, 7018, 9358, 11698, 14037, 16377, 18717, 21056, 23396};
inline V16 reset_memory() {
  V16 m;
  for (int k = 0; k < 4; ++k) m.insert(m.end(), kLsfReset.begin(), kLsfReset.end());
  return m;
}

// LP coefficients a[1..10] (a[0] = 1) of LSP cosines q[0..9], in double
// precision: the product of the factors 1 - 2q z^-1 + z^-2 as G.729 clause
// 3.2.6 defines them.
inline std::vector<double> lpc_of_cosines(const std::vector<double>& q) {
  std::vector<double> p1 = {1.0}, p2 = {1.0};
  for (int i = 0; i < 10; ++i) {
    std::vector<double>& p = i % 2 == 0 ? p1 : p2;
    std::vector<double> r(p.size() + 2, 0.0);
    for (std::size_t k = 0; k < p.size(); ++k) {
      r[k] += p[k];
      r[k + 1] -= 2 * q[static_cast<std::size_t>(i)] * p[k];
      r[k + 2] += p[k];
    }
    p = r;
  }
  std::vector<double> a(11);
  for (std::size_t k = 0; k <= 10; ++k) {
    const double s1 = p1[k] + (k > 0 ? p1[k - 1] : 0.0);  // F1 (1 + z^-1)
    const double s2 = p2[k] - (k > 0 ? p2[k - 1] : 0.0);  // F2 (1 - z^-1)
    a[k] = 0.5 * (s1 + s2);
  }
  return a;
}

// Ten LSPs (Q15), descending, from random LSFs at least `gap` radians apart
// inside (0.05, 3.09), whose LP coefficients fit the Q12 range (|a| < 7.5).
inline V16 random_lsp(std::mt19937& rng, double gap = 0.08) {
  std::uniform_real_distribution<double> u(0.05, 3.09);
  for (;;) {
    std::vector<double> w(10);
    for (auto& x : w) x = u(rng);
    std::sort(w.begin(), w.end());
    bool ok = true;
    for (int i = 0; i + 1 < 10; ++i) ok = ok && w[i + 1] - w[i] >= gap;
    if (!ok) continue;
    std::vector<double> q(10);
    for (int i = 0; i < 10; ++i) q[i] = std::cos(w[i]);
    for (double c : lpc_of_cosines(q)) ok = ok && std::fabs(c) < 7.5;
    if (!ok) continue;
    V16 v(10);
    for (int i = 0; i < 10; ++i) v[i] = static_cast<Vsp16s>(std::lround(q[i] * 32767.0));
    return v;
  }
}

// Ten LSFs (Q13 radians), ascending, inside (40, 25681), at least `gap` apart.
inline V16 random_lsf(std::mt19937& rng, int gap = 330) {
  for (;;) {
    V16 v(10);
    std::uniform_int_distribution<int> u(100, 25600);
    for (auto& x : v) x = static_cast<Vsp16s>(u(rng));
    std::sort(v.begin(), v.end());
    bool ok = true;
    for (int i = 0; i + 1 < 10; ++i) ok = ok && v[i + 1] - v[i] >= gap;
    if (ok) return v;
  }
}

// LP coefficients (Q12) of an LSP vector, through the export.
// A memory of four random stable LSF rows (Q13).
inline V16 random_memory(std::mt19937& rng) {
  V16 m;
  for (int k = 0; k < 4; ++k) {
    const V16 row = random_lsf(rng, 200);
    m.insert(m.end(), row.begin(), row.end());
  }
  return m;
}

inline V16 lpc_of(const V16& lsp) {
  V16 a(11);
  legacy90vspsLSPToLPC_G729_16s(lsp.data(), a.data());
  return a;
}

// Writes values into a pointer argument of a call.
template <class T>
void put(vt::Call& call, std::string_view name, const std::vector<T>& values) {
  auto b = call.buf<T>(name);
  std::copy(values.begin(), values.end(), b.begin());
}

}  // namespace g729t

namespace g729t {

// A normalised autocorrelation r[0..order] (r[0] in 2^30..2^31-1, Q31 DPF
// words with bit 0 clear) of a random coloured signal, computed exactly in
// 64 bits and shifted: a realistic input of the lag window and Levinson.
inline std::vector<Vsp32s> random_autocorr(std::mt19937& rng, int order = 10) {
  std::normal_distribution<double> g(0.0, 3000.0);
  std::vector<int64_t> x(240);
  double y1 = 0, y2 = 0;
  const double c1 = std::uniform_real_distribution<double>(-1.6, 1.6)(rng);
  for (auto& v : x) {
    const double y = g(rng) + c1 * y1 - 0.7 * y2;
    y2 = y1;
    y1 = y;
    v = static_cast<int64_t>(std::max(-32768.0, std::min(32767.0, y)));
  }
  std::vector<int64_t> r(static_cast<std::size_t>(order) + 1, 0);
  for (int k = 0; k <= order; ++k)
    for (int n = k; n < 240; ++n) r[k] += x[n] * x[n - k];
  r[0] += 1;
  int shift = 0;
  while ((r[0] << shift) < (int64_t(1) << 30)) ++shift;
  while ((r[0] >> -shift) >= (int64_t(1) << 31)) --shift;
  std::vector<Vsp32s> out(r.size());
  for (std::size_t k = 0; k < r.size(); ++k) {
    const int64_t v = shift >= 0 ? r[k] << shift : r[k] >> -shift;
    out[k] = static_cast<Vsp32s>(v & ~int64_t(1));
  }
  return out;
}

}  // namespace g729t
