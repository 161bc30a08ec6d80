#include "buffer/mask_clip.h"

#include <algorithm>

namespace qbo {

bool ClipMaskRect(const MaskRect& r, MaskSpan* span) {
  if (r.x >= r.dst_width || r.y >= r.dst_height || r.dst_width < 1 || r.dst_height < 1 ||
      r.src_width < 1 || r.src_height < 1 || r.src_x >= r.src_width || r.src_y >= r.src_height) {
    return false;
  }
  int64_t x = r.x, y = r.y, sx = r.src_x, sy = r.src_y, w = r.width, h = r.height;
  if (x < 0) {
    w += x;
    sx -= x;
    x = 0;
  }
  if (y < 0) {
    h += y;
    sy -= y;
    y = 0;
  }
  if (sx < 0) {
    w += sx;
    x -= sx;
    sx = 0;
  }
  if (sy < 0) {
    h += sy;
    y -= sy;
    sy = 0;
  }
  // Each trim only lowers the size to a limit, so the order of the four
  // trims (the exports differ in it) cannot change the result.
  w = std::min({w, int64_t{r.dst_width} - x, int64_t{r.src_width} - sx});
  h = std::min({h, int64_t{r.dst_height} - y, int64_t{r.src_height} - sy});
  if (w < 1 || h < 1) return false;
  *span = MaskSpan{x, y, sx, sy, w, h};
  return true;
}

}  // namespace qbo
