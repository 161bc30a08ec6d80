// AVX2 YUYV mixing rows, sixteen pixels (32 YUYV bytes) a step for the
// opaque mix, eight for alpha over alpha, where vpgatherdd fetches the eight
// shares at once. The arithmetic is the SSE2 rows'.
#include <immintrin.h>

#include "filter/yuyv_mix_row.h"

namespace qbo {
namespace {

inline __m256i Widen(const uint8_t* p) {
  return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
}
inline __m128i Load8(const uint8_t* p) {
  return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
}
// packus of one register with itself keeps [lo lane | hi lane] in qwords 0
// and 2; bring them together.
inline __m128i Narrow(__m256i v) {
  return _mm256_castsi256_si128(_mm256_permute4x64_epi64(_mm256_packus_epi16(v, v), 0x08));
}

inline __m256i MixOpaque(__m256i d, __m256i s, __m256i a) {
  return _mm256_sub_epi16(_mm256_add_epi16(d, _mm256_srli_epi16(_mm256_mullo_epi16(s, a), 8)),
                          _mm256_srli_epi16(_mm256_mullo_epi16(d, a), 8));
}

}  // namespace

void YuyvMixOpaqueRow_AVX2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                           const uint8_t* src_alpha, int32_t pairs, const int32_t* share) {
  int32_t k = 0;
  for (; k + 8 <= pairs; k += 8) {
    const __m128i a16 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src_alpha + 2 * k));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(a16, _mm_setzero_si128())) == 0xFFFF) continue;
    const __m256i a_lo = _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(a16, a16));
    const __m256i a_hi = _mm256_cvtepu8_epi16(_mm_unpackhi_epi8(a16, a16));
    const __m256i lo = MixOpaque(Widen(dst + 4 * k), Widen(src + 4 * k), a_lo);
    const __m256i hi = MixOpaque(Widen(dst + 4 * k + 16), Widen(src + 4 * k + 16), a_hi);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst + 4 * k),
                        _mm256_permute4x64_epi64(_mm256_packus_epi16(lo, hi), 0xD8));
  }
  YuyvMixOpaqueRow_SSE2(dst + 4 * k, dst_alpha, src + 4 * k, src_alpha + 2 * k, pairs - k, share);
}

void YuyvMixAlphaRow_AVX2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                          const uint8_t* src_alpha, int32_t pairs, const int32_t* share) {
  // Words of the eight shares for the 16 bytes Y0 U Y1 V of four pairs:
  // pair p takes shares 2p, 2p, 2p+1, 2p (lower lane pairs 0-1, upper 2-3).
  const __m256i spread = _mm256_setr_epi8(
      0, 1, 0, 1, 2, 3, 0, 1, 4, 5, 4, 5, 6, 7, 4, 5,
      8, 9, 8, 9, 10, 11, 8, 9, 12, 13, 12, 13, 14, 15, 12, 13);
  int32_t k = 0;
  for (; k + 4 <= pairs; k += 4) {
    const __m128i sa8 = Load8(src_alpha + 2 * k), da8 = Load8(dst_alpha + 2 * k);
    const __m256i index = _mm256_or_si256(_mm256_slli_epi32(_mm256_cvtepu8_epi32(sa8), 8),
                                          _mm256_cvtepu8_epi32(da8));
    const __m256i w32 = _mm256_i32gather_epi32(share, index, 4);
    // Shares are 0..32767, so the signed pack is exact.
    const __m128i w16 = _mm_packs_epi32(_mm256_castsi256_si128(w32),
                                        _mm256_extracti128_si256(w32, 1));
    const __m256i w = _mm256_shuffle_epi8(_mm256_broadcastsi128_si256(w16), spread);

    const __m128i sa = _mm_unpacklo_epi8(sa8, _mm_setzero_si128());
    const __m128i da = _mm_unpacklo_epi8(da8, _mm_setzero_si128());
    const __m128i na = _mm_sub_epi16(_mm_add_epi16(da, sa),
                                     _mm_srli_epi16(_mm_mullo_epi16(da, sa), 8));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst_alpha + 2 * k), _mm_packus_epi16(na, na));

    const __m256i d = Widen(dst + 4 * k), s = Widen(src + 4 * k);
    const __m256i mixed = _mm256_add_epi16(d, _mm256_mulhi_epi16(_mm256_sub_epi16(s, d), w));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * k), Narrow(mixed));
  }
  YuyvMixAlphaRow_C(dst + 4 * k, dst_alpha + 2 * k, src + 4 * k, src_alpha + 2 * k, pairs - k,
                    share);
}

}  // namespace qbo
