#include <emmintrin.h>

#include "blit/mean_row.h"

namespace qbo {
namespace {

// Eight 16-bit lanes as two vectors of four floats.
inline void Widen(__m128i v16, __m128 out[2]) {
  const __m128i zero = _mm_setzero_si128();
  out[0] = _mm_cvtepi32_ps(_mm_unpacklo_epi16(v16, zero));
  out[1] = _mm_cvtepi32_ps(_mm_unpackhi_epi16(v16, zero));
}

// Sixteen bytes as four vectors of four floats, in byte order.
inline void BytesToFloats(const uint8_t* p, __m128 out[4]) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
  Widen(_mm_unpacklo_epi8(b, zero), out);
  Widen(_mm_unpackhi_epi8(b, zero), out + 2);
}

}  // namespace

void MeanVertRow_SSE2(float* acc, const uint8_t* const* rows, int32_t n, float w0, float w1,
                      float norm, std::size_t begin, std::size_t end) {
  const __m128i zero = _mm_setzero_si128();
  const __m128 vw0 = _mm_set1_ps(w0), vw1 = _mm_set1_ps(w1), vnorm = _mm_set1_ps(norm);
  for (std::size_t i = begin; i < end; i += 16) {
    __m128 a[4];
    BytesToFloats(rows[0] + i, a);
    for (__m128& x : a) x = _mm_mul_ps(vw0, x);
    if (n >= 2) {
      // Middle rows in saturating 16-bit lanes, as the reference sums them.
      __m128i lo = zero, hi = zero;
      for (int32_t r = 1; r + 1 < n; ++r) {
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(rows[r] + i));
        lo = _mm_adds_epu16(lo, _mm_unpacklo_epi8(b, zero));
        hi = _mm_adds_epu16(hi, _mm_unpackhi_epi8(b, zero));
      }
      __m128 middle[4], last[4];
      Widen(lo, middle);
      Widen(hi, middle + 2);
      BytesToFloats(rows[n - 1] + i, last);
      for (int q = 0; q < 4; ++q) {
        a[q] = _mm_add_ps(_mm_add_ps(a[q], middle[q]), _mm_mul_ps(vw1, last[q]));
      }
    }
    for (int q = 0; q < 4; ++q) _mm_storeu_ps(acc + i + 4 * q, _mm_mul_ps(a[q], vnorm));
  }
}

namespace {

// One pixel's fold in four float lanes, same order as the reference.
inline __m128 Fold(const float* a, int32_t n, float w0, float w1, __m128 norm) {
  __m128 acc = _mm_mul_ps(_mm_set1_ps(w0), _mm_loadu_ps(a));
  for (int32_t j = 1; j + 1 < n; ++j) acc = _mm_add_ps(acc, _mm_loadu_ps(a + 4 * j));
  if (n >= 2) acc = _mm_add_ps(acc, _mm_mul_ps(_mm_set1_ps(w1), _mm_loadu_ps(a + 4 * (n - 1))));
  return _mm_mul_ps(acc, norm);
}

}  // namespace

void MeanVertRow_Any_SSE2(float* acc, const uint8_t* const* rows, int32_t n, float w0,
                          float w1, float norm, std::size_t begin, std::size_t end) {
  const std::size_t split = begin + ((end - begin) & ~std::size_t{15});
  if (split != begin) MeanVertRow_SSE2(acc, rows, n, w0, w1, norm, begin, split);
  MeanVertRow_C(acc, rows, n, w0, w1, norm, split, end);
}

void MeanHorizRow_SSE2(uint8_t* dst, const float* acc, const int32_t* counts,
                       const float* weights, float norm, std::size_t width) {
  const __m128 vnorm = _mm_set1_ps(norm);
  const __m128 lo = _mm_setzero_ps(), hi = _mm_set1_ps(255.0f);
  for (std::size_t i = 0; i < width; ++i) {
    const __m128 v = Fold(acc, counts[i], weights[2 * i], weights[2 * i + 1], vnorm);
    // Clamped first, so the conversion (round to nearest even under the
    // default rounding mode) never leaves 0..255.
    const __m128i q = _mm_cvtps_epi32(_mm_min_ps(_mm_max_ps(v, lo), hi));
    const __m128i w = _mm_packs_epi32(q, q);
    const int packed = _mm_cvtsi128_si32(_mm_packus_epi16(w, w));
    __builtin_memcpy(dst + 4 * i, &packed, 4);
    acc += 4 * MeanStep(counts[i]);
  }
}

void YuyvMeanHorizRow_SSE2(uint8_t* dst, const float* quads, const int32_t* counts,
                           const float* weights, float norm, const YuyvMeanParams* params,
                           std::size_t width) {
  const __m128 vnorm = _mm_set1_ps(norm);
  const float* g = params->g_terms;
  const float* rb = params->rb_terms;
  for (std::size_t i = 0; i < width; ++i, dst += 4) {
    alignas(16) float q[4];
    _mm_store_ps(q, Fold(quads, counts[i], weights[2 * i], weights[2 * i + 1], vnorm));
    const float u = q[1] - 128.0f;
    const float v = q[2] - 128.0f;
    dst[params->red_byte] = MeanByte(v * rb[2] + q[0] * rb[0]);
    dst[1] = MeanByte(g[1] * u + (g[2] * v + g[0] * q[0]));
    dst[params->blue_byte] = MeanByte(q[3] * rb[3] + u * rb[1]);
    dst[3] = 255;
    quads += 4 * MeanStep(counts[i]);
  }
}

}  // namespace qbo
