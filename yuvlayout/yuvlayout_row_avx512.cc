// AVX-512 row of the 4:2:0 to YUYV conversion, 64 pixels a step; the
// layout's other rows keep their AVX2 forms, which already run at the speed
// of the memory they move.
#include <immintrin.h>

#include "yuvlayout/yuvlayout_row.h"

namespace qbo {
namespace {

// U0 V0 U1 V1 .. U31 V31 in pixel order: each 16-bit lane is U | V << 8.
__m512i ChromaPairs(const uint8_t* u, const uint8_t* v) {
  const __m512i wu = _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(u)));
  const __m512i wv = _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(v)));
  return _mm512_or_si512(wu, _mm512_slli_epi16(wv, 8));
}

}  // namespace

// As Yuv420ToYuyvRow_AVX2: the source rows' chroma bytes paired for one
// multiply-add with the weights, the mix (below 256) placed in the high
// byte of each YUYV word. In 128-bit lane L, lo holds pixels 16L..16L+7 and
// hi 16L+8..16L+15; one two-source qword permute per store restores order.
void Yuv420ToYuyvRow_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                            const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w) {
  const __m512i zero = _mm512_setzero_si512();
  const __m512i four = _mm512_set1_epi16(4);
  const __m512i first = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
  const __m512i second = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
  const __m512i weights = _mm512_set1_epi16(static_cast<int16_t>(w->wa | (w->wb << 8)));
  auto mix = [&](__m512i p) {
    const __m512i s = _mm512_add_epi16(_mm512_maddubs_epi16(p, weights), four);
    return _mm512_slli_epi16(_mm512_srli_epi16(s, 3), 8);
  };
  for (int x = 0, h = 0; x < width; x += 64, h += 32) {
    const __m512i uva = ChromaPairs(ua + h, va + h);
    const __m512i uvb = ChromaPairs(ub + h, vb + h);
    const __m512i luma = _mm512_loadu_si512(y + x);
    const __m512i lo = _mm512_or_si512(_mm512_unpacklo_epi8(luma, zero),
                                       mix(_mm512_unpacklo_epi8(uva, uvb)));
    const __m512i hi = _mm512_or_si512(_mm512_unpackhi_epi8(luma, zero),
                                       mix(_mm512_unpackhi_epi8(uva, uvb)));
    _mm512_storeu_si512(dst + 2 * x, _mm512_permutex2var_epi64(lo, first, hi));
    _mm512_storeu_si512(dst + 2 * x + 64, _mm512_permutex2var_epi64(lo, second, hi));
  }
}

// The tail goes through the AVX2 Any row, which finishes with the reference.
void Yuv420ToYuyvRow_Any_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* ua,
                                const uint8_t* ub, const uint8_t* va, const uint8_t* vb,
                                int width, const ChromaBlend* w) {
  const int n = width & ~63;
  if (n) Yuv420ToYuyvRow_AVX512(dst, y, ua, ub, va, vb, n, w);
  const int h = n / 2;
  Yuv420ToYuyvRow_Any_AVX2(dst + 2 * n, y + n, ua + h, ub + h, va + h, vb + h, width - n, w);
}

}  // namespace qbo
