// Rows converting one row of planar YUV (a luma row and one U and one V
// row) into opaque 32-bit RGBA or BGRA, on the shared YUV-to-RGB
// arithmetic of yuv_to_rgb_core.h.
//
// Contracts (every row of every level)
//   Row(dst, y, u, v, width, vectors)
//     dst    width * 4 bytes, any alignment, not overlapping a source;
//     y      width bytes; u, v the row's chroma samples, one per pair.
//     Pixel 2k takes sample k; pixel 2k + 1 the mean of samples k and
//     k + 1, except the odd pixel of the row's last pair, which has no
//     next sample and takes sample k. An odd width ends with an even pixel
//     with its own sample, so the reference and _Any_ rows read
//     (width + 1) / 2 samples and write exactly `width` pixels.
//   _SSE2 rows take width % 8 == 0, _AVX2 rows width % 16 == 0, _AVX512
//   rows width % 32 == 0; they
//   convert whole blocks whose every odd pixel has a next sample, so they
//   read width / 2 + 1 samples: the caller keeps at least one pixel of the
//   row for the tail. The _Any_ rows run the SIMD row on
//   B x ((width - 1) / B) pixels (B = 8, 16, 32) and the last 1 .. B
//   through the same row on a padded copy (PaddedTail).
#ifndef QBO_COLORSPACE_PLANAR_TO_RGBA_ROW_H_
#define QBO_COLORSPACE_PLANAR_TO_RGBA_ROW_H_

#include <cstdint>

#include "colorspace/yuv_to_rgb_core.h"

namespace qbo {

using PlanarToPixelsRowFn = void (*)(uint8_t* dst, const uint8_t* y, const uint8_t* u,
                                     const uint8_t* v, int width, const YuvToRgbVectors* vectors);

#define QBO_DECLARE_PLANAR_ROWS(Name)                                                       \
  void Name##_C(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,         \
                int width, const YuvToRgbVectors* vectors);                                 \
  void Name##_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,      \
                   int width, const YuvToRgbVectors* vectors);                              \
  void Name##_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,      \
                   int width, const YuvToRgbVectors* vectors);                              \
  void Name##_Any_SSE2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,  \
                       int width, const YuvToRgbVectors* vectors);                          \
  void Name##_Any_AVX2(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,  \
                       int width, const YuvToRgbVectors* vectors);                          \
  void Name##_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,    \
                     int width, const YuvToRgbVectors* vectors);                            \
  void Name##_Any_AVX512(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,\
                         int width, const YuvToRgbVectors* vectors)

QBO_DECLARE_PLANAR_ROWS(PlanarToRgbaRow);
QBO_DECLARE_PLANAR_ROWS(PlanarToBgraRow);

// The AVX-512 VBMI rows, as the AVX-512 ones.
#define QBO_DECLARE_PLANAR_ROWS_VBMI(Name)                                                   \
  void Name##_AVX512VBMI(uint8_t* dst, const uint8_t* y, const uint8_t* u, const uint8_t* v,  \
                         int width, const YuvToRgbVectors* vectors);                          \
  void Name##_Any_AVX512VBMI(uint8_t* dst, const uint8_t* y, const uint8_t* u,                \
                             const uint8_t* v, int width, const YuvToRgbVectors* vectors)

QBO_DECLARE_PLANAR_ROWS_VBMI(PlanarToRgbaRow);
QBO_DECLARE_PLANAR_ROWS_VBMI(PlanarToBgraRow);

#undef QBO_DECLARE_PLANAR_ROWS_VBMI

#undef QBO_DECLARE_PLANAR_ROWS

// Converts the row's last `count` pixels (1 .. kBlock) with a whole-block
// row: luma and samples are copied into a block whose missing samples
// repeat the last one, so the last pair's odd pixel mixes its own sample
// with itself, 64 ((U - 128) + (U - 128)) == 128 (U - 128), exactly the
// own-sample rule. Only `count` pixels are copied out; nothing outside the
// caller's row is read or written.
template <int kBlock>
inline void PaddedTail(PlanarToPixelsRowFn block_row, uint8_t* dst, const uint8_t* y,
                       const uint8_t* u, const uint8_t* v, int count,
                       const YuvToRgbVectors* vectors) {
  if (count <= 0) return;
  uint8_t luma[kBlock] = {}, cu[kBlock / 2 + 1], cv[kBlock / 2 + 1], out[4 * kBlock];
  const int samples = (count + 1) / 2;
  for (int i = 0; i < count; ++i) luma[i] = y[i];
  for (int k = 0; k <= kBlock / 2; ++k) {
    cu[k] = u[k < samples ? k : samples - 1];
    cv[k] = v[k < samples ? k : samples - 1];
  }
  const YuvToRgbVectors cached = CachedStores(*vectors);
  block_row(out, luma, cu, cv, kBlock, &cached);
  for (int i = 0; i < 4 * count; ++i) dst[i] = out[i];
}

}  // namespace qbo

#endif  // QBO_COLORSPACE_PLANAR_TO_RGBA_ROW_H_
