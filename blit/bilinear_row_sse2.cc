#include <emmintrin.h>

#include "blit/bilinear_row.h"

namespace qbo {

// 16 bytes a step, as two registers of eight 16-bit lanes: _mm_mulhi_epu16
// is the reference's (a x b) >> 16, _mm_adds_epu16 its saturating sum.
void BilinearVertRow_SSE2(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                          std::size_t count) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i one = _mm_set1_epi16(1);
  const __m128i w_top = _mm_set1_epi16(static_cast<short>(wt));
  const __m128i w_bottom = _mm_set1_epi16(static_cast<short>(65535 - wt));
  for (std::size_t i = 0; i < count; i += 16) {
    const __m128i t = _mm_loadu_si128(reinterpret_cast<const __m128i*>(top + i));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(bottom + i));
    __m128i halves[2][2] = {{_mm_unpacklo_epi8(t, zero), _mm_unpacklo_epi8(b, zero)},
                            {_mm_unpackhi_epi8(t, zero), _mm_unpackhi_epi8(b, zero)}};
    for (int h = 0; h < 2; ++h) {
      const __m128i upper = _mm_adds_epu16(
          _mm_mulhi_epu16(_mm_add_epi16(halves[h][0], one), w_top), one);
      const __m128i lower = _mm_mulhi_epu16(_mm_add_epi16(halves[h][1], one), w_bottom);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(v + i + 8 * h), _mm_adds_epu16(upper, lower));
    }
  }
}

void BilinearVertRow_Any_SSE2(uint16_t* v, const uint8_t* top, const uint8_t* bottom,
                              uint32_t wt, std::size_t count) {
  const std::size_t whole = count & ~std::size_t{15};
  if (whole) BilinearVertRow_SSE2(v, top, bottom, wt, whole);
  BilinearVertRow_C(v + whole, top + whole, bottom + whole, wt, count - whole);
}

namespace {

// Vl x wl | Vr x wr of one pixel: the eight lanes are the left column's
// four bytes then the right column's, one 16-byte load, against the
// pixel's eight weight lanes.
inline __m128i Weighted(const uint16_t* v, int32_t col, const uint16_t* w) {
  const __m128i lr = _mm_loadu_si128(reinterpret_cast<const __m128i*>(v + 4 * static_cast<std::ptrdiff_t>(col)));
  return _mm_mulhi_epu16(lr, _mm_loadu_si128(reinterpret_cast<const __m128i*>(w)));
}

}  // namespace

// Four pixels a step. Sums are at most 1020, so the signed pack saturates
// them to 0..255 exactly like the reference's min(255, sum).
void BilinearHorizRow_SSE2(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                           const uint16_t* weights, std::size_t width) {
  for (std::size_t i = 0; i < width; i += 4) {
    const uint16_t* w = weights + 8 * i;
    const __m128i a = Weighted(v, cols[i], w);
    const __m128i b = Weighted(v, cols[i + 1], w + 8);
    const __m128i c = Weighted(v, cols[i + 2], w + 16);
    const __m128i d = Weighted(v, cols[i + 3], w + 24);
    const __m128i ab = _mm_adds_epu16(_mm_unpacklo_epi64(a, b), _mm_unpackhi_epi64(a, b));
    const __m128i cd = _mm_adds_epu16(_mm_unpacklo_epi64(c, d), _mm_unpackhi_epi64(c, d));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i * 4), _mm_packus_epi16(ab, cd));
  }
}

void BilinearHorizRow_Any_SSE2(uint8_t* dst, const uint16_t* v, const int32_t* cols,
                               const uint16_t* weights, std::size_t width) {
  const std::size_t whole = width & ~std::size_t{3};
  if (whole) BilinearHorizRow_SSE2(dst, v, cols, weights, whole);
  BilinearHorizRow_C(dst + whole * 4, v, cols + whole, weights + 8 * whole, width - whole);
}

}  // namespace qbo
