// AVX-512 (F + BW) form of the YUV-to-RGB arithmetic of yuv_to_rgb_core.h,
// thirty-two pixels a step, the same operations as the AVX2 form on
// registers twice as wide. Include only from *_avx512.cc files.
//
// Contracts: as in yuv_to_rgb_core_avx2.h, in natural order (16-bit lane i
// is pixel i).
//   LoadYuvToRgbRegs_AVX512(v)        the four vectors in every 128-bit lane.
//   YuvToRgbChannels_AVX512(y, du, dv, regs, &r, &g, &b)
//   PackOpaquePixels_AVX512<kBgra>(r, g, b, &first, &second)
//     first = pixels 0..15, second = pixels 16..31.
#ifndef QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX512_H_
#define QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX512_H_

#include <immintrin.h>

#include "colorspace/yuv_to_rgb_core.h"
#include "frame/simd_store.h"

namespace qbo {
// Internal to each including file: the AVX-512 and AVX-512 VBMI files
// compile these with different instruction sets, and one shared copy could
// carry instructions that the other file's CPU lacks.
namespace {

struct YuvToRgbRegs_AVX512 {
  __m512i r_from_v, g_from_u, g_from_v, b_from_u;
};

inline __m512i BroadcastLanes8_AVX512(const Lanes8* p) {
  return _mm512_broadcast_i32x4(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
}

inline YuvToRgbRegs_AVX512 LoadYuvToRgbRegs_AVX512(const YuvToRgbVectors& v) {
  return {BroadcastLanes8_AVX512(v.r_from_v), BroadcastLanes8_AVX512(v.g_from_u),
          BroadcastLanes8_AVX512(v.g_from_v), BroadcastLanes8_AVX512(v.b_from_u)};
}

// The rounding by pmulhrsw, as YuvToRgbChannels_AVX2 explains.
inline void YuvToRgbChannels_AVX512(__m512i y, __m512i du, __m512i dv,
                                    const YuvToRgbRegs_AVX512& k, __m512i* r, __m512i* g,
                                    __m512i* b) {
  const __m512i round_shift5 = _mm512_set1_epi16(1024);
  const __m512i tr = _mm512_mulhi_epi16(dv, k.r_from_v);
  const __m512i tg =
      _mm512_adds_epi16(_mm512_mulhi_epi16(du, k.g_from_u), _mm512_mulhi_epi16(dv, k.g_from_v));
  const __m512i tb = _mm512_mulhi_epi16(du, k.b_from_u);
  *r = _mm512_add_epi16(y, _mm512_mulhrs_epi16(tr, round_shift5));
  *g = _mm512_add_epi16(y, _mm512_mulhrs_epi16(tg, round_shift5));
  *b = _mm512_add_epi16(y, _mm512_mulhrs_epi16(tb, round_shift5));
}

template <bool kBgra>
inline void PackOpaquePixels_AVX512(__m512i r, __m512i g, __m512i b, __m512i* first,
                                    __m512i* second) {
  // In each 128-bit lane L (pixels 8L..8L+7) the packs and unpacks leave
  // pixels 8L..8L+3 in p0 and 8L+4..8L+7 in p1; one two-source qword
  // permute per output puts the lanes back in pixel order.
  const __m512i c0_c2 = kBgra ? _mm512_packus_epi16(b, r) : _mm512_packus_epi16(r, b);
  const __m512i g_a = _mm512_packus_epi16(g, _mm512_set1_epi16(255));
  const __m512i c0_g = _mm512_unpacklo_epi8(c0_c2, g_a);
  const __m512i c2_a = _mm512_unpackhi_epi8(c0_c2, g_a);
  const __m512i p0 = _mm512_unpacklo_epi16(c0_g, c2_a);
  const __m512i p1 = _mm512_unpackhi_epi16(c0_g, c2_a);
  *first = _mm512_permutex2var_epi64(p0, _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11), p1);
  *second = _mm512_permutex2var_epi64(p0, _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15), p1);
}

// Scaled chroma from bytes already paired per pixel: byte pair 2i, 2i + 1
// holds the two samples pixel i averages (the same one twice for an even
// pixel). pmaddubsw with 64, 64 on the samples minus 128 (xor 0x80 makes
// them signed) gives 128 (U - 128) and 64 ((U - 128) + (Un - 128)) at once.
inline __m512i PairedChroma_AVX512(__m512i paired_bytes) {
  return _mm512_maddubs_epi16(_mm512_set1_epi8(64),
                              _mm512_xor_si512(paired_bytes, _mm512_set1_epi8(-128)));
}

}  // namespace
}  // namespace qbo

#endif  // QBO_COLORSPACE_YUV_TO_RGB_CORE_AVX512_H_
