// Fixed-point twin of the sub-band filter bank: GetSize, Init, analysis
// (16-bit samples to 32-bit complex sub-bands) and synthesis.
#include <cstring>

#if defined(__AVX2__)
#include "core/simd/intrinsics.h"
#endif

#include "ec/ec_tables.h"
#include "ec/rfft.h"
#include "ec/rfft_tables.h"
#include "ec/subband_common.h"

namespace vsps::VSPS_NS {

namespace {

using vsps::ec::SubbandHeader16s;

inline int32_t sat16(int32_t x) { return x > 32767 ? 32767 : (x < -32768 ? -32768 : x); }

// Q0 x Q13 product rounded to Q0.
inline int32_t mul_q13_round(int32_t a, int32_t b) { return (a * b + 4096) >> 13; }

#if defined(__AVX2__)
// Sixteen (d w + 4096) >> 13 as 32-bit values, in the lane order of
// unpacklo/unpackhi (elements 0-3, 8-11 | 4-7, 12-15).
struct Terms {
  __m256i lo, hi;
};
inline Terms fold_terms32(const Vsp16s* d, const Vsp16s* w) {
  const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(d));
  const __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(w));
  const __m256i pl = _mm256_mullo_epi16(x, y), ph = _mm256_mulhi_epi16(x, y);
  const __m256i r = _mm256_set1_epi32(4096);
  return {_mm256_srai_epi32(_mm256_add_epi32(_mm256_unpacklo_epi16(pl, ph), r), 13),
          _mm256_srai_epi32(_mm256_add_epi32(_mm256_unpackhi_epi16(pl, ph), r), 13)};
}
#endif

}  // namespace

VspStatus legacy90vspsSubbandProcessGetSize_16s(int order, int windowLen, int* stateSize, int* initBufSize,
                                                int* workBufSize) {
  return ec::subband_get_size(ec::Twin::Fixed16s, order, windowLen, stateSize, initBufSize, workBufSize);
}

VspStatus legacy90vspsSubbandProcessInit_16s(Vsp8u* state, int order, int frameSize, int windowLen,
                                             const Vsp16s* window, Vsp8u* initBuffer) {
  bool useDefault = false;
  const VspStatus st = ec::subband_init_checks(state, order, frameSize, windowLen, window, &useDefault);
  if (st != vspStsNoErr) return st;
  auto* base = vsps::ec::align16(state);
  auto* h = reinterpret_cast<SubbandHeader16s*>(base);
  const std::size_t lineBytes = vsps::ec::round_up16(2 * std::size_t(windowLen));
  auto* win = reinterpret_cast<Vsp16s*>(base + sizeof(SubbandHeader16s));
  auto* delay = reinterpret_cast<Vsp16s*>(base + sizeof(SubbandHeader16s) + lineBytes);
  uint8_t* tables = base + sizeof(SubbandHeader16s) + 2 * lineBytes;
  if (useDefault) {
    // The built-in window in Q13, each value truncated toward zero.
    const Vsp32f* half = windowLen == vsps::ec::kWindow128Len ? vsps::ec::kWindow128Half : vsps::ec::kWindow256Half;
    for (int i = 0; i < windowLen / 2; ++i) {
      const auto q = static_cast<Vsp16s>(half[i] * 8192.0f);  // exact scaling, conversion truncates
      win[i] = q;
      win[windowLen - 1 - i] = q;
    }
  } else {
    std::memcpy(win, window, 2 * std::size_t(windowLen));
  }
  double small[5];
  const double* q = ec::subband_quarter_cosines(order, initBuffer, small);
  if (q == nullptr) return vspStsErr;  // the window is already copied
  vsps::ec::build_rfft_tables_q30(tables, order, q);
  h->delay = delay;
  h->window = win;
  h->tables = tables;
  h->windowLen = windowLen;
  h->fftLen = int32_t(1) << order;
  h->frameSize = frameSize;
  h->reserved[0] = h->reserved[1] = h->reserved[2] = 0;
  std::memset(delay, 0, 2 * std::size_t(windowLen));
  return vspStsNoErr;
}

