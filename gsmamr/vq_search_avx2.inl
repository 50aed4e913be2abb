// GSM-AMR weighted VQ searches, 256-bit (level 6): eight candidates per
// step. Included by gsmamr/lsf_vq.h inside namespace vsps::<level>::amr.
// _mm256_hadd_epi32 works per 128-bit half, so the candidates come out in
// the lane order given by the index vectors below.

inline __m256i vq_row_pattern(const int16_t* v) {
  return _mm256_set1_epi64x(static_cast<long long>(static_cast<uint64_t>(static_cast<uint16_t>(v[0])) |
                                                   static_cast<uint64_t>(static_cast<uint16_t>(v[1])) << 16 |
                                                   static_cast<uint64_t>(static_cast<uint16_t>(v[2])) << 32 |
                                                   static_cast<uint64_t>(static_cast<uint16_t>(v[3])) << 48));
}

inline __m256i vq_row_squares(__m256i w, __m256i e) {
  const __m256i t = simd::mult_q15(w, e);
  return _mm256_madd_epi16(t, t);
}

// Keys of eight rows: a holds rows A0..A3, b rows B0..B3; the result's lanes
// are A0 A1 B0 B1 A2 A3 B2 B3.
inline __m256i vq_keys(__m256i w, __m256i ea, __m256i eb) {
  return _mm256_min_epu32(_mm256_hadd_epi32(vq_row_squares(w, ea), vq_row_squares(w, eb)), _mm256_set1_epi32(kKeyCap));
}

inline int vq_finish(__m256i best, __m256i bestIdx) {
  int32_t keys[8], idx[8];
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(keys), best);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(idx), bestIdx);
  return simd::first_min_index(keys, idx, 8);
}

inline int search(const int16_t* target, const int16_t* wf, const Row4* table, int count, int step) {
  const __m256i tp = vq_row_pattern(target);
  const __m256i wp = vq_row_pattern(wf);
  __m256i best = _mm256_set1_epi32(kKeyCap);
  __m256i bestIdx = _mm256_setzero_si256();
  const auto* p = reinterpret_cast<const __m256i*>(table);  // four rows per vector
  // Step 1: a = rows 0-3, b = rows 4-7 -> lanes 0 1 4 5 2 3 6 7.
  // Step 2: a = rows 0,4 | 2,6 (candidates 0 2 1 3), b = rows 8,12 | 10,14
  // (candidates 4 6 5 7) -> lanes 0 2 4 6 1 3 5 7.
  __m256i idx = step == 1 ? _mm256_setr_epi32(0, 1, 4, 5, 2, 3, 6, 7) : _mm256_setr_epi32(0, 2, 4, 6, 1, 3, 5, 7);
  for (int i = 0; i < count; i += 8) {
    __m256i a, b;
    if (step == 1) {
      a = _mm256_loadu_si256(p + i / 4);
      b = _mm256_loadu_si256(p + i / 4 + 1);
    } else {
      const __m256i* q = p + i / 2;
      a = _mm256_unpacklo_epi64(_mm256_loadu_si256(q), _mm256_loadu_si256(q + 1));
      b = _mm256_unpacklo_epi64(_mm256_loadu_si256(q + 2), _mm256_loadu_si256(q + 3));
    }
    const __m256i key = vq_keys(wp, _mm256_subs_epi16(tp, a), _mm256_subs_epi16(tp, b));
    simd::keep_min(key, idx, best, bestIdx);
    idx = _mm256_add_epi32(idx, _mm256_set1_epi32(8));
  }
  return vq_finish(best, bestIdx);
}

inline int search_signed(const int16_t* target, const int16_t* wf, const Row4* table, int count) {
  const __m256i tp = vq_row_pattern(target);
  const __m256i wp = vq_row_pattern(wf);
  __m256i best = _mm256_set1_epi32(kKeyCap);
  __m256i bestIdx = _mm256_setzero_si256();
  __m256i cand = _mm256_setr_epi32(0, 2, 8, 10, 4, 6, 12, 14);  // 2 * row, rows in the lane order of vq_keys
  const auto* p = reinterpret_cast<const __m256i*>(table);
  for (int i = 0; i < count; i += 8) {
    const __m256i a = _mm256_loadu_si256(p + i / 4);
    const __m256i b = _mm256_loadu_si256(p + i / 4 + 1);
    const __m256i pos = vq_keys(wp, _mm256_subs_epi16(tp, a), _mm256_subs_epi16(tp, b));
    const __m256i neg = vq_keys(wp, _mm256_adds_epi16(tp, a), _mm256_adds_epi16(tp, b));
    simd::keep_min(pos, cand, best, bestIdx);
    simd::keep_min(neg, _mm256_add_epi32(cand, _mm256_set1_epi32(1)), best, bestIdx);
    cand = _mm256_add_epi32(cand, _mm256_set1_epi32(16));
  }
  return vq_finish(best, bestIdx);
}
