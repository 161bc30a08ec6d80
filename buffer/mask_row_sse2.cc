#include <emmintrin.h>

#include "buffer/mask_row.h"

namespace qbo {

void FillMaskColorRow_SSE2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                           std::size_t width) {
  (void)inv_byte;  // entries are re-formed in registers (see kMaskInvByte)
  const __m128i colour_bits = _mm_set1_epi32(0x00FFFFFF);
  const __m128i zero = _mm_setzero_si128();
  const __m128 inv = _mm_set1_ps(kMaskInvByte);
  for (std::size_t i = 0; i < width; i += 4) {
    __m128i* p = reinterpret_cast<__m128i*>(dst_argb + 4 * i);
    const __m128i px = _mm_loadu_si128(p);
    int32_t m4;
    __builtin_memcpy(&m4, mask + i, 4);
    const __m128i m = _mm_unpacklo_epi16(_mm_unpacklo_epi8(_mm_cvtsi32_si128(m4), zero), zero);
    const __m128 factor = _mm_mul_ps(_mm_cvtepi32_ps(m), inv);
    const __m128 alpha = _mm_cvtepi32_ps(_mm_srli_epi32(px, 24));
    // cvtps2dq rounds half to even under the default rounding mode, as
    // lrint does in the reference.
    const __m128i scaled = _mm_cvtps_epi32(_mm_mul_ps(alpha, factor));
    _mm_storeu_si128(p, _mm_or_si128(_mm_and_si128(px, colour_bits), _mm_slli_epi32(scaled, 24)));
  }
}

void MixMaskRow_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i round_up = _mm_set1_epi16(255);
  // d x s + 255 <= 65,280 fits an unsigned 16-bit lane, so the low half of
  // the product and a logical shift give the reference quotient.
  auto mix = [&](__m128i d, __m128i s) {
    const __m128i q = _mm_srli_epi16(_mm_add_epi16(_mm_mullo_epi16(d, s), round_up), 8);
    return _mm_sub_epi16(_mm_add_epi16(d, s), q);
  };
  for (std::size_t i = 0; i < width; i += 16) {
    __m128i* dp = reinterpret_cast<__m128i*>(dst + i);
    const __m128i d = _mm_loadu_si128(dp);
    const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i));
    const __m128i lo = mix(_mm_unpacklo_epi8(d, zero), _mm_unpacklo_epi8(s, zero));
    const __m128i hi = mix(_mm_unpackhi_epi8(d, zero), _mm_unpackhi_epi8(s, zero));
    _mm_storeu_si128(dp, _mm_packus_epi16(lo, hi));
  }
}

void SubMaskRow_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  for (std::size_t i = 0; i < width; i += 16) {
    __m128i* dp = reinterpret_cast<__m128i*>(dst + i);
    const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i));
    _mm_storeu_si128(dp, _mm_subs_epu8(_mm_loadu_si128(dp), s));
  }
}

void FillMaskColorRow_Any_SSE2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                               std::size_t width) {
  const std::size_t body = width & ~std::size_t{3};
  FillMaskColorRow_SSE2(dst_argb, mask, inv_byte, body);
  FillMaskColorRow_C(dst_argb + 4 * body, mask + body, inv_byte, width - body);
}

void MixMaskRow_Any_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const std::size_t body = width & ~std::size_t{15};
  MixMaskRow_SSE2(dst, src, body);
  MixMaskRow_C(dst + body, src + body, width - body);
}

void SubMaskRow_Any_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const std::size_t body = width & ~std::size_t{15};
  SubMaskRow_SSE2(dst, src, body);
  SubMaskRow_C(dst + body, src + body, width - body);
}

}  // namespace qbo
