// AVX2 rows of planar YUV to 32-bit, 32 pixels a step, on the shared
// arithmetic of yuv_to_rgb_core_avx2.h.
#include <immintrin.h>

#include "colorspace/planar_to_rgba_row.h"
#include "colorspace/yuv_to_rgb_core_avx2.h"
#include "frame/simd_store.h"

namespace qbo {

namespace {

__m128i Load16(const uint8_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }

// Registers hold pixels "lane-split": register A has pixels 0..7 in its low
// 128-bit lane and 16..23 in its high lane, register B pixels 8..15 and
// 24..31. Every step of the arithmetic and of the pixel packing stays within
// a lane, so the packed halves land at dst + 0 / 64 (A) and 32 / 96 (B)
// without a cross-lane shuffle.
//
// Scaled chroma of one plane for 16 pairs, lane-split: `a` holds the
// pixels of pairs 0..3 | 8..11, `b` those of pairs 4..7 | 12..15, each pair
// as (even pixel, odd pixel). The scaling is PixelChroma_AVX2's,
// 128 (c - 128) and 64 (c + cn - 256), formed the way the YUYV rows form it:
// a byte shuffle puts each pixel's two samples side by side (c, c for the
// even pixel, c, cn for the odd one) and pmaddubsw with 64, 64 on the
// samples made signed by xor 0x80 sums them, at most 16384 in size. Each
// lane's shuffle finds the sample after its last pair in its own lane: the
// low lane holds c0..c15 (pairs 0..7 need c0..c8), the high lane c1..c16
// (pairs 8..15 need c8..c16), the 17 samples the block may read.
struct SplitChroma {
  __m256i a, b;
};

SplitChroma LoadSplitChroma(const uint8_t* c) {
  const __m256i pick_a = _mm256_setr_epi8(0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4,  //
                                          7, 7, 7, 8, 8, 8, 8, 9, 9, 9, 9, 10, 10, 10, 10, 11);
  const __m256i pick_b = _mm256_add_epi8(pick_a, _mm256_set1_epi8(4));
  const __m256i weights = _mm256_set1_epi8(64);
  const __m256i samples = _mm256_xor_si256(
      _mm256_loadu2_m128i(reinterpret_cast<const __m128i*>(c + 1),
                          reinterpret_cast<const __m128i*>(c)),
      _mm256_set1_epi8(static_cast<char>(0x80)));
  return {_mm256_maddubs_epi16(weights, _mm256_shuffle_epi8(samples, pick_a)),
          _mm256_maddubs_epi16(weights, _mm256_shuffle_epi8(samples, pick_b))};
}

template <bool kBgra, bool kStream>
void StoreSplitPixels(uint8_t* dst, __m256i luma, __m256i du, __m256i dv,
                      const YuvToRgbRegs_AVX2& regs) {
  __m256i first, second;
  YuvToPixels16_AVX2<kBgra>(luma, du, dv, regs, &first, &second);
  Store32_AVX2<kStream>(dst, first);
  Store32_AVX2<kStream>(dst + 64, second);
}

// 32 pixels a step; the samples of the next pairs are u[1..16], where
// u[16] opens the next block and is present by contract. A trailing 16 are
// done as a half step through the same arithmetic in natural order.
// With kStream the stores go past the cache, and dst is 32-byte aligned.
template <bool kBgra, bool kStream>
void PlanarToPixelsBlocks(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbRegs_AVX2& regs) {
  const __m256i zero = _mm256_setzero_si256();
  int x = 0;
  for (; x + 32 <= width; x += 32, dst += 128, y += 32, u += 16, v += 16) {
    const SplitChroma du = LoadSplitChroma(u), dv = LoadSplitChroma(v);
    const __m256i luma = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(y));
    StoreSplitPixels<kBgra, kStream>(dst, _mm256_unpacklo_epi8(luma, zero), du.a, dv.a, regs);
    StoreSplitPixels<kBgra, kStream>(dst + 32, _mm256_unpackhi_epi8(luma, zero), du.b, dv.b,
                                     regs);
  }
  if (x < width) {
    // Natural order: U0 V0 .. U7 V7 widened across the register.
    auto words = [](const uint8_t* pu, const uint8_t* pv) {
      return _mm256_cvtepu8_epi16(_mm_unpacklo_epi8(
          _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pu)),
          _mm_loadl_epi64(reinterpret_cast<const __m128i*>(pv))));
    };
    __m256i du, dv, first, second;
    PixelChroma_AVX2(words(u, v), words(u + 1, v + 1), &du, &dv);
    YuvToPixels16_AVX2<kBgra>(_mm256_cvtepu8_epi16(Load16(y)), du, dv, regs, &first, &second);
    Store32_AVX2<kStream>(dst, first);
    Store32_AVX2<kStream>(dst + 32, second);
  }
}

template <bool kBgra>
void PlanarToPixelsRow(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                       int width, const YuvToRgbVectors& vectors) {
  const YuvToRgbRegs_AVX2 regs = LoadYuvToRgbRegs_AVX2(vectors);
  (StreamsTo(vectors, dst, 32) ? PlanarToPixelsBlocks<kBgra, true>
                               : PlanarToPixelsBlocks<kBgra, false>)(dst, y, u, v, width, regs);
}

}  // namespace

void PlanarToRgbaRow_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<false>(dst, y, u, v, width, *vectors);
}

void PlanarToBgraRow_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbVectors* vectors) {
  PlanarToPixelsRow<true>(dst, y, u, v, width, *vectors);
}

// Whole blocks except the one holding the row's last pixel, then that
// block through the same row on a padded copy (see PaddedTail).
template <PlanarToPixelsRowFn kBlockRow>
void AnyRow(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v, int width,
            const YuvToRgbVectors* vectors) {
  const int n = width > 0 ? (width - 1) & ~15 : 0;
  if (n) kBlockRow(dst, y, u, v, n, vectors);
  PaddedTail<16>(kBlockRow, dst + 4 * n, y + n, u + n / 2, v + n / 2, width - n, vectors);
}

void PlanarToRgbaRow_Any_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, const YuvToRgbVectors* vectors) {
  AnyRow<PlanarToRgbaRow_AVX2>(dst, y, u, v, width, vectors);
}

void PlanarToBgraRow_Any_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, const YuvToRgbVectors* vectors) {
  AnyRow<PlanarToBgraRow_AVX2>(dst, y, u, v, width, vectors);
}

}  // namespace qbo
