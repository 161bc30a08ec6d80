// AVX2 rows of the layout conversions: 32 pixels (or 32 chroma bytes) a
// step, byte-identical to the reference rows. 256-bit unpacks and packs
// work within each 128-bit lane, so every row below says where its lanes
// end up and how they are put back in order.
#include <immintrin.h>

#include "frame/simd_store.h"
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

// Runs `sums(byte_offset)`, which gives 16 shifted chroma sums
// [c0..c7 | c8..c15] (c = U0 V0 U1 V1 ...) of the YUYV bytes at that offset,
// over the row and stores U and V. Shifted lanes are below 32768, so the
// signed pack is min(255, s).
template <typename Sums>
void ChromaLoop(uint8_t* dst_u, uint8_t* dst_v, int width, Sums sums) {
  const __m256i low_bytes = _mm256_set1_epi16(0x00FF);
  for (int x = 0; x < width; x += 32) {
    // pack gives [c0..7 c16..23 | c8..15 c24..31]; reorder the qwords.
    const __m256i uv = _mm256_permute4x64_epi64(
        _mm256_packus_epi16(sums(2 * x), sums(2 * x + 32)), kQwordOrder0213);
    // [U0..7 V0..7 | U8..15 V8..15] -> [U0..15 | V0..15]
    const __m256i split = _mm256_permute4x64_epi64(
        _mm256_packus_epi16(_mm256_and_si256(uv, low_bytes), _mm256_srli_epi16(uv, 8)),
        kQwordOrder0213);
    Store16(dst_u + x / 2, _mm256_castsi256_si128(split));
    Store16(dst_v + x / 2, _mm256_extracti128_si256(split, 1));
  }
}

// 32 pixels of YUYV from 32 luma bytes [Y0..Y15 | Y16..Y31] and 16 U, 16 V.
void InterleaveStore(uint8_t* dst, __m256i luma, __m128i u, __m128i v) {
  // uv = [U0 V0 .. U7 V7 | U8 V8 .. U15 V15]
  const __m256i uv = _mm256_set_m128i(_mm_unpackhi_epi8(u, v), _mm_unpacklo_epi8(u, v));
  // lo = [pixels 0..7 | 16..23], hi = [pixels 8..15 | 24..31]
  const __m256i lo = _mm256_unpacklo_epi8(luma, uv);
  const __m256i hi = _mm256_unpackhi_epi8(luma, uv);
  Store(dst, _mm256_permute2x128_si256(lo, hi, 0x20));
  Store(dst + 32, _mm256_permute2x128_si256(lo, hi, 0x31));
}

// Bytes of a and b interleaved meet weight pairs (wa, wb) in one
// unsigned-by-signed multiply-add: wa*a + wb*b per 16-bit lane, at most
// 8 x 255, far from saturation.
__m256i BlendWeights(const ChromaBlend* w) {
  return _mm256_set1_epi16(static_cast<int16_t>(w->wa | (w->wb << 8)));
}

// (wa * a + wb * b + 4) >> 3 on 32 bytes. Unpack and pack both stay in
// their 128-bit lane, so the byte order comes back unchanged. With the sum
// s below 2048, (s + 4) >> 3 is mulhrs(s, 4096) = ((s >> 2) + 1) >> 1: for
// n = s >> 2 both are floor((n + 1) / 2), as s / 4 lies in [n, n + 1).
__m256i Blend32(__m256i a, __m256i b, __m256i weights) {
  const __m256i eighth = _mm256_set1_epi16(4096);
  const __m256i lo =
      _mm256_mulhrs_epi16(_mm256_maddubs_epi16(_mm256_unpacklo_epi8(a, b), weights), eighth);
  const __m256i hi =
      _mm256_mulhrs_epi16(_mm256_maddubs_epi16(_mm256_unpackhi_epi8(a, b), weights), eighth);
  return _mm256_packus_epi16(lo, hi);
}

// (p + 3c + 2) >> 2 with byte averages: t = floor((p + c) / 2) is the
// rounding average less the dropped half, and avg(t, c) =
// floor((p + 3c + 2) / 4) when p + c is even; when it is odd p + 3c is odd
// too, and floor((p + 3c + 1) / 4) == floor((p + 3c + 2) / 4) for odd sums.
__m256i QuarterMix(__m256i p, __m256i c) {
  const __m256i half_dropped = _mm256_and_si256(_mm256_xor_si256(p, c), _mm256_set1_epi8(1));
  return _mm256_avg_epu8(_mm256_sub_epi8(_mm256_avg_epu8(p, c), half_dropped), c);
}

}  // namespace

void InterleaveYuyvRow_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                            int width) {
  for (int x = 0; x < width; x += 32, dst += 64, y += 32, u += 16, v += 16) {
    InterleaveStore(dst, Load(y), Load16(u), Load16(v));
  }
}

void BlendChromaRow_AVX2(uint8_t* dst, const uint8_t* a, const uint8_t* b, int count,
                         const ChromaBlend* w) {
  // The quarter rules (p + 3c + 2) >> 2 of plain 4:2:0 chroma need no
  // widening; see QuarterMix.
  if (IsQuarterMix(*w)) {
    const uint8_t* light = w->wa == 2 ? a : b;
    const uint8_t* heavy = w->wa == 2 ? b : a;
    for (int i = 0; i < count; i += 32) {
      Store(dst + i, QuarterMix(Load(light + i), Load(heavy + i)));
    }
    return;
  }
  const __m256i weights = BlendWeights(w);
  for (int i = 0; i < count; i += 32) Store(dst + i, Blend32(Load(a + i), Load(b + i), weights));
}

