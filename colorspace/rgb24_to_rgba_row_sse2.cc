#include <emmintrin.h>

#include "colorspace/rgb24_to_rgba_row.h"

namespace qbo {
namespace {

__m128i Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void Store(uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

// Four pixels from the 12 low bytes of `g`: dword i = bytes 3i..3i+3, so
// byte 3 of each dword is the next pixel's first byte until it is replaced.
__m128i SpreadFour(__m128i g) {
  const __m128i p01 = _mm_unpacklo_epi32(g, _mm_srli_si128(g, 3));
  const __m128i p23 = _mm_unpacklo_epi32(_mm_srli_si128(g, 6), _mm_srli_si128(g, 9));
  return _mm_unpacklo_epi64(p01, p23);
}

// Sixteen pixels (48 bytes, three loads) as four groups of twelve bytes.
template <class Finish>
void Expand16(const uint8_t* src, uint8_t* dst, Finish finish) {
  const __m128i x0 = Load(src), x1 = Load(src + 16), x2 = Load(src + 32);
  const __m128i groups[4] = {x0, _mm_or_si128(_mm_srli_si128(x0, 12), _mm_slli_si128(x1, 4)),
                             _mm_or_si128(_mm_srli_si128(x1, 8), _mm_slli_si128(x2, 8)),
                             _mm_srli_si128(x2, 4)};
  for (int i = 0; i < 4; ++i) Store(dst + 16 * i, finish(SpreadFour(groups[i]), i));
}

}  // namespace

void Rgb24ToRgbaRow_SSE2(const uint8_t* src, const uint8_t*, uint8_t* dst, int width) {
  // OR-ing 0xFF into byte 3 overwrites whatever it held.
  const __m128i opaque = _mm_set1_epi32(static_cast<int>(0xFF000000u));
  for (int x = 0; x < width; x += 16, src += 48, dst += 64) {
    Expand16(src, dst, [opaque](__m128i px, int) { return _mm_or_si128(px, opaque); });
  }
}

void Rgb24AlphaToRgbaRow_SSE2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width) {
  const __m128i rgb = _mm_set1_epi32(0x00FFFFFF);
  const __m128i zero = _mm_setzero_si128();
  for (int x = 0; x < width; x += 16, src += 48, dst += 64, alpha += 16) {
    // Each alpha byte moved to the top byte of its own dword.
    const __m128i a = Load(alpha);
    const __m128i a_lo = _mm_unpacklo_epi8(zero, a), a_hi = _mm_unpackhi_epi8(zero, a);
    const __m128i shifted[4] = {_mm_unpacklo_epi16(zero, a_lo), _mm_unpackhi_epi16(zero, a_lo),
                                _mm_unpacklo_epi16(zero, a_hi), _mm_unpackhi_epi16(zero, a_hi)};
    Expand16(src, dst,
             [&](__m128i px, int i) { return _mm_or_si128(_mm_and_si128(px, rgb), shifted[i]); });
  }
}

void Rgb24ToRgbaRow_Any_SSE2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width) {
  RunRgb24RowAny<16>(Rgb24ToRgbaRow_SSE2, Rgb24ToRgbaRow_C, src, alpha, dst, width);
}

void Rgb24AlphaToRgbaRow_Any_SSE2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst,
                                  int width) {
  RunRgb24RowAny<16>(Rgb24AlphaToRgbaRow_SSE2, Rgb24AlphaToRgbaRow_C, src, alpha, dst, width);
}

}  // namespace qbo
