// AVX2 form of the YUV-to-RGB arithmetic of yuv_to_rgb_core.h, sixteen
// pixels a step. Include only from *_avx2.cc files.
//
// Contracts: as in yuv_to_rgb_core_sse2.h, with every register twice as
// wide and in natural order (lanes 0..7 the first eight pixels or four
// pairs, lanes 8..15 the next).
//   LoadYuvToRgbRegs_AVX2(v)          the four vectors, both halves alike.
//   PixelChroma_AVX2(c, c_next, &du, &dv)
//     c = U0 V0 .. U7 V7 of eight pairs, c_next the same one pair on.
//   YuvToRgbChannels_AVX2(y, du, dv, regs, &r, &g, &b)
//   PackOpaquePixels_AVX2<kBgra>(r, g, b, &first, &second)
//     first = pixels 0..7, second = pixels 8..15.
//   YuvToPixels16_AVX2<kBgra>(y, du, dv, regs, &first, &second)
#ifndef QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX2_H_
#define QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX2_H_

#include <immintrin.h>

#include "colorspace/yuv_to_rgb_core.h"

namespace qbo {

struct YuvToRgbRegs_AVX2 {
  __m256i r_from_v, g_from_u, g_from_v, b_from_u;
};

inline YuvToRgbRegs_AVX2 LoadYuvToRgbRegs_AVX2(const YuvToRgbVectors& v) {
  auto load = [](const Lanes8* p) {
    return _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
  };
  return {load(v.r_from_v), load(v.g_from_u), load(v.g_from_v), load(v.b_from_u)};
}

inline void PixelChroma_AVX2(__m256i c, __m256i c_next, __m256i* du, __m256i* dv) {
  // See PixelChroma_SSE2: 128 c - 16384 and 64 (c + cn) - 16384, no wrap.
  const __m256i zero_point = _mm256_set1_epi16(kChromaZero * 128);
  const __m256i even = _mm256_sub_epi16(_mm256_slli_epi16(c, 7), zero_point);
  const __m256i odd =
      _mm256_sub_epi16(_mm256_slli_epi16(_mm256_add_epi16(c, c_next), 6), zero_point);
  // Per 32-bit pair lane: du = (eU, oU), dv = (eV, oV).
  *du = _mm256_blend_epi16(even, _mm256_slli_epi32(odd, 16), 0xAA);
  *dv = _mm256_blend_epi16(_mm256_srli_epi32(even, 16), odd, 0xAA);
}

// The sums are never formed: for a sum 32 Y + T + 16 with T the channel's
// truncated terms, floor(sum / 32) = Y + floor((T + 16) / 32), and
// pmulhrsw(T, 1024) = floor((T * 1024 + 2^14) / 2^15) = floor((T + 16) / 32)
// exactly. That moves the rounding shift from the shift ports to the
// multipliers, which this kernel keeps less busy.
inline void YuvToRgbChannels_AVX2(__m256i y, __m256i du, __m256i dv, const YuvToRgbRegs_AVX2& k,
                                  __m256i* r, __m256i* g, __m256i* b) {
  const __m256i round_shift5 = _mm256_set1_epi16(1024);
  const __m256i tr = _mm256_mulhi_epi16(dv, k.r_from_v);
  const __m256i tg =
      _mm256_adds_epi16(_mm256_mulhi_epi16(du, k.g_from_u), _mm256_mulhi_epi16(dv, k.g_from_v));
  const __m256i tb = _mm256_mulhi_epi16(du, k.b_from_u);
  *r = _mm256_add_epi16(y, _mm256_mulhrs_epi16(tr, round_shift5));
  *g = _mm256_add_epi16(y, _mm256_mulhrs_epi16(tg, round_shift5));
  *b = _mm256_add_epi16(y, _mm256_mulhrs_epi16(tb, round_shift5));
}

template <bool kBgra>
inline void PackOpaquePixels_AVX2(__m256i r, __m256i g, __m256i b, __m256i* first,
                                  __m256i* second) {
  // Per 128-bit half as in PackOpaquePixels_SSE2: p0 = pixels 0-3 | 8-11,
  // p1 = pixels 4-7 | 12-15; the cross-half permutes restore order.
  const __m256i c0_c2 = kBgra ? _mm256_packus_epi16(b, r) : _mm256_packus_epi16(r, b);
  const __m256i g_a = _mm256_packus_epi16(g, _mm256_set1_epi16(255));
  const __m256i c0_g = _mm256_unpacklo_epi8(c0_c2, g_a);
  const __m256i c2_a = _mm256_unpackhi_epi8(c0_c2, g_a);
  const __m256i p0 = _mm256_unpacklo_epi16(c0_g, c2_a);
  const __m256i p1 = _mm256_unpackhi_epi16(c0_g, c2_a);
  *first = _mm256_permute2x128_si256(p0, p1, 0x20);
  *second = _mm256_permute2x128_si256(p0, p1, 0x31);
}

template <bool kBgra>
inline void YuvToPixels16_AVX2(__m256i y, __m256i du, __m256i dv, const YuvToRgbRegs_AVX2& k,
                               __m256i* first, __m256i* second) {
  __m256i r, g, b;
  YuvToRgbChannels_AVX2(y, du, dv, k, &r, &g, &b);
  PackOpaquePixels_AVX2<kBgra>(r, g, b, first, second);
}

}  // namespace qbo

#endif  // QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX2_H_
