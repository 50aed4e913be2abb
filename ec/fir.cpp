// Full-band echo-path filters: the plain FIR (float and Q15) and the
// adapting least-mean-squares FIR whose update lags one sample.
#include "core/float_canonical.h"
#include "core/level_ns.h"
#include "ec/fir_simd.h"
#include "vsps.h"

namespace vsps::VSPS_NS {

namespace {

inline int32_t sat32(int64_t x) { return x > INT32_MAX ? INT32_MAX : (x < INT32_MIN ? INT32_MIN : int32_t(x)); }
inline Vsp16s sat16(int64_t x) { return static_cast<Vsp16s>(x > 32767 ? 32767 : (x < -32768 ? -32768 : x)); }
// a * b + c in 32-bit two's-complement arithmetic with wrap-around.
inline int32_t wrap_mul_add(int32_t a, int32_t b, int32_t c) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b) + static_cast<uint32_t>(c));
}

}  // namespace

VspStatus legacy90vspsFIR_EC_32f(const Vsp32f* reference, const Vsp32f* nearEnd, Vsp32f* error, int len,
                                 const Vsp32f* coeffs, int tapLen) {
  if (reference == nullptr || nearEnd == nullptr || error == nullptr || coeffs == nullptr) return vspStsNullPtrErr;
  if (len < 1 || tapLen < 1) return vspStsBadArgErr;
  int n = 0;
#if defined(__AVX__) || (VSPS_LEVEL >= 2 && defined(VSPS_SIMD128))
  if (ecfir::outputs_apart(reference, error, len, tapLen))
    n = ecfir::fir32f_blocks(reference, nearEnd, error, len, coeffs, tapLen);
#endif
  for (; n < len; ++n) {
    const Vsp32f* x = reference + n;
    Vsp32f y = 0.0f;
    for (int k = 0; k < tapLen; ++k) y = y + coeffs[k] * x[-k];
    error[n] = nearEnd[n] - y;
  }
  fout::canonicalise(error, static_cast<std::size_t>(len));
  return vspStsNoErr;
}

VspStatus legacy90vspsFIR_EC_16s(const Vsp16s* reference, const Vsp16s* nearEnd, Vsp16s* error, int len,
                                 const Vsp16s* coeffs, int tapLen) {
  if (reference == nullptr || nearEnd == nullptr || error == nullptr || coeffs == nullptr) return vspStsNullPtrErr;
  if (len < 1 || tapLen < 1) return vspStsBadArgErr;
  int n = 0;
#if defined(VSPS_EC_FIR16_VECTOR)
  if (tapLen <= ecfir::kMaxExactTaps && ecfir::outputs_apart(reference, error, len, tapLen))
    n = ecfir::fir16s_blocks(reference, nearEnd, error, len, coeffs, tapLen);
#endif
  for (; n < len; ++n) {
    const Vsp16s* x = reference + n;
    int32_t y = 0;
    for (int k = 0; k < tapLen; ++k) y = sat32(int64_t(y) + ((int32_t(x[-k]) * coeffs[k] + 16384) >> 15));
    error[n] = sat16(int64_t(nearEnd[n]) - y);
  }
  return vspStsNoErr;
}

VspStatus legacy90vspsNLMS_EC_32f(const Vsp32f* reference, const Vsp32f* nearEnd, const Vsp32f* step, Vsp32f* error,
                                  int len, Vsp32f* coeffs, int tapLen, Vsp32f* carriedError) {
  if (reference == nullptr || nearEnd == nullptr || step == nullptr || error == nullptr || coeffs == nullptr ||
      carriedError == nullptr)
    return vspStsNullPtrErr;
  if (len < 1 || tapLen < 1) return vspStsBadArgErr;
  Vsp32f c = *carriedError;
  for (int n = 0; n < len; ++n) {
    const Vsp32f* x = reference + n;
    Vsp32f y = 0.0f;
    for (int k = 0; k < tapLen; ++k) {
      coeffs[k] = coeffs[k] + c * x[-1 - k];
      y = y + x[-k] * coeffs[k];
    }
    const Vsp32f e = nearEnd[n] - y;
    error[n] = e;
    c = e * step[n];
  }
  fout::canonicalise(error, static_cast<std::size_t>(len));
  fout::canonicalise(coeffs, static_cast<std::size_t>(tapLen));
  *carriedError = fout::canonical(c);
  return vspStsNoErr;
}

VspStatus legacy90vspsNLMS_EC_16s(const Vsp16s* reference, const Vsp16s* nearEnd, const Vsp32s* step, Vsp16s* error,
                                  int len, Vsp16s* coeffs, int tapLen, Vsp16s* carriedError) {
  if (reference == nullptr || nearEnd == nullptr || step == nullptr || error == nullptr || coeffs == nullptr ||
      carriedError == nullptr)
    return vspStsNullPtrErr;
  if (len < 1 || tapLen < 1) return vspStsBadArgErr;
  int32_t c = *carriedError;  // within a call not limited to 16 bits
#if defined(VSPS_EC_FIR16_VECTOR)
  // Vector taps only when the coefficients are apart from the samples read.
  const bool vector = tapLen <= ecfir::kMaxExactTaps &&
                      simd::disjoint(coeffs, sizeof(Vsp16s) * static_cast<std::size_t>(tapLen), reference - tapLen,
                                     sizeof(Vsp16s) * static_cast<std::size_t>(tapLen + len));
#endif
  for (int n = 0; n < len; ++n) {
    const Vsp16s* x = reference + n;
    int32_t y = 0;
    int k = 0;
#if defined(VSPS_EC_FIR16_VECTOR)
    if (vector) y = ecfir::lms16s_taps(x, coeffs, tapLen, c, &k);
#endif
    for (; k < tapLen; ++k) {
      const int32_t h = sat16(int64_t(coeffs[k]) + (wrap_mul_add(x[-1 - k], c, 4096) >> 13));
      coeffs[k] = static_cast<Vsp16s>(h);
      y = sat32(int64_t(y) + ((h * x[-k] + 16384) >> 15));
    }
    const Vsp16s e = sat16(int64_t(nearEnd[n]) - y);
    error[n] = e;
    c = wrap_mul_add(e, step[n], 1024) >> 11;
  }
  *carriedError = sat16(c);
  return vspStsNoErr;
}

}  // namespace vsps::VSPS_NS
