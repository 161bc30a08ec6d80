// Rows of the RGB to YUYV conversions: 32-bit RGBA/BGRA (with or without a
// separate alpha line) and packed 24-bit RGB/BGR.
//
// Arithmetic, identical at every level
//   term(w, b) = floor(w * b / 512) for a 2^14 weight w and a byte b: the
//     signed 16-bit product high half of w and b * 128. Every term is
//     truncated on its own before the sum.
//   Y    = min(255, (term0 + term1 + term2 + 16) >> 5)
//   U, V = min(255, (term0 + term1 + term2 + 16 + 4096) >> 5)
//   The sums stay within -4081 .. 8192 + 4112, far from the 16-bit limits,
//   and are never negative once the offset is added, so the logical shift of
//   the 16-bit sum and any exact addition order agree.
//   Chroma of a pair comes from its first (even) pixel alone.
//
// Contracts
//   RgbaToYuyvRow(src, dst, width, params)
//     width >= 1 pixels of 4 bytes. Whole groups of four pixels use the U and
//     V quadruples; a trailing pair and a trailing single pixel take U from
//     the first and V from the second quadruple of params->uv (the BGRA
//     BT.601 block has a zero first quadruple there, so those U are 128).
//     A trailing single pixel writes Y U Y V with its luma twice. Writes
//     2 * width bytes rounded up to a multiple of 4; reads 4 * width bytes.
//   RgbaToYuyvAlphaRow(src, dst, alpha, width, params)
//     The same YUYV bytes, plus alpha[i] = byte 3 of pixel i. After a
//     trailing single pixel the last alpha byte is (A | byte 2) and one more
//     byte, alpha[width], is set to 0.
//   Rgb24ToYuyvRow(src, dst, width, params)
//     width >= 1 pixels of 3 bytes, in width / 4 groups of 12 bytes, then by
//     width % 4: 3 converts a whole group (reading 3 bytes past the last
//     pixel, writing 8 bytes), 2 a pair and 1 a single pixel as above.
//     Reads 3 * width bytes (rounded up to a multiple of 12 when width % 4
//     is 3), writes 2 * width bytes rounded up to a multiple of 4.
//   params point into the coefficient block; the SIMD rows rely on its
//   weights staying within +-16383 (the AVX2 row doubles them) and on the
//   alpha lanes' weight being 0 (24-bit rows fill byte 3 with a neighbour).
//   No row aliases its source with a destination; any alignment.
//   _SSE2 / _AVX2 rows take width % 8 == 0 / width % 16 == 0 and read
//   exactly the bytes the reference reads. _Any_ rows run the SIMD row on
//   the whole blocks and the reference on the rest: the rest starts on a
//   group boundary, so it is the reference's own tail.
#ifndef QBO_COLORSPACE_RGBA_TO_YUYV_ROW_H_
#define QBO_COLORSPACE_RGBA_TO_YUYV_ROW_H_

#include <cstdint>

#include "frame/coef_block.h"

namespace qbo {

// Vectors of one standard and byte order, all from the coefficient block.
// Quadruples apply to bytes 0, 1, 2 of a pixel; lane 3 (alpha) is 0.
struct RgbToYuyvParams {
  const Lanes8* y;       // luma quadruple (trailing pixels)
  const Lanes8* u;       // U quadruple (groups of four)
  const Lanes8* v;       // V quadruple (groups of four)
  const Lanes8* uv;      // U in the first, V in the second quadruple (tails)
  const Lanes8* y_even;  // luma weights of bytes 0 and 2, as pairs
  const Lanes8* y_odd;   // luma weights of bytes 1 and 3, as pairs
};

// The vectors for BGRA (or BGR) sources when `bgr` is set, RGBA (RGB)
// otherwise, in BT.709 when `bt709` is set, BT.601 otherwise.
RgbToYuyvParams SelectRgbToYuyvParams(bool bgr, bool bt709);

using RgbaToYuyvRowFn = void (*)(const uint8_t* src, uint8_t* dst, int width,
                                 const RgbToYuyvParams* params);
using RgbaToYuyvAlphaRowFn = void (*)(const uint8_t* src, uint8_t* dst, uint8_t* alpha,
                                      int width, const RgbToYuyvParams* params);
using Rgb24ToYuyvRowFn = RgbaToYuyvRowFn;

void RgbaToYuyvRow_C(const uint8_t* src, uint8_t* dst, int width, const RgbToYuyvParams* params);
void RgbaToYuyvRow_SSE2(const uint8_t* src, uint8_t* dst, int width,
                        const RgbToYuyvParams* params);
void RgbaToYuyvRow_AVX2(const uint8_t* src, uint8_t* dst, int width,
                        const RgbToYuyvParams* params);
void RgbaToYuyvRow_Any_SSE2(const uint8_t* src, uint8_t* dst, int width,
                            const RgbToYuyvParams* params);
void RgbaToYuyvRow_Any_AVX2(const uint8_t* src, uint8_t* dst, int width,
                            const RgbToYuyvParams* params);

void RgbaToYuyvAlphaRow_C(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                          const RgbToYuyvParams* params);
void RgbaToYuyvAlphaRow_SSE2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                             const RgbToYuyvParams* params);
void RgbaToYuyvAlphaRow_AVX2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                             const RgbToYuyvParams* params);
void RgbaToYuyvAlphaRow_Any_SSE2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                                 const RgbToYuyvParams* params);
void RgbaToYuyvAlphaRow_Any_AVX2(const uint8_t* src, uint8_t* dst, uint8_t* alpha, int width,
                                 const RgbToYuyvParams* params);

void Rgb24ToYuyvRow_C(const uint8_t* src, uint8_t* dst, int width,
                      const RgbToYuyvParams* params);
void Rgb24ToYuyvRow_SSE2(const uint8_t* src, uint8_t* dst, int width,
                         const RgbToYuyvParams* params);
void Rgb24ToYuyvRow_AVX2(const uint8_t* src, uint8_t* dst, int width,
                         const RgbToYuyvParams* params);
void Rgb24ToYuyvRow_Any_SSE2(const uint8_t* src, uint8_t* dst, int width,
                             const RgbToYuyvParams* params);
void Rgb24ToYuyvRow_Any_AVX2(const uint8_t* src, uint8_t* dst, int width,
                             const RgbToYuyvParams* params);

// The _Any_ rows: `simd` on the whole blocks of `kBlock` pixels, the
// reference on the rest, which starts on a group boundary.
template <int kBlock, int kSrcBytes>
inline void RunAnyRow(RgbaToYuyvRowFn simd, RgbaToYuyvRowFn reference, const uint8_t* src,
                      uint8_t* dst, int width, const RgbToYuyvParams* params) {
  const int whole = width & ~(kBlock - 1);
  if (whole > 0) simd(src, dst, whole, params);
  if (width > whole) reference(src + kSrcBytes * whole, dst + 2 * whole, width - whole, params);
}

template <int kBlock>
inline void RunAnyAlphaRow(RgbaToYuyvAlphaRowFn simd, const uint8_t* src, uint8_t* dst,
                           uint8_t* alpha, int width, const RgbToYuyvParams* params) {
  const int whole = width & ~(kBlock - 1);
  if (whole > 0) simd(src, dst, alpha, whole, params);
  if (width > whole) {
    RgbaToYuyvAlphaRow_C(src + 4 * whole, dst + 2 * whole, alpha + whole, width - whole, params);
  }
}

}  // namespace qbo

#endif  // QBO_COLORSPACE_RGBA_TO_YUYV_ROW_H_
