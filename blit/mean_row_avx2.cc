#include <immintrin.h>

#include "blit/mean_row.h"

namespace qbo {
namespace {

// Sixteen 16-bit lanes as two vectors of eight floats, in lane order.
inline void Widen(__m256i v16, __m256 out[2]) {
  out[0] = _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm256_castsi256_si128(v16)));
  out[1] = _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm256_extracti128_si256(v16, 1)));
}

inline __m256i LoadWords(const uint8_t* p) {
  return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
}

}  // namespace

// The SSE2 row's arithmetic, 32 bytes a step: two groups of sixteen bytes
// widened to 16-bit lanes, middle rows summed with saturation, then floats.
void MeanVertRow_AVX2(float* acc, const uint8_t* const* rows, int32_t n, float w0, float w1,
                      float norm, std::size_t begin, std::size_t end) {
  const __m256 vw0 = _mm256_set1_ps(w0), vw1 = _mm256_set1_ps(w1), vnorm = _mm256_set1_ps(norm);
  // A last row of weight 0 adds +0 to a sum >= 0, which changes nothing:
  // it is not read (an area that ends on a row boundary has one).
  const bool last_counts = w1 != 0.0f;
  for (std::size_t i = begin; i < end; i += 32) {
    for (std::size_t h = 0; h < 32; h += 16) {
      __m256 a[2];
      Widen(LoadWords(rows[0] + i + h), a);
      a[0] = _mm256_mul_ps(vw0, a[0]);
      a[1] = _mm256_mul_ps(vw0, a[1]);
      if (n >= 2) {
        __m256i sum = _mm256_setzero_si256();
        for (int32_t r = 1; r + 1 < n; ++r) sum = _mm256_adds_epu16(sum, LoadWords(rows[r] + i + h));
        __m256 middle[2], last[2];
        Widen(sum, middle);
        a[0] = _mm256_add_ps(a[0], middle[0]);
        a[1] = _mm256_add_ps(a[1], middle[1]);
        if (last_counts) {
          Widen(LoadWords(rows[n - 1] + i + h), last);
          a[0] = _mm256_add_ps(a[0], _mm256_mul_ps(vw1, last[0]));
          a[1] = _mm256_add_ps(a[1], _mm256_mul_ps(vw1, last[1]));
        }
      }
      _mm256_storeu_ps(acc + i + h, _mm256_mul_ps(a[0], vnorm));
      _mm256_storeu_ps(acc + i + h + 8, _mm256_mul_ps(a[1], vnorm));
    }
  }
}

void MeanVertRow_Any_AVX2(float* acc, const uint8_t* const* rows, int32_t n, float w0,
                          float w1, float norm, std::size_t begin, std::size_t end) {
  const std::size_t split = begin + ((end - begin) & ~std::size_t{31});
  if (split != begin) MeanVertRow_AVX2(acc, rows, n, w0, w1, norm, begin, split);
  MeanVertRow_Any_SSE2(acc, rows, n, w0, w1, norm, split, end);
}

}  // namespace qbo
