// GSM-AMR weighted VQ searches, 128-bit (levels 2-5): four candidates per
// step. Included by gsmamr/lsf_vq.h inside namespace vsps::<level>::amr.

inline __m128i vq_row_pattern(const int16_t* v) {
  return _mm_set1_epi64x(static_cast<long long>(static_cast<uint64_t>(static_cast<uint16_t>(v[0])) |
                                                static_cast<uint64_t>(static_cast<uint16_t>(v[1])) << 16 |
                                                static_cast<uint64_t>(static_cast<uint16_t>(v[2])) << 32 |
                                                static_cast<uint64_t>(static_cast<uint16_t>(v[3])) << 48));
}

// Sum of the four squares of mult(w, e) per row of the two rows in e.
inline __m128i vq_row_squares(__m128i w, __m128i e) {
  const __m128i t = simd::mult_q15(w, e);
  return _mm_madd_epi16(t, t);
}

// Keys min(sum of squares, 2^30) of four rows held two per vector.
inline __m128i vq_keys(__m128i w, __m128i e01, __m128i e23) {
  return simd::min_u32(_mm_hadd_epi32(vq_row_squares(w, e01), vq_row_squares(w, e23)), _mm_set1_epi32(kKeyCap));
}

inline int vq_finish(__m128i best, __m128i bestIdx) {
  alignas(16) int32_t keys[4], idx[4];
  _mm_store_si128(reinterpret_cast<__m128i*>(keys), best);
  _mm_store_si128(reinterpret_cast<__m128i*>(idx), bestIdx);
  return simd::first_min_index(keys, idx, 4);
}

inline int search(const int16_t* target, const int16_t* wf, const Row4* table, int count, int step) {
  const __m128i tp = vq_row_pattern(target);
  const __m128i wp = vq_row_pattern(wf);
  __m128i best = _mm_set1_epi32(kKeyCap);
  __m128i bestIdx = _mm_setzero_si128();
  __m128i idx = _mm_setr_epi32(0, 1, 2, 3);
  const auto* p = reinterpret_cast<const __m128i*>(table);  // two rows per vector
  for (int i = 0; i < count; i += 4) {
    __m128i r01, r23;
    if (step == 1) {
      r01 = _mm_loadu_si128(p + i / 2);
      r23 = _mm_loadu_si128(p + i / 2 + 1);
    } else {  // rows 2i, 2i+2 | 2i+4, 2i+6
      r01 = _mm_unpacklo_epi64(_mm_loadu_si128(p + i), _mm_loadu_si128(p + i + 1));
      r23 = _mm_unpacklo_epi64(_mm_loadu_si128(p + i + 2), _mm_loadu_si128(p + i + 3));
    }
    const __m128i key = vq_keys(wp, _mm_subs_epi16(tp, r01), _mm_subs_epi16(tp, r23));
    simd::keep_min(key, idx, best, bestIdx);
    idx = _mm_add_epi32(idx, _mm_set1_epi32(4));
  }
  return vq_finish(best, bestIdx);
}

inline int search_signed(const int16_t* target, const int16_t* wf, const Row4* table, int count) {
  const __m128i tp = vq_row_pattern(target);
  const __m128i wp = vq_row_pattern(wf);
  __m128i best = _mm_set1_epi32(kKeyCap);
  __m128i bestIdx = _mm_setzero_si128();
  __m128i cand = _mm_setr_epi32(0, 2, 4, 6);  // 2 * row (+ 1 for the negated row)
  const auto* p = reinterpret_cast<const __m128i*>(table);
  for (int i = 0; i < count; i += 4) {
    const __m128i r01 = _mm_loadu_si128(p + i / 2);
    const __m128i r23 = _mm_loadu_si128(p + i / 2 + 1);
    const __m128i pos = vq_keys(wp, _mm_subs_epi16(tp, r01), _mm_subs_epi16(tp, r23));
    const __m128i neg = vq_keys(wp, _mm_adds_epi16(tp, r01), _mm_adds_epi16(tp, r23));
    simd::keep_min(pos, cand, best, bestIdx);
    simd::keep_min(neg, _mm_add_epi32(cand, _mm_set1_epi32(1)), best, bestIdx);
    cand = _mm_add_epi32(cand, _mm_set1_epi32(8));
  }
  return vq_finish(best, bestIdx);
}
