// Rows expanding 24-bit pixels to 32-bit pixels: the three bytes are copied
// unchanged (so the 32-bit pixel keeps the source's colour order) and byte 3
// is alpha.
//
// Contracts
//   Rgb24ToRgbaRow(src, alpha, dst, width)
//     alpha byte = 255; `alpha` is not read and may be null.
//   Rgb24AlphaToRgbaRow(src, alpha, dst, width)
//     alpha byte = alpha[i].
//   width > 0; src width * 3 bytes, alpha width bytes, dst width * 4 bytes;
//   any alignment; dst must not overlap src or alpha. Nothing outside those
//   bytes is read or written. _SSE2 and _AVX2 rows need width % 16 == 0;
//   the _Any_ forms take any width (the rest pixel by pixel through _C, the
//   rows being pointwise).
#ifndef QBO_COLORSPACE_RGB24_TO_RGBA_ROW_H_
#define QBO_COLORSPACE_RGB24_TO_RGBA_ROW_H_

#include <cstdint>

namespace qbo {

using Rgb24ToRgbaRowFn = void (*)(const uint8_t* src, const uint8_t* alpha, uint8_t* dst,
                                  int width);

#define QBO_DECLARE_RGB24_ROWS(Name)                                                       \
  void Name##_C(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width);        \
  void Name##_SSE2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width);     \
  void Name##_AVX2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width);     \
  void Name##_Any_SSE2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width); \
  void Name##_Any_AVX2(const uint8_t* src, const uint8_t* alpha, uint8_t* dst, int width)

QBO_DECLARE_RGB24_ROWS(Rgb24ToRgbaRow);
QBO_DECLARE_RGB24_ROWS(Rgb24AlphaToRgbaRow);

#undef QBO_DECLARE_RGB24_ROWS

// Shared by the _Any_ forms: whole blocks through `simd`, the rest through
// `reference`, which sees the same pixels the reference row would.
template <int kBlock>
inline void RunRgb24RowAny(Rgb24ToRgbaRowFn simd, Rgb24ToRgbaRowFn reference, const uint8_t* src,
                           const uint8_t* alpha, uint8_t* dst, int width) {
  const int whole = width - width % kBlock;
  if (whole > 0) simd(src, alpha, dst, whole);
  if (whole < width) {
    reference(src + 3 * whole, alpha ? alpha + whole : nullptr, dst + 4 * whole, width - whole);
  }
}

}  // namespace qbo

#endif  // QBO_COLORSPACE_RGB24_TO_RGBA_ROW_H_
