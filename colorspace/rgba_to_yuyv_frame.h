// Row walking shared by the RGB to YUYV exports: source rows read top-down
// or bottom-up, frames row for row, and splits into two fields with the
// last row of an odd height copied into the second field.
#ifndef QBO_COLORSPACE_RGBA_TO_YUYV_FRAME_H_
#define QBO_COLORSPACE_RGBA_TO_YUYV_FRAME_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "buffer/copy_row_bytes.h"

namespace qbo {

// Rows of a destination plane; an absent plane (null base) gives null rows.
struct PlaneRows {
  uint8_t* base;
  int32_t pitch;

  uint8_t* Row(int64_t k) const { return base ? base + k * pitch : nullptr; }
  // Length of a row when copying one field row to the other: the pitch's
  // magnitude, so a bottom-up plane copies as much as a top-down one.
  int64_t Bytes() const { return pitch < 0 ? -int64_t{pitch} : int64_t{pitch}; }
};

// Source row j, counted from the bottom when flipped.
struct SourceRows {
  const uint8_t* base;
  int32_t pitch;
  int32_t height;
  bool flip;

  const uint8_t* Row(int64_t j) const { return base + (flip ? height - 1 - j : j) * pitch; }
};

// convert(src_row, dst_row, alpha_row) for each destination row.
template <class Convert>
void ConvertFrameRows(const SourceRows& src, PlaneRows dst, PlaneRows alpha, Convert convert) {
  for (int32_t i = 0; i < src.height; ++i) convert(src.Row(i), dst.Row(i), alpha.Row(i));
}

// Even source rows to field 0, odd rows to field 1. With an odd height the
// last row goes to field 0 and is copied whole (padding included, as many
// bytes as the shorter pitch) into field 1, and so is its alpha row.
template <class Convert>
void ConvertSplitRows(const SourceRows& src, PlaneRows dst0, PlaneRows alpha0, PlaneRows dst1,
                      PlaneRows alpha1, Convert convert) {
  int32_t k = 0;
  for (; 2 * k + 1 < src.height; ++k) {
    convert(src.Row(2 * k), dst0.Row(k), alpha0.Row(k));
    convert(src.Row(2 * k + 1), dst1.Row(k), alpha1.Row(k));
  }
  if (src.height > 0 && (src.height & 1)) {
    convert(src.Row(2 * k), dst0.Row(k), alpha0.Row(k));
    CopyBytes(dst1.Row(k), dst0.Row(k),
              static_cast<std::size_t>(std::min(dst0.Bytes(), dst1.Bytes())));
    if (alpha0.base) {
      CopyBytes(alpha1.Row(k), alpha0.Row(k),
                static_cast<std::size_t>(std::min(alpha0.Bytes(), alpha1.Bytes())));
    }
  }
}

}  // namespace qbo

#endif  // QBO_COLORSPACE_RGBA_TO_YUYV_FRAME_H_
