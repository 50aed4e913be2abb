// G.729 LSF codebook searches, 128-bit (levels 2-5): four rows per vector.
// Included by g729/lsf_search.h inside namespace vsps::<level>::lsfsearch.

inline int stage1(const int16_t* target) {
  __m128i tp[5];
  for (int p = 0; p < 5; ++p) tp[p] = _mm_set1_epi32(pair_word(target + 2 * p));
  const __m128i cap = _mm_set1_epi32(kKeyCap);
  __m128i best = cap;
  __m128i bestIdx = _mm_setzero_si128();
  __m128i idx = _mm_setr_epi32(0, 1, 2, 3);
  const auto* cb = reinterpret_cast<const __m128i*>(t::kLspCb1PairsQ13);
  for (int i = 0; i < t::kCb1Size; i += 4) {
    __m128i key = _mm_setzero_si128();
    for (int p = 0; p < 5; ++p) {
      const __m128i e = _mm_subs_epi16(tp[p], _mm_loadu_si128(cb + (p * t::kCb1Size + i) / 4));
      key = simd::min_u32(_mm_add_epi32(key, _mm_madd_epi16(e, e)), cap);
    }
    simd::keep_min(key, idx, best, bestIdx);
    idx = _mm_add_epi32(idx, _mm_set1_epi32(4));
  }
  alignas(16) int32_t keys[4], rows[4];
  _mm_store_si128(reinterpret_cast<__m128i*>(keys), best);
  _mm_store_si128(reinterpret_cast<__m128i*>(rows), bestIdx);
  return simd::first_min_index(keys, rows, 4);
}

inline void stage2(const int16_t* rest, const int16_t* w, int* best) {
  const __m128i cap = _mm_set1_epi32(kKeyCap);
  const auto* cb = reinterpret_cast<const __m128i*>(t::kLspCb2HalfPairsQ13);
  for (int half = 0; half < 2; ++half) {
    int16_t r6[6] = {0}, w6[6] = {0};  // padded: the sixth term is exactly 0
    for (int j = 0; j < 5; ++j) {
      r6[j] = rest[5 * half + j];
      w6[j] = w[5 * half + j];
    }
    __m128i rp[3], wp[3];
    for (int p = 0; p < 3; ++p) {
      rp[p] = _mm_set1_epi32(pair_word(r6 + 2 * p));
      wp[p] = _mm_set1_epi32(pair_word(w6 + 2 * p));
    }
    __m128i bestKey = cap;
    __m128i bestIdx = _mm_setzero_si128();
    __m128i idx = _mm_setr_epi32(0, 1, 2, 3);
    for (int i = 0; i < t::kCb2Size; i += 4) {
      __m128i key = _mm_setzero_si128();
      for (int p = 0; p < 3; ++p) {
        const __m128i row = _mm_loadu_si128(cb + ((half * 3 + p) * t::kCb2Size + i) / 4);
        const __m128i e = _mm_subs_epi16(rp[p], row);
        key = simd::min_u32(_mm_add_epi32(key, _mm_madd_epi16(simd::mult_q15(wp[p], e), e)), cap);
      }
      simd::keep_min(key, idx, bestKey, bestIdx);
      idx = _mm_add_epi32(idx, _mm_set1_epi32(4));
    }
    alignas(16) int32_t keys[4], rows[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(keys), bestKey);
    _mm_store_si128(reinterpret_cast<__m128i*>(rows), bestIdx);
    best[half] = simd::first_min_index(keys, rows, 4);
  }
}
