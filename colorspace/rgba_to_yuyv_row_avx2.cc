// AVX2 rows of the RGB to YUYV conversions, sixteen pixels a step; 24-bit
// pixels are spread to 32-bit lanes first and share the 32-bit core.
//
// The bytes are widened and scaled in one pmaddubsw against [64, 0] or
// [0, 64] (b * 64, at most 16320, no saturation), and the weights are
// doubled (|2w| <= 23434 fits in 16 bits), so pmulhw gives the high half
// of 2w * 64b = w * b * 128: floor(w * b / 512), each term truncated on its
// own as in the reference. The sums are exact in 16 bits, so their order
// is free.
#include <immintrin.h>

#include "colorspace/rgba_to_yuyv_row.h"

namespace qbo {

namespace {

struct Weights {
  __m256i y_even, y_odd;        // 2 x luma, lanes [byte 0|2 weight], [byte 1|3 weight]
  __m256i uv_02, uv_20, uv_11;  // 2 x [U of byte 0, V of byte 2] and so on
};

__m256i PairOfLanes(int16_t lo, int16_t hi) {
  const uint32_t lo2 = static_cast<uint16_t>(2 * lo);
  const uint32_t hi2 = static_cast<uint16_t>(2 * hi);
  return _mm256_set1_epi32(static_cast<int>(lo2 | hi2 << 16));
}

__m256i Doubled(const Lanes8* v) {
  const __m256i x =
      _mm256_broadcastsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(v->v)));
  return _mm256_add_epi16(x, x);
}

Weights LoadWeights(const RgbToYuyvParams& p) {
  const int16_t* u = p.u->v;
  const int16_t* v = p.v->v;
  return Weights{Doubled(p.y_even), Doubled(p.y_odd), PairOfLanes(u[0], v[2]),
                 PairOfLanes(u[2], v[0]), PairOfLanes(u[1], v[1])};
}

// Bytes 0, 2, 4, ... (resp. 1, 3, 5, ...) as 16-bit lanes times 64.
__m256i EvenBytesQ6(__m256i x) { return _mm256_maddubs_epi16(x, _mm256_set1_epi16(64)); }
__m256i OddBytesQ6(__m256i x) { return _mm256_maddubs_epi16(x, _mm256_set1_epi16(64 << 8)); }

// Pixels 0..7 in `a` and 8..15 in `b` (byte 3 ignored) to 32 YUYV bytes.
__m256i SixteenPixels(__m256i a, __m256i b, const Weights& w) {
  // Per pixel the lanes [b0, b2] and [b1, b3], times 64.
  const __m256i even_a = EvenBytesQ6(a), odd_a = OddBytesQ6(a);
  const __m256i even_b = EvenBytesQ6(b), odd_b = OddBytesQ6(b);

  // Per pixel [t0 + t1, t2 + 0]; phaddw sums each pixel's two lanes:
  // y = [Y0..Y3 Y8..Y11 | Y4..Y7 Y12..Y15].
  __m256i y = _mm256_hadd_epi16(
      _mm256_add_epi16(_mm256_mulhi_epi16(even_a, w.y_even), _mm256_mulhi_epi16(odd_a, w.y_odd)),
      _mm256_add_epi16(_mm256_mulhi_epi16(even_b, w.y_even), _mm256_mulhi_epi16(odd_b, w.y_odd)));
  y = _mm256_srli_epi16(_mm256_add_epi16(y, _mm256_set1_epi16(16)), 5);

  // The even pixels p0 p2 p8 p10 | p4 p6 p12 p14 (dwords 0 and 2 of each
  // lane of a, then of b); per pixel two lanes that become [U, V]:
  // [b0, b2] x [u0, v2] + [b2, b0] x [u2, v0] + [b1, b1] x [u1, v1].
  const __m256i b02 = _mm256_castps_si256(_mm256_shuffle_ps(
      _mm256_castsi256_ps(even_a), _mm256_castsi256_ps(even_b), _MM_SHUFFLE(2, 0, 2, 0)));
  const __m256i b13 = _mm256_castps_si256(_mm256_shuffle_ps(
      _mm256_castsi256_ps(odd_a), _mm256_castsi256_ps(odd_b), _MM_SHUFFLE(2, 0, 2, 0)));
  const __m256i swap_words =
      _mm256_setr_epi8(2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13,  //
                       2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13);
  const __m256i low_word_twice =
      _mm256_setr_epi8(0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13,  //
                       0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13);
  const __m256i b20 = _mm256_shuffle_epi8(b02, swap_words);
  const __m256i b11 = _mm256_shuffle_epi8(b13, low_word_twice);
  __m256i uv = _mm256_add_epi16(
      _mm256_add_epi16(_mm256_mulhi_epi16(b02, w.uv_02), _mm256_mulhi_epi16(b20, w.uv_20)),
      _mm256_mulhi_epi16(b11, w.uv_11));
  uv = _mm256_srli_epi16(_mm256_add_epi16(uv, _mm256_set1_epi16(16 + 4096)), 5);

  // packuswb (the limit 255) gives per lane Y0..Y3 Y8..Y11 U0 V0 U2 V2 U8
  // V8 U10 V10 (and the same for pixels 4..7, 12..15); pshufb interleaves
  // the halves to [p0..3 p8..11 | p4..7 p12..15] and vpermq orders them.
  const __m256i interleave =
      _mm256_setr_epi8(0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15,  //
                       0, 8, 1, 9, 2, 10, 3, 11, 4, 12, 5, 13, 6, 14, 7, 15);
  const __m256i packed = _mm256_shuffle_epi8(_mm256_packus_epi16(y, uv), interleave);
  return _mm256_permute4x64_epi64(packed, _MM_SHUFFLE(3, 1, 2, 0));
}

