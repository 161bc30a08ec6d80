// Row addressing shared by the layout exports and the planar 4:2:0
// converters, and the field-wise chroma row scheme of interlaced 4:2:0.
#ifndef QBO_YUVLAYOUT_FIELD_CHROMA_H_
#define QBO_YUVLAYOUT_FIELD_CHROMA_H_

#include <algorithm>
#include <cstdint>

#include "yuvlayout/yuvlayout_row.h"

namespace qbo {

// Row `row` of a plane at `base` with a signed byte pitch, in 64-bit
// arithmetic so no product of 32-bit arguments overflows.
template <typename T>
T* RowAt(T* base, int64_t pitch, int64_t row) {
  return reinterpret_cast<T*>(reinterpret_cast<uintptr_t>(base) + row * pitch);
}

// A plane of 8-bit samples: its first row and signed pitch in bytes.
struct ConstPlane {
  const uint8_t* data;
  int64_t pitch;
  const uint8_t* Row(int64_t row) const { return RowAt(data, pitch, row); }
};

// The weights of an interlaced 4:2:0 field's chroma rows, in eighths:
// field row 2k mixes P = C[k - 1] and C = C[k] with `even`; field row
// 2k + 1 mixes C = C[k] and N = C[k + 1] with `odd`.
struct FieldChromaWeights {
  ChromaBlend even, odd;
};

// (P + 3C + 2) >> 2 and (3C + N + 2) >> 2, in eighths.
inline constexpr FieldChromaWeights kPlainFieldChroma = {{2, 6}, {6, 2}};

// Where the chroma of field row r comes from: plane rows a and b mixed by
// w; a == b means the plane row is taken unchanged.
struct FieldChromaSource {
  int a, b;
  ChromaBlend w;
};

// The chroma of row r of field `field` (0 top, 1 bottom) of a picture of
// h2 rows a field, whose chroma plane has h2 rows: field chroma row k is
// plane row 2k + field. With q = (h2 + 1) / 2:
//   row 0                     C[0] unchanged
//   row 2q - 1 when h2 even   C[q - 1] unchanged (the last pair's copy)
//   other even rows 2k        P, C with `even` (the single last row too)
//   other odd rows 2k + 1     C, N with `odd`
// A field owns (h2 + 1 - field) / 2 plane rows. A reference past them
// (the bottom field's C[q - 1] when h2 is odd, or neighbours of very short
// fields) is clamped to the field's last own row, so nothing outside the
// plane is read; a bottom field with no chroma row of its own (h2 == 1)
// borrows plane row 0.
inline FieldChromaSource FieldChromaFor(int r, int h2, int field,
                                        const FieldChromaWeights& weights) {
  const int q = (h2 + 1) / 2;
  const int own = (h2 + 1 - field) / 2;
  auto plane_row = [own, field](int k) { return own ? 2 * std::clamp(k, 0, own - 1) + field : 0; };
  const ChromaBlend keep = {0, 8};
  if (r == 0) return {plane_row(0), plane_row(0), keep};
  if (h2 % 2 == 0 && r == 2 * q - 1) return {plane_row(q - 1), plane_row(q - 1), keep};
  const int k = r / 2;
  if (r % 2 == 0) return {plane_row(k - 1), plane_row(k), weights.even};
  return {plane_row(k), plane_row(k + 1), weights.odd};
}

}  // namespace qbo

#endif  // QBO_YUVLAYOUT_FIELD_CHROMA_H_
