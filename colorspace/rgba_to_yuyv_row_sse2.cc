// SSE2 rows of the RGB to YUYV conversions, eight pixels a step; 24-bit
// pixels are spread to 32-bit lanes first and share the 32-bit core.
//
// Each term is pmulhw of a 2^14 weight and b << 7 (the high half of
// w * b * 128 is floor(w * b / 512)), so every product is truncated on its
// own exactly as in the reference. The sums of three terms and the offsets
// are exact in 16 bits (see the row header), so adding them in a different
// order, or pairwise with pmaddwd, changes nothing.
#include <emmintrin.h>

#include "colorspace/rgba_to_yuyv_row.h"

namespace qbo {

namespace {

struct Weights {
  __m128i y_even, y_odd;  // luma, lanes [byte 0|2 weight] and [byte 1|3 weight]
  __m128i uv_02;          // per even pixel, lanes [U of byte 0, V of byte 2]
  __m128i uv_20;          // [U of byte 2, V of byte 0]
  __m128i uv_11;          // [U of byte 1, V of byte 1]
};

__m128i PairOfLanes(int16_t lo, int16_t hi) {
  return _mm_set1_epi32(static_cast<int>(static_cast<uint16_t>(lo) |
                                         static_cast<uint32_t>(static_cast<uint16_t>(hi)) << 16));
}

Weights LoadWeights(const RgbToYuyvParams& p) {
  const int16_t* u = p.u->v;
  const int16_t* v = p.v->v;
  return Weights{_mm_loadu_si128(reinterpret_cast<const __m128i*>(p.y_even->v)),
                 _mm_loadu_si128(reinterpret_cast<const __m128i*>(p.y_odd->v)),
                 PairOfLanes(u[0], v[2]), PairOfLanes(u[2], v[0]), PairOfLanes(u[1], v[1])};
}

// Bytes 0, 2, 4, ... (resp. 1, 3, 5, ...) of `x` as 16-bit lanes times 128.
__m128i EvenBytesQ7(__m128i x) { return _mm_srli_epi16(_mm_slli_epi16(x, 8), 1); }
__m128i OddBytesQ7(__m128i x) {
  return _mm_and_si128(_mm_srli_epi16(x, 1), _mm_set1_epi16(0x7F80));
}

// Luma sums of four pixels as 32-bit lanes: per pixel the lanes
// [t0 + t1, t2 + 0] from the pair vectors, added pairwise by pmaddwd.
__m128i LumaSums(__m128i px, const Weights& w) {
  const __m128i t = _mm_add_epi16(_mm_mulhi_epi16(EvenBytesQ7(px), w.y_even),
                                  _mm_mulhi_epi16(OddBytesQ7(px), w.y_odd));
  return _mm_madd_epi16(t, _mm_set1_epi16(1));
}

// Pixels 0..3 in `a` and 4..7 in `b` (4 bytes each, byte 3 ignored) to 16
// YUYV bytes.
__m128i EightPixels(__m128i a, __m128i b, const Weights& w) {
  __m128i y = _mm_packs_epi32(LumaSums(a, w), LumaSums(b, w));
  y = _mm_srli_epi16(_mm_add_epi16(y, _mm_set1_epi16(16)), 5);

  // Even pixels p0 p2 p4 p6; per pixel two lanes that become [U, V]:
  // [b0, b2] x [u0, v2] + [b2, b0] x [u2, v0] + [b1, b1] x [u1, v1].
  const __m128i even = _mm_castps_si128(
      _mm_shuffle_ps(_mm_castsi128_ps(a), _mm_castsi128_ps(b), _MM_SHUFFLE(2, 0, 2, 0)));
  const __m128i b02 = EvenBytesQ7(even);
  const __m128i b20 = _mm_shufflehi_epi16(_mm_shufflelo_epi16(b02, _MM_SHUFFLE(2, 3, 0, 1)),
                                          _MM_SHUFFLE(2, 3, 0, 1));
  const __m128i b13 = OddBytesQ7(even);
  const __m128i b11 = _mm_shufflehi_epi16(_mm_shufflelo_epi16(b13, _MM_SHUFFLE(2, 2, 0, 0)),
                                          _MM_SHUFFLE(2, 2, 0, 0));
  __m128i uv =
      _mm_add_epi16(_mm_add_epi16(_mm_mulhi_epi16(b02, w.uv_02), _mm_mulhi_epi16(b20, w.uv_20)),
                    _mm_mulhi_epi16(b11, w.uv_11));
  uv = _mm_srli_epi16(_mm_add_epi16(uv, _mm_set1_epi16(16 + 4096)), 5);

  // y = Y0..Y7, uv = U0 V0 U2 V2 U4 V4 U6 V6; packus gives the limit 255.
  return _mm_packus_epi16(_mm_unpacklo_epi16(y, uv), _mm_unpackhi_epi16(y, uv));
}

// Byte 3 of each of the eight pixels, in the low 8 bytes.
__m128i EightAlphas(__m128i a, __m128i b) {
  const __m128i words = _mm_packs_epi32(_mm_srli_epi32(a, 24), _mm_srli_epi32(b, 24));
  return _mm_packus_epi16(words, words);
}

// Twelve bytes of four 24-bit pixels (bytes 0..11 of `g`) to four 32-bit
// lanes; byte 3 of each lane is the next pixel's first byte, which only
// ever meets a zero weight.
__m128i SpreadFour24(__m128i g) {
  const __m128i p01 = _mm_unpacklo_epi32(g, _mm_srli_si128(g, 3));
  const __m128i p23 = _mm_unpacklo_epi32(_mm_srli_si128(g, 6), _mm_srli_si128(g, 9));
  return _mm_unpacklo_epi64(p01, p23);
}

}  // namespace

void RgbaToYuyvRow_SSE2(const uint8_t* src, uint8_t* dst, int width,
                        const RgbToYuyvParams* params) {
  const Weights w = LoadWeights(*params);
  for (int x = 0; x < width; x += 8, src += 32, dst += 16) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 16));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), EightPixels(a, b, w));
  }
}

