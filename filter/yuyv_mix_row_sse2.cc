// SSE2 YUYV mixing rows, eight pixels (16 YUYV bytes) a step.
// Opaque: s*a and d*a fit in 16 unsigned bits (at most 65025), so pmullw
// then psrlw 8 is the reference's >> 8. Alpha over alpha: (s - d) lies in
// -255..255 and w in 0..32767, so pmulhw gives the reference's floored
// (s - d) * w >> 16. The shares are looked up one pixel at a time.
#include <emmintrin.h>

#include "filter/yuyv_mix_row.h"

namespace qbo {
namespace {

inline __m128i Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
inline __m128i Load8(const uint8_t* p) {
  return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
}

inline __m128i MixOpaqueHalf(__m128i d, __m128i s, __m128i a) {
  return _mm_sub_epi16(_mm_add_epi16(d, _mm_srli_epi16(_mm_mullo_epi16(s, a), 8)),
                       _mm_srli_epi16(_mm_mullo_epi16(d, a), 8));
}

inline __m128i MixShareHalf(__m128i d, __m128i s, __m128i w) {
  return _mm_add_epi16(d, _mm_mulhi_epi16(_mm_sub_epi16(s, d), w));
}

}  // namespace

void YuyvMixOpaqueRow_SSE2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                           const uint8_t* src_alpha, int32_t pairs, const int32_t* share) {
  const __m128i zero = _mm_setzero_si128();
  int32_t k = 0;
  for (; k + 4 <= pairs; k += 4) {
    const __m128i a8 = Load8(src_alpha + 2 * k);
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(a8, zero)) == 0xFFFF) continue;
    // Each pixel's alpha twice: its two bytes Y and U (or Y and V).
    const __m128i a = _mm_unpacklo_epi8(a8, a8);
    const __m128i d = Load(dst + 4 * k), s = Load(src + 4 * k);
    const __m128i lo = MixOpaqueHalf(_mm_unpacklo_epi8(d, zero), _mm_unpacklo_epi8(s, zero),
                                     _mm_unpacklo_epi8(a, zero));
    const __m128i hi = MixOpaqueHalf(_mm_unpackhi_epi8(d, zero), _mm_unpackhi_epi8(s, zero),
                                     _mm_unpackhi_epi8(a, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * k), _mm_packus_epi16(lo, hi));
  }
  YuyvMixOpaqueRow_C(dst + 4 * k, dst_alpha, src + 4 * k, src_alpha + 2 * k, pairs - k, share);
}

void YuyvMixAlphaRow_SSE2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                          const uint8_t* src_alpha, int32_t pairs, const int32_t* share) {
  const __m128i zero = _mm_setzero_si128();
  int32_t k = 0;
  for (; k + 4 <= pairs; k += 4) {
    alignas(16) int16_t w[16];
    SpreadShares(w, src_alpha + 2 * k, dst_alpha + 2 * k, 4, share);
    const __m128i sa = _mm_unpacklo_epi8(Load8(src_alpha + 2 * k), zero);
    const __m128i da = _mm_unpacklo_epi8(Load8(dst_alpha + 2 * k), zero);
    const __m128i na = _mm_sub_epi16(_mm_add_epi16(da, sa),
                                     _mm_srli_epi16(_mm_mullo_epi16(da, sa), 8));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst_alpha + 2 * k), _mm_packus_epi16(na, na));
    const __m128i d = Load(dst + 4 * k), s = Load(src + 4 * k);
    const __m128i* wv = reinterpret_cast<const __m128i*>(w);
    const __m128i lo = MixShareHalf(_mm_unpacklo_epi8(d, zero), _mm_unpacklo_epi8(s, zero), wv[0]);
    const __m128i hi = MixShareHalf(_mm_unpackhi_epi8(d, zero), _mm_unpackhi_epi8(s, zero), wv[1]);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * k), _mm_packus_epi16(lo, hi));
  }
  YuyvMixAlphaRow_C(dst + 4 * k, dst_alpha + 2 * k, src + 4 * k, src_alpha + 2 * k, pairs - k,
                    share);
}

}  // namespace qbo
