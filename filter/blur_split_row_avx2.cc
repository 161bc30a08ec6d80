// AVX2 blur and split rows: the SSE2 arithmetic on 256-bit registers.
// Unpacking and packing both work within 128-bit lanes, so every byte comes
// back to its own column.
#include <immintrin.h>

#include "filter/blur_split_row.h"

namespace qbo {
namespace {

inline __m256i Load(const uint8_t* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

inline __m256i BlurHalf(__m256i a, __m256i b, __m256i c, const __m256i* q) {
  const __m256i t = _mm256_add_epi16(
      _mm256_add_epi16(_mm256_mulhi_epi16(_mm256_slli_epi16(a, 7), q[0]),
                       _mm256_mulhi_epi16(_mm256_slli_epi16(b, 7), q[1])),
      _mm256_add_epi16(_mm256_mulhi_epi16(_mm256_slli_epi16(c, 7), q[2]),
                       _mm256_set1_epi16(16)));
  return _mm256_and_si256(_mm256_srli_epi16(t, 5), _mm256_set1_epi16(0xFF));
}

}  // namespace

void BlurRow3_AVX2(uint8_t* dst, const uint8_t* above, const uint8_t* centre,
                   const uint8_t* below, int32_t pixels, const BlurWeights* q) {
  const __m256i w[3] = {_mm256_set1_epi16(q->q[0]), _mm256_set1_epi16(q->q[1]),
                        _mm256_set1_epi16(q->q[2])};
  const __m256i zero = _mm256_setzero_si256();
  const int32_t bytes = pixels * 4;
  int32_t i = 0;
  for (; i + 32 <= bytes; i += 32) {
    const __m256i a = Load(above + i), b = Load(centre + i), c = Load(below + i);
    const __m256i lo = BlurHalf(_mm256_unpacklo_epi8(a, zero), _mm256_unpacklo_epi8(b, zero),
                                _mm256_unpacklo_epi8(c, zero), w);
    const __m256i hi = BlurHalf(_mm256_unpackhi_epi8(a, zero), _mm256_unpackhi_epi8(b, zero),
                                _mm256_unpackhi_epi8(c, zero), w);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + i), _mm256_packus_epi16(lo, hi));
  }
  BlurRow3_SSE2(dst + i, above + i, centre + i, below + i, (bytes - i) / 4, q);
}

// 16 pairs a step, as the SSE2 row; packing within lanes leaves the 64-bit
// quarters in the order 0, 2, 1, 3, which one permute puts right.
void YuyvSplitRow_AVX2(uint8_t* y, uint8_t* u, uint8_t* v, const uint8_t* src, int32_t pairs) {
  const __m256i low_bytes = _mm256_set1_epi16(0xFF);
  int32_t k = 0;
  for (; k + 16 <= pairs; k += 16) {
    const __m256i a = Load(src + 4 * k), b = Load(src + 4 * k + 32);
    const __m256i luma = _mm256_permute4x64_epi64(
        _mm256_packus_epi16(_mm256_and_si256(a, low_bytes), _mm256_and_si256(b, low_bytes)), 0xD8);
    const __m256i chroma = _mm256_permute4x64_epi64(
        _mm256_packus_epi16(_mm256_srli_epi16(a, 8), _mm256_srli_epi16(b, 8)), 0xD8);
    // chroma = U0 V0 ... U15 V15; the second pack gives [U0-7 V0-7 | U8-15 V8-15].
    const __m256i uv = _mm256_permute4x64_epi64(
        _mm256_packus_epi16(_mm256_and_si256(chroma, low_bytes), _mm256_srli_epi16(chroma, 8)),
        0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(y + 2 * k), luma);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(u + k), _mm256_castsi256_si128(uv));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(v + k), _mm256_extracti128_si256(uv, 1));
  }
  YuyvSplitRow_SSE2(y + 2 * k, u + k, v + k, src + 4 * k, pairs - k);
}

}  // namespace qbo
