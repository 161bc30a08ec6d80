#include <immintrin.h>

#include "blit/any_row.h"
#include "blit/blend_row.h"

namespace qbo {
namespace {

// The over-share entry of eight (upper, lower) alpha pairs, computed
// instead of gathered: floor(a x 8355585 / D), D = 255a + (255 - a)b, 0
// where D = 0. The float quotient of the rounded numerator is within 0.005
// of the true one (numerator and division each 2^-24 relative, quotient <
// 32768), so its truncation is off by at most one; the exact remainder
// N - qD, formed in 32-bit lanes (qD <= 32767 x 65025 < 2^31), fixes it.
// An exhaustive test over all 65536 pairs holds it to the table.
inline __m256i OverShare8(__m256i upper, __m256i lower) {
  const __m256i one = _mm256_set1_epi32(1);
  // D by one multiply-add of the 16-bit pairs (a, b) x (255, 255 - a).
  const __m256i ab = _mm256_or_si256(upper, _mm256_slli_epi32(lower, 16));
  const __m256i factors = _mm256_or_si256(
      _mm256_set1_epi32(255), _mm256_slli_epi32(_mm256_sub_epi32(_mm256_set1_epi32(255), upper), 16));
  const __m256i d = _mm256_max_epi32(_mm256_madd_epi16(ab, factors), one);
  const __m256i n = _mm256_mullo_epi32(upper, _mm256_set1_epi32(8355585));
  __m256i q = _mm256_cvttps_epi32(_mm256_div_ps(_mm256_cvtepi32_ps(n), _mm256_cvtepi32_ps(d)));
  const __m256i r = _mm256_sub_epi32(n, _mm256_mullo_epi32(q, d));
  q = _mm256_add_epi32(q, _mm256_cmpgt_epi32(_mm256_setzero_si256(), r));  // r < 0: one less
  q = _mm256_sub_epi32(q, _mm256_andnot_si256(_mm256_cmpgt_epi32(d, r), one));  // r >= d: one more
  return q;
}

// The entries of an opaque lower layer: OverShare[a][255] = floor(a x
// 8355585 / 65025) = floor(a x 32767 / 255) = 128a + floor(127a / 255), and
// floor(y / 255) = ((y + 1) x 257) >> 16 for every y = 127a (a <= 255).
inline __m256i OpaqueShare8(__m256i upper) {
  const __m256i y1 = _mm256_add_epi32(_mm256_mullo_epi16(upper, _mm256_set1_epi32(127)),
                                      _mm256_set1_epi32(1));
  return _mm256_add_epi32(_mm256_slli_epi32(upper, 7), _mm256_mulhi_epu16(y1, _mm256_set1_epi32(257)));
}

// One 16-bit lane per byte without unpacking: the even bytes (c0, c2) are
// x & 0x00FF00FF, the odd ones (c1, alpha) x >> 8 in 16-bit lanes, so both
// halves of a pixel's 32-bit lane meet the same weight w | w << 16. The
// arithmetic per lane is the SSE2 row's (see there). The alpha lane's
// channel result is replaced by the alpha formula; over an opaque lower
// layer that formula gives 255 in both blends.
template <bool kInverted, bool kOpaqueDst>
inline __m256i Blend8(__m256i s, __m256i d) {
  const __m256i low_bytes = _mm256_set1_epi16(0x00FF);
  const __m256i as = _mm256_srli_epi32(s, 24);
  const __m256i upper = kInverted ? _mm256_xor_si256(as, _mm256_set1_epi32(255)) : as;
  const __m256i ad = _mm256_srli_epi32(d, 24);
  const __m256i w = kOpaqueDst ? OpaqueShare8(upper) : OverShare8(upper, ad);
  const __m256i w2 = _mm256_or_si256(w, _mm256_slli_epi32(w, 16));

  auto lanes = [&](__m256i cs, __m256i cd) {
    __m256i diff = _mm256_sub_epi16(_mm256_sub_epi16(cs, cd), _mm256_cmpgt_epi16(cs, cd));
    diff = _mm256_add_epi16(diff, diff);
    return _mm256_add_epi16(cd, _mm256_mulhi_epi16(diff, w2));
  };
  const __m256i even = lanes(_mm256_and_si256(s, low_bytes), _mm256_and_si256(d, low_bytes));
  const __m256i odd = lanes(_mm256_srli_epi16(s, 8), _mm256_srli_epi16(d, 8));
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

template <bool kInverted>
inline void BlendRow(uint8_t* dst, const uint8_t* src, std::size_t width) {
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
    const __m256i d = _mm256_loadu_si256(dp);
    const bool dst_opaque =
        _mm256_movemask_epi8(_mm256_cmpeq_epi32(_mm256_and_si256(d, opaque), opaque)) == -1;
    _mm256_storeu_si256(dp, dst_opaque ? Blend8<kInverted, true>(s, d) : Blend8<kInverted, false>(s, d));
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
