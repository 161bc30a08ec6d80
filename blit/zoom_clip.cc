#include "blit/zoom_clip.h"

#include <initializer_list>

namespace qbo {

namespace {

constexpr float kTwoTo31 = 2147483648.0f;

bool Fits32(int64_t v) { return v >= INT32_MIN && v <= INT32_MAX; }

// Truncation toward zero of a float that must land in 32 bits; false for
// NaN, infinities and values out of range (the conversion the clipping
// relies on has no meaning there).
bool TruncTo32(float v, int64_t* out) {
  if (!(v >= -kTwoTo31 && v < kTwoTo31)) return false;
  *out = static_cast<int64_t>(v);
  return true;
}

float F(int64_t v) { return static_cast<float>(v); }

// One axis of the rectangles, in 64-bit working values.
struct Axis {
  int64_t dst_pos, size, dst_limit, src_pos, src_size, src_limit;
  float scale;

  bool Stored() const {
    return Fits32(dst_pos) && Fits32(size) && Fits32(src_pos) && Fits32(src_size);
  }

  // The destination starts before its buffer: move the source start and
  // size by the same span in source pixels.
  bool ClipDestinationStart() {
    if (dst_pos >= 0) return true;
    const float t = F(dst_pos) * scale;
    if (!TruncTo32(F(src_pos) - t, &src_pos) || !TruncTo32(F(src_size) + t, &src_size)) {
      return false;
    }
    size += dst_pos;
    dst_pos = 0;
    return Stored();
  }

  // The source starts before its buffer. `widen` selects the horizontal
  // rule (the destination grows by the overhang) over the vertical one (it
  // shrinks); both are kept as the zoom has always clipped.
  bool ClipSourceStart(bool widen) {
    if (src_pos >= 0) return true;
    // A source size already below 1 only falls further: the call fails, and
    // failing here avoids dividing by it.
    if (src_size < 1) return false;
    const float t = F(size) / F(src_size) * F(src_pos);
    if (!TruncTo32(F(dst_pos) - t, &dst_pos)) return false;
    if (!TruncTo32(widen ? F(size) - t : F(size) + t, &size)) return false;
    src_size += src_pos;
    src_pos = 0;
    return Stored();
  }

  bool ClipDestinationEnd() {
    const int64_t excess = dst_pos + size - dst_limit;
    if (excess <= 0) return true;
    int64_t cut;
    if (!TruncTo32(F(excess) * scale, &cut)) return false;
    size -= excess;
    src_size -= cut;
    return Stored();
  }

  bool ClipSourceEnd() {
    const int64_t excess = src_pos + src_size - src_limit;
    if (excess <= 0) return true;
    int64_t cut;
    if (!TruncTo32(F(excess) / scale, &cut)) return false;
    src_size -= excess;
    size -= cut;
    return Stored();
  }

  bool Inside() const {
    return size >= 1 && src_size >= 1 && dst_pos >= 0 && dst_pos + size <= dst_limit &&
           src_pos >= 0 && src_pos + src_size <= src_limit;
  }
};

}  // namespace

bool ClipDwordZoom(DwordZoomRects* r) {
  if (r->src_x >= r->src_width || r->src_y >= r->src_height || r->dst_x >= r->dst_width ||
      r->dst_y >= r->dst_height) {
    return false;
  }
  for (int32_t size : {r->dst_width, r->dst_height, r->src_width, r->src_height, r->src_rect_width,
                       r->src_rect_height, r->width, r->height}) {
    if (size < 1) return false;
  }
  Axis h{r->dst_x,
         r->width,
         r->dst_width,
         r->src_x,
         r->src_rect_width,
         r->src_width,
         F(r->src_rect_width) / F(r->width)};
  Axis v{r->dst_y,
         r->height,
         r->dst_height,
         r->src_y,
         r->src_rect_height,
         r->src_height,
         F(r->src_rect_height) / F(r->height)};
  const bool ok = h.ClipDestinationStart() && v.ClipDestinationStart() && h.ClipSourceStart(true) &&
                  v.ClipSourceStart(false) && h.ClipDestinationEnd() && v.ClipDestinationEnd() &&
                  h.ClipSourceEnd() && v.ClipSourceEnd();
  // In 32-bit arithmetic that does not overflow the steps above already
  // leave both rectangles inside their buffers; the check holds that for
  // every input.
  if (!ok || !h.Inside() || !v.Inside()) return false;
  *r = DwordZoomRects{static_cast<int32_t>(h.dst_pos),
                      static_cast<int32_t>(v.dst_pos),
                      static_cast<int32_t>(h.size),
                      static_cast<int32_t>(v.size),
                      r->dst_width,
                      r->dst_height,
                      static_cast<int32_t>(h.src_pos),
                      static_cast<int32_t>(v.src_pos),
                      static_cast<int32_t>(h.src_size),
                      static_cast<int32_t>(v.src_size),
                      r->src_width,
                      r->src_height,
                      h.scale,
                      v.scale};
  return true;
}

}  // namespace qbo
