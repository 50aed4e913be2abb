// Single-precision twin of the sub-band filter bank: GetSize, Init,
// analysis (real samples to complex sub-bands) and synthesis.
#include <cstring>

#if defined(__SSSE3__)
#include "core/simd/intrinsics.h"
#endif

#include "core/float_canonical.h"
#include "ec/ec_tables.h"
#include "ec/rfft.h"
#include "ec/rfft_tables.h"
#include "ec/subband_common.h"

namespace vsps::VSPS_NS {

using vsps::ec::SubbandHeader32f;

VspStatus legacy90vspsSubbandProcessGetSize_32f(int order, int windowLen, int* stateSize, int* initBufSize,
                                                int* workBufSize) {
  return ec::subband_get_size(ec::Twin::Float32f, order, windowLen, stateSize, initBufSize, workBufSize);
}

VspStatus legacy90vspsSubbandProcessInit_32f(Vsp8u* state, int order, int frameSize, int windowLen,
                                             const Vsp32f* window, Vsp8u* initBuffer) {
  bool useDefault = false;
  const VspStatus st = ec::subband_init_checks(state, order, frameSize, windowLen, window, &useDefault);
  if (st != vspStsNoErr) return st;
  auto* base = vsps::ec::align16(state);
  auto* h = reinterpret_cast<SubbandHeader32f*>(base);
  auto* win = reinterpret_cast<Vsp32f*>(base + sizeof(SubbandHeader32f));
  Vsp32f* delay = win + windowLen;
  auto* tables = reinterpret_cast<uint8_t*>(delay + windowLen);
  if (useDefault) {
    const Vsp32f* half = windowLen == vsps::ec::kWindow128Len ? vsps::ec::kWindow128Half : vsps::ec::kWindow256Half;
    for (int i = 0; i < windowLen / 2; ++i) win[i] = win[windowLen - 1 - i] = half[i];
  } else {
    std::memcpy(win, window, 4 * std::size_t(windowLen));
  }
  double small[5];
  const double* q = ec::subband_quarter_cosines(order, initBuffer, small);
  if (q == nullptr) return vspStsErr;  // the window is already copied
  vsps::ec::build_rfft_tables_32f(tables, order, q);
  h->windowLen = windowLen;
  h->fftLen = int32_t(1) << order;
  h->frameSize = frameSize;
  h->reserved = 0;
  h->delay = delay;
  h->window = win;
  h->tables = tables;
  std::memset(delay, 0, 4 * std::size_t(windowLen));
  return vspStsNoErr;
}

VspStatus legacy90vspsSubbandAnalysis_32f32fc(const Vsp32f* source, Vsp32fc* destination,
                                              VspsSubbandProcessState_32f* state, Vsp8u* workBuffer) {
  if (source == nullptr || destination == nullptr || state == nullptr || workBuffer == nullptr) return vspStsNullPtrErr;
  auto* h = ec::formatted_header<SubbandHeader32f>(state);
  if (h == nullptr) return vspStsErr;
  const int len = h->windowLen, n = h->fftLen, hop = h->frameSize;
  Vsp32f* d = h->delay;
  const Vsp32f* w = h->window;
  std::memmove(d, d + hop, 4 * std::size_t(len - hop));
  std::memcpy(d + len - hop, source, 4 * std::size_t(hop));
  const ec::Rfft32f f = ec::rfft_32f(h->tables, ec::order_of(n));
  auto* a = reinterpret_cast<Vsp32fc*>(vsps::ec::align16(workBuffer));
  auto* u = reinterpret_cast<Vsp32f*>(a);
  // Window and fold, block after block (for every j the terms in
  // increasing i).
  int j0 = 0;
#if defined(__AVX__)
  for (; j0 + 8 <= n; j0 += 8) {  // eight j at a time, each lane in increasing i
    __m256 acc = _mm256_mul_ps(_mm256_loadu_ps(d + j0), _mm256_loadu_ps(w + j0));
    for (int b = n; b < len; b += n)
      acc = _mm256_add_ps(acc, _mm256_mul_ps(_mm256_loadu_ps(d + b + j0), _mm256_loadu_ps(w + b + j0)));
    _mm256_storeu_ps(u + j0, acc);
  }
#elif VSPS_LEVEL >= 2 && defined(__SSSE3__)
  for (; j0 + 4 <= n; j0 += 4) {
    __m128 acc = _mm_mul_ps(_mm_loadu_ps(d + j0), _mm_loadu_ps(w + j0));
    for (int b = n; b < len; b += n)
      acc = _mm_add_ps(acc, _mm_mul_ps(_mm_loadu_ps(d + b + j0), _mm_loadu_ps(w + b + j0)));
    _mm_storeu_ps(u + j0, acc);
  }
#endif
  for (int j = j0; j < n; ++j) u[j] = d[j] * w[j];
  for (int b = n; b < len; b += n)
    for (int j = j0; j < n; ++j) u[j] = u[j] + d[b + j] * w[b + j];
  ec::bit_reverse_32fc(a, f.rev, f.m);
  ec::cfft_32f<false>(a, f.stage, f.m);
  ec::pack_forward_32f(a, f, destination);
  fout::canonicalise(&destination[0].re, 2 * std::size_t(f.m + 1));
  fout::canonicalise(u, std::size_t(n));  // the work buffer's transform
  return vspStsNoErr;
}

VspStatus legacy90vspsSubbandSynthesis_32fc32f(const Vsp32fc* source, Vsp32f* destination,
                                               VspsSubbandProcessState_32f* state, Vsp8u* workBuffer) {
  if (source == nullptr || destination == nullptr || state == nullptr || workBuffer == nullptr) return vspStsNullPtrErr;
  auto* h = ec::formatted_header<SubbandHeader32f>(state);
  if (h == nullptr) return vspStsErr;
  const int len = h->windowLen, n = h->fftLen, hop = h->frameSize;
  const ec::Rfft32f f = ec::rfft_32f(h->tables, ec::order_of(n));
  auto* a = reinterpret_cast<Vsp32fc*>(vsps::ec::align16(workBuffer));
  ec::unpack_inverse_32f(source, f, a);
  ec::cfft_32f<true>(a, f.stage, f.m);
  auto* v = reinterpret_cast<Vsp32f*>(a);
  const Vsp32f invN = 1.0f / static_cast<Vsp32f>(n);  // a power of two: exact
  for (int j = 0; j < n; ++j) v[j] = v[j] * invN;
  Vsp32f* d = h->delay;
  const Vsp32f* w = h->window;
  std::memmove(d, d + hop, 4 * std::size_t(len - hop));
  std::memset(d + len - hop, 0, 4 * std::size_t(hop));
  for (int b = 0; b < len; b += n) {
    int j = 0;
#if defined(__AVX__)
    // Eight k at a time; the window read backwards as a reversed vector.
    for (; j + 8 <= n; j += 8) {
      const int k = b + j;
      const __m256 wr = _mm256_permute2f128_ps(_mm256_permute_ps(_mm256_loadu_ps(w + len - 8 - k), 0x1B),
                                               _mm256_permute_ps(_mm256_loadu_ps(w + len - 8 - k), 0x1B), 0x01);
      _mm256_storeu_ps(d + k, _mm256_add_ps(_mm256_loadu_ps(d + k), _mm256_mul_ps(_mm256_loadu_ps(v + j), wr)));
    }
#elif VSPS_LEVEL >= 2 && defined(__SSSE3__)
    for (; j + 4 <= n; j += 4) {
      const int k = b + j;
      const __m128 wr = _mm_shuffle_ps(_mm_loadu_ps(w + len - 4 - k), _mm_loadu_ps(w + len - 4 - k), 0x1B);
      _mm_storeu_ps(d + k, _mm_add_ps(_mm_loadu_ps(d + k), _mm_mul_ps(_mm_loadu_ps(v + j), wr)));
    }
#endif
    for (; j < n; ++j) {
      const int k = b + j;
      d[k] = d[k] + v[j] * w[len - 1 - k];
    }
  }
  fout::canonicalise(d, std::size_t(len));
  fout::canonicalise(v, std::size_t(n));  // the work buffer's transform
  std::memcpy(destination, d, 4 * std::size_t(hop));
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
