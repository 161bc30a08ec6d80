#include <immintrin.h>

#include "blit/any_row.h"
#include "blit/blend_row.h"

namespace qbo {
namespace {

// Eight pixels; the arithmetic is that of the SSE2 row (see there), in two
// 128-bit lanes. Unpacks and packs stay inside each lane, so pixels 0, 1 |
// 4, 5 and 2, 3 | 6, 7 meet their own weights and come back in order.
template <bool kInverted>
inline __m256i Blend8(__m256i s, __m256i d, const int32_t* share) {
  const __m256i zero = _mm256_setzero_si256();
  const __m256i as = _mm256_srli_epi32(s, 24);
  const __m256i ad = _mm256_srli_epi32(d, 24);
  const __m256i upper = kInverted ? _mm256_xor_si256(as, _mm256_set1_epi32(255)) : as;
  const __m256i idx = _mm256_or_si256(_mm256_slli_epi32(upper, 8), ad);
  const __m256i w = _mm256_i32gather_epi32(share, idx, 4);
  const __m256i w2 = _mm256_or_si256(w, _mm256_slli_epi32(w, 16));
  const __m256i w_lo = _mm256_unpacklo_epi32(w2, w2);
  const __m256i w_hi = _mm256_unpackhi_epi32(w2, w2);

  const __m256i s_lo = _mm256_unpacklo_epi8(s, zero), s_hi = _mm256_unpackhi_epi8(s, zero);
  const __m256i d_lo = _mm256_unpacklo_epi8(d, zero), d_hi = _mm256_unpackhi_epi8(d, zero);
  __m256i diff_lo = _mm256_sub_epi16(_mm256_sub_epi16(s_lo, d_lo), _mm256_cmpgt_epi16(s_lo, d_lo));
  __m256i diff_hi = _mm256_sub_epi16(_mm256_sub_epi16(s_hi, d_hi), _mm256_cmpgt_epi16(s_hi, d_hi));
  diff_lo = _mm256_add_epi16(diff_lo, diff_lo);
  diff_hi = _mm256_add_epi16(diff_hi, diff_hi);
  const __m256i r_lo = _mm256_add_epi16(d_lo, _mm256_mulhi_epi16(diff_lo, w_lo));
  const __m256i r_hi = _mm256_add_epi16(d_hi, _mm256_mulhi_epi16(diff_hi, w_hi));
  const __m256i colour = _mm256_packus_epi16(r_lo, r_hi);

  const __m256i prod = _mm256_srli_epi32(
      _mm256_add_epi32(_mm256_mullo_epi16(as, ad), _mm256_set1_epi32(255)), 8);
  const __m256i alpha = kInverted ? _mm256_add_epi32(upper, prod)
                                  : _mm256_sub_epi32(_mm256_add_epi32(as, ad), prod);
  return _mm256_or_si256(_mm256_and_si256(colour, _mm256_set1_epi32(0x00FFFFFF)),
                         _mm256_slli_epi32(alpha, 24));
}

template <bool kInverted>
inline void BlendRow(uint8_t* dst, const uint8_t* src, const int32_t* share, std::size_t width) {
  const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xFF000000u));
  for (std::size_t i = 0; i < width; i += 8) {
    __m256i* dp = reinterpret_cast<__m256i*>(dst + i * 4);
    const __m256i s = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i * 4));
    const __m256i sa = _mm256_and_si256(s, opaque);
    const bool all_opaque = _mm256_movemask_epi8(_mm256_cmpeq_epi32(sa, opaque)) == -1;
    const bool all_clear = _mm256_testz_si256(s, opaque) != 0;
    if (kInverted ? all_opaque : all_clear) continue;
    if (!kInverted && all_opaque) {
      _mm256_storeu_si256(dp, s);
      continue;
    }
    if (kInverted && all_clear) {
      _mm256_storeu_si256(dp, _mm256_or_si256(s, opaque));
      continue;
    }
    _mm256_storeu_si256(dp, Blend8<kInverted>(s, _mm256_loadu_si256(dp), share));
  }
}

}  // namespace

void BlendOverRow_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                       std::size_t width) {
  BlendRow<false>(dst, src, share, width);
}

void BlendOverInvertedRow_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                               std::size_t width) {
  BlendRow<true>(dst, src, share, width);
}

// The tail runs the SSE2 row on whole quads first, then the reference.
void BlendOverRow_Any_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                           std::size_t width) {
  RunAnyPixelRow<8>(BlendOverRow_AVX2, BlendOverRow_Any_SSE2, dst, src, width, share);
}

void BlendOverInvertedRow_Any_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                                   std::size_t width) {
  RunAnyPixelRow<8>(BlendOverInvertedRow_AVX2, BlendOverInvertedRow_Any_SSE2, dst, src, width,
                    share);
}

}  // namespace qbo
