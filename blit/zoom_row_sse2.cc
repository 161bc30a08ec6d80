#include <emmintrin.h>

#include "blit/zoom_row.h"

namespace qbo {

namespace {

// Pair lanes of four columns: each 32-bit lane holds (left | right << 16);
// splits them into the left and right samples as 32-bit integers.
inline void SplitPairs(const uint8_t* pairs, __m128i* left, __m128i* right) {
  const __m128i wide = _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(pairs)),
                                         _mm_setzero_si128());
  *left = _mm_and_si128(wide, _mm_set1_epi32(0xFFFF));
  *right = _mm_srli_epi32(wide, 16);
}

inline __m128d LowPd(__m128 w) { return _mm_cvtps_pd(w); }
inline __m128d HighPd(__m128 w) { return _mm_cvtps_pd(_mm_movehl_ps(w, w)); }
inline __m128d LowPd(__m128i p) { return _mm_cvtepi32_pd(p); }
inline __m128d HighPd(__m128i p) {
  return _mm_cvtepi32_pd(_mm_shuffle_epi32(p, _MM_SHUFFLE(3, 2, 3, 2)));
}

// The two columns of one double-precision half, summed in the reference
// order ((w00 p00 + w01 p01) + w10 p10) + w11 p11 and truncated.
inline __m128i SumHalf(__m128d w00, __m128d p00, __m128d w01, __m128d p01, __m128d w10, __m128d p10,
                       __m128d w11, __m128d p11) {
  __m128d v = _mm_add_pd(_mm_mul_pd(w00, p00), _mm_mul_pd(w01, p01));
  v = _mm_add_pd(v, _mm_mul_pd(w10, p10));
  v = _mm_add_pd(v, _mm_mul_pd(w11, p11));
  return _mm_cvttpd_epi32(v);
}

// One 32-bit pixel from its two 8-byte pair entries.
inline __m128i BlendPixel(const uint8_t* upper, const uint8_t* lower, float f, __m128 gy,
                          __m128 fy) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i u =
      _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(upper)), zero);
  const __m128i l =
      _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(lower)), zero);
  const __m128 p00 = _mm_cvtepi32_ps(_mm_unpacklo_epi16(u, zero));
  const __m128 p01 = _mm_cvtepi32_ps(_mm_unpackhi_epi16(u, zero));
  const __m128 p10 = _mm_cvtepi32_ps(_mm_unpacklo_epi16(l, zero));
  const __m128 p11 = _mm_cvtepi32_ps(_mm_unpackhi_epi16(l, zero));
  const __m128 fx = _mm_set1_ps(f), gx = _mm_set1_ps(1.0f - f);
  const __m128 top =
      _mm_add_ps(_mm_mul_ps(_mm_mul_ps(p00, gx), gy), _mm_mul_ps(_mm_mul_ps(p01, fx), gy));
  const __m128 bottom =
      _mm_add_ps(_mm_mul_ps(_mm_mul_ps(p10, gx), fy), _mm_mul_ps(_mm_mul_ps(p11, fx), fy));
  return _mm_cvtps_epi32(_mm_add_ps(top, bottom));
}

}  // namespace

void Zoom8Row_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                   float fy, std::size_t width) {
  const __m128 one = _mm_set1_ps(1.0f);
  const __m128 gyv = _mm_set1_ps(1.0f - fy), fyv = _mm_set1_ps(fy);
  for (std::size_t c = 0; c < width; c += 4) {
    const __m128 f = _mm_loadu_ps(fx + c), g = _mm_sub_ps(one, f);
    const __m128 w00 = _mm_mul_ps(gyv, g), w01 = _mm_mul_ps(gyv, f);
    const __m128 w10 = _mm_mul_ps(g, fyv), w11 = _mm_mul_ps(fyv, f);
    __m128i p00, p01, p10, p11;
    SplitPairs(upper + 2 * c, &p00, &p01);
    SplitPairs(lower + 2 * c, &p10, &p11);
    const __m128i lo = SumHalf(LowPd(w00), LowPd(p00), LowPd(w01), LowPd(p01), LowPd(w10),
                               LowPd(p10), LowPd(w11), LowPd(p11));
    const __m128i hi = SumHalf(HighPd(w00), HighPd(p00), HighPd(w01), HighPd(p01), HighPd(w10),
                               HighPd(p10), HighPd(w11), HighPd(p11));
    const __m128i words = _mm_packs_epi32(_mm_unpacklo_epi64(lo, hi), _mm_setzero_si128());
    const int32_t bytes = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    __builtin_memcpy(dst + c, &bytes, 4);
  }
}

void Zoom32Row_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                    float fy, std::size_t width) {
  const __m128 gy = _mm_set1_ps(1.0f - fy), fyv = _mm_set1_ps(fy);
  for (std::size_t c = 0; c < width; c += 4) {
    const uint8_t* u = upper + 8 * c;
    const uint8_t* l = lower + 8 * c;
    const __m128i r0 = BlendPixel(u, l, fx[c], gy, fyv);
    const __m128i r1 = BlendPixel(u + 8, l + 8, fx[c + 1], gy, fyv);
    const __m128i r2 = BlendPixel(u + 16, l + 16, fx[c + 2], gy, fyv);
    const __m128i r3 = BlendPixel(u + 24, l + 24, fx[c + 3], gy, fyv);
    // Signed then unsigned saturation is the clamp to 0..255.
    const __m128i bytes = _mm_packus_epi16(_mm_packs_epi32(r0, r1), _mm_packs_epi32(r2, r3));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 4 * c), bytes);
  }
}

void Zoom8Row_Any_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                       float fy, std::size_t width) {
  const std::size_t body = width & ~std::size_t{3};
  Zoom8Row_SSE2(dst, upper, lower, fx, fy, body);
  Zoom8Row_C(dst + body, upper + 2 * body, lower + 2 * body, fx + body, fy, width - body);
}

void Zoom32Row_Any_SSE2(uint8_t* dst, const uint8_t* upper, const uint8_t* lower, const float* fx,
                        float fy, std::size_t width) {
  const std::size_t body = width & ~std::size_t{3};
  Zoom32Row_SSE2(dst, upper, lower, fx, fy, body);
  Zoom32Row_C(dst + 4 * body, upper + 8 * body, lower + 8 * body, fx + body, fy, width - body);
}

}  // namespace qbo
