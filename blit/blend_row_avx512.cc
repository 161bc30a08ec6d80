// AVX-512 rows of the over blends, 16 pixels a step: the AVX2 rows'
// arithmetic lane for lane (see blend_row_avx2.cc for why each step is
// exact), with mask registers in place of the compare vectors.
#include <immintrin.h>

#include "blit/any_row.h"
#include "blit/blend_row.h"

namespace qbo {
namespace {

// OverShare8 of the AVX2 row on sixteen pairs: the same float quotient
// with the raised numerator and its truncation q, the entry or one more
// (see blend_row_avx2.cc), with the check done in float: for M = 255a, so
// that N = 32767M and D = M + (255 - a)b, the fused e = qD - 32768M is
// exact (qD is exact inside the fused operation, 32768M is M scaled, and
// |e| <= |qD - N| + M < 2^18), and qD > N exactly when e > -M. That takes
// the place of the AVX2 row's two 32-bit integer products.
inline __m512i OverShare16(__m512i upper, __m512i lower) {
  const __m512 a = _mm512_cvtepi32_ps(upper);
  const __m512 b = _mm512_cvtepi32_ps(lower);
  const __m512 neg_m = _mm512_mul_ps(a, _mm512_set1_ps(-255.0f));
  const __m512 d = _mm512_max_ps(
      _mm512_fmsub_ps(_mm512_sub_ps(_mm512_set1_ps(255.0f), a), b, neg_m), _mm512_set1_ps(1.0f));
  const __m512 q =
      _mm512_roundscale_ps(_mm512_div_ps(_mm512_mul_ps(a, _mm512_set1_ps(8355617.0f)), d),
                           _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
  const __m512 e = _mm512_fmadd_ps(q, d, _mm512_mul_ps(neg_m, _mm512_set1_ps(32768.0f)));
  const __mmask16 one_more = _mm512_cmp_ps_mask(e, neg_m, _CMP_GT_OQ);
  return _mm512_cvttps_epi32(_mm512_mask_sub_ps(q, one_more, q, _mm512_set1_ps(1.0f)));
}

// OpaqueShare8x2 of the AVX2 row: w | w << 16 from the alpha byte alone.
template <bool kInverted>
inline __m512i OpaqueShare16x2(__m512i s) {
  const __m512i spread = _mm512_broadcast_i32x4(
      _mm_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15));
  __m512i x = _mm512_shuffle_epi8(s, spread);
  if (kInverted) x = _mm512_ternarylogic_epi32(x, x, x, 0x55);  // not x
  return _mm512_srli_epi16(_mm512_subs_epu16(x, _mm512_set1_epi16(1)), 1);
}

// cd + ((2 x (cs - cd + [cs > cd]) x w) >> 16) in 16-bit lanes.
inline __m512i BlendLanes(__m512i cs, __m512i cd, __m512i w2) {
  __m512i diff = _mm512_sub_epi16(cs, cd);
  diff = _mm512_mask_add_epi16(diff, _mm512_cmpgt_epi16_mask(cs, cd), diff, _mm512_set1_epi16(1));
  diff = _mm512_add_epi16(diff, diff);
  return _mm512_add_epi16(cd, _mm512_mulhi_epi16(diff, w2));
}

template <bool kInverted, bool kOpaqueDst>
inline __m512i Blend16(__m512i s, __m512i d) {
  const __m512i low_bytes = _mm512_set1_epi16(0x00FF);
  __m512i w2, as, ad, upper;
  if (kOpaqueDst) {
    w2 = OpaqueShare16x2<kInverted>(s);
  } else {
    as = _mm512_srli_epi32(s, 24);
    ad = _mm512_srli_epi32(d, 24);
    upper = kInverted ? _mm512_xor_si512(as, _mm512_set1_epi32(255)) : as;
    const __m512i copy_low = _mm512_broadcast_i32x4(
        _mm_setr_epi8(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13));
    w2 = _mm512_shuffle_epi8(OverShare16(upper, ad), copy_low);
  }
  const __m512i even = BlendLanes(_mm512_and_si512(s, low_bytes), _mm512_and_si512(d, low_bytes), w2);
  const __m512i odd = BlendLanes(_mm512_srli_epi16(s, 8), _mm512_srli_epi16(d, 8), w2);
  if (kOpaqueDst) {
    return _mm512_or_si512(_mm512_or_si512(even, _mm512_slli_epi16(odd, 8)),
                           _mm512_set1_epi32(static_cast<int>(0xFF000000u)));
  }
  const __m512i prod = _mm512_srli_epi32(
      _mm512_add_epi32(_mm512_mullo_epi16(as, ad), _mm512_set1_epi32(255)), 8);
  const __m512i alpha = kInverted ? _mm512_add_epi32(upper, prod)
                                  : _mm512_sub_epi32(_mm512_add_epi32(as, ad), prod);
  const __m512i odd_alpha =
      _mm512_mask_blend_epi16(0xAAAAAAAAu, odd, _mm512_slli_epi32(alpha, 16));
  return _mm512_or_si512(even, _mm512_slli_epi16(odd_alpha, 8));
}

// Per block: which pixels have any alpha bit, and which have all of them.
template <bool kInverted>
inline void BlendRow(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const __m512i opaque = _mm512_set1_epi32(static_cast<int>(0xFF000000u));
  // Alpha 255 is a pixel of at least 0xFF000000: one unsigned compare.
  auto all_opaque = [&](__m512i v) { return _mm512_cmpge_epu32_mask(v, opaque) == 0xFFFF; };
  for (std::size_t i = 0; i < width; i += 16) {
    uint8_t* dp = dst + i * 4;
    const __m512i s = _mm512_loadu_si512(src + i * 4);
    const bool s_opaque = all_opaque(s);
    const bool s_clear = _mm512_test_epi32_mask(s, opaque) == 0;
    if (kInverted ? s_opaque : s_clear) continue;
    if (!kInverted && s_opaque) {
      _mm512_storeu_si512(dp, s);
      continue;
    }
    if (kInverted && s_clear) {
      _mm512_storeu_si512(dp, _mm512_or_si512(s, opaque));
      continue;
    }
    const __m512i d = _mm512_loadu_si512(dp);
    _mm512_storeu_si512(dp, all_opaque(d) ? Blend16<kInverted, true>(s, d)
                                          : Blend16<kInverted, false>(s, d));
  }
}

}  // namespace

void BlendOverRow_AVX512(uint8_t* dst, const uint8_t* src, const int32_t*, std::size_t width) {
  BlendRow<false>(dst, src, width);
}

void BlendOverInvertedRow_AVX512(uint8_t* dst, const uint8_t* src, const int32_t*,
                                 std::size_t width) {
  BlendRow<true>(dst, src, width);
}

void BlendOverRow_Any_AVX512(uint8_t* dst, const uint8_t* src, const int32_t* share,
                             std::size_t width) {
  RunAnyPixelRow<16>(BlendOverRow_AVX512, BlendOverRow_Any_AVX2, dst, src, width, share);
}

void BlendOverInvertedRow_Any_AVX512(uint8_t* dst, const uint8_t* src, const int32_t* share,
                                     std::size_t width) {
  RunAnyPixelRow<16>(BlendOverInvertedRow_AVX512, BlendOverInvertedRow_Any_AVX2, dst, src,
                     width, share);
}

}  // namespace qbo
