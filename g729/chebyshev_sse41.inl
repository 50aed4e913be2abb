// The Chebyshev evaluation of lsp_root_search.h on four points at once
// (SSE4.1, levels 4 and 5): the same operator sequence per 32-bit lane, each
// saturating operator emulated exactly. Included inside namespace
// vsps::<level>::lsp.

// sat32(a + b), sat32(a - b) per lane.
inline __m128i cheb_add(__m128i a, __m128i b) {
  const __m128i s = _mm_add_epi32(a, b);
  const __m128i ovf = _mm_and_si128(_mm_xor_si128(s, a), _mm_xor_si128(s, b));
  const __m128i sat = _mm_xor_si128(_mm_srai_epi32(a, 31), _mm_set1_epi32(INT32_MAX));
  return _mm_castps_si128(_mm_blendv_ps(_mm_castsi128_ps(s), _mm_castsi128_ps(sat), _mm_castsi128_ps(ovf)));
}
inline __m128i cheb_sub(__m128i a, __m128i b) {
  const __m128i d = _mm_sub_epi32(a, b);
  const __m128i ovf = _mm_and_si128(_mm_xor_si128(a, b), _mm_xor_si128(a, d));
  const __m128i sat = _mm_xor_si128(_mm_srai_epi32(a, 31), _mm_set1_epi32(INT32_MAX));
  return _mm_castps_si128(_mm_blendv_ps(_mm_castsi128_ps(d), _mm_castsi128_ps(sat), _mm_castsi128_ps(ovf)));
}
// L_shl(a, n), n = 1..15: saturates when a * 2^n leaves the 32-bit range.
inline __m128i cheb_shl(__m128i a, int n) {
  const __m128i r = _mm_sll_epi32(a, _mm_cvtsi32_si128(n));
  const __m128i ok = _mm_cmpeq_epi32(_mm_sra_epi32(r, _mm_cvtsi32_si128(n)), a);
  const __m128i sat = _mm_xor_si128(_mm_srai_epi32(a, 31), _mm_set1_epi32(INT32_MAX));
  return _mm_blendv_epi8(sat, r, ok);
}
// Mpy_32_16(hi, lo, x) = L_add(L_mult(hi, x), 2 mult(lo, x)), lo in 0..32767.
inline __m128i cheb_mpy_32_16(__m128i hi, __m128i lo, __m128i x) {
  const __m128i p = _mm_mullo_epi32(hi, x);
  __m128i hx = _mm_add_epi32(p, p);  // L_mult: only -32768 x -32768 (p = 2^30) saturates
  hx = _mm_add_epi32(hx, _mm_cmpeq_epi32(p, _mm_set1_epi32(0x40000000)));
  const __m128i q = _mm_srai_epi32(_mm_mullo_epi32(lo, x), 15);  // mult(lo, x), never saturates
  return cheb_add(hx, _mm_add_epi32(q, q));
}
// L_msu(L_mac(t, hi, -32768), lo, 1): t - hi * 2^16 - 2 lo, in two saturating steps.
inline __m128i cheb_minus_b2(__m128i t, __m128i hi, __m128i lo) {
  const __m128i v = _mm_slli_epi32(hi, 16);
  // L_mult(hi, -32768) = -hi * 2^16, saturated to MAX_32 for hi = -32768.
  const __m128i term =
      _mm_add_epi32(_mm_sub_epi32(_mm_setzero_si128(), v), _mm_cmpeq_epi32(v, _mm_set1_epi32(INT32_MIN)));
  return cheb_sub(cheb_add(t, term), _mm_add_epi32(lo, lo));
}

// y[k] = chebyshev(x[k], f, form) for k = 0..n-1, n a multiple of 4.
inline void chebyshev_many(const int16_t* x, int n, const int16_t* f, const ChebyshevForm& form, int16_t* y) {
  const __m128i one = _mm_set1_epi32(form.oneHi);
  const __m128i lowMask = _mm_set1_epi32(0xFFFF);
  __m128i coef[kPolyOrder + 1];
  for (int i = 1; i < kPolyOrder; ++i) coef[i] = _mm_set1_epi32(bop::L_mult(f[i], form.coefScale));
  coef[kPolyOrder] = _mm_set1_epi32(bop::L_mult(f[kPolyOrder], form.lastScale));
  for (int k = 0; k < n; k += 4) {
    const __m128i xv = _mm_cvtepi16_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(x + k)));
    // 2x + f[1]; L_mult(x, xScale) cannot saturate (xScale <= 512).
    __m128i t = cheb_add(_mm_mullo_epi32(xv, _mm_set1_epi32(2 * form.xScale)), coef[1]);
    __m128i b2h = one, b2l = _mm_setzero_si128();
    __m128i b1h = _mm_srai_epi32(t, 16), b1l = _mm_srli_epi32(_mm_and_si128(t, lowMask), 1);
    for (int i = 2; i < kPolyOrder; ++i) {
      t = cheb_shl(cheb_mpy_32_16(b1h, b1l, xv), 1);
      t = cheb_add(cheb_minus_b2(t, b2h, b2l), coef[i]);
      b2h = b1h;
      b2l = b1l;
      b1h = _mm_srai_epi32(t, 16);
      b1l = _mm_srli_epi32(_mm_and_si128(t, lowMask), 1);
    }
    t = cheb_mpy_32_16(b1h, b1l, xv);
    t = cheb_add(cheb_minus_b2(t, b2h, b2l), coef[kPolyOrder]);
    t = _mm_srai_epi32(cheb_shl(t, form.outShift), 16);
    alignas(16) int32_t out[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(out), t);
    for (int j = 0; j < 4; ++j) y[k + j] = static_cast<int16_t>(out[j]);
  }
}
