// Placement of a source mask rectangle inside a destination plane, shared
// by the three mask exports.
#ifndef QBO_BUFFER_MASK_CLIP_H_
#define QBO_BUFFER_MASK_CLIP_H_

#include <cstdint>

namespace qbo {

struct MaskRect {
  int32_t x, y;           // where the source corner lands in the destination
  int32_t width, height;  // rectangle size before clipping
  int32_t dst_width, dst_height;
  int32_t src_x, src_y;
  int32_t src_width, src_height;
};

// The rectangle after clipping: destination column/row, source column/row
// and size, every value inside both planes.
struct MaskSpan {
  int64_t x, y, src_x, src_y, width, height;
};

// Clips `r` to both planes. Returns false when the call must be rejected:
// an empty plane, a corner at or past a plane's far edge, or nothing left.
// Negative corners shift both sides together, so the rectangle keeps its
// alignment between the planes. Computed in 64 bits, so every int32 input
// gives the 32-bit result wherever that does not overflow and never a span
// outside the planes.
bool ClipMaskRect(const MaskRect& r, MaskSpan* span);

}  // namespace qbo

#endif  // QBO_BUFFER_MASK_CLIP_H_
