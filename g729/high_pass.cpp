// G.729 second-order high-pass filter with its 24-byte state:
// legacy90vspsHighPassFilterSize_G729, legacy90vspsHighPassFilterInit_G729 and
// legacy90vspsHighPassFilter_G729_16s_ISfs (ITU-T G.729 clause 3.1
// Pre_Process with scale factor 12, clause 4.2.5 Post_Process with 13).
#include <cstring>

#include "core/basic_ops.h"
#include "core/dpf.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {
// State layout (byte offsets; the block may have any alignment).
constexpr int kStateBytes = 24;
constexpr int kOffY1 = 0;      // Vsp32s, last output before rounding
constexpr int kOffY2 = 4;      // Vsp32s, the one before
constexpr int kOffX1 = 8;      // Vsp16s, last input
constexpr int kOffX2 = 10;     // Vsp16s, the one before
constexpr int kOffCoeff = 12;  // 6 x Vsp16s: a0, a1, a2, b0, b1, b2

template <class T>
T load(const Vsp8u* p, int offset) {
  T v;
  std::memcpy(&v, p + offset, sizeof(T));
  return v;
}
template <class T>
void store(Vsp8u* p, int offset, T v) {
  std::memcpy(p + offset, &v, sizeof(T));
}
}  // namespace

VspStatus legacy90vspsHighPassFilterSize_G729(int* pSize) {
  if (pSize == nullptr) return vspStsNullPtrErr;
  *pSize = kStateBytes;
  return vspStsNoErr;
}

VspStatus legacy90vspsHighPassFilterInit_G729(const Vsp16s* pCoeff, Vsp8u* pState) {
  if (pCoeff == nullptr || pState == nullptr) return vspStsNullPtrErr;
  std::memset(pState, 0, kOffCoeff);
  std::memcpy(pState + kOffCoeff, pCoeff, 6 * sizeof(Vsp16s));
  return vspStsNoErr;
}

VspStatus legacy90vspsHighPassFilter_G729_16s_ISfs(Vsp16s* pSrcDst, int len, int scaleFactor, Vsp8u* pState) {
  if (pSrcDst == nullptr || pState == nullptr) return vspStsNullPtrErr;
  if (len < 1) return vspStsSizeErr;
  if (scaleFactor != 12 && scaleFactor != 13) return vspStsOutOfRangeErr;
  int32_t y1 = load<int32_t>(pState, kOffY1);
  int32_t y2 = load<int32_t>(pState, kOffY2);
  int16_t x1 = load<int16_t>(pState, kOffX1);
  int16_t x2 = load<int16_t>(pState, kOffX2);
  const int16_t a1 = load<int16_t>(pState, kOffCoeff + 2);
  const int16_t a2 = load<int16_t>(pState, kOffCoeff + 4);
  const int16_t b0 = load<int16_t>(pState, kOffCoeff + 6);
  const int16_t b1 = load<int16_t>(pState, kOffCoeff + 8);
  const int16_t b2 = load<int16_t>(pState, kOffCoeff + 10);
  // With no coefficient at -32768, Mpy_32_16 and the L_mult of the inputs
  // never saturate (|2 hi a + 2 mult(lo, a)| <= 2^31 - 2), so each term is a
  // plain product. The partial sums of the reference order are then formed
  // in 64 bits: M1 + R_k, R_k the running sums of the terms that do not
  // depend on the last output, off the recursion's critical path. When one
  // of them leaves the 32-bit range (the reference saturates there) the
  // sample is recomputed with the saturating operators.
  const bool plain =
      a1 != bop::kMin16 && a2 != bop::kMin16 && b0 != bop::kMin16 && b1 != bop::kMin16 && b2 != bop::kMin16;
  for (int n = 0; n < len; ++n) {
    const int16_t x = pSrcDst[n];
    // y[n] = a1 y[n-1] + a2 y[n-2] + b0 x[n] + b1 x[n-1] + b2 x[n-2], each
    // partial sum saturated, y taken in its DPF split.
    int32_t acc;
    bool done = false;
    if (plain) {
      // Mpy_32_16(L_Extract(y), a) = 2 (hi a + floor(lo a / 2^15)) with
      // y >> 1 = hi 2^15 + lo: the same as 2 floor((y >> 1) a / 2^15), one
      // product on the recursion's path instead of two.
      auto term = [](int32_t y, int16_t a) { return 2 * ((int64_t{y >> 1} * a) >> 15); };
      const int64_t r2 = term(y2, a2);
      const int64_t r3 = r2 + 2 * int64_t{x} * b0;
      const int64_t r4 = r3 + 2 * int64_t{x1} * b1;
      const int64_t r5 = r4 + 2 * int64_t{x2} * b2;
      const int64_t m1 = term(y1, a1);
      // m1 + r_k within 32 bits for k = 2..5: one range for m1.
      auto lo = [](int64_t u, int64_t v) { return u < v ? u : v; };
      auto hi = [](int64_t u, int64_t v) { return u > v ? u : v; };
      const int64_t rMin = lo(lo(r2, r3), lo(r4, r5)), rMax = hi(hi(r2, r3), hi(r4, r5));
      done = m1 >= bop::kMin32 - rMin && m1 <= bop::kMax32 - rMax;
      acc = static_cast<int32_t>(m1 + r5);
    }
    if (!done) {
      acc = dpf::Mpy_32_16(dpf::L_Extract(y1), a1);
      acc = bop::L_add(acc, dpf::Mpy_32_16(dpf::L_Extract(y2), a2));
      acc = bop::L_mac(acc, x, b0);
      acc = bop::L_mac(acc, x1, b1);
      acc = bop::L_mac(acc, x2, b2);
    }
    int16_t out;
    if (scaleFactor == 12) {  // Q12 coefficients
      acc = bop::L_shl(acc, 3);
      out = bop::round(acc);
    } else {  // Q13 coefficients, output doubled
      acc = bop::L_shl(acc, 2);
      out = bop::round(bop::L_shl(acc, 1));
    }
    y2 = y1;
    y1 = acc;
    x2 = x1;
    x1 = x;
    pSrcDst[n] = out;
  }
  store(pState, kOffY1, y1);
  store(pState, kOffY2, y2);
  store(pState, kOffX1, x1);
  store(pState, kOffX2, x2);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
