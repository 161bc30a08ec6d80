#include <immintrin.h>

#include "buffer/mask_row.h"

namespace qbo {

void FillMaskColorRow_AVX2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                           std::size_t width) {
  (void)inv_byte;  // entries are re-formed in registers (see kMaskInvByte)
  const __m256i colour_bits = _mm256_set1_epi32(0x00FFFFFF);
  const __m256 inv = _mm256_set1_ps(kMaskInvByte);
  for (std::size_t i = 0; i < width; i += 8) {
    __m256i* p = reinterpret_cast<__m256i*>(dst_argb + 4 * i);
    const __m256i px = _mm256_loadu_si256(p);
    const __m256i m =
        _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(mask + i)));
    const __m256 factor = _mm256_mul_ps(_mm256_cvtepi32_ps(m), inv);
    const __m256 alpha = _mm256_cvtepi32_ps(_mm256_srli_epi32(px, 24));
    const __m256i scaled = _mm256_cvtps_epi32(_mm256_mul_ps(alpha, factor));
    _mm256_storeu_si256(
        p, _mm256_or_si256(_mm256_and_si256(px, colour_bits), _mm256_slli_epi32(scaled, 24)));
  }
}

void MixMaskRow_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const __m256i zero = _mm256_setzero_si256();
  const __m256i round_up = _mm256_set1_epi16(255);
  auto mix = [&](__m256i d, __m256i s) {
    const __m256i q = _mm256_srli_epi16(_mm256_add_epi16(_mm256_mullo_epi16(d, s), round_up), 8);
    return _mm256_sub_epi16(_mm256_add_epi16(d, s), q);
  };
  for (std::size_t i = 0; i < width; i += 32) {
    __m256i* dp = reinterpret_cast<__m256i*>(dst + i);
    const __m256i d = _mm256_loadu_si256(dp);
    const __m256i s = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i));
    // Unpack and pack both work within 128-bit lanes, so the byte order
    // comes back unchanged.
    const __m256i lo = mix(_mm256_unpacklo_epi8(d, zero), _mm256_unpacklo_epi8(s, zero));
    const __m256i hi = mix(_mm256_unpackhi_epi8(d, zero), _mm256_unpackhi_epi8(s, zero));
    _mm256_storeu_si256(dp, _mm256_packus_epi16(lo, hi));
  }
}

void SubMaskRow_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  for (std::size_t i = 0; i < width; i += 32) {
    __m256i* dp = reinterpret_cast<__m256i*>(dst + i);
    const __m256i s = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i));
    _mm256_storeu_si256(dp, _mm256_subs_epu8(_mm256_loadu_si256(dp), s));
  }
}

void FillMaskColorRow_Any_AVX2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                               std::size_t width) {
  const std::size_t body = width & ~std::size_t{7};
  FillMaskColorRow_AVX2(dst_argb, mask, inv_byte, body);
  FillMaskColorRow_C(dst_argb + 4 * body, mask + body, inv_byte, width - body);
}

void MixMaskRow_Any_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const std::size_t body = width & ~std::size_t{31};
  MixMaskRow_AVX2(dst, src, body);
  MixMaskRow_C(dst + body, src + body, width - body);
}

void SubMaskRow_Any_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const std::size_t body = width & ~std::size_t{31};
  SubMaskRow_AVX2(dst, src, body);
  SubMaskRow_C(dst + body, src + body, width - body);
}

}  // namespace qbo