VspStatus legacy90vspsSubbandAnalysis_16s32sc_Sfs(const Vsp16s* source, Vsp32sc* destination,
                                                  VspsSubbandProcessState_16s* state, int scaleFactor,
                                                  Vsp8u* workBuffer) {
  if (source == nullptr || destination == nullptr || state == nullptr || workBuffer == nullptr) return vspStsNullPtrErr;
  auto* h = ec::formatted_header<SubbandHeader16s>(state);
  if (h == nullptr) return vspStsErr;
  const int len = h->windowLen, n = h->fftLen, hop = h->frameSize;
  Vsp16s* d = h->delay;
  const Vsp16s* w = h->window;
  std::memmove(d, d + hop, 2 * std::size_t(len - hop));
  std::memcpy(d + len - hop, source, 2 * std::size_t(hop));
  const ec::RfftQ30 f = ec::rfft_q30(h->tables, ec::order_of(n));
  auto* a = reinterpret_cast<int32_t*>(vsps::ec::align16(workBuffer));
  // Window and fold, block after block: every product rounded to Q0, each
  // u[j] saturated after every term (in increasing i for every j).
  int j0 = 0;
#if defined(__AVX2__)
  // Sixteen j at a time: each product rounded to Q0 in 32 bits, the running
  // fold saturated to 16 bits after every term (packs), in increasing i.
  for (; j0 + 16 <= n; j0 += 16) {
    __m256i acc = _mm256_setzero_si256();
    for (int b = 0; b < len; b += n) {
      const Terms t = fold_terms32(d + b + j0, w + b + j0);
      if (b == 0) {
        acc = _mm256_packs_epi32(t.lo, t.hi);  // per 128-bit lane: lo then hi, the natural order
      } else {                                 // sat16(a + term) with the unsaturated 32-bit term
        const __m256i sign = _mm256_srai_epi16(acc, 15);
        acc = _mm256_packs_epi32(_mm256_add_epi32(_mm256_unpacklo_epi16(acc, sign), t.lo),
                                 _mm256_add_epi32(_mm256_unpackhi_epi16(acc, sign), t.hi));
      }
    }
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(a + j0), _mm256_cvtepi16_epi32(_mm256_castsi256_si128(acc)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(a + j0 + 8),
                        _mm256_cvtepi16_epi32(_mm256_extracti128_si256(acc, 1)));
  }
#endif
  for (int j = j0; j < n; ++j) a[j] = sat16(mul_q13_round(d[j], w[j]));
  for (int b = n; b < len; b += n)
    for (int j = j0; j < n; ++j) a[j] = sat16(a[j] + mul_q13_round(d[b + j], w[b + j]));
  ec::bit_reverse_pairs(a, f.rev, f.m);
  ec::forward_q30(a, f, destination, scaleFactor);
  return vspStsNoErr;
}

VspStatus legacy90vspsSubbandSynthesis_32sc16s_Sfs(const Vsp32sc* source, Vsp16s* destination,
                                                   VspsSubbandProcessState_16s* state, int scaleFactor,
                                                   Vsp8u* workBuffer) {
  if (source == nullptr || destination == nullptr || state == nullptr || workBuffer == nullptr) return vspStsNullPtrErr;
  auto* h = ec::formatted_header<SubbandHeader16s>(state);
  if (h == nullptr) return vspStsErr;
  const int len = h->windowLen, n = h->fftLen, hop = h->frameSize;
  const ec::RfftQ30 f = ec::rfft_q30(h->tables, ec::order_of(n));
  auto* v = reinterpret_cast<int32_t*>(vsps::ec::align16(workBuffer));
  ec::inverse_q30(source, f, v, scaleFactor);  // v[0..N-1], 16-bit range
  Vsp16s* d = h->delay;
  const Vsp16s* w = h->window;
  std::memmove(d, d + hop, 2 * std::size_t(len - hop));
  std::memset(d + len - hop, 0, 2 * std::size_t(hop));
  // Overlap-add of the periodically extended block, window read backwards.
  for (int b = 0; b < len; b += n)
    for (int j = 0; j < n; ++j) {
      const int k = b + j;
      d[k] = static_cast<Vsp16s>(sat16(d[k] + mul_q13_round(v[j], w[len - 1 - k])));
    }
  std::memcpy(destination, d, 2 * std::size_t(hop));
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