namespace {

template <bool kQuarters, bool kStream>
void Yuv420ToYuyvRow(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                     const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w) {
  const __m256i weights = BlendWeights(w);
  const __m256i chroma_order = _mm256_setr_epi32(0, 4, 2, 6, 1, 5, 3, 7);
  const __m256i interleave = _mm256_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15,
                                              0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15);
  const bool a_light = w->wa == 2;
  for (int x = 0, h = 0; x < width; x += 32, h += 16) {
    const __m256i a = _mm256_set_m128i(Load16(va + h), Load16(ua + h));
    const __m256i b = _mm256_set_m128i(Load16(vb + h), Load16(ub + h));
    const __m256i mixed =
        kQuarters ? (a_light ? QuarterMix(a, b) : QuarterMix(b, a)) : Blend32(a, b, weights);
    const __m256i chroma =
        _mm256_shuffle_epi8(_mm256_permutevar8x32_epi32(mixed, chroma_order), interleave);
    const __m256i luma = _mm256_permute4x64_epi64(Load(y + x), kQwordOrder0213);
    Store32_AVX2<kStream>(dst + 2 * x, _mm256_unpacklo_epi8(luma, chroma));
    Store32_AVX2<kStream>(dst + 2 * x + 32, _mm256_unpackhi_epi8(luma, chroma));
  }
}

}  // namespace

// Each source row's chroma is loaded as one register [U0..15 | V0..15]. The
// plain quarter weights mix those bytes in place (QuarterMix); other
// weights blend them as Blend32 does, which keeps the [U0..15 | V0..15]
// order. A dword permute and a byte shuffle then interleave them as the
// chroma bytes of pixels 0..7 and 16..23 (lane 0) and 8..15 and 24..31
// (lane 1); with the luma's qwords permuted to match, the two unpacks with
// the luma are the output in order.
void Yuv420ToYuyvRow_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                          const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w) {
  const bool stream = w->stream && (reinterpret_cast<uintptr_t>(dst) & 31) == 0;
  const bool quarters = IsQuarterMix(*w);
  (stream ? (quarters ? Yuv420ToYuyvRow<true, true> : Yuv420ToYuyvRow<false, true>)
          : (quarters ? Yuv420ToYuyvRow<true, false> : Yuv420ToYuyvRow<false, false>))(
      dst, y, ua, ub, va, vb, width, w);
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
  const __m256i round = _mm256_set1_epi16(static_cast<int16_t>(t->round));
  const __m128i shift = _mm_cvtsi32_si128(t->shift);
  if (IsAverage(*t)) {
    // (2b + 2c + 2) >> 2 == (b + c + 1) >> 1, the rounding byte average,
    // taken on the YUYV bytes whole. Each 128-bit lane's U and V bytes are
    // gathered by one shuffle, [U0..3 V0..3] of its eight pixels; the dword
    // unpack and permute put the U and V dwords of 32 pixels in order.
    const __m256i pick = _mm256_setr_epi8(1, 5, 9, 13, 3, 7, 11, 15, -1, -1, -1, -1, -1, -1, -1, -1,
                                          1, 5, 9, 13, 3, 7, 11, 15, -1, -1, -1, -1, -1, -1, -1, -1);
    const __m256i order = _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7);
    for (int x = 0; x < width; x += 32) {
      const int o = 2 * x;
      const __m256i p0 = _mm256_shuffle_epi8(_mm256_avg_epu8(Load(b + o), Load(c + o)), pick);
      const __m256i p1 =
          _mm256_shuffle_epi8(_mm256_avg_epu8(Load(b + o + 32), Load(c + o + 32)), pick);
      const __m256i uv = _mm256_permutevar8x32_epi32(_mm256_unpacklo_epi32(p0, p1), order);
      Store16(dst_u + x / 2, _mm256_castsi256_si128(uv));
      Store16(dst_v + x / 2, _mm256_extracti128_si256(uv, 1));
    }
  } else if (t->ta == 0 && t->td == 0) {
    const __m256i tb = _mm256_set1_epi16(t->tb), tc = _mm256_set1_epi16(t->tc);
    ChromaLoop(dst_u, dst_v, width, [&](int o) {
      const __m256i s = _mm256_add_epi16(_mm256_mullo_epi16(ChromaWords(b + o), tb), round);
      return _mm256_srl_epi16(_mm256_add_epi16(s, _mm256_mullo_epi16(ChromaWords(c + o), tc)),
                              shift);
    });
  } else {
    const __m256i tap[4] = {_mm256_set1_epi16(t->ta), _mm256_set1_epi16(t->tb),
                            _mm256_set1_epi16(t->tc), _mm256_set1_epi16(t->td)};
    ChromaLoop(dst_u, dst_v, width, [&](int o) {
      return TapSum(a + o, b + o, c + o, d + o, tap, round, shift);
    });
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

void Yuv420ToYuyvRow_Any_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* ua,
                              const uint8_t* ub, const uint8_t* va, const uint8_t* vb, int width,
                              const ChromaBlend* w) {
  const int n = width & ~31;
  if (n) Yuv420ToYuyvRow_AVX2(dst, y, ua, ub, va, vb, n, w);
  const int h = n / 2;
  Yuv420ToYuyvRow_Any_SSE2(dst + 2 * n, y + n, ua + h, ub + h, va + h, vb + h, width - n, w);
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
