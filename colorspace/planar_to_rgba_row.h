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
//   _SSE2 rows take width % 8 == 0, _AVX2 rows width % 16 == 0; they
//   convert whole blocks whose every odd pixel has a next sample, so they
//   read width / 2 + 1 samples: the caller keeps at least one pixel of the
//   row for the tail (the _Any_ rows run the SIMD row on
//   8 x ((width - 1) / 8) or 16 x ((width - 1) / 16) pixels and finish the
//   1 .. 16 that remain with the narrower rows, which then see the row's
//   true last pair).
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
                       int width, const YuvToRgbVectors* vectors)

QBO_DECLARE_PLANAR_ROWS(PlanarToRgbaRow);
QBO_DECLARE_PLANAR_ROWS(PlanarToBgraRow);

#undef QBO_DECLARE_PLANAR_ROWS

}  // namespace qbo

#endif  // QBO_COLORSPACE_PLANAR_TO_RGBA_ROW_H_
