// Rows of the alpha "over" blends.
//
// A pixel is four bytes, byte 3 alpha, bytes 0..2 three colour channels the
// blend treats alike. `share` is the over-share table: share[a * 256 + b]
// is the Q15 part (0..32767) that an upper layer of alpha a keeps over a
// lower layer of alpha b.
//
// Contracts
//   BlendOverRow(dst, src, share, width)
//     for `width` pixels, with As, Ad the source and destination alphas and
//     w = share[As * 256 + Ad]:
//       alpha = As + Ad - ((As x Ad + 255) >> 8)
//       c     = cd + ((2 x (cs - cd + [cs > cd]) x w) >> 16)   (arithmetic)
//     The channel result always lies between cd and cs.
//   BlendOverInvertedRow(dst, src, share, width)
//     the source alpha is read as transparency: w = share[(255 - As) * 256
//     + Ad], alpha = (255 - As) + ((As x Ad + 255) >> 8); channels as above.
//   Both read `width` pixels of src and dst and write `width` pixels of dst.
//   dst and src must not overlap; any alignment. _SSE2 rows take width % 4
//   == 0, _AVX2 rows width % 8 == 0, _AVX512 rows width % 16 == 0; the _Any_
//   rows take any width.
//
// Shortcuts of the SIMD rows, exact by the table's border values:
//   As = 255 over: w = 32767 and 2 x (d + [d > 0]) x 32767 >> 16 == d for
//   every d in -255..255, alpha = 255: the result is the source pixel.
//   As = 0 over: w = share[0][Ad] = 0 and alpha = Ad: the result is dst.
//   The inverted blend mirrors them (As = 0 gives src with alpha 255,
//   As = 255 leaves dst).
//   Ad = 255 over a whole block (a video frame under an overlay): w =
//   share[a][255] = max(257a - 1, 0) >> 1 needs no table or division, and
//   the alpha formula gives 255 in both blends.
#ifndef QBO_BLIT_BLEND_ROW_H_
#define QBO_BLIT_BLEND_ROW_H_

#include <cstddef>
#include <cstdint>

namespace qbo {

using BlendRowFn = void (*)(uint8_t* dst, const uint8_t* src, const int32_t* share,
                            std::size_t width);

void BlendOverRow_C(uint8_t* dst, const uint8_t* src, const int32_t* share, std::size_t width);
void BlendOverInvertedRow_C(uint8_t* dst, const uint8_t* src, const int32_t* share,
                            std::size_t width);

void BlendOverRow_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                       std::size_t width);
void BlendOverInvertedRow_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                               std::size_t width);
void BlendOverRow_Any_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                           std::size_t width);
void BlendOverInvertedRow_Any_SSE2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                                   std::size_t width);

void BlendOverRow_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                       std::size_t width);
void BlendOverInvertedRow_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                               std::size_t width);
void BlendOverRow_Any_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                           std::size_t width);
void BlendOverInvertedRow_Any_AVX2(uint8_t* dst, const uint8_t* src, const int32_t* share,
                                   std::size_t width);
void BlendOverRow_AVX512(uint8_t* dst, const uint8_t* src, const int32_t* share,
                         std::size_t width);
void BlendOverInvertedRow_AVX512(uint8_t* dst, const uint8_t* src, const int32_t* share,
                                 std::size_t width);
void BlendOverRow_Any_AVX512(uint8_t* dst, const uint8_t* src, const int32_t* share,
                             std::size_t width);
void BlendOverInvertedRow_Any_AVX512(uint8_t* dst, const uint8_t* src, const int32_t* share,
                                     std::size_t width);

}  // namespace qbo

#endif  // QBO_BLIT_BLEND_ROW_H_
