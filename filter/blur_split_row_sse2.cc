// SSE2 blur and split rows. Blur taps are pmulhw(s << 7, q), exactly the
// reference's (s * 128 * q) >> 16; the final AND keeps the wrapped low byte
// so packuswb never saturates.
#include <emmintrin.h>

#include "filter/blur_split_row.h"

namespace qbo {
namespace {

inline __m128i Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }

inline __m128i BlurHalf(__m128i a, __m128i b, __m128i c, const __m128i* q) {
  const __m128i t = _mm_add_epi16(
      _mm_add_epi16(_mm_mulhi_epi16(_mm_slli_epi16(a, 7), q[0]),
                    _mm_mulhi_epi16(_mm_slli_epi16(b, 7), q[1])),
      _mm_add_epi16(_mm_mulhi_epi16(_mm_slli_epi16(c, 7), q[2]), _mm_set1_epi16(16)));
  return _mm_and_si128(_mm_srli_epi16(t, 5), _mm_set1_epi16(0xFF));
}

}  // namespace

void BlurRow3_SSE2(uint8_t* dst, const uint8_t* above, const uint8_t* centre,
                   const uint8_t* below, int32_t pixels, const BlurWeights* q) {
  const __m128i w[3] = {_mm_set1_epi16(q->q[0]), _mm_set1_epi16(q->q[1]),
                        _mm_set1_epi16(q->q[2])};
  const __m128i zero = _mm_setzero_si128();
  const int32_t bytes = pixels * 4;
  int32_t i = 0;
  for (; i + 16 <= bytes; i += 16) {
    const __m128i a = Load(above + i), b = Load(centre + i), c = Load(below + i);
    const __m128i lo = BlurHalf(_mm_unpacklo_epi8(a, zero), _mm_unpacklo_epi8(b, zero),
                                _mm_unpacklo_epi8(c, zero), w);
    const __m128i hi = BlurHalf(_mm_unpackhi_epi8(a, zero), _mm_unpackhi_epi8(b, zero),
                                _mm_unpackhi_epi8(c, zero), w);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), _mm_packus_epi16(lo, hi));
  }
  BlurRow3_C(dst + i, above + i, centre + i, below + i, (bytes - i) / 4, q);
}

// 8 pairs a step: keep the even bytes (luma) by masking, the odd ones
// (chroma) by shifting, pack; then the chroma words split the same way.
void YuyvSplitRow_SSE2(uint8_t* y, uint8_t* u, uint8_t* v, const uint8_t* src, int32_t pairs) {
  const __m128i low_bytes = _mm_set1_epi16(0xFF);
  int32_t k = 0;
  for (; k + 8 <= pairs; k += 8) {
    const __m128i a = Load(src + 4 * k), b = Load(src + 4 * k + 16);
    const __m128i luma = _mm_packus_epi16(_mm_and_si128(a, low_bytes), _mm_and_si128(b, low_bytes));
    const __m128i chroma = _mm_packus_epi16(_mm_srli_epi16(a, 8), _mm_srli_epi16(b, 8));
    // chroma = U0 V0 U1 V1 ... U7 V7
    const __m128i uv = _mm_packus_epi16(_mm_and_si128(chroma, low_bytes), _mm_srli_epi16(chroma, 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(y + 2 * k), luma);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(u + k), uv);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(v + k), _mm_srli_si128(uv, 8));
  }
  YuyvSplitRow_C(y + 2 * k, u + k, v + k, src + 4 * k, pairs - k);
}

}  // namespace qbo
