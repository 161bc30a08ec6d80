// SSE2 rows of planar YUV to 32-bit, eight pixels a step, on the shared
// arithmetic of yuv_to_rgb_core_sse2.h.
#include <emmintrin.h>

#include <cstring>

#include "colorspace/planar_to_rgba_row.h"
#include "colorspace/yuv_to_rgb_core_sse2.h"

namespace qbo {

namespace {

__m128i Load4(const uint8_t* p) {
  int32_t word;
  std::memcpy(&word, p, 4);
  return _mm_cvtsi32_si128(word);
}

// U0 V0 U1 V1 U2 V2 U3 V3 as 16-bit lanes from four U and four V bytes.
__m128i ChromaWords(const uint8_t* u, const uint8_t* v) {
  return _mm_unpacklo_epi8(_mm_unpacklo_epi8(Load4(u), Load4(v)), _mm_setzero_si128());
}

template <bool kBgra>
void PlanarToPixelsRow(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                       int width, const YuvToRgbVectors& vectors) {
  const YuvToRgbRegs_SSE2 regs = LoadYuvToRgbRegs_SSE2(vectors);
  for (int x = 0; x < width; x += 8, dst += 32, y += 8, u += 4, v += 4) {
    // The next pair's samples sit one byte on: u[1..4] (u[4] is the first
    // sample of the next block, present by contract).
    __m128i du, dv;
    PixelChroma_SSE2(ChromaWords(u, v), ChromaWords(u + 1, v + 1), &du, &dv);
    const __m128i luma = _mm_unpacklo_epi8(
        _mm_loadl_epi64(reinterpret_cast<const __m128i*>(y)), _mm_setzero_si128());
    __m128i lo, hi;
    YuvToPixels8_SSE2<kBgra>(luma, du, dv, regs, &lo, &hi);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), lo);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 16), hi);
  }
}

}  // namespace

void PlanarToRgbaRow_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<false>(dst, y, u, v, width, *vectors);
}

void PlanarToBgraRow_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<true>(dst, y, u, v, width, *vectors);
}

// Whole blocks except the one holding the row's last pixel, then that
// block through the same row on a padded copy (see PaddedTail).
template <PlanarToPixelsRowFn kBlockRow>
void AnyRow(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v, int width,
            const YuvToRgbVectors* vectors) {
  const int n = width > 0 ? (width - 1) & ~7 : 0;
  if (n) kBlockRow(dst, y, u, v, n, vectors);
  PaddedTail<8>(kBlockRow, dst + 4 * n, y + n, u + n / 2, v + n / 2, width - n, vectors);
}

void PlanarToRgbaRow_Any_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, const YuvToRgbVectors* vectors) {
  AnyRow<PlanarToRgbaRow_SSE2>(dst, y, u, v, width, vectors);
}

void PlanarToBgraRow_Any_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, const YuvToRgbVectors* vectors) {
  AnyRow<PlanarToBgraRow_SSE2>(dst, y, u, v, width, vectors);
}

}  // namespace qbo
