// Builders of the real transform's tables (layout in ec/subband_layout.h),
// compiled once: every level reads the same twiddles.
#include "ec/rfft_tables.h"

#include <cmath>

#include "ec/ec_tables.h"
#include "ec/subband_layout.h"

namespace vsps::ec {

namespace {

struct CosSin {
  double c, s;  // cos and sin of 2 pi k / n
};

// From the quarter-wave table q[k] = cos(2 pi k / n), k = 0..n/4: the angle
// 2 pi k / n for k = 0..n/2 by symmetry (n >= 4), exactly.
CosSin angle(const double* q, int n, int k) {
  if (n < 4) return {1.0, 0.0};  // n = 2: only k = 0 is used
  const int n4 = n / 4;
  if (k <= n4) return {q[k], q[n4 - k]};
  return {-q[n / 2 - k], q[k - n4]};
}

int32_t to_q30(double v) { return static_cast<int32_t>(std::lround(v * 1073741824.0)); }

template <class Emit>
void build(uint8_t* dst, int order, const double* q, Emit emit) {
  const int n = 1 << order;
  const int m = n / 2;
  const TableLayout t = table_layout(order);
  // e^(-2 pi i j / 2h) = angle j * (n / 2h) of the length-n circle.
  for (int h = 1; h < m; h *= 2)
    for (int j = 0; j < h; ++j) emit(dst + t.stageOffset + 8 * std::size_t(h - 1 + j), angle(q, n, j * (n / (2 * h))));
  for (int k = 0; k <= m / 2; ++k) emit(dst + t.packOffset + 8 * std::size_t(k), angle(q, n, k));
  auto* rev = reinterpret_cast<uint16_t*>(dst + t.revOffset);
  const int bits = order - 1;
  for (int i = 0; i < m; ++i) {
    int r = 0;
    for (int b = 0; b < bits; ++b) r |= ((i >> b) & 1) << (bits - 1 - b);
    rev[i] = static_cast<uint16_t>(r);
  }
}

}  // namespace

void build_rfft_tables_32f(uint8_t* dst, int order, const double* quarterCos) {
  build(dst, order, quarterCos, [](uint8_t* p, CosSin a) {
    auto* w = reinterpret_cast<Vsp32fc*>(p);
    w->re = static_cast<float>(a.c);
    w->im = static_cast<float>(-a.s);
  });
}

void build_rfft_tables_q30(uint8_t* dst, int order, const double* quarterCos) {
  build(dst, order, quarterCos, [](uint8_t* p, CosSin a) {
    auto* w = reinterpret_cast<TwiddleQ30*>(p);
    w->re = to_q30(a.c);
    w->im = to_q30(-a.s);
  });
}

}  // namespace vsps::ec
