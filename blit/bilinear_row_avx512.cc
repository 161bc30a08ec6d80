// AVX-512 vertical row of the bilinear stretch: the AVX2 row's arithmetic
// lane for lane (_mm512_mulhi_epu16 is the reference's (a x b) >> 16,
// _mm512_adds_epu16 its saturating sum). The horizontal row keeps its AVX2
// form: a 512-bit one that takes each group's column pairs out of a
// 16-column window by permutes measured slower here, bound by the
// permutes and the window loads that straddle cache lines.
#include <immintrin.h>

#include "blit/bilinear_row.h"

namespace qbo {

// 64 bytes a step, as two registers of 32 16-bit lanes.
void BilinearVertRow_AVX512(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                            std::size_t count) {
  const __m512i one = _mm512_set1_epi16(1);
  const __m512i w_top = _mm512_set1_epi16(static_cast<short>(wt));
  const __m512i w_bottom = _mm512_set1_epi16(static_cast<short>(65535 - wt));
  for (std::size_t i = 0; i < count; i += 64) {
    for (int h = 0; h < 2; ++h) {
      const __m512i t = _mm512_cvtepu8_epi16(
          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(top + i + 32 * h)));
      const __m512i b = _mm512_cvtepu8_epi16(
          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bottom + i + 32 * h)));
      const __m512i upper =
          _mm512_adds_epu16(_mm512_mulhi_epu16(_mm512_add_epi16(t, one), w_top), one);
      const __m512i lower = _mm512_mulhi_epu16(_mm512_add_epi16(b, one), w_bottom);
      _mm512_storeu_si512(v + i + 32 * h, _mm512_adds_epu16(upper, lower));
    }
  }
}

void BilinearVertRow_Any_AVX512(uint16_t* v, const uint8_t* top, const uint8_t* bottom, uint32_t wt,
                                std::size_t count) {
  const std::size_t whole = count & ~std::size_t{63};
  if (whole) BilinearVertRow_AVX512(v, top, bottom, wt, whole);
  BilinearVertRow_Any_AVX2(v + whole, top + whole, bottom + whole, wt, count - whole);
}

}  // namespace qbo
