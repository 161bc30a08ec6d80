// AVX2 rows of planar YUV to 32-bit, sixteen pixels a step, on the shared
// arithmetic of yuv_to_rgb_core_avx2.h.
#include <immintrin.h>

#include "colorspace/planar_to_rgba_row.h"
#include "colorspace/yuv_to_rgb_core_avx2.h"

namespace qbo {

namespace {

__m128i Load8(const uint8_t* p) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)); }

// U0 V0 .. U7 V7 as 16-bit lanes in natural order from eight U and eight V
// bytes: byte-interleave, then widen across the whole register.
__m256i ChromaWords(const uint8_t* u, const uint8_t* v) {
  return _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(Load8(u), Load8(v)));
}

template <bool kBgra>
void PlanarToPixelsRow(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                       int width, const YuvToRgbVectors& vectors) {
  const YuvToRgbRegs_AVX2 regs = LoadYuvToRgbRegs_AVX2(vectors);
  for (int x = 0; x < width; x += 16, dst += 64, y += 16, u += 8, v += 8) {
    // Next-pair samples are u[1..8]; u[8] opens the next block and is
    // present by contract.
    __m256i du, dv;
    PixelChroma_AVX2(ChromaWords(u, v), ChromaWords(u + 1, v + 1), &du, &dv);
    const __m256i luma =
        _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(y)));
    __m256i first, second;
    YuvToPixels16_AVX2<kBgra>(luma, du, dv, regs, &first, &second);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), first);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 32), second);
  }
}

}  // namespace

void PlanarToRgbaRow_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<false>(dst, y, u, v, width, *vectors);
}

void PlanarToBgraRow_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<true>(dst, y, u, v, width, *vectors);
}

// Whole blocks except the one holding the row's last pixel, then that
// block through the same row on a padded copy (see PaddedTail).
void PlanarToRgbaRow_Any_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, const YuvToRgbVectors* vectors) {
  const int n = width > 0 ? (width - 1) & ~15 : 0;
  if (n) PlanarToRgbaRow_AVX2(dst, y, u, v, n, vectors);
  PaddedTail<16>(PlanarToRgbaRow_AVX2, dst + 4 * n, y + n, u + n / 2, v + n / 2, width - n,
                 vectors);
}

void PlanarToBgraRow_Any_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, const YuvToRgbVectors* vectors) {
  const int n = width > 0 ? (width - 1) & ~15 : 0;
  if (n) PlanarToBgraRow_AVX2(dst, y, u, v, n, vectors);
  PaddedTail<16>(PlanarToBgraRow_AVX2, dst + 4 * n, y + n, u + n / 2, v + n / 2, width - n,
                 vectors);
}

}  // namespace qbo
