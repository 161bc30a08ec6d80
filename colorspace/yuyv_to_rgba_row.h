// Rows converting one row of YUYV into 32-bit RGBA / BGRA (alpha 255) or
// 24-bit R, G, B.
//
// Contracts (every row of every level)
//   Row(src, dst, width, vectors)
//     width  even and > 0 (callers round an odd width up);
//     src    width * 2 bytes of YUYV, any alignment;
//     dst    width * 4 bytes (RGBA / BGRA rows) or width * 3 bytes (RGB24),
//            any alignment; must not overlap src;
//     vectors the standard's four coefficient vectors.
//   Reads and writes nothing outside those bytes. Chroma of odd pixels is
//   the mean of their pair's and the next pair's; the last pair of the row
//   uses its own (see yuv_to_rgb_core.h).
//   _SSE2 rows need width % 8 == 0; _AVX2 rows width % 32 == 0 (32-bit
//   pixels) or % 16 == 0 (24-bit); _AVX512 rows (32-bit pixels only)
//   width % 32 == 0 and _AVX512VBMI rows width % 64 == 0. The _Any_ forms
//   take any even width and give the reference's bytes.
#ifndef QBO_COLORSPACE_YUYV_TO_RGBA_ROW_H_
#define QBO_COLORSPACE_YUYV_TO_RGBA_ROW_H_

#include <cstdint>

#include "colorspace/yuv_to_rgb_core.h"

namespace qbo {

using YuyvToPixelsRowFn = void (*)(const uint8_t* src, uint8_t* dst, int width,
                                   const YuvToRgbVectors* vectors);

#define QBO_DECLARE_YUYV_ROWS(Name)                                                            \
  void Name##_C(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v);        \
  void Name##_SSE2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v);     \
  void Name##_AVX2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v);     \
  void Name##_Any_SSE2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v); \
  void Name##_Any_AVX2(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v); \
  void Name##_AVX512(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v);   \
  void Name##_Any_AVX512(const uint8_t* src, uint8_t* dst, int width, const YuvToRgbVectors* v)

QBO_DECLARE_YUYV_ROWS(YuyvToRgbaRow);
QBO_DECLARE_YUYV_ROWS(YuyvToBgraRow);
QBO_DECLARE_YUYV_ROWS(YuyvToRgb24Row);

// The 32-bit rows also have an AVX-512 VBMI form.
#define QBO_DECLARE_YUYV_ROWS_VBMI(Name)                                                      \
  void Name##_AVX512VBMI(const uint8_t* src, uint8_t* dst, int width,                         \
                         const YuvToRgbVectors* v);                                           \
  void Name##_Any_AVX512VBMI(const uint8_t* src, uint8_t* dst, int width,                     \
                             const YuvToRgbVectors* v)

QBO_DECLARE_YUYV_ROWS_VBMI(YuyvToRgbaRow);
QBO_DECLARE_YUYV_ROWS_VBMI(YuyvToBgraRow);

#undef QBO_DECLARE_YUYV_ROWS_VBMI

#undef QBO_DECLARE_YUYV_ROWS

}  // namespace qbo

#endif  // QBO_COLORSPACE_YUYV_TO_RGBA_ROW_H_
