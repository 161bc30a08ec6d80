// SSE2 form of the YUV-to-RGB arithmetic of yuv_to_rgb_core.h, eight pixels
// a step. Include only from *_sse2.cc files.
//
// Contracts (all lanes signed 16-bit unless said otherwise)
//   LoadYuvToRgbRegs_SSE2(v)
//     loads the four coefficient vectors (unaligned).
//   PixelChroma_SSE2(c, c_next, &du, &dv)
//     c      = U0 V0 U1 V1 U2 V2 U3 V3: the chroma bytes (0..255) of four
//              consecutive pairs, U before V;
//     c_next = the same for the pairs one further on (pair k + 1 in the
//              lanes of pair k); a row's last pair passes its own chroma.
//     du, dv = scaled chroma of the eight pixels, lane 2k the even pixel of
//              pair k (128 (U - 128)), lane 2k + 1 the odd one
//              (64 ((U - 128) + (Un - 128))).
//   YuvToRgbChannels_SSE2(y, du, dv, regs, &r, &g, &b)
//     y = luma of eight pixels (0..255); r, g, b = the channel sums shifted
//     right by 5 (arithmetically), not yet limited: packing with unsigned
//     saturation gives exactly min(255, max(0, sum) >> 5).
//   PackOpaquePixels_SSE2<kBgra>(r, g, b, &lo, &hi)
//     lo = pixels 0..3, hi = pixels 4..7, 32-bit, alpha 255, in BGRA order
//     when kBgra, else RGBA.
//   YuvToPixels8_SSE2<kBgra>(y, du, dv, regs, &lo, &hi)
//     the two above in one call.
#ifndef QBO_COLORSPACE_YUV_TO_RGB_CORE_SSE2_H_
#define QBO_COLORSPACE_YUV_TO_RGB_CORE_SSE2_H_

#include <emmintrin.h>

#include "colorspace/yuv_to_rgb_core.h"

namespace qbo {

struct YuvToRgbRegs_SSE2 {
  __m128i r_from_v, g_from_u, g_from_v, b_from_u;
};

inline YuvToRgbRegs_SSE2 LoadYuvToRgbRegs_SSE2(const YuvToRgbVectors& v) {
  auto load = [](const Lanes8* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); };
  return {load(v.r_from_v), load(v.g_from_u), load(v.g_from_v), load(v.b_from_u)};
}

inline void PixelChroma_SSE2(__m128i c, __m128i c_next, __m128i* du, __m128i* dv) {
  // 128 (c - 128) = 128 c - 16384 and 64 (c + cn - 256) = 64 (c + cn) - 16384;
  // 128 c and 64 (c + cn) reach 32640 at most, so nothing wraps.
  const __m128i zero_point = _mm_set1_epi16(kChromaZero * 128);
  const __m128i even = _mm_sub_epi16(_mm_slli_epi16(c, 7), zero_point);  // eU eV per pair
  const __m128i odd =
      _mm_sub_epi16(_mm_slli_epi16(_mm_add_epi16(c, c_next), 6), zero_point);  // oU oV
  // Each 32-bit lane holds one pair: du takes (eU, oU), dv takes (eV, oV).
  const __m128i low_half = _mm_set1_epi32(0xFFFF);
  *du = _mm_or_si128(_mm_and_si128(even, low_half), _mm_slli_epi32(odd, 16));
  *dv = _mm_or_si128(_mm_srli_epi32(even, 16), _mm_andnot_si128(low_half, odd));
}

inline void YuvToRgbChannels_SSE2(__m128i y, __m128i du, __m128i dv, const YuvToRgbRegs_SSE2& k,
                                  __m128i* r, __m128i* g, __m128i* b) {
  // pmulhw is floor(a * b / 65536): exactly one truncated term.
  const __m128i base = _mm_add_epi16(_mm_slli_epi16(y, 5), _mm_set1_epi16(kHalfAt32));
  *r = _mm_srai_epi16(_mm_adds_epi16(base, _mm_mulhi_epi16(dv, k.r_from_v)), 5);
  *g = _mm_srai_epi16(_mm_adds_epi16(_mm_adds_epi16(base, _mm_mulhi_epi16(du, k.g_from_u)),
                                     _mm_mulhi_epi16(dv, k.g_from_v)),
                      5);
  *b = _mm_srai_epi16(_mm_adds_epi16(base, _mm_mulhi_epi16(du, k.b_from_u)), 5);
}

template <bool kBgra>
inline void PackOpaquePixels_SSE2(__m128i r, __m128i g, __m128i b, __m128i* lo, __m128i* hi) {
  // first = c0 x8 | c2 x8, second = G x8 | 255 x8 (c0/c2 = B/R or R/B);
  // byte-interleaving gives c0 G and c2 A pairs, word-interleaving pixels.
  const __m128i first = kBgra ? _mm_packus_epi16(b, r) : _mm_packus_epi16(r, b);
  const __m128i second = _mm_packus_epi16(g, _mm_set1_epi16(255));
  const __m128i c0_g = _mm_unpacklo_epi8(first, second);
  const __m128i c2_a = _mm_unpackhi_epi8(first, second);
  *lo = _mm_unpacklo_epi16(c0_g, c2_a);
  *hi = _mm_unpackhi_epi16(c0_g, c2_a);
}

template <bool kBgra>
inline void YuvToPixels8_SSE2(__m128i y, __m128i du, __m128i dv, const YuvToRgbRegs_SSE2& k,
                              __m128i* lo, __m128i* hi) {
  __m128i r, g, b;
  YuvToRgbChannels_SSE2(y, du, dv, k, &r, &g, &b);
  PackOpaquePixels_SSE2<kBgra>(r, g, b, lo, hi);
}

}  // namespace qbo

#endif  // QBO_COLORSPACE_YUV_TO_RGB_CORE_SSE2_H_
