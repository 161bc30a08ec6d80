// The three mask exports place a source rectangle whose corner (srcX, srcY)
// lands at (x, y) of the destination. The placed area is worked out here
// on its own terms, as the intersection of three intervals per axis: the
// rectangle, the destination plane, and the source plane moved by the
// offset between the two corners.
#ifndef QBO_FUZZ_MASK_TARGET_H_
#define QBO_FUZZ_MASK_TARGET_H_

#include <algorithm>

#include "fuzz/fuzz_support.h"

namespace qbo::fuzz {

struct Placement {
  bool drawn;
  Span cols, rows;  // destination columns and rows covered
};

inline Placement Place(int64_t x, int64_t y, int64_t width, int64_t height, int64_t dst_width,
                       int64_t dst_height, int64_t src_x, int64_t src_y, int64_t src_width,
                       int64_t src_height) {
  Placement p{false, {0, 0}, {0, 0}};
  if (dst_width < 1 || dst_height < 1 || src_width < 1 || src_height < 1 || x >= dst_width ||
      y >= dst_height || src_x >= src_width || src_y >= src_height) {
    return p;
  }
  p.cols = Intersect(Intersect({x, x + width}, {0, dst_width}),
                     {x - src_x, x - src_x + src_width});
  p.rows = Intersect(Intersect({y, y + height}, {0, dst_height}),
                     {y - src_y, y - src_y + src_height});
  p.drawn = p.cols.size() > 0 && p.rows.size() > 0;
  return p;
}

// The mask planes of a call: destination `unit` bytes an element, source
// one byte, both with the arguments read from the input.
struct MaskCall {
  int32_t x, y, width, height, dst_width, dst_height, src_x, src_y, src_width, src_height;
};

inline MaskCall ReadMaskCall(Input& in, bool rect_is_source) {
  MaskCall c{};
  c.dst_width = in.Dimension(80);
  c.dst_height = in.Dimension(48);
  c.src_width = in.Dimension(80);
  c.src_height = in.Dimension(48);
  c.x = in.Value();
  c.y = in.Value();
  c.src_x = in.Value();
  c.src_y = in.Value();
  c.width = rect_is_source ? c.src_width : in.Value();
  c.height = rect_is_source ? c.src_height : in.Value();
  return c;
}

inline Placement Place(const MaskCall& c) {
  return Place(c.x, c.y, c.width, c.height, c.dst_width, c.dst_height, c.src_x, c.src_y,
               c.src_width, c.src_height);
}

}  // namespace qbo::fuzz

#endif  // QBO_FUZZ_MASK_TARGET_H_
