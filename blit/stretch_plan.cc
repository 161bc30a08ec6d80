#include "blit/stretch_plan.h"

#include <algorithm>
#include <cmath>

#include "frame/single_precision.h"

namespace qbo {
namespace {

// Integer part of a double that is known to be far inside int64.
inline int64_t Trunc(double v) { return static_cast<int64_t>(v); }

// The overhang and excess steps of one axis. Names follow the horizontal
// axis; the vertical one passes its own fields.
struct Axis {
  int64_t& dst_pos;
  int64_t& length;
  int64_t dst_size;
  int64_t& src_pos;
  int64_t& src_length;
  int64_t src_size;
  float scale;
};

// A destination start before the buffer drops the columns in front of it
// and moves the source start by their rounded source width.
bool ClipDestinationStart(Axis a, bool mean) {
  if (a.dst_pos >= 0) return true;
  a.length += a.dst_pos;
  const int64_t k = Trunc(0.5 - static_cast<double>(a.dst_pos) * a.scale);
  a.src_pos += k;
  a.src_length -= k;
  a.dst_pos = 0;
  return !mean || (a.src_pos < a.src_size && a.src_length >= 1);
}

// A source start before the buffer drops the destination pixels that would
// sample it.
bool ClipSourceStart(Axis a, int64_t dst_size, bool mean) {
  if (a.src_pos >= 0) return true;
  const int64_t k = Trunc(std::ceil(static_cast<double>(-a.src_pos) / a.scale));
  a.src_length += a.src_pos;
  a.src_pos = 0;
  a.length -= k;
  a.dst_pos += k;
  return !mean || (a.dst_pos < dst_size && a.length >= 1);
}

bool ClipEnds(Axis a) {
  const int64_t dst_excess = a.dst_pos + a.length - a.dst_size;
  if (dst_excess > 0) {
    a.length -= dst_excess;
    a.src_length -= Trunc(static_cast<double>(dst_excess) * a.scale);
    if (a.src_length < 1) return false;
  }
  const int64_t src_excess = a.src_pos + a.src_length - a.src_size;
  if (src_excess > 0) {
    a.src_length -= src_excess;
    a.length -= Trunc(std::ceil(static_cast<double>(src_excess) / a.scale));
    if (a.length < 1) return false;
  }
  return true;
}

inline float Scale(int64_t src_length, int64_t dst_length) {
  return RoundToSingle(static_cast<double>(src_length) / static_cast<double>(dst_length));
}

inline float Start(int64_t src_in, int64_t dst_moved, float scale) {
  return RoundToSingle(static_cast<double>(src_in) +
                       static_cast<double>(dst_moved) * static_cast<double>(scale));
}

}  // namespace

bool PrepareStretch(const BlitArgs& a, bool mean, StretchPlan* p) {
  if (a.dst_width < 1 || a.dst_height < 1 || a.src_width < 1 || a.src_height < 1 ||
      a.width < 1 || a.height < 1 || a.src_rect_width < 1 || a.src_rect_height < 1) {
    return false;
  }
  if (a.dst_x >= a.dst_width || a.dst_y >= a.dst_height || a.src_x >= a.src_width ||
      a.src_y >= a.src_height) {
    return false;
  }
  if (a.dst_x + a.width < 1 || a.dst_y + a.height < 1 || a.src_x + a.src_rect_width < 1 ||
      a.src_y + a.src_rect_height < 1) {
    return false;
  }
  *p = StretchPlan{a.dst_x, a.dst_y, a.width, a.height, a.src_x, a.src_y, a.src_rect_width,
                   a.src_rect_height, 0.0f, 0.0f, 0.0f, 0.0f, 0, 1};
  p->scale_y = Scale(a.src_rect_height, a.height);
  p->scale_x = Scale(a.src_rect_width, a.width);
  const Axis x{p->dst_x, p->width, a.dst_width, p->src_x, p->src_rect_width, a.src_width,
               p->scale_x};
  const Axis y{p->dst_y, p->height, a.dst_height, p->src_y, p->src_rect_height, a.src_height,
               p->scale_y};
  if (!ClipDestinationStart(x, mean) || !ClipDestinationStart(y, mean)) return false;
  if (!ClipSourceStart(x, a.dst_width, mean) || !ClipSourceStart(y, a.dst_height, mean)) {
    return false;
  }
  if (!ClipEnds(x) || !ClipEnds(y)) return false;
  if (p->width < 1 || p->height < 1 || p->src_rect_width < 1 || p->src_rect_height < 1 ||
      p->dst_x >= a.dst_width || p->dst_y >= a.dst_height) {
    return false;
  }
  p->start_x = Start(a.src_x, p->dst_x - a.dst_x, p->scale_x);
  p->start_y = Start(a.src_y, p->dst_y - a.dst_y, p->scale_y);

  switch (a.field) {
    case kFieldAll:
      return true;
    case kFieldEven:
    case kFieldOdd: {
      const bool odd = p->dst_y % 2 != 0;
      if (odd == (a.field == kFieldEven)) {
        p->dst_y += 1;
        p->first_row = 1;
        if (p->dst_y >= a.dst_height) return false;
      }
      p->row_step = 2;
      return true;
    }
    default:
      return false;
  }
}

void BuildBilinearAxis(float start, float scale, int64_t n, int64_t last_index,
                       bool edge_inside, int32_t* index, uint32_t* weight) {
  // The weight of sample ix at position x is (ix + 1 - x) x 65535, rounded;
  // a position a rounding step outside [ix, ix + 1) is held to 0..65535.
  auto sample = [](float pos, int64_t* ix) {
    *ix = static_cast<int64_t>(pos);
    const double w = (static_cast<double>(*ix + 1) - static_cast<double>(pos)) * 65535.0 + 0.5;
    return static_cast<uint32_t>(std::clamp<int64_t>(Trunc(w), 0, 65535));
  };
  float pos = start;
  for (int64_t i = 0; i + 1 < n; ++i) {
    int64_t ix = 0;
    weight[i] = sample(pos, &ix);
    index[i] = static_cast<int32_t>(std::clamp<int64_t>(ix, 0, last_index));
    pos = pos + scale;
  }
  if (n < 1) return;
  if (edge_inside) {
    int64_t ix = 0;
    weight[n - 1] = sample(pos, &ix);
    index[n - 1] = static_cast<int32_t>(std::clamp<int64_t>(ix, 0, last_index));
  } else {
    weight[n - 1] = 0;
    index[n - 1] = static_cast<int32_t>(last_index);
  }
}

void BuildMeanAxis(float start, float scale, int64_t n, int32_t* counts, float* weights) {
  const float s = scale;
  float c = start - std::trunc(start);
  // Counts are held inside int32 for scales no buffer can cover.
  auto count_of = [](float whole, int64_t extra) {
    return static_cast<int32_t>(std::min<double>(whole, 2147483000.0) + static_cast<double>(extra));
  };
  for (int64_t i = 0; i + 1 < n; ++i) {
    if (s >= 1.0f || s >= 1.0f - c) {
      weights[2 * i] = 1.0f - c;
      const float r = s - (1.0f - c);
      const float m = std::floor(r);
      c = r - m;
      weights[2 * i + 1] = c;
      counts[i] = count_of(m, 2);
    } else {
      // A source sample covers several destination pixels.
      weights[2 * i] = s;
      weights[2 * i + 1] = 0.0f;
      c = c + s;
      counts[i] = 1;
    }
  }
  if (n < 1) return;
  if (s < 1.0f && s < 1.0f - c) {
    weights[2 * (n - 1)] = s;
    counts[n - 1] = 0;
  } else {
    weights[2 * (n - 1)] = 1.0f - c;
    counts[n - 1] = count_of(std::floor(s - (1.0f - c)), 1);
  }
  // The closing partial sample counts whole in the last pixel.
  weights[2 * (n - 1) + 1] = 1.0f;
}

int64_t LimitMeanWalk(int32_t* counts, int64_t n, int64_t available) {
  int64_t k = 0;
  int64_t reach = 1;
  for (int64_t i = 0; i < n; ++i) {
    if (k + counts[i] > available) counts[i] = static_cast<int32_t>(available - k);
    const int64_t used = counts[i] >= 1 ? counts[i] : 1;
    reach = std::max(reach, k + used);
    if (counts[i] >= 2) k += counts[i] - 1;
  }
  return reach;
}

}  // namespace qbo
