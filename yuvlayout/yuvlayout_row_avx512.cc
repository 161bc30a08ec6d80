// AVX-512 row of the 4:2:0 to YUYV conversion, 64 pixels a step; the
// layout's other rows keep their AVX2 forms, which already run at the speed
// of the memory they move.
#include <immintrin.h>

#include "frame/simd_store.h"
#include "yuvlayout/yuvlayout_row.h"

namespace qbo {

namespace {

// (p + 3c + 2) >> 2 by byte averages, as QuarterMix of the AVX2 rows.
inline __m512i QuarterMix(__m512i p, __m512i c) {
  const __m512i half_dropped = _mm512_and_si512(_mm512_xor_si512(p, c), _mm512_set1_epi8(1));
  return _mm512_avg_epu8(_mm512_sub_epi8(_mm512_avg_epu8(p, c), half_dropped), c);
}

// U0..U31 V0..V31 of one source row.
inline __m512i ChromaRow(const uint8_t* u, const uint8_t* v) {
  return _mm512_inserti64x4(
      _mm512_castsi256_si512(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(u))),
      _mm256_loadu_si256(reinterpret_cast<const __m256i*>(v)), 1);
}

template <bool kQuarters, bool kStream>
void Yuv420ToYuyvRow(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                     const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w) {
  const __m512i weights = _mm512_set1_epi16(static_cast<int16_t>(w->wa | (w->wb << 8)));
  const __m512i eighth = _mm512_set1_epi16(4096);
  // Lane k: U dwords k and 4 + k, V dwords k and 4 + k (V dword j is 8 + j).
  const __m512i chroma_order =
      _mm512_setr_epi32(0, 8, 4, 12, 1, 9, 5, 13, 2, 10, 6, 14, 3, 11, 7, 15);
  const __m512i interleave = _mm512_broadcast_i32x4(
      _mm_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15));
  const __m512i luma_order = _mm512_setr_epi64(0, 4, 1, 5, 2, 6, 3, 7);
  const bool a_light = w->wa == 2;
  for (int x = 0, h = 0; x < width; x += 64, h += 32) {
    const __m512i a = ChromaRow(ua + h, va + h);
    const __m512i b = ChromaRow(ub + h, vb + h);
    __m512i mixed;
    if (kQuarters) {
      mixed = a_light ? QuarterMix(a, b) : QuarterMix(b, a);
    } else {
      const __m512i lo =
          _mm512_mulhrs_epi16(_mm512_maddubs_epi16(_mm512_unpacklo_epi8(a, b), weights), eighth);
      const __m512i hi =
          _mm512_mulhrs_epi16(_mm512_maddubs_epi16(_mm512_unpackhi_epi8(a, b), weights), eighth);
      mixed = _mm512_packus_epi16(lo, hi);
    }
    const __m512i chroma =
        _mm512_shuffle_epi8(_mm512_permutexvar_epi32(chroma_order, mixed), interleave);
    const __m512i luma = _mm512_permutexvar_epi64(luma_order, _mm512_loadu_si512(y + x));
    Store64_AVX512<kStream>(dst + 2 * x, _mm512_unpacklo_epi8(luma, chroma));
    Store64_AVX512<kStream>(dst + 2 * x + 64, _mm512_unpackhi_epi8(luma, chroma));
  }
}

}  // namespace

// As Yuv420ToYuyvRow_AVX2, in fewer operations, which is what bounds this
// row where 512-bit operations run as two halves: each source row's chroma
// is loaded as one register (U bytes in the low half, V bytes in the high
// half). The plain quarter weights mix those bytes in place by byte
// averages; other weights pair the rows with one unpack for the
// multiply-add and pack the mixes back to the same U0..U31 V0..V31 order.
// A dword permute and a byte shuffle then interleave them as the chroma
// bytes of pixels 8k..8k+7 (low qword of 128-bit lane k) and 32+8k..32+8k+7
// (high qword), and the luma's qwords are permuted to match, so the two
// unpacks with the luma are the output in order.
// The mix (a x wa + b x wb + 4) >> 3, with the sum s below 2048, is
// mulhrs(s, 4096) = ((s >> 2) + 1) >> 1: for n = s >> 2, both are
// floor((n + 1) / 2), as s / 4 lies in [n, n + 1).
void Yuv420ToYuyvRow_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* ua, const uint8_t* ub,
                            const uint8_t* va, const uint8_t* vb, int width, const ChromaBlend* w) {
  const bool stream = w->stream && (reinterpret_cast<uintptr_t>(dst) & 63) == 0;
  const bool quarters = IsQuarterMix(*w);
  (stream ? (quarters ? Yuv420ToYuyvRow<true, true> : Yuv420ToYuyvRow<false, true>)
          : (quarters ? Yuv420ToYuyvRow<true, false> : Yuv420ToYuyvRow<false, false>))(
      dst, y, ua, ub, va, vb, width, w);
}

// The tail goes through the AVX2 Any row, which finishes with the reference.
void Yuv420ToYuyvRow_Any_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* ua,
                                const uint8_t* ub, const uint8_t* va, const uint8_t* vb,
                                int width, const ChromaBlend* w) {
  const int n = width & ~63;
  if (n) Yuv420ToYuyvRow_AVX512(dst, y, ua, ub, va, vb, n, w);
  const int h = n / 2;
  Yuv420ToYuyvRow_Any_AVX2(dst + 2 * n, y + n, ua + h, ub + h, va + h, vb + h, width - n, w);
}

}  // namespace qbo
