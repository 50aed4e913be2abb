// The QMF delay line of 24 words in three SSE registers (included by
// g722/g722_ops.h inside the level namespace at the SSSE3 levels and
// above). The two 12-term sums are formed with pmaddwd against the
// coefficients with every other word zeroed: no partial sum can reach 2^31
// (sum |C[even]| x 32768 = 12964 x 32768 < 2^30), so these plain sums equal
// the reference's saturating ones exactly.
class QmfLine {
 public:
  explicit QmfLine(const int16_t* delay) {
    const __m128i evenMask = _mm_set1_epi32(0x0000FFFF);
    for (int k = 0; k < 3; ++k) {
      d_[k] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(delay + 8 * k));
      const __m128i c = _mm_loadu_si128(reinterpret_cast<const __m128i*>(t::kQmfCoef + 8 * k));
      even_[k] = _mm_and_si128(c, evenMask);
      odd_[k] = _mm_andnot_si128(evenMask, c);
    }
  }
  void store(int16_t* delay) const {
    for (int k = 0; k < 3; ++k) _mm_storeu_si128(reinterpret_cast<__m128i*>(delay + 8 * k), d_[k]);
  }
  // D[1] = older, D[0] = newer; A and B; then D[2..23] = D[0..21].
  void step(int16_t older, int16_t newer, int32_t* a, int32_t* b) {
    d_[0] = _mm_insert_epi16(_mm_insert_epi16(d_[0], newer, 0), older, 1);
    __m128i sa = _mm_madd_epi16(d_[0], even_[0]), sb = _mm_madd_epi16(d_[0], odd_[0]);
    for (int k = 1; k < 3; ++k) {
      sa = _mm_add_epi32(sa, _mm_madd_epi16(d_[k], even_[k]));
      sb = _mm_add_epi32(sb, _mm_madd_epi16(d_[k], odd_[k]));
    }
    *a = simd::hsum_i32(sa);
    *b = simd::hsum_i32(sb);
    d_[2] = _mm_alignr_epi8(d_[2], d_[1], 12);
    d_[1] = _mm_alignr_epi8(d_[1], d_[0], 12);
    d_[0] = _mm_or_si128(_mm_slli_si128(d_[0], 4), _mm_and_si128(d_[0], _mm_setr_epi32(-1, 0, 0, 0)));
  }

 private:
  __m128i d_[3], even_[3], odd_[3];
};
