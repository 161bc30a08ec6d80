#include <immintrin.h>

#include "blit/zoom_row.h"

namespace qbo {

namespace {

// Eight columns of pair bytes widened so each 32-bit lane holds
// (left | right << 16); split into left and right samples.
inline void SplitPairs(const uint8_t* pairs, __m256i* left, __m256i* right) {
  const __m256i wide =
      _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(pairs)));
  *left = _mm256_and_si256(wide, _mm256_set1_epi32(0xFFFF));
  *right = _mm256_srli_epi32(wide, 16);
}

inline __m256d HalfPd(__m256 w, int half) {
  return _mm256_cvtps_pd(half ? _mm256_extractf128_ps(w, 1) : _mm256_castps256_ps128(w));
}
inline __m256d HalfPd(__m256i p, int half) {
  return _mm256_cvtepi32_pd(half ? _mm256_extracti128_si256(p, 1) : _mm256_castsi256_si128(p));
}

// Four columns summed in the reference order and truncated.
inline __m128i SumHalf(const __m256 w[4], const __m256i p[4], int half) {
  __m256d v = _mm256_add_pd(_mm256_mul_pd(HalfPd(w[0], half), HalfPd(p[0], half)),
                            _mm256_mul_pd(HalfPd(w[1], half), HalfPd(p[1], half)));
  v = _mm256_add_pd(v, _mm256_mul_pd(HalfPd(w[2], half), HalfPd(p[2], half)));
  v = _mm256_add_pd(v, _mm256_mul_pd(HalfPd(w[3], half), HalfPd(p[3], half)));
  return _mm256_cvttpd_epi32(v);
}

// Two 32-bit pixels (columns c, c + 1) from 16 bytes of each pair row:
// dwords [p00(c), p01(c), p00(c+1), p01(c+1)]. The lanes of the result are
// column c's four bytes, then column c + 1's.
inline __m256i BlendTwoPixels(const uint8_t* upper, const uint8_t* lower, const float* fx,
                              __m256 gy, __m256 fy) {
  const __m128i u = _mm_loadu_si128(reinterpret_cast<const __m128i*>(upper));
  const __m128i l = _mm_loadu_si128(reinterpret_cast<const __m128i*>(lower));
  auto lefts = [](__m128i v) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_shuffle_epi32(v, _MM_SHUFFLE(3, 1, 2, 0))));
  };
  auto rights = [](__m128i v) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_shuffle_epi32(v, _MM_SHUFFLE(2, 0, 3, 1))));
  };
  const __m256 p00 = lefts(u), p01 = rights(u), p10 = lefts(l), p11 = rights(l);
  const __m128 two = _mm_castsi128_ps(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(fx)));
  const __m256 f = _mm256_permutevar8x32_ps(_mm256_castps128_ps256(two),
                                            _mm256_setr_epi32(0, 0, 0, 0, 1, 1, 1, 1));
  const __m256 g = _mm256_sub_ps(_mm256_set1_ps(1.0f), f);
  const __m256 top = _mm256_add_ps(_mm256_mul_ps(_mm256_mul_ps(p00, g), gy),
                                   _mm256_mul_ps(_mm256_mul_ps(p01, f), gy));
  const __m256 bottom = _mm256_add_ps(_mm256_mul_ps(_mm256_mul_ps(p10, g), fy),
                                      _mm256_mul_ps(_mm256_mul_ps(p11, f), fy));
  return _mm256_cvtps_epi32(_mm256_add_ps(top, bottom));
}

}  // namespace

void Zoom8Row_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                   float fy, std::size_t width) {
  const __m256 one = _mm256_set1_ps(1.0f);
  const __m256 gyv = _mm256_set1_ps(1.0f - fy), fyv = _mm256_set1_ps(fy);
  for (std::size_t c = 0; c < width; c += 8) {
    const __m256 f = _mm256_loadu_ps(fx + c), g = _mm256_sub_ps(one, f);
    const __m256 w[4] = {_mm256_mul_ps(gyv, g), _mm256_mul_ps(gyv, f), _mm256_mul_ps(g, fyv),
                         _mm256_mul_ps(fyv, f)};
    __m256i p[4];
    SplitPairs(upper + 2 * c, &p[0], &p[1]);
    SplitPairs(lower + 2 * c, &p[2], &p[3]);
    const __m128i words = _mm_packs_epi32(SumHalf(w, p, 0), SumHalf(w, p, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + c), _mm_packus_epi16(words, words));
  }
}

void Zoom32Row_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                    float fy, std::size_t width) {
  const __m256 gy = _mm256_set1_ps(1.0f - fy), fyv = _mm256_set1_ps(fy);
  // Packing works within 128-bit lanes: after it the dwords hold columns
  // (c, c+2, c, c+2 | c+1, c+3, c+1, c+3); dwords 0, 4, 1, 5 restore order.
  const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 0, 4, 1, 5);
  for (std::size_t c = 0; c < width; c += 4) {
    const __m256i r01 = BlendTwoPixels(upper + 8 * c, lower + 8 * c, fx + c, gy, fyv);
    const __m256i r23 = BlendTwoPixels(upper + 8 * c + 16, lower + 8 * c + 16, fx + c + 2, gy, fyv);
    const __m256i words = _mm256_packs_epi32(r01, r23);
    const __m256i bytes = _mm256_permutevar8x32_epi32(_mm256_packus_epi16(words, words), order);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * c), _mm256_castsi256_si128(bytes));
  }
}

void Zoom8Row_Any_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                       float fy, std::size_t width) {
  const std::size_t body = width & ~std::size_t{7};
  Zoom8Row_AVX2(dst, upper, lower, fx, fy, body);
  Zoom8Row_C(dst + body, upper + 2 * body, lower + 2 * body, fx + body, fy, width - body);
}

void Zoom32Row_Any_AVX2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                        float fy, std::size_t width) {
  const std::size_t body = width & ~std::size_t{3};
  Zoom32Row_AVX2(dst, upper, lower, fx, fy, body);
  Zoom32Row_C(dst + 4 * body, upper + 8 * body, lower + 8 * body, fx + body, fy, width - body);
}

}  // namespace qbo
