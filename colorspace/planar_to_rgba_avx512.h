// The AVX-512 rows of planar YUV to 32-bit, thirty-two pixels a step, on
// the shared arithmetic of yuv_to_rgb_core_avx512.h, with the byte
// placement left to a policy, in which the AVX-512 and AVX-512 VBMI rows
// differ: `Ops::Chroma<kEndsRow>(c)` gives a plane's scaled chroma of the
// 32 pixels (as PlaneChroma below), and
// `Ops::Pixels<kBgra, kStream>(r, g, b, dst)` writes the 32 pixels' 128
// bytes (past the cache with kStream, to a 64-byte aligned dst).
// Include only from *_avx512*.cc files.
#ifndef QBO_COLORSPACE_PLANAR_TO_RGBA_AVX512_H_
#define QBO_COLORSPACE_PLANAR_TO_RGBA_AVX512_H_

#include <immintrin.h>

#include "colorspace/planar_to_rgba_row.h"
#include "colorspace/yuv_to_rgb_core_avx512.h"

namespace qbo {
namespace {  // internal to each including file, as yuv_to_rgb_core_avx512.h
namespace planar_avx512 {

inline __m128i Load16(const uint8_t* p) {
  return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
}

// Scaled chroma of one plane for sixteen pairs in pixel order. Every
// 128-bit lane holds samples 0..15 except the top one, which holds 1..16
// (sample 16 opens the next step), so one in-lane byte shuffle writes each
// pixel's two samples (c_k c_k for pixel 2k, c_k c_k+1 for pixel 2k + 1)
// and PairedChroma_AVX512 scales them. In the block that ends a row there
// is no sample 16: the top lane holds 0..15 too and the last pair's odd
// pixel takes its own sample twice, the own-sample rule.
template <bool kEndsRow>
inline __m512i PlaneChroma(const uint8_t* c) {
  const __m512i low = _mm512_broadcast_i32x4(Load16(c));
  const __m512i samples = kEndsRow ? low : _mm512_inserti32x4(low, Load16(c + 1), 3);
  const __m512i pick = kEndsRow
      ? _mm512_setr_epi32(0x01000000, 0x02010101, 0x03020202, 0x04030303,   // pairs 0..3
                          0x05040404, 0x06050505, 0x07060606, 0x08070707,   // pairs 4..7
                          0x09080808, 0x0A090909, 0x0B0A0A0A, 0x0C0B0B0B,   // pairs 8..11
                          0x0D0C0C0C, 0x0E0D0D0D, 0x0F0E0E0E, 0x0F0F0F0F)   // 12..15, 15 twice
      : _mm512_setr_epi32(0x01000000, 0x02010101, 0x03020202, 0x04030303,   // pairs 0..3
                          0x05040404, 0x06050505, 0x07060606, 0x08070707,   // pairs 4..7
                          0x09080808, 0x0A090909, 0x0B0A0A0A, 0x0C0B0B0B,   // pairs 8..11
                          0x0C0B0B0B, 0x0D0C0C0C, 0x0E0D0D0D, 0x0F0E0E0E);  // 12..15, one on
  return PairedChroma_AVX512(_mm512_shuffle_epi8(samples, pick));
}

template <class Ops, bool kBgra, bool kEndsRow, bool kStream>
void ConvertBlock(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                  const YuvToRgbRegs_AVX512& regs) {
  const __m512i luma =
      _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(y)));
  __m512i r, g, b;
  YuvToRgbChannels_AVX512(luma, Ops::template Chroma<kEndsRow>(u),
                          Ops::template Chroma<kEndsRow>(v), regs, &r, &g, &b);
  Ops::template Pixels<kBgra, kStream>(r, g, b, dst);
}

template <class Ops, bool kBgra, bool kStream>
void PlanarToPixelsBlocks(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                          int width, const YuvToRgbRegs_AVX512& regs) {
  for (int x = 0; x < width; x += 32, dst += 128, y += 32, u += 16, v += 16) {
    ConvertBlock<Ops, kBgra, false, kStream>(dst, y, u, v, regs);
  }
}

template <class Ops, bool kBgra>
void PlanarToPixelsRow(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                       int width, const YuvToRgbVectors& vectors) {
  const YuvToRgbRegs_AVX512 regs = LoadYuvToRgbRegs_AVX512(vectors);
  (StreamsTo(vectors, dst, 64) ? PlanarToPixelsBlocks<Ops, kBgra, true>
                               : PlanarToPixelsBlocks<Ops, kBgra, false>)(dst, y, u, v, width,
                                                                           regs);
}

// Whole blocks except the one holding the row's last pixel; that block in
// place when it is whole, else through the block row on a padded copy (see
// PaddedTail, with `block_row` the level's whole-block row).
template <class Ops, bool kBgra>
void AnyRow(PlanarToPixelsRowFn block_row, uint8_t* dst, const uint8_t* y, const uint8_t* u,
            const uint8_t* v, int width, const YuvToRgbVectors* vectors) {
  if (width <= 0) return;
  const int n = (width - 1) & ~31;
  PlanarToPixelsRow<Ops, kBgra>(dst, y, u, v, n, *vectors);
  if (width - n == 32) {
    // dst + 4n is aligned as dst is.
    const YuvToRgbRegs_AVX512 regs = LoadYuvToRgbRegs_AVX512(*vectors);
    (StreamsTo(*vectors, dst, 64) ? ConvertBlock<Ops, kBgra, true, true>
                                  : ConvertBlock<Ops, kBgra, true, false>)(
        dst + 4 * n, y + n, u + n / 2, v + n / 2, regs);
  } else {
    PaddedTail<32>(block_row, dst + 4 * n, y + n, u + n / 2, v + n / 2, width - n, vectors);
  }
}

}  // namespace planar_avx512
}  // namespace
}  // namespace qbo

// The four exported rows of one level: Name##_<Level> and Name##_Any_<Level>
// for RGBA and BGRA, on the policy `Ops`.
#define QBO_DEFINE_PLANAR_ROWS_AVX512(Level, Ops)                                              \
  void PlanarToRgbaRow_##Level(uint8_t* dst, const uint8_t* y, const uint8_t* u,                \
                               const uint8_t* v, int width, const YuvToRgbVectors* vectors) {   \
    planar_avx512::PlanarToPixelsRow<Ops, false>(dst, y, u, v, width, *vectors);                \
  }                                                                                             \
  void PlanarToBgraRow_##Level(uint8_t* dst, const uint8_t* y, const uint8_t* u,                \
                               const uint8_t* v, int width, const YuvToRgbVectors* vectors) {   \
    planar_avx512::PlanarToPixelsRow<Ops, true>(dst, y, u, v, width, *vectors);                 \
  }                                                                                             \
  void PlanarToRgbaRow_Any_##Level(uint8_t* dst, const uint8_t* y, const uint8_t* u,            \
                                   const uint8_t* v, int width,                                 \
                                   const YuvToRgbVectors* vectors) {                            \
    planar_avx512::AnyRow<Ops, false>(PlanarToRgbaRow_##Level, dst, y, u, v, width, vectors);   \
  }                                                                                             \
  void PlanarToBgraRow_Any_##Level(uint8_t* dst, const uint8_t* y, const uint8_t* u,            \
                                   const uint8_t* v, int width,                                 \
                                   const YuvToRgbVectors* vectors) {                            \
    planar_avx512::AnyRow<Ops, true>(PlanarToBgraRow_##Level, dst, y, u, v, width, vectors);    \
  }

#endif  // QBO_COLORSPACE_PLANAR_TO_RGBA_AVX512_H_
