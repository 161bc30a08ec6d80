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

// Runs `sums(byte_offset)`, which gives 8 shifted chroma sums (U0 V0 .. U3
// V3) of the YUYV bytes at that offset, over the row and stores U and V.
// After a shift of at least 1 every lane is below 32768, so the signed pack
// saturates exactly like min(255, s).
template <typename Sums>
void ChromaLoop(uint8_t* dst_u, uint8_t* dst_v, int width, Sums sums) {
  const __m128i low_bytes = _mm_set1_epi16(0x00FF);
  for (int x = 0; x < width; x += 16) {
    const __m128i uv = _mm_packus_epi16(sums(2 * x), sums(2 * x + 16));  // U0 V0 ... U7 V7
    const __m128i packed =
        _mm_packus_epi16(_mm_and_si128(uv, low_bytes), _mm_srli_epi16(uv, 8));  // U0..7 V0..7
    Store8(dst_u + x / 2, packed);
    Store8(dst_v + x / 2, _mm_srli_si128(packed, 8));
  }
}

struct BlendWeights {
  explicit BlendWeights(const ChromaBlend* w)
      : wa(_mm_set1_epi16(static_cast<int16_t>(w->wa))),
        wb(_mm_set1_epi16(static_cast<int16_t>(w->wb))) {}
  __m128i wa, wb;
};

// (wa * a + wb * b + 4) >> 3 on 16 bytes; 8 x 255 + 4 fits easily in 16
// bits and the shifted result fits a byte.
__m128i Blend16(__m128i a, __m128i b, const BlendWeights& w) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i four = _mm_set1_epi16(4);
  const __m128i lo =
      _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(_mm_unpacklo_epi8(a, zero), w.wa),
                                  _mm_mullo_epi16(_mm_unpacklo_epi8(b, zero), w.wb)),
                    four);
  const __m128i hi =
      _mm_add_epi16(_mm_add_epi16(_mm_mullo_epi16(_mm_unpackhi_epi8(a, zero), w.wa),
                                  _mm_mullo_epi16(_mm_unpackhi_epi8(b, zero), w.wb)),
                    four);
  return _mm_packus_epi16(_mm_srli_epi16(lo, 3), _mm_srli_epi16(hi, 3));
}

// (p + 3c + 2) >> 2 with byte averages: t = floor((p + c) / 2) is the
// rounding average less the dropped half, and avg(t, c) =
// floor((p + 3c + 2) / 4) when p + c is even; when it is odd p + 3c is odd
// too, and floor((p + 3c + 1) / 4) == floor((p + 3c + 2) / 4) for odd sums.
__m128i QuarterMix(__m128i p, __m128i c) {
  const __m128i half_dropped = _mm_and_si128(_mm_xor_si128(p, c), _mm_set1_epi8(1));
  return _mm_avg_epu8(_mm_sub_epi8(_mm_avg_epu8(p, c), half_dropped), c);
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
  // The quarter rules (p + 3c + 2) >> 2 of plain 4:2:0 chroma need no
  // widening; see QuarterMix.
  if (IsQuarterMix(*w)) {
    const uint8_t* light = w->wa == 2 ? a : b;
    const uint8_t* heavy = w->wa == 2 ? b : a;
    for (int i = 0; i < count; i += 16) {
      Store(dst + i, QuarterMix(Load(light + i), Load(heavy + i)));
    }
    return;
  }
  const BlendWeights weights(w);
  for (int i = 0; i < count; i += 16) Store(dst + i, Blend16(Load(a + i), Load(b + i), weights));
}

void Yuv420ToYuyvRow_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                          const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i four = _mm_set1_epi16(4);
  const BlendWeights bw(w);
  auto mix = [&](__m128i a, __m128i b) {
    const __m128i s = _mm_add_epi16(_mm_mullo_epi16(a, bw.wa), _mm_mullo_epi16(b, bw.wb));
    return _mm_slli_epi16(_mm_srli_epi16(_mm_add_epi16(s, four), 3), 8);
  };
  for (int x = 0, h = 0; x < width; x += 16, h += 8) {
    // Chroma words c = U0 V0 U1 V1 ... of both source rows, 16 bits each.
    const __m128i uva = _mm_unpacklo_epi8(Load8(ua + h), Load8(va + h));
    const __m128i uvb = _mm_unpacklo_epi8(Load8(ub + h), Load8(vb + h));
    const __m128i a_lo = _mm_unpacklo_epi8(uva, zero), a_hi = _mm_unpackhi_epi8(uva, zero);
    const __m128i b_lo = _mm_unpacklo_epi8(uvb, zero), b_hi = _mm_unpackhi_epi8(uvb, zero);
    // A YUYV word is Y | c << 8: the mixed chroma (below 256) goes straight
    // into the high byte, with no pack and unpack in between.
    const __m128i luma = Load(y + x);
    Store(dst + 2 * x, _mm_or_si128(_mm_unpacklo_epi8(luma, zero), mix(a_lo, b_lo)));
    Store(dst + 2 * x + 16, _mm_or_si128(_mm_unpackhi_epi8(luma, zero), mix(a_hi, b_hi)));
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
  const __m128i round = _mm_set1_epi16(static_cast<int16_t>(t->round));
  const __m128i shift = _mm_cvtsi32_si128(t->shift);
  if (IsAverage(*t)) {
    // (2b + 2c + 2) >> 2 == (b + c + 1) >> 1, the rounding byte average.
    ChromaLoop(dst_u, dst_v, width,
               [&](int o) { return _mm_srli_epi16(_mm_avg_epu8(Load(b + o), Load(c + o)), 8); });
  } else if (t->ta == 0 && t->td == 0) {
    const __m128i tb = _mm_set1_epi16(t->tb), tc = _mm_set1_epi16(t->tc);
    ChromaLoop(dst_u, dst_v, width, [&](int o) {
      const __m128i s = _mm_add_epi16(_mm_mullo_epi16(ChromaWords(b + o), tb), round);
      return _mm_srl_epi16(_mm_add_epi16(s, _mm_mullo_epi16(ChromaWords(c + o), tc)), shift);
    });
  } else {
    const __m128i tap[4] = {_mm_set1_epi16(t->ta), _mm_set1_epi16(t->tb), _mm_set1_epi16(t->tc),
                            _mm_set1_epi16(t->td)};
    ChromaLoop(dst_u, dst_v, width, [&](int o) {
      return TapSum(a + o, b + o, c + o, d + o, tap, round, shift);
    });
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

void Yuv420ToYuyvRow_Any_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* ua,
                              const uint8_t* ub, const uint8_t* va, const uint8_t* vb, int width,
                              const ChromaBlend* w) {
  const int n = width & ~15;
  if (n) Yuv420ToYuyvRow_SSE2(dst, y, ua, ub, va, vb, n, w);
  const int h = n / 2;
  Yuv420ToYuyvRow_C(dst + 2 * n, y + n, ua + h, ub + h, va + h, vb + h, width - n, w);
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
