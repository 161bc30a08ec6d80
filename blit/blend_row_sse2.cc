#include <emmintrin.h>

#include "blit/any_row.h"
#include "blit/blend_row.h"

namespace qbo {
namespace {

// Blends four pixels. Lanes after the unpack: one 16-bit lane per byte, two
// pixels a register (c0 c1 c2 a | c0 c1 c2 a). 2 x diff lies in -510..512
// and w in 0..32767, so _mm_mulhi_epi16 is exactly the arithmetic
// (2 x diff x w) >> 16 of the reference. The alpha lane's channel result is
// discarded and replaced by the alpha formula, done in 32-bit lanes.
//
// Over an opaque lower layer the entry needs no table: OverShare[a][255] =
// max(257a - 1, 0) >> 1 (see blend_row.h), and the alpha
// formula gives 255 in both blends.
template <bool kInverted, bool kOpaqueDst>
inline __m128i Blend4(__m128i s, __m128i d, const int32_t* share) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i as = _mm_srli_epi32(s, 24);
  const __m128i ad = _mm_srli_epi32(d, 24);
  const __m128i upper = kInverted ? _mm_xor_si128(as, _mm_set1_epi32(255)) : as;
  __m128i w;
  if (kOpaqueDst) {
    const __m128i x = _mm_mullo_epi16(upper, _mm_set1_epi32(257));
    w = _mm_srli_epi32(_mm_subs_epu16(x, _mm_set1_epi32(1)), 1);
  } else {
    alignas(16) int32_t idx[4];
    _mm_store_si128(reinterpret_cast<__m128i*>(idx), _mm_or_si128(_mm_slli_epi32(upper, 8), ad));
    w = _mm_setr_epi32(share[idx[0]], share[idx[1]], share[idx[2]], share[idx[3]]);
  }
  const __m128i w2 = _mm_or_si128(w, _mm_slli_epi32(w, 16));  // w w per pixel
  const __m128i w_lo = _mm_unpacklo_epi32(w2, w2);             // pixels 0, 1
  const __m128i w_hi = _mm_unpackhi_epi32(w2, w2);             // pixels 2, 3

  const __m128i s_lo = _mm_unpacklo_epi8(s, zero), s_hi = _mm_unpackhi_epi8(s, zero);
  const __m128i d_lo = _mm_unpacklo_epi8(d, zero), d_hi = _mm_unpackhi_epi8(d, zero);
  // diff = cs - cd + [cs > cd]; the compare gives -1 where cs > cd.
  __m128i diff_lo = _mm_sub_epi16(_mm_sub_epi16(s_lo, d_lo), _mm_cmpgt_epi16(s_lo, d_lo));
  __m128i diff_hi = _mm_sub_epi16(_mm_sub_epi16(s_hi, d_hi), _mm_cmpgt_epi16(s_hi, d_hi));
  diff_lo = _mm_add_epi16(diff_lo, diff_lo);
  diff_hi = _mm_add_epi16(diff_hi, diff_hi);
  const __m128i r_lo = _mm_add_epi16(d_lo, _mm_mulhi_epi16(diff_lo, w_lo));
  const __m128i r_hi = _mm_add_epi16(d_hi, _mm_mulhi_epi16(diff_hi, w_hi));
  const __m128i colour = _mm_packus_epi16(r_lo, r_hi);

  if (kOpaqueDst) return _mm_or_si128(colour, _mm_set1_epi32(static_cast<int>(0xFF000000u)));
  // As x Ad <= 65025: the low 16-bit product lane holds it whole.
  const __m128i prod = _mm_srli_epi32(_mm_add_epi32(_mm_mullo_epi16(as, ad), _mm_set1_epi32(255)), 8);
  const __m128i alpha = kInverted ? _mm_add_epi32(upper, prod)
                                  : _mm_sub_epi32(_mm_add_epi32(as, ad), prod);
  return _mm_or_si128(_mm_and_si128(colour, _mm_set1_epi32(0x00FFFFFF)), _mm_slli_epi32(alpha, 24));
}

template <bool kInverted>
inline void BlendRow(uint8_t* dst, const uint8_t* src, const int32_t* share, std::size_t width) {
  const __m128i alpha_mask = _mm_set1_epi32(static_cast<int>(0xFF000000u));
  const __m128i opaque = alpha_mask;
  for (std::size_t i = 0; i < width; i += 4) {
    __m128i* dp = reinterpret_cast<__m128i*>(dst + i * 4);
    const __m128i s = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + i * 4));
    const __m128i sa = _mm_and_si128(s, alpha_mask);
    const int all_opaque = _mm_movemask_epi8(_mm_cmpeq_epi32(sa, opaque)) == 0xFFFF;
    const int all_clear = _mm_movemask_epi8(_mm_cmpeq_epi32(sa, _mm_setzero_si128())) == 0xFFFF;
    if (kInverted ? all_opaque : all_clear) continue;
    if (!kInverted && all_opaque) {
      _mm_storeu_si128(dp, s);
      continue;
    }
    if (kInverted && all_clear) {
      _mm_storeu_si128(dp, _mm_or_si128(s, opaque));
      continue;
    }
    const __m128i d = _mm_loadu_si128(dp);
    const bool dst_opaque =
        _mm_movemask_epi8(_mm_cmpeq_epi32(_mm_and_si128(d, alpha_mask), opaque)) == 0xFFFF;
    _mm_storeu_si128(dp, dst_opaque ? Blend4<kInverted, true>(s, d, share)
                                    : Blend4<kInverted, false>(s, d, share));
  }
}

}  // namespace

void BlendOverRow_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                       std::size_t width) {
  BlendRow<false>(dst, src, share, width);
}

void BlendOverInvertedRow_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                               std::size_t width) {
  BlendRow<true>(dst, src, share, width);
}

void BlendOverRow_Any_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                           std::size_t width) {
  RunAnyPixelRow<4>(BlendOverRow_SSE2, BlendOverRow_C, dst, src, width, share);
}

void BlendOverInvertedRow_Any_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                                   std::size_t width) {
  RunAnyPixelRow<4>(BlendOverInvertedRow_SSE2, BlendOverInvertedRow_C, dst, src, width, share);
}

}  // namespace qbo
