// The real-input transform of the filter bank: length N = 2^order, packed
// output of N/2+1 bins, forward unscaled, inverse divided by N. Per level.
//
// Method: the N real samples are read as M = N/2 complex points
// z[n] = x[2n] + i x[2n+1], put into bit-reversed order, transformed by an
// iterative radix-2 decimation-in-time complex FFT, and split into the even
// and odd halves by the usual packing step with the twiddles
// e^(-2 pi i k / N) (the inverse writes its unpacked spectrum straight into
// bit-reversed positions). Everything runs in place in the caller's work
// block of M complex values.
//
// Float twin: single precision, fixed operation order (no FMA).
// Fixed-point twin: 32-bit data with Q30 twiddles and 64-bit products
// rounded to nearest; each call first scales its block by a power of two
// chosen from the sum of the input magnitudes (block floating point), so
// that no intermediate value can overflow and small signals keep their
// precision; the final scaling (with the caller's scale factor) is rounded
// to nearest and saturated.
#pragma once

#include <cstdint>
#include <cstring>

#include "core/level_ns.h"
#include "ec/rfft_32f_simd.h"
#include "ec/subband_layout.h"

namespace vsps::VSPS_NS::ec {

using vsps::ec::TableLayout;
using vsps::ec::TwiddleQ30;

struct Rfft32f {
  const Vsp32fc* stage;
  const Vsp32fc* pack;
  const uint16_t* rev;
  int m;  // complex points, N/2
};
struct RfftQ30 {
  const TwiddleQ30* stage;
  const TwiddleQ30* pack;
  const uint16_t* rev;
  int m;
  int order;
};

inline Rfft32f rfft_32f(const uint8_t* tables, int order) {
  const TableLayout t = vsps::ec::table_layout(order);
  return {reinterpret_cast<const Vsp32fc*>(tables + t.stageOffset),
          reinterpret_cast<const Vsp32fc*>(tables + t.packOffset),
          reinterpret_cast<const uint16_t*>(tables + t.revOffset), 1 << (order - 1)};
}
inline RfftQ30 rfft_q30(const uint8_t* tables, int order) {
  const TableLayout t = vsps::ec::table_layout(order);
  return {reinterpret_cast<const TwiddleQ30*>(tables + t.stageOffset),
          reinterpret_cast<const TwiddleQ30*>(tables + t.packOffset),
          reinterpret_cast<const uint16_t*>(tables + t.revOffset), 1 << (order - 1), order};
}

// Puts M complex values (interleaved pairs of T) from natural into
// bit-reversed order, in place.
template <class T>
inline void bit_reverse_pairs(T* a, const uint16_t* rev, int m) {
  for (int i = 0; i < m; ++i) {
    const int r = rev[i];
    if (r > i) {
      const T re = a[2 * i], im = a[2 * i + 1];
      a[2 * i] = a[2 * r];
      a[2 * i + 1] = a[2 * r + 1];
      a[2 * r] = re;
      a[2 * r + 1] = im;
    }
  }
}

// ---- single precision --------------------------------------------------------

// bit_reverse_pairs for complex floats, each pair moved as one 64-bit value.
inline void bit_reverse_32fc(Vsp32fc* a, const uint16_t* rev, int m) {
  static_assert(sizeof(Vsp32fc) == sizeof(uint64_t));
  for (int i = 0; i < m; ++i) {
    const int r = rev[i];
    if (r > i) {
      uint64_t x, y;
      std::memcpy(&x, a + i, 8);
      std::memcpy(&y, a + r, 8);
      std::memcpy(a + i, &y, 8);
      std::memcpy(a + r, &x, 8);
    }
  }
}

// In-place radix-2 DIT on bit-reversed input; kInverse uses conjugate
// twiddles. Output in natural order, unscaled.
template <bool kInverse>
inline void cfft_32f(Vsp32fc* a, const Vsp32fc* stage, int m) {
#if defined(VSPS_EC_RFFT32F_VECTOR)
  if (m >= 4) {
    cfft_32f_vector<kInverse>(a, stage, m);
    return;
  }
#endif
  if (m >= 2)  // half-size 1: twiddle 1
    for (int b = 0; b < m; b += 2) {
      const Vsp32fc x = a[b], y = a[b + 1];
      a[b] = {x.re + y.re, x.im + y.im};
      a[b + 1] = {x.re - y.re, x.im - y.im};
    }
  for (int h = 2; h < m; h *= 2) {
    const Vsp32fc* w = stage + (h - 1);
    for (int b = 0; b < m; b += 2 * h) {
      Vsp32fc* x = a + b;
      Vsp32fc* y = a + b + h;
      for (int j = 0; j < h; ++j) {
        const float wr = w[j].re;
        const float wi = kInverse ? -w[j].im : w[j].im;
        const float tr = y[j].re * wr - y[j].im * wi;
        const float ti = y[j].re * wi + y[j].im * wr;
        const float xr = x[j].re, xi = x[j].im;
        y[j].re = xr - tr;
        y[j].im = xi - ti;
        x[j].re = xr + tr;
        x[j].im = xi + ti;
      }
    }
  }
}

// Bins 0..M of the real transform from the complex transform z (natural
// order) of the packed samples.
inline void pack_forward_32f(const Vsp32fc* z, const Rfft32f& f, Vsp32fc* dst) {
  const int m = f.m;
  dst[0] = {z[0].re + z[0].im, 0.0f};
  dst[m] = {z[0].re - z[0].im, 0.0f};
  if (m < 2) return;
  int k = 1;
#if defined(VSPS_EC_RFFT32F_VECTOR)
  // Pairs are read before they are written, as in the scalar loop: the same
  // block or apart (a partial overlap takes the scalar loop).
  if (simd::same_or_disjoint(z, dst, sizeof(Vsp32fc) * (static_cast<std::size_t>(m) + 1)))
    k = pack_forward_32f_vector(z, f.pack, m, dst);
#endif
  for (; k < m / 2; ++k) {
    const Vsp32fc a = z[k], c = z[m - k];  // B = conj(c)
    const float er = (a.re + c.re) * 0.5f, ei = (a.im - c.im) * 0.5f;
    const float orr = (a.im + c.im) * 0.5f, oi = (c.re - a.re) * 0.5f;  // (A - B) / 2i
    const Vsp32fc w = f.pack[k];
    const float tr = w.re * orr - w.im * oi;
    const float ti = w.re * oi + w.im * orr;
    dst[k] = {er + tr, ei + ti};
    dst[m - k] = {er - tr, ti - ei};
  }
  dst[m / 2] = {z[m / 2].re, -z[m / 2].im};
}

// Complex spectrum Z' (= 2 Z) at bit-reversed positions of `a` from bins
// 0..M; the imaginary parts of bins 0 and M are not read.
inline void unpack_inverse_32f(const Vsp32fc* src, const Rfft32f& f, Vsp32fc* a) {
  const int m = f.m;
  const uint16_t* rev = f.rev;
  a[0] = {src[0].re + src[m].re, src[0].re - src[m].re};  // rev[0] = 0
  if (m < 2) return;
  int k = 1;
#if defined(VSPS_EC_RFFT32F_VECTOR)
  // The writes are scattered: only apart from the source.
  if (simd::disjoint(src, sizeof(Vsp32fc) * (static_cast<std::size_t>(m) + 1), a,
                     sizeof(Vsp32fc) * static_cast<std::size_t>(m)))
    k = unpack_inverse_32f_vector(src, f.pack, rev, m, a);
#endif
  for (; k < m / 2; ++k) {
    const Vsp32fc x = src[k], c = src[m - k];  // B = conj(c)
    const float er = x.re + c.re, ei = x.im - c.im;
    const float dr = x.re - c.re, di = x.im + c.im;
    const Vsp32fc w = f.pack[k];  // O' = D * conj(W)
    const float orr = dr * w.re + di * w.im;
    const float oi = di * w.re - dr * w.im;
    a[rev[k]] = {er - oi, ei + orr};
    a[rev[m - k]] = {er + oi, orr - ei};
  }
  a[rev[m / 2]] = {2.0f * src[m / 2].re, -2.0f * src[m / 2].im};
}

// ---- fixed point ---------------------------------------------------------------

// The total shift g + order + scaleFactor in 64 bits (scaleFactor is any
// int), limited to +-64, where every result is already 0 or saturated.
inline int total_shift(int64_t s) { return static_cast<int>(s < -64 ? -64 : (s > 64 ? 64 : s)); }

// x / 2^s rounded to nearest (ties toward +infinity) for s >= 1, or x * 2^-s
// for s <= 0; saturated to 32 bits.
inline int32_t scale_round_sat32(int64_t x, int s) {
  int64_t r;
  if (s > 0) {
    if (s > 62) s = 62;
    r = (x + (int64_t(1) << (s - 1))) >> s;
  } else {
    if (x == 0) return 0;
    const int l = -s;
    if (l >= 32) return x > 0 ? INT32_MAX : INT32_MIN;
    const int64_t lim = int64_t(1) << (62 - l);
    if (x >= lim) return INT32_MAX;
    if (x < -lim) return INT32_MIN;
    r = x * (int64_t(1) << l);
  }
  return r > INT32_MAX ? INT32_MAX : (r < INT32_MIN ? INT32_MIN : static_cast<int32_t>(r));
}

// Bits of a non-negative 64-bit value (0 for 0).
inline int bit_length(uint64_t v) { return v == 0 ? 0 : 64 - __builtin_clzll(v); }

inline int32_t mul_q30(int32_t ar, int32_t ai, int32_t br, int32_t bi, bool imag) {
  const int64_t p = imag ? int64_t(ar) * bi + int64_t(ai) * br : int64_t(ar) * br - int64_t(ai) * bi;
  return static_cast<int32_t>((p + (int64_t(1) << 29)) >> 30);
}

// In-place radix-2 DIT over interleaved (re, im) 32-bit data in
// bit-reversed order. The caller guarantees that the sum of the input
// magnitudes stays below 2^30, which bounds every intermediate value.
template <bool kInverse>
inline void cfft_q30(int32_t* a, const TwiddleQ30* stage, int m) {
  if (m >= 2)
    for (int b = 0; b < 2 * m; b += 4) {
      const int32_t xr = a[b], xi = a[b + 1], yr = a[b + 2], yi = a[b + 3];
      a[b] = xr + yr;
      a[b + 1] = xi + yi;
      a[b + 2] = xr - yr;
      a[b + 3] = xi - yi;
    }
  for (int h = 2; h < m; h *= 2) {
    const TwiddleQ30* w = stage + (h - 1);
    for (int b = 0; b < m; b += 2 * h) {
      int32_t* x = a + 2 * b;
      int32_t* y = a + 2 * (b + h);
      for (int j = 0; j < h; ++j) {
        const int64_t wr = w[j].re;
        const int64_t wi = kInverse ? -int64_t(w[j].im) : int64_t(w[j].im);
        const int64_t yr = y[2 * j], yi = y[2 * j + 1];
        const auto tr = static_cast<int32_t>((yr * wr - yi * wi + (int64_t(1) << 29)) >> 30);
        const auto ti = static_cast<int32_t>((yr * wi + yi * wr + (int64_t(1) << 29)) >> 30);
        const int32_t xr = x[2 * j], xi = x[2 * j + 1];
        y[2 * j] = xr - tr;
        y[2 * j + 1] = xi - ti;
        x[2 * j] = xr + tr;
        x[2 * j + 1] = xi + ti;
      }
    }
  }
}

// Forward transform of N 16-bit samples already stored (as 32-bit values) at
// their bit-reversed packed positions of `a`; bins 0..M to dst, divided by
// 2^scaleFactor, rounded to nearest and saturated.
inline void forward_q30(int32_t* a, const RfftQ30& f, Vsp32sc* dst, int scaleFactor) {
  const int m = f.m;
  uint64_t sum = 0;
  for (int i = 0; i < 2 * m; ++i) sum += static_cast<uint64_t>(a[i] < 0 ? -int64_t(a[i]) : int64_t(a[i]));
  if (sum == 0) {
    for (int k = 0; k <= m; ++k) dst[k] = {0, 0};
    return;
  }
  const int g = 30 - bit_length(sum);  // sum * 2^g < 2^30; g >= 2 for N <= 8192
  for (int i = 0; i < 2 * m; ++i) a[i] = a[i] * (int32_t(1) << g);
  cfft_q30<false>(a, f.stage, m);
  // 2 X 2^g in 64 bits: E2 + W O2, E2 = A + B, O2 = (A - B) / i.
  const int s = total_shift(int64_t(g) + 1 + scaleFactor);
  dst[0] = {scale_round_sat32(2 * (int64_t(a[0]) + a[1]), s), 0};
  dst[m] = {scale_round_sat32(2 * (int64_t(a[0]) - a[1]), s), 0};
  if (m < 2) return;
  for (int k = 1; k < m / 2; ++k) {
    const int64_t ar = a[2 * k], ai = a[2 * k + 1], cr = a[2 * (m - k)], ci = a[2 * (m - k) + 1];
    const int64_t er = ar + cr, ei = ai - ci;
    const int64_t orr = ai + ci, oi = cr - ar;
    const TwiddleQ30 w = f.pack[k];
    const int64_t tr = (w.re * orr - w.im * oi + (int64_t(1) << 29)) >> 30;
    const int64_t ti = (w.re * oi + w.im * orr + (int64_t(1) << 29)) >> 30;
    dst[k] = {scale_round_sat32(er + tr, s), scale_round_sat32(ei + ti, s)};
    dst[m - k] = {scale_round_sat32(er - tr, s), scale_round_sat32(ti - ei, s)};
  }
  dst[m / 2] = {scale_round_sat32(2 * int64_t(a[m]), s), scale_round_sat32(-2 * int64_t(a[m + 1]), s)};
}

// Inverse transform of bins 0..M (imaginary parts of bins 0 and M not read)
// into N real values in `a` (natural order), divided by N and by
// 2^scaleFactor, rounded to nearest and saturated to 16 bits.
inline void inverse_q30(const Vsp32sc* src, const RfftQ30& f, int32_t* a, int scaleFactor) {
  const int m = f.m;
  const uint16_t* rev = f.rev;
  auto mag = [](int32_t v) { return static_cast<uint64_t>(v < 0 ? -int64_t(v) : int64_t(v)); };
  uint64_t sum = mag(src[0].re) + mag(src[m].re);
  for (int k = 1; k < m; ++k) sum += mag(src[k].re) + mag(src[k].im);
  if (sum == 0) {
    for (int i = 0; i < 2 * m; ++i) a[i] = 0;
    return;
  }
  // Every value of the complex transform is at most 4 * sum: keep sum * 2^g
  // below 2^28.
  const int g = 28 - bit_length(sum);
  auto pre = [g](int32_t v) -> int64_t {
    if (g >= 0) return int64_t(v) * (int64_t(1) << g);
    return (int64_t(v) + (int64_t(1) << (-g - 1))) >> -g;
  };
  auto put = [a](int pos, int64_t re, int64_t im) {
    a[2 * pos] = static_cast<int32_t>(re);
    a[2 * pos + 1] = static_cast<int32_t>(im);
  };
  put(0, pre(src[0].re) + pre(src[m].re), pre(src[0].re) - pre(src[m].re));
  if (m >= 2) {
    for (int k = 1; k < m / 2; ++k) {
      const int64_t xr = pre(src[k].re), xi = pre(src[k].im);
      const int64_t cr = pre(src[m - k].re), ci = pre(src[m - k].im);
      const int64_t er = xr + cr, ei = xi - ci;
      const int64_t dr = xr - cr, di = xi + ci;
      const TwiddleQ30 w = f.pack[k];
      const int64_t orr = (dr * w.re + di * w.im + (int64_t(1) << 29)) >> 30;
      const int64_t oi = (di * w.re - dr * w.im + (int64_t(1) << 29)) >> 30;
      put(rev[k], er - oi, ei + orr);
      put(rev[m - k], er + oi, orr - ei);
    }
    put(rev[m / 2], 2 * pre(src[m / 2].re), -2 * pre(src[m / 2].im));
  }
  cfft_q30<true>(a, f.stage, m);
  const int s = total_shift(int64_t(g) + f.order + scaleFactor);
  for (int i = 0; i < 2 * m; ++i) {
    const int32_t v = scale_round_sat32(a[i], s);
    a[i] = v > 32767 ? 32767 : (v < -32768 ? -32768 : v);
  }
}

}  // namespace vsps::VSPS_NS::ec
