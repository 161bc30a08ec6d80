// Rows of the mask colouring, mixing and subtraction.
//
// Contracts (all rows; one signature per kernel across levels)
//   FillMaskColorRow(dst_argb, mask, inv_byte, width)
//     for `width` pixels: alpha byte (byte 3) a becomes
//     round_half_even(float(a) x inv_byte[m]) with m the mask byte; bytes
//     0..2 untouched. `inv_byte` is the 256-entry table i x kMaskInvByte.
//   MixMaskRow(dst, src, width)
//     d = d + s - ((d x s + 255) >> 8) for `width` bytes (screen of two
//     coverages; the result never leaves 0..255).
//   SubMaskRow(dst, src, width)
//     d = d > s ? d - s : 0 for `width` bytes.
//   Reads and writes exactly `width` elements of each row; any alignment;
//   dst and src must not overlap.
//   _SSE2 / _AVX2 rows take whole vectors only:
//     FillMaskColor width % 4 (SSE2) / % 8 (AVX2),
//     MixMask and SubMask width % 16 (SSE2) / % 32 (AVX2).
//   _Any_ rows take any width: the vector row on the whole vectors, the
//   reference row on the rest. The pixel operations are independent, so
//   the split cannot change a byte.
#ifndef QBO_BUFFER_MASK_ROW_H_
#define QBO_BUFFER_MASK_ROW_H_

#include <cstddef>
#include <cstdint>

namespace qbo {

// The factor by which the byte table is built (the float nearest 1/255).
// Each table entry is one single-precision product float(i) x this, so a
// vector row that forms that product itself holds the entry bit for bit
// and needs no gather.
inline constexpr float kMaskInvByte = 0.003921569f;

using FillMaskColorRowFn = void (*)(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                                    std::size_t width);
using MaskPairRowFn = void (*)(uint8_t* dst, const uint8_t* src, std::size_t width);

void FillMaskColorRow_C(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                        std::size_t width);
void FillMaskColorRow_SSE2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                           std::size_t width);
void FillMaskColorRow_AVX2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                           std::size_t width);
void FillMaskColorRow_Any_SSE2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                               std::size_t width);
void FillMaskColorRow_Any_AVX2(uint8_t* dst_argb, const uint8_t* mask, const float* inv_byte,
                               std::size_t width);

void MixMaskRow_C(uint8_t* dst, const uint8_t* src, std::size_t width);
void MixMaskRow_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width);
void MixMaskRow_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width);
void MixMaskRow_Any_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width);
void MixMaskRow_Any_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width);

void SubMaskRow_C(uint8_t* dst, const uint8_t* src, std::size_t width);
void SubMaskRow_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width);
void SubMaskRow_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width);
void SubMaskRow_Any_SSE2(uint8_t* dst, const uint8_t* src, std::size_t width);
void SubMaskRow_Any_AVX2(uint8_t* dst, const uint8_t* src, std::size_t width);

}  // namespace qbo

#endif  // QBO_BUFFER_MASK_ROW_H_
