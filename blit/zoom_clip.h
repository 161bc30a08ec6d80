// Clipping of the 32-bit zoom's rectangles to their buffers.
#ifndef QBO_BLIT_ZOOM_CLIP_H_
#define QBO_BLIT_ZOOM_CLIP_H_

#include <cstdint>

namespace qbo {

// The zoom's rectangles as passed (argument order of the export without the
// pointers), clipped in place by ClipDwordZoom.
struct DwordZoomRects {
  int32_t dst_x, dst_y, width, height, dst_width, dst_height;
  int32_t src_x, src_y, src_rect_width, src_rect_height, src_width, src_height;
  float scale_x = 0, scale_y = 0;  // source pixels per destination pixel, set by the clip
};

// Clips both rectangles keeping the scale, step by step in single precision
// as the zoom defines it: destination overhang left and top, source
// overhang left and top, then destination and source excess right and
// bottom. Returns false on an argument error or when nothing is left.
//
// The horizontal and vertical source overhang differ on purpose: on the
// left the destination widens by the overhang (its added columns sample
// past the source rectangle and come out 0), on the top it shrinks.
//
// Intermediate values are kept in 64 bits, so the results equal the 32-bit
// arithmetic wherever that does not overflow. A clipped value that does not
// fit 32 bits, or a float that cannot be converted, rejects the call; and a
// last check makes sure that both rectangles lie inside their buffers.
bool ClipDwordZoom(DwordZoomRects* r);

}  // namespace qbo

#endif  // QBO_BLIT_ZOOM_CLIP_H_