void RgbaToYuyvAlphaRow_SSE2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                             const RgbToYuyvParams* params) {
  const Weights w = LoadWeights(*params);
  for (int x = 0; x < width; x += 8, src += 32, dst += 16, alpha += 8) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 16));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), EightPixels(a, b, w));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(alpha), EightAlphas(a, b));
  }
}

void Rgb24ToYuyvRow_SSE2(const uint8_t* src, uint8_t* dst, int width,
                         const RgbToYuyvParams* params) {
  const Weights w = LoadWeights(*params);
  for (int x = 0; x < width; x += 8, src += 24, dst += 16) {
    // Bytes 0..15 and 16..23: exactly the 24 bytes of the eight pixels.
    const __m128i lo = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
    const __m128i hi = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(src + 16));
    const __m128i second = _mm_or_si128(_mm_srli_si128(lo, 12), _mm_slli_si128(hi, 4));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst),
                     EightPixels(SpreadFour24(lo), SpreadFour24(second), w));
  }
}

void RgbaToYuyvRow_Any_SSE2(const uint8_t* src, uint8_t* dst, int width,
                            const RgbToYuyvParams* params) {
  RunAnyRow<8, 4>(RgbaToYuyvRow_SSE2, RgbaToYuyvRow_C, src, dst, width, params);
}

void RgbaToYuyvAlphaRow_Any_SSE2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                                 const RgbToYuyvParams* params) {
  RunAnyAlphaRow<8>(RgbaToYuyvAlphaRow_SSE2, src, dst, alpha, width, params);
}

void Rgb24ToYuyvRow_Any_SSE2(const uint8_t* src, uint8_t* dst, int width,
                             const RgbToYuyvParams* params) {
  RunAnyRow<8, 3>(Rgb24ToYuyvRow_SSE2, Rgb24ToYuyvRow_C, src, dst, width, params);
}

}  // namespace qbo
