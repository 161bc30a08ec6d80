// AVX2 YUYV mixing rows, sixteen pixels (32 YUYV bytes) a step. The
// arithmetic is the SSE2 rows'.
#include <immintrin.h>

#include "filter/yuyv_mix_row.h"

namespace qbo {
namespace {

inline __m256i Widen(const uint8_t* p) {
  return _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)));
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

// The shares are looked up one pixel at a time (a gather is no faster for
// 8-bit indices into a 256 KiB table), sixteen pixels a step.
void YuyvMixAlphaRow_AVX2(uint8_t* dst, uint8_t* dst_alpha, const uint8_t* src,
                          const uint8_t* src_alpha, int32_t pairs, const int32_t* share) {
  int32_t k = 0;
  for (; k + 8 <= pairs; k += 8) {
    alignas(32) int16_t w[32];
    SpreadShares(w, src_alpha + 2 * k, dst_alpha + 2 * k, 8, share);
    const __m256i sa = Widen(src_alpha + 2 * k), da = Widen(dst_alpha + 2 * k);
    const __m256i na = _mm256_sub_epi16(_mm256_add_epi16(da, sa),
                                        _mm256_srli_epi16(_mm256_mullo_epi16(da, sa), 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst_alpha + 2 * k), Narrow(na));
    for (int half = 0; half < 2; ++half) {
      uint8_t* d8 = dst + 4 * k + 16 * half;
      const __m256i d = Widen(d8), s = Widen(src + 4 * k + 16 * half);
      const __m256i wv = _mm256_load_si256(reinterpret_cast<const __m256i*>(w + 16 * half));
      const __m256i mixed = _mm256_add_epi16(d, _mm256_mulhi_epi16(_mm256_sub_epi16(s, d), wv));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(d8), Narrow(mixed));
    }
  }
  YuyvMixAlphaRow_SSE2(dst + 4 * k, dst_alpha + 2 * k, src + 4 * k, src_alpha + 2 * k, pairs - k,
                       share);
}

}  // namespace qbo
