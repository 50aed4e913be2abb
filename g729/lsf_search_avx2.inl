// G.729 LSF codebook searches, 256-bit (level 6): eight rows per vector.
// Included by g729/lsf_search.h inside namespace vsps::<level>::lsfsearch.

inline int stage1(const int16_t* target) {
  __m256i tp[5];
  for (int p = 0; p < 5; ++p) tp[p] = _mm256_set1_epi32(pair_word(target + 2 * p));
  const __m256i cap = _mm256_set1_epi32(kKeyCap);
  __m256i best = cap;
  __m256i bestIdx = _mm256_setzero_si256();
  __m256i idx = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
  const auto* cb = reinterpret_cast<const __m256i*>(t::kLspCb1PairsQ13);
  for (int i = 0; i < t::kCb1Size; i += 8) {
    __m256i key = _mm256_setzero_si256();
    for (int p = 0; p < 5; ++p) {
      const __m256i e = _mm256_subs_epi16(tp[p], _mm256_loadu_si256(cb + (p * t::kCb1Size + i) / 8));
      key = _mm256_min_epu32(_mm256_add_epi32(key, _mm256_madd_epi16(e, e)), cap);
    }
    simd::keep_min(key, idx, best, bestIdx);
    idx = _mm256_add_epi32(idx, _mm256_set1_epi32(8));
  }
  int32_t keys[8], rows[8];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(keys), best);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(rows), bestIdx);
  return simd::first_min_index(keys, rows, 8);
}

inline void stage2(const int16_t* rest, const int16_t* w, int* best) {
  const __m256i cap = _mm256_set1_epi32(kKeyCap);
  const auto* cb = reinterpret_cast<const __m256i*>(t::kLspCb2HalfPairsQ13);
  for (int half = 0; half < 2; ++half) {
    int16_t r6[6] = {0}, w6[6] = {0};  // padded: the sixth term is exactly 0
    for (int j = 0; j < 5; ++j) {
      r6[j] = rest[5 * half + j];
      w6[j] = w[5 * half + j];
    }
    __m256i rp[3], wp[3];
    for (int p = 0; p < 3; ++p) {
      rp[p] = _mm256_set1_epi32(pair_word(r6 + 2 * p));
      wp[p] = _mm256_set1_epi32(pair_word(w6 + 2 * p));
    }
    __m256i bestKey = cap;
    __m256i bestIdx = _mm256_setzero_si256();
    __m256i idx = _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7);
    for (int i = 0; i < t::kCb2Size; i += 8) {
      __m256i key = _mm256_setzero_si256();
      for (int p = 0; p < 3; ++p) {
        const __m256i row = _mm256_loadu_si256(cb + ((half * 3 + p) * t::kCb2Size + i) / 8);
        const __m256i e = _mm256_subs_epi16(rp[p], row);
        key = _mm256_min_epu32(_mm256_add_epi32(key, _mm256_madd_epi16(simd::mult_q15(wp[p], e), e)), cap);
      }
      simd::keep_min(key, idx, bestKey, bestIdx);
      idx = _mm256_add_epi32(idx, _mm256_set1_epi32(8));
    }
    int32_t keys[8], rows[8];
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(keys), bestKey);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(rows), bestIdx);
    best[half] = simd::first_min_index(keys, rows, 8);
  }
}
