// SSE2 rows of the layout conversions: 16 pixels (or 16 chroma bytes) a
// step, byte-identical to the reference rows.
#include <emmintrin.h>

#include "yuvlayout/yuvlayout_row.h"

namespace qbo {

namespace {

__m128i Load(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
__m128i Load8(const uint8_t* p) { return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p)); }
void Store(uint8_t* p, __m128i v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
void Store8(uint8_t* p, __m128i v) { _mm_storel_epi64(reinterpret_cast<__m128i*>(p), v); }

// The chroma words of 8 YUYV pixels: U0 V0 U1 V1 U2 V2 U3 V3 as 16-bit lanes.
__m128i ChromaWords(const uint8_t* p) { return _mm_srli_epi16(Load(p), 8); }

// ta*a + tb*b + tc*c + td*d + round over 8 chroma words of each row,
// wrapping in 16 bits like the reference, then the logical shift.
__m128i TapSum(const uint8_t* a, const uint8_t* b, const uint8_t* c, const uint8_t* d,
               const __m128i (&tap)[4], __m128i round, __m128i shift) {
  __m128i s = _mm_add_epi16(_mm_mullo_epi16(ChromaWords(a), tap[0]), round);
  s = _mm_add_epi16(s, _mm_mullo_epi16(ChromaWords(b), tap[1]));
  s = _mm_add_epi16(s, _mm_mullo_epi16(ChromaWords(c), tap[2]));
  s = _mm_add_epi16(s, _mm_mullo_epi16(ChromaWords(d), tap[3]));
  return _mm_srl_epi16(s, shift);
}

}  // namespace

void InterleaveYuyvRow_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            int width) {
  for (int x = 0; x < width; x += 16, dst += 32, y += 16, u += 8, v += 8) {
    const __m128i luma = Load(y);
    const __m128i uv = _mm_unpacklo_epi8(Load8(u), Load8(v));  // U0 V0 U1 V1 ...
    Store(dst, _mm_unpacklo_epi8(luma, uv));                    // Y0 U0 Y1 V0 ...
    Store(dst + 16, _mm_unpackhi_epi8(luma, uv));
  }
}

void BlendChromaRow_SSE2(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,
                         const ChromaBlend* w) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i wa = _mm_set1_epi16(static_cast<int16_t>(w->wa));
  const __m128i wb = _mm_set1_epi16(static_cast<int16_t>(w->wb));
  const __m128i four = _mm_set1_epi16(4);
  for (int i = 0; i < count; i += 16) {
    const __m128i va = Load(a + i), vb = Load(b + i);
    // 8 x 255 + 4 fits easily in 16 bits; the shifted result fits a byte.
    const __m128i lo = _mm_srli_epi16(
        _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(_mm_unpacklo_epi8(va, zero), wa),
                                    _mm_mullo_epi16(_mm_unpacklo_epi8(vb, zero), wb)),
                      four),
        3);
    const __m128i hi = _mm_srli_epi16(
        _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(_mm_unpackhi_epi8(va, zero), wa),
                                    _mm_mullo_epi16(_mm_unpackhi_epi8(vb, zero), wb)),
                      four),
        3);
    Store(dst + i, _mm_packus_epi16(lo, hi));
  }
}

void YuyvToLumaRow_SSE2(uint8_t* dst_y, const uint8_t* src, int width) {
  const __m128i low_bytes = _mm_set1_epi16(0x00FF);
  for (int x = 0; x < width; x += 16) {
    const __m128i a = _mm_and_si128(Load(src + 2 * x), low_bytes);
    const __m128i b = _mm_and_si128(Load(src + 2 * x + 16), low_bytes);
    Store(dst_y + x, _mm_packus_epi16(a, b));
  }
}

void YuyvToChromaRow_SSE2(uint8_t* dst_u, uint8_t* dst_v, const uint8_t* a, const uint8_t* b,
                          const uint8_t* c, const uint8_t* d, int width, const ChromaTaps* t) {
  const __m128i tap[4] = {_mm_set1_epi16(t->ta), _mm_set1_epi16(t->tb), _mm_set1_epi16(t->tc),
                          _mm_set1_epi16(t->td)};
  const __m128i round = _mm_set1_epi16(static_cast<int16_t>(t->round));
  const __m128i shift = _mm_cvtsi32_si128(t->shift);
  const __m128i low_bytes = _mm_set1_epi16(0x00FF);
  for (int x = 0; x < width; x += 16) {
    const int o = 2 * x;
    // After a shift of at least 1 every lane is below 32768, so the signed
    // pack saturates exactly like min(255, s).
    const __m128i uv = _mm_packus_epi16(TapSum(a + o, b + o, c + o, d + o, tap, round, shift),
                                        TapSum(a + o + 16, b + o + 16, c + o + 16, d + o + 16,
                                               tap, round, shift));  // U0 V0 ... U7 V7
    const __m128i uu = _mm_and_si128(uv, low_bytes);
    const __m128i vv = _mm_srli_epi16(uv, 8);
    const __m128i packed = _mm_packus_epi16(uu, vv);  // U0..U7 V0..V7
    Store8(dst_u + x / 2, packed);
    Store8(dst_v + x / 2, _mm_srli_si128(packed, 8));
  }
}

void InterleaveYuyvRow_Any_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                const uint8_t* v, int width) {
  const int n = width & ~15;
  if (n) InterleaveYuyvRow_SSE2(dst, y, u, v, n);
  InterleaveYuyvRow_C(dst + 2 * n, y + n, u + n / 2, v + n / 2, width - n);
}

void BlendChromaRow_Any_SSE2(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,
                             const ChromaBlend* w) {
  const int n = count & ~15;
  if (n) BlendChromaRow_SSE2(dst, a, b, n, w);
  BlendChromaRow_C(dst + n, a + n, b + n, count - n, w);
}

void YuyvToLumaRow_Any_SSE2(uint8_t* dst_y, const uint8_t* src, int width) {
  const int n = width & ~15;
  if (n) YuyvToLumaRow_SSE2(dst_y, src, n);
  YuyvToLumaRow_C(dst_y + n, src + 2 * n, width - n);
}

void YuyvToChromaRow_Any_SSE2(uint8_t* dst_u, uint8_t* dst_v, const uint8_t* a,
                              const uint8_t* b, const uint8_t* c, const uint8_t* d, int width,
                              const ChromaTaps* taps) {
  const int n = width & ~15;
  if (n) YuyvToChromaRow_SSE2(dst_u, dst_v, a, b, c, d, n, taps);
  // width - n keeps bit 1 of width, so the tail still finds the trailing
  // 2-pixel group.
  const int o = 2 * n;
  YuyvToChromaRow_C(dst_u + n / 2, dst_v + n / 2, a + o, b + o, c + o, d + o, width - n, taps);
}

}  // namespace qbo
