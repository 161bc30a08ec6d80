// AVX2 rows of the layout conversions: 32 pixels (or 32 chroma bytes) a
// step, byte-identical to the reference rows. 256-bit unpacks and packs
// work within each 128-bit lane, so every row below says where its lanes
// end up and how they are put back in order.
#include <immintrin.h>

#include "yuvlayout/yuvlayout_row.h"

namespace qbo {

namespace {

__m256i Load(const uint8_t* p) {
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}
__m128i Load16(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
void Store(uint8_t* p, __m256i v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
void Store16(uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }

constexpr int kQwordOrder0213 = 0xD8;  // qwords 0, 2, 1, 3

__m256i ChromaWords(const uint8_t* p) { return _mm256_srli_epi16(Load(p), 8); }

__m256i TapSum(const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* d,
               const __m256i (&tap)[4], __m256i round, __m128i shift) {
  __m256i s = _mm256_add_epi16(_mm256_mullo_epi16(ChromaWords(a), tap[0]), round);
  s = _mm256_add_epi16(s, _mm256_mullo_epi16(ChromaWords(b), tap[1]));
  s = _mm256_add_epi16(s, _mm256_mullo_epi16(ChromaWords(c), tap[2]));
  s = _mm256_add_epi16(s, _mm256_mullo_epi16(ChromaWords(d), tap[3]));
  return _mm256_srl_epi16(s, shift);
}

}  // namespace

void InterleaveYuyvRow_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            int width) {
  for (int x = 0; x < width; x += 32, dst += 64, y += 32, u += 16, v += 16) {
    const __m128i cu = Load16(u), cv = Load16(v);
    // uv = [U0 V0 .. U7 V7 | U8 V8 .. U15 V15]
    const __m256i uv = _mm256_set_m128i(_mm_unpackhi_epi8(cu, cv), _mm_unpacklo_epi8(cu, cv));
    const __m256i luma = Load(y);  // [Y0..Y15 | Y16..Y31]
    // lo = [pixels 0..7 | 16..23], hi = [pixels 8..15 | 24..31]
    const __m256i lo = _mm256_unpacklo_epi8(luma, uv);
    const __m256i hi = _mm256_unpackhi_epi8(luma, uv);
    Store(dst, _mm256_permute2x128_si256(lo, hi, 0x20));
    Store(dst + 32, _mm256_permute2x128_si256(lo, hi, 0x31));
  }
}

void BlendChromaRow_AVX2(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,
                         const ChromaBlend* w) {
  // Bytes of a and b interleaved meet weight pairs (wa, wb) in one
  // unsigned-by-signed multiply-add: wa*a + wb*b per 16-bit lane, at most
  // 8 x 255, far from saturation.
  const __m256i weights = _mm256_set1_epi16(static_cast<int16_t>(w->wa | (w->wb << 8)));
  const __m256i four = _mm256_set1_epi16(4);
  for (int i = 0; i < count; i += 32) {
    const __m256i va = Load(a + i), vb = Load(b + i);
    const __m256i lo = _mm256_srli_epi16(
        _mm256_add_epi16(_mm256_maddubs_epi16(_mm256_unpacklo_epi8(va, vb), weights), four), 3);
    const __m256i hi = _mm256_srli_epi16(
        _mm256_add_epi16(_mm256_maddubs_epi16(_mm256_unpackhi_epi8(va, vb), weights), four), 3);
    // unpack and pack both stay in their lane, so the order comes back.
    Store(dst + i, _mm256_packus_epi16(lo, hi));
  }
}

void YuyvToLumaRow_AVX2(uint8_t* dst_y, const uint8_t* src, int width) {
  const __m256i low_bytes = _mm256_set1_epi16(0x00FF);
  for (int x = 0; x < width; x += 32) {
    const __m256i a = _mm256_and_si256(Load(src + 2 * x), low_bytes);       // Y0..7 | Y8..15
    const __m256i b = _mm256_and_si256(Load(src + 2 * x + 32), low_bytes);  // Y16..23 | Y24..31
    // pack gives [Y0..7 Y16..23 | Y8..15 Y24..31]; reorder the qwords.
    Store(dst_y + x, _mm256_permute4x64_epi64(_mm256_packus_epi16(a, b), kQwordOrder0213));
  }
}

void YuyvToChromaRow_AVX2(uint8_t* dst_u, uint8_t* dst_v, const uint8_t* a, const uint8_t* b,
                          const uint8_t* c, const uint8_t* d, int width, const ChromaTaps* t) {
  const __m256i tap[4] = {_mm256_set1_epi16(t->ta), _mm256_set1_epi16(t->tb),
                          _mm256_set1_epi16(t->tc), _mm256_set1_epi16(t->td)};
  const __m256i round = _mm256_set1_epi16(static_cast<int16_t>(t->round));
  const __m128i shift = _mm_cvtsi32_si128(t->shift);
  const __m256i low_bytes = _mm256_set1_epi16(0x00FF);
  for (int x = 0; x < width; x += 32) {
    const int o = 2 * x;
    // s0 = [c0..c7 | c8..c15], s1 = [c16..c23 | c24..c31] with c = U0 V0 U1 V1 ...
    const __m256i s0 = TapSum(a + o, b + o, c + o, d + o, tap, round, shift);
    const __m256i s1 = TapSum(a + o + 32, b + o + 32, c + o + 32, d + o + 32, tap, round, shift);
    // Shifted lanes are below 32768, so the signed pack is min(255, s).
    const __m256i uv =
        _mm256_permute4x64_epi64(_mm256_packus_epi16(s0, s1), kQwordOrder0213);  // c0..c31
    // [U0..7 V0..7 | U8..15 V8..15] -> [U0..15 | V0..15]
    const __m256i split = _mm256_permute4x64_epi64(
        _mm256_packus_epi16(_mm256_and_si256(uv, low_bytes), _mm256_srli_epi16(uv, 8)),
        kQwordOrder0213);
    Store16(dst_u + x / 2, _mm256_castsi256_si128(split));
    Store16(dst_v + x / 2, _mm256_extracti128_si256(split, 1));
  }
}

// The tails go through the SSE2 Any rows, which finish with the reference.
void InterleaveYuyvRow_Any_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                const uint8_t* v, int width) {
  const int n = width & ~31;
  if (n) InterleaveYuyvRow_AVX2(dst, y, u, v, n);
  InterleaveYuyvRow_Any_SSE2(dst + 2 * n, y + n, u + n / 2, v + n / 2, width - n);
}

void BlendChromaRow_Any_AVX2(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,
                             const ChromaBlend* w) {
  const int n = count & ~31;
  if (n) BlendChromaRow_AVX2(dst, a, b, n, w);
  BlendChromaRow_Any_SSE2(dst + n, a + n, b + n, count - n, w);
}

void YuyvToLumaRow_Any_AVX2(uint8_t* dst_y, const uint8_t* src, int width) {
  const int n = width & ~31;
  if (n) YuyvToLumaRow_AVX2(dst_y, src, n);
  YuyvToLumaRow_Any_SSE2(dst_y + n, src + 2 * n, width - n);
}

void YuyvToChromaRow_Any_AVX2(uint8_t* dst_u, uint8_t* dst_v, const uint8_t* a,
                              const uint8_t* b, const uint8_t* c, const uint8_t* d, int width,
                              const ChromaTaps* taps) {
  const int n = width & ~31;
  if (n) YuyvToChromaRow_AVX2(dst_u, dst_v, a, b, c, d, n, taps);
  const int o = 2 * n;
  YuyvToChromaRow_Any_SSE2(dst_u + n / 2, dst_v + n / 2, a + o, b + o, c + o, d + o, width - n,
                           taps);
}

}  // namespace qbo
