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
  // A last row of weight 0 adds +0 to a sum >= 0, which changes nothing:
  // it is not read (an area that ends on a row boundary has one).
  const bool last_counts = w1 != 0.0f;
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
      for (int q = 0; q < 4; ++q) a[q] = _mm_add_ps(a[q], middle[q]);
      if (last_counts) {
        BytesToFloats(rows[n - 1] + i, last);
        for (int q = 0; q < 4; ++q) a[q] = _mm_add_ps(a[q], _mm_mul_ps(vw1, last[q]));
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
  // A last sample of weight 0 would add +0 to a sum >= 0.
  if (n >= 2 && w1 != 0.0f) acc = _mm_add_ps(acc, _mm_mul_ps(_mm_set1_ps(w1), _mm_loadu_ps(a + 4 * (n - 1))));
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

// Lanes: acc = (Y0, U, Y1, V); the chroma means sit in lanes 1 and 3 of
// (acc + next) x 0.5. Quad 2k = acc lanes (0, 1, 3, 0); quad 2k + 1 picks
// (Y1, Y1, U', V') across acc and the means, then reorders to (0, 2, 3, 1).
void YuyvExpandRow_SSE2(float* quads, const float* acc, std::size_t groups) {
  const __m128 half = _mm_set1_ps(0.5f);
  for (std::size_t g = 0; g < groups; ++g, acc += 4, quads += 8) {
    const __m128 a = _mm_loadu_ps(acc);
    const __m128 next = g + 1 < groups ? _mm_loadu_ps(acc + 4) : a;
    const __m128 mean = _mm_mul_ps(_mm_add_ps(a, next), half);
    const __m128 odd = _mm_shuffle_ps(a, mean, _MM_SHUFFLE(3, 1, 2, 2));
    _mm_storeu_ps(quads, _mm_shuffle_ps(a, a, _MM_SHUFFLE(0, 3, 1, 0)));
    _mm_storeu_ps(quads + 4, _mm_shuffle_ps(odd, odd, _MM_SHUFFLE(1, 3, 2, 0)));
  }
}

namespace {

// Converts a folded quad (y, u, v, y) in the reference's operation order:
//   m1 = (u', u', v', 0) x (bU, gU, rV, 0)
//   m2 = (y3, v', y, 0) x (rbY2, gV, rbY, 0)   (y3: the quad's lane 3)
//   m3 = (0, y, 0, 0) x (0, gY, 0, 0)
//   m1 + (m2 + m3) = (u'bU + y rbY2, gU u' + (gV v' + gY y), v'rV + y rbY)
// which is B, G, R: the additions the reference makes, operands swapped
// where it adds (a sum of two floats does not depend on their order), and
// m2 + 0 = m2 (m2 is never -0: y >= 0). kRgba swaps B and R at the end.
template <bool kRgba>
void YuyvMeanHorizRow(uint8_t* dst, const float* quads, const int32_t* counts,
                      const float* weights, float norm, const YuyvMeanParams* params,
                      std::size_t width) {
  const __m128 vnorm = _mm_set1_ps(norm);
  const float* g = params->g_terms;
  const float* rb = params->rb_terms;
  const __m128 c1 = _mm_setr_ps(rb[1], g[1], rb[2], 0.0f);
  const __m128 c2 = _mm_setr_ps(rb[3], g[2], rb[0], 0.0f);
  const __m128 c3 = _mm_setr_ps(0.0f, g[0], 0.0f, 0.0f);
  const __m128 offset = _mm_setr_ps(0.0f, 128.0f, 128.0f, 0.0f);
  const __m128 lo = _mm_setzero_ps(), hi = _mm_set1_ps(255.0f);
  const __m128i alpha = _mm_setr_epi32(0, 0, 0, 255);
  for (std::size_t i = 0; i < width; ++i) {
    const __m128 q = _mm_sub_ps(Fold(quads, counts[i], weights[2 * i], weights[2 * i + 1], vnorm), offset);
    const __m128 m1 = _mm_mul_ps(_mm_shuffle_ps(q, q, _MM_SHUFFLE(0, 2, 1, 1)), c1);
    const __m128 m2 = _mm_mul_ps(_mm_shuffle_ps(q, q, _MM_SHUFFLE(0, 0, 2, 3)), c2);
    const __m128 m3 = _mm_mul_ps(_mm_shuffle_ps(q, q, 0), c3);
    __m128i v = _mm_cvtps_epi32(_mm_min_ps(_mm_max_ps(_mm_add_ps(m1, _mm_add_ps(m2, m3)), lo), hi));
    v = _mm_or_si128(_mm_and_si128(v, _mm_setr_epi32(-1, -1, -1, 0)), alpha);
    if (kRgba) v = _mm_shuffle_epi32(v, _MM_SHUFFLE(3, 0, 1, 2));
    const __m128i w16 = _mm_packs_epi32(v, v);
    const int packed = _mm_cvtsi128_si32(_mm_packus_epi16(w16, w16));
    __builtin_memcpy(dst + 4 * i, &packed, 4);
    quads += 4 * MeanStep(counts[i]);
  }
}

}  // namespace

void YuyvMeanHorizRow_SSE2(uint8_t* dst, const float* quads, const int32_t* counts,
                           const float* weights, float norm, const YuyvMeanParams* params,
                           std::size_t width) {
  (params->red_byte == 0 ? YuyvMeanHorizRow<true> : YuyvMeanHorizRow<false>)(
      dst, quads, counts, weights, norm, params, width);
}

}  // namespace qbo