// Byte 3 of each of the sixteen pixels, in order.
__m128i SixteenAlphas(__m256i a, __m256i b) {
  // words = [a0..3 a8..11 | a4..7 a12..15]
  const __m256i words = _mm256_packs_epi32(_mm256_srli_epi32(a, 24), _mm256_srli_epi32(b, 24));
  const __m128i bytes =
      _mm_packus_epi16(_mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1));
  return _mm_shuffle_epi32(bytes, _MM_SHUFFLE(3, 1, 2, 0));
}

__m256i Load2x128(const uint8_t* lo, const uint8_t* hi) {
  return _mm256_inserti128_si256(
      _mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(lo))),
      _mm_loadu_si128(reinterpret_cast<const __m128i*>(hi)), 1);
}

}  // namespace

void RgbaToYuyvRow_AVX2(const uint8_t* src, uint8_t* dst, int width,
                        const RgbToYuyvParams* params) {
  const Weights w = LoadWeights(*params);
  for (int x = 0; x < width; x += 16, src += 64, dst += 32) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 32));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), SixteenPixels(a, b, w));
  }
}

void RgbaToYuyvAlphaRow_AVX2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                             const RgbToYuyvParams* params) {
  const Weights w = LoadWeights(*params);
  for (int x = 0; x < width; x += 16, src += 64, dst += 32, alpha += 16) {
    const __m256i a = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src));
    const __m256i b = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + 32));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), SixteenPixels(a, b, w));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(alpha), SixteenAlphas(a, b));
  }
}

void Rgb24ToYuyvRow_AVX2(const uint8_t* src, uint8_t* dst, int width,
                         const RgbToYuyvParams* params) {
  const Weights w = LoadWeights(*params);
  // Loads at bytes 0, 12, 24 and 32 cover the 48 bytes of sixteen pixels
  // without reading past them; the last load holds pixels 12..15 from its
  // byte 4. pshufb spreads each 128-bit lane's four pixels to 32-bit lanes
  // with a zero byte 3.
  const __m256i from0 =
      _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                       0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  const __m256i from0_4 =
      _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1,  //
                       4, 5, 6, -1, 7, 8, 9, -1, 10, 11, 12, -1, 13, 14, 15, -1);
  for (int x = 0; x < width; x += 16, src += 48, dst += 32) {
    const __m256i a = _mm256_shuffle_epi8(Load2x128(src, src + 12), from0);
    const __m256i b = _mm256_shuffle_epi8(Load2x128(src + 24, src + 32), from0_4);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), SixteenPixels(a, b, w));
  }
}

void RgbaToYuyvRow_Any_AVX2(const uint8_t* src, uint8_t* dst, int width,
                            const RgbToYuyvParams* params) {
  RunAnyRow<16, 4>(RgbaToYuyvRow_AVX2, RgbaToYuyvRow_C, src, dst, width, params);
}

void RgbaToYuyvAlphaRow_Any_AVX2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                                 const RgbToYuyvParams* params) {
  RunAnyAlphaRow<16>(RgbaToYuyvAlphaRow_AVX2, src, dst, alpha, width, params);
}

void Rgb24ToYuyvRow_Any_AVX2(const uint8_t* src, uint8_t* dst, int width,
                             const RgbToYuyvParams* params) {
  RunAnyRow<16, 3>(Rgb24ToYuyvRow_AVX2, Rgb24ToYuyvRow_C, src, dst, width, params);
}

}  // namespace qbo
