// The Chebyshev evaluation of lsp_root_search.h on eight points at once
// (AVX2, level 6): the same operator sequence per 32-bit lane, each
// saturating operator emulated exactly. Included inside namespace
// vsps::<level>::lsp.

// sat32(a + b), sat32(a - b) per lane.
inline __m256i cheb_add(__m256i a, __m256i b) {
  const __m256i s = _mm256_add_epi32(a, b);
  const __m256i ovf = _mm256_and_si256(_mm256_xor_si256(s, a), _mm256_xor_si256(s, b));
  const __m256i sat = _mm256_xor_si256(_mm256_srai_epi32(a, 31), _mm256_set1_epi32(INT32_MAX));
  return _mm256_castps_si256(
      _mm256_blendv_ps(_mm256_castsi256_ps(s), _mm256_castsi256_ps(sat), _mm256_castsi256_ps(ovf)));
}
inline __m256i cheb_sub(__m256i a, __m256i b) {
  const __m256i d = _mm256_sub_epi32(a, b);
  const __m256i ovf = _mm256_and_si256(_mm256_xor_si256(a, b), _mm256_xor_si256(a, d));
  const __m256i sat = _mm256_xor_si256(_mm256_srai_epi32(a, 31), _mm256_set1_epi32(INT32_MAX));
  return _mm256_castps_si256(
      _mm256_blendv_ps(_mm256_castsi256_ps(d), _mm256_castsi256_ps(sat), _mm256_castsi256_ps(ovf)));
}
// L_shl(a, n), n = 1..15: saturates when a * 2^n leaves the 32-bit range.
inline __m256i cheb_shl(__m256i a, int n) {
  const __m256i r = _mm256_sll_epi32(a, _mm_cvtsi32_si128(n));
  const __m256i ok = _mm256_cmpeq_epi32(_mm256_sra_epi32(r, _mm_cvtsi32_si128(n)), a);
  const __m256i sat = _mm256_xor_si256(_mm256_srai_epi32(a, 31), _mm256_set1_epi32(INT32_MAX));
  return _mm256_blendv_epi8(sat, r, ok);
}
// Mpy_32_16(hi, lo, x) = L_add(L_mult(hi, x), 2 mult(lo, x)), lo in 0..32767.
inline __m256i cheb_mpy_32_16(__m256i hi, __m256i lo, __m256i x) {
  const __m256i p = _mm256_mullo_epi32(hi, x);
  __m256i hx = _mm256_add_epi32(p, p);  // L_mult: only -32768 x -32768 (p = 2^30) saturates
  hx = _mm256_add_epi32(hx, _mm256_cmpeq_epi32(p, _mm256_set1_epi32(0x40000000)));
  const __m256i q = _mm256_srai_epi32(_mm256_mullo_epi32(lo, x), 15);  // mult(lo, x), never saturates
  return cheb_add(hx, _mm256_add_epi32(q, q));
}
// L_msu(L_mac(t, hi, -32768), lo, 1): t - hi * 2^16 - 2 lo, in two saturating steps.
inline __m256i cheb_minus_b2(__m256i t, __m256i hi, __m256i lo) {
  const __m256i v = _mm256_slli_epi32(hi, 16);
  // L_mult(hi, -32768) = -hi * 2^16, saturated to MAX_32 for hi = -32768.
  const __m256i term = _mm256_add_epi32(_mm256_sub_epi32(_mm256_setzero_si256(), v),
                                        _mm256_cmpeq_epi32(v, _mm256_set1_epi32(INT32_MIN)));
  return cheb_sub(cheb_add(t, term), _mm256_add_epi32(lo, lo));
}

// y[k] = chebyshev(x[k], f, form) for k = 0..n-1, n a multiple of 8.
inline void chebyshev_many(const int16_t* x, int n, const int16_t* f, const ChebyshevForm& form, int16_t* y) {
  const __m256i one = _mm256_set1_epi32(form.oneHi);
  const __m256i lowMask = _mm256_set1_epi32(0xFFFF);
  __m256i coef[kPolyOrder + 1];
  for (int i = 1; i < kPolyOrder; ++i) coef[i] = _mm256_set1_epi32(bop::L_mult(f[i], form.coefScale));
  coef[kPolyOrder] = _mm256_set1_epi32(bop::L_mult(f[kPolyOrder], form.lastScale));
  for (int k = 0; k < n; k += 8) {
    const __m256i xv = _mm256_cvtepi16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(x + k)));
    // 2x + f[1]; L_mult(x, xScale) cannot saturate (xScale <= 512).
    __m256i t = cheb_add(_mm256_mullo_epi32(xv, _mm256_set1_epi32(2 * form.xScale)), coef[1]);
    __m256i b2h = one, b2l = _mm256_setzero_si256();
    __m256i b1h = _mm256_srai_epi32(t, 16), b1l = _mm256_srli_epi32(_mm256_and_si256(t, lowMask), 1);
    for (int i = 2; i < kPolyOrder; ++i) {
      t = cheb_shl(cheb_mpy_32_16(b1h, b1l, xv), 1);
      t = cheb_add(cheb_minus_b2(t, b2h, b2l), coef[i]);
      b2h = b1h;
      b2l = b1l;
      b1h = _mm256_srai_epi32(t, 16);
      b1l = _mm256_srli_epi32(_mm256_and_si256(t, lowMask), 1);
    }
    t = cheb_mpy_32_16(b1h, b1l, xv);
    t = cheb_add(cheb_minus_b2(t, b2h, b2l), coef[kPolyOrder]);
    t = _mm256_srai_epi32(cheb_shl(t, form.outShift), 16);
    int32_t out[8];
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), t);
    for (int j = 0; j < 8; ++j) y[k + j] = static_cast<int16_t>(out[j]);
  }
}
