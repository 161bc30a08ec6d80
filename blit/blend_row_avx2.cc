#include <immintrin.h>

#include "blit/any_row.h"
#include "blit/blend_row.h"

namespace qbo {
namespace {

// The over-share entry of eight (upper, lower) alpha pairs, computed
// instead of gathered: floor(a x 8355585 / D), D = 255(a + b) - ab, 0 where
// D = 0. D and a are exact in float. The numerator constant is raised by
// 2^-18 (8355617 = 8355585 x (1 + 2^-18), rounded), more than the three
// roundings' error (each 2^-24 relative), so the float quotient lies above
// the true one by less than 32767 x 2^-17 < 1: its truncation is the entry
// or one more. The exact qD (32-bit lanes, qD < 2^31) exceeds N only in
// the second case, and that compare's -1 takes the one back.
// D = 0 is raised to 1, where N = 0 gives 0. An exhaustive test over all
// 65536 pairs holds it to the table.
inline __m256i OverShare8(__m256i upper, __m256i lower) {
  const __m256 a = _mm256_cvtepi32_ps(upper);
  const __m256 b = _mm256_cvtepi32_ps(lower);
  const __m256 d = _mm256_max_ps(
      _mm256_sub_ps(_mm256_mul_ps(_mm256_add_ps(a, b), _mm256_set1_ps(255.0f)), _mm256_mul_ps(a, b)),
      _mm256_set1_ps(1.0f));
  const __m256i q = _mm256_cvttps_epi32(_mm256_div_ps(_mm256_mul_ps(a, _mm256_set1_ps(8355617.0f)), d));
  const __m256i n = _mm256_mullo_epi32(upper, _mm256_set1_epi32(8355585));
  const __m256i qd = _mm256_mullo_epi32(q, _mm256_cvtps_epi32(d));
  return _mm256_add_epi32(q, _mm256_cmpgt_epi32(qd, n));
}

// w | w << 16 per pixel over an opaque lower layer, straight from the alpha
// bytes. There OverShare[a][255] = floor(32767a / 255), and with x = 257a
// that is max(x - 1, 0) >> 1, as 32767a / 255 = x / 2 - a / 510: for odd
// a that is (x - 1) / 2 plus 1/2 - a/510, in [0, 1/2); for even a > 0 it
// is x / 2 minus a part in (0, 1); a = 0 saturates to 0. The shuffle
// copies the alpha byte into all four bytes of its pixel, giving x in both
// 16-bit halves; 257(255 - a) is x's complement.
template <bool kInverted>
inline __m256i OpaqueShare8x2(__m256i s) {
  const __m256i spread = _mm256_setr_epi8(3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15,
                                          3, 3, 3, 3, 7, 7, 7, 7, 11, 11, 11, 11, 15, 15, 15, 15);
  __m256i x = _mm256_shuffle_epi8(s, spread);
  if (kInverted) x = _mm256_xor_si256(x, _mm256_set1_epi32(-1));
  return _mm256_srli_epi16(_mm256_subs_epu16(x, _mm256_set1_epi16(1)), 1);
}

// cd + ((2 x (cs - cd + [cs > cd]) x w) >> 16) in 16-bit lanes: 2 x diff
// lies in -510..512 and w in 0..32767, so _mm256_mulhi_epi16 is exactly the
// reference's arithmetic shift.
inline __m256i BlendLanes(__m256i cs, __m256i cd, __m256i w2) {
  __m256i diff = _mm256_sub_epi16(_mm256_sub_epi16(cs, cd), _mm256_cmpgt_epi16(cs, cd));
  diff = _mm256_add_epi16(diff, diff);
  return _mm256_add_epi16(cd, _mm256_mulhi_epi16(diff, w2));
}

// One 16-bit lane per byte without unpacking: the even bytes (c0, c2) are
// x & 0x00FF00FF, the odd ones (c1, alpha) x >> 8 in 16-bit lanes, so both
// halves of a pixel's 32-bit lane meet the same weight w | w << 16. The
// alpha lane's channel result is replaced by the alpha formula; over an
// opaque lower layer that formula gives 255 in both blends.
template <bool kInverted, bool kOpaqueDst>
inline __m256i Blend8(__m256i s, __m256i d) {
  const __m256i low_bytes = _mm256_set1_epi16(0x00FF);
  __m256i w2, as, ad, upper;
  if (kOpaqueDst) {
    w2 = OpaqueShare8x2<kInverted>(s);
  } else {
    as = _mm256_srli_epi32(s, 24);
    ad = _mm256_srli_epi32(d, 24);
    upper = kInverted ? _mm256_xor_si256(as, _mm256_set1_epi32(255)) : as;
    // w < 2^15 sits in the low half: copy it to the high one.
    const __m256i copy_low = _mm256_setr_epi8(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13,
                                              0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13);
    w2 = _mm256_shuffle_epi8(OverShare8(upper, ad), copy_low);
  }
  const __m256i even = BlendLanes(_mm256_and_si256(s, low_bytes), _mm256_and_si256(d, low_bytes), w2);
  const __m256i odd = BlendLanes(_mm256_srli_epi16(s, 8), _mm256_srli_epi16(d, 8), w2);
  if (kOpaqueDst) {
    return _mm256_or_si256(_mm256_or_si256(even, _mm256_slli_epi16(odd, 8)),
                           _mm256_set1_epi32(static_cast<int>(0xFF000000u)));
  }
  const __m256i prod = _mm256_srli_epi32(
      _mm256_add_epi32(_mm256_mullo_epi16(as, ad), _mm256_set1_epi32(255)), 8);
  const __m256i alpha = kInverted ? _mm256_add_epi32(upper, prod)
                                  : _mm256_sub_epi32(_mm256_add_epi32(as, ad), prod);
  // The odd lanes' upper half is the alpha byte's lane: take the formula's.
  const __m256i odd_alpha = _mm256_blend_epi16(odd, _mm256_slli_epi32(alpha, 16), 0xAA);
  return _mm256_or_si256(even, _mm256_slli_epi16(odd_alpha, 8));
}

// Block tests by one vptest each: testc is set when every alpha bit is,
// testz when none is.
template <bool kInverted>
inline void BlendRow(uint8_t* dst, const uint8_t* src, std::size_t width) {
  const __m256i opaque = _mm256_set1_epi32(static_cast<int>(0xFF000000u));
  for (std::size_t i = 0; i < width; i += 8) {
    __m256i* dp = reinterpret_cast<__m256i*>(dst + i * 4);
    const __m256i s = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i * 4));
    const bool all_opaque = _mm256_testc_si256(s, opaque) != 0;
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
    const __m256i d = _mm256_loadu_si256(dp);
    _mm256_storeu_si256(dp, _mm256_testc_si256(d, opaque) ? Blend8<kInverted, true>(s, d)
                                                          : Blend8<kInverted, false>(s, d));
  }
}

}  // namespace

// The table argument is not read: the entries are computed (see OverShare8).
void BlendOverRow_AVX2(uint8_t* dst, const uint8_t* src, const int32_t*, std::size_t width) {
  BlendRow<false>(dst, src, width);
}

void BlendOverInvertedRow_AVX2(uint8_t* dst, const uint8_t* src, const int32_t*,
                               std::size_t width) {
  BlendRow<true>(dst, src, width);
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
