#include <immintrin.h>

#include "colorspace/rgb24_to_rgba_row.h"

namespace qbo {
namespace {

// Eight pixels (24 bytes): the low half loads bytes 0-15 and spreads bytes
// 0-11, the high half loads bytes 8-23 and spreads its bytes 4-15, so no
// byte past the 24 is read. Byte 3 of each pixel comes out 0.
__m256i Spread8(const uint8_t* src) {
  const __m256i bytes = _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(src + 8),
                                            reinterpret_cast<const __m128i*>(src));
  const __m256i spread = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                                          4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15, -1);
  return _mm256_shuffle_epi8(bytes, spread);
}

void Store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }

__m256i AlphaOf8(const uint8_t* alpha) {
  const __m128i a = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(alpha));
  return _mm256_slli_epi32(_mm256_cvtepu8_epi32(a), 24);
}

}  // namespace

void Rgb24ToRgbaRow_AVX2(const uint8_t* src, const uint8_t*, uint8_t* dst, int width) {
  const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xFF000000u));
  for (int x = 0; x < width; x += 16, src += 48, dst += 64) {
    Store(dst, _mm256_or_si256(Spread8(src), opaque));
    Store(dst + 32, _mm256_or_si256(Spread8(src + 24), opaque));
  }
}

void Rgb24AlphaToRgbaRow_AVX2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width) {
  for (int x = 0; x < width; x += 16, src += 48, dst += 64, alpha += 16) {
    Store(dst, _mm256_or_si256(Spread8(src), AlphaOf8(alpha)));
    Store(dst + 32, _mm256_or_si256(Spread8(src + 24), AlphaOf8(alpha + 8)));
  }
}

void Rgb24ToRgbaRow_Any_AVX2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width) {
  RunRgb24RowAny<16>(Rgb24ToRgbaRow_AVX2, Rgb24ToRgbaRow_C, src, alpha, dst, width);
}

void Rgb24AlphaToRgbaRow_Any_AVX2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst,
                                  int width) {
  RunRgb24RowAny<16>(Rgb24AlphaToRgbaRow_AVX2, Rgb24AlphaToRgbaRow_C, src, alpha, dst, width);
}

}  // namespace qbo
