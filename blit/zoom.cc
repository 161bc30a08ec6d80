// The 8-bit and 32-bit buffer zooms: argument checks and clipping, then a
// driver that steps the sample positions and feeds the zoom rows.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "blit/zoom_clip.h"
#include "frame/kernel_table.h"

namespace {

// Destination columns are processed in strips of this many, so the column
// positions and the two pair rows live on the stack however wide the image
// (the zooms allocate nothing). A 1920-pixel row is one strip.
constexpr std::size_t kStrip = 2048;

// A 32-bit pixel as four bytes: the zooms accept any alignment.
struct Pixel32 {
  uint8_t bytes[4];
};

// What the sampler sees of the source: sample (0, 0), the row pitch in
// samples, and the columns and rows that exist (neighbours at or past them
// read as 0).
template <typename Sample>
struct SourceView {
  const Sample* origin;
  std::size_t pitch;
  int32_t columns, rows;
};

// fmod(position, 1) of a non-negative position: the fractional part of a
// float is itself a float, so the subtraction is exact and equals the
// library call without its cost.
float Fraction(float position) { return position - std::trunc(position); }

// Integer part of a sample position, capped at `limit` (every position at
// or past the limit samples only zeros). Positions are never negative.
int32_t SampleIndex(float position, int32_t limit) {
  if (position >= static_cast<float>(limit)) return limit;
  return std::min(static_cast<int32_t>(position), limit);
}

// The pair rows of the two source rows a destination row blends. Positions
// only move down, so a pair row is kept while it is still wanted: one
// gather per source row in a 1:1 or enlarging zoom.
template <typename Sample>
class PairRows {
 public:
  PairRows(const SourceView<Sample>& src, const int32_t* ix, std::size_t width)
      : src_(src), ix_(ix), width_(width) {}

  // Pair row of source row `row` (rows past the last are all zeros); the
  // slot `keep` is not reused.
  int Fetch(int32_t row, int keep) {
    for (int s = 0; s < 2; ++s) {
      if (key_[s] == row) return s;
    }
    const int s = keep >= 0 ? 1 - keep : (key_[0] <= key_[1] ? 0 : 1);
    const Sample* line =
        row < src_.rows ? src_.origin + static_cast<std::size_t>(row) * src_.pitch : nullptr;
    qbo::GatherZoomPairs(slots_[s], line, ix_, src_.columns, width_);
    key_[s] = row;
    return s;
  }

  const uint8_t* Bytes(int s) const { return reinterpret_cast<const uint8_t*>(slots_[s]); }

 private:
  SourceView<Sample> src_;
  const int32_t* ix_;
  std::size_t width_;
  int64_t key_[2] = {-1, -1};
  alignas(32) Sample slots_[2][2 * kStrip];
};

// Zooms `src` onto a columns x rows destination whose rows start
// `dst_pitch` bytes apart. Positions start at 0 and grow by repeated
// single-precision addition of the scale, column by column and row by row,
// exactly as the reference steps them.
template <typename Sample>
void ZoomPlane(uint8_t* dst, std::size_t dst_pitch, int64_t columns, int64_t rows,
               const SourceView<Sample>& src, float scale_x, float scale_y, qbo::ZoomRowFn row) {
  alignas(32) int32_t ix[kStrip];
  alignas(32) float fx[kStrip];
  float x = 0.0f;
  for (int64_t start = 0; start < columns; start += static_cast<int64_t>(kStrip)) {
    const auto width = static_cast<std::size_t>(std::min<int64_t>(kStrip, columns - start));
    for (std::size_t c = 0; c < width; ++c) {
      ix[c] = SampleIndex(x, src.columns);
      fx[c] = Fraction(x);
      x += scale_x;
    }
    PairRows<Sample> pairs(src, ix, width);
    uint8_t* d = dst + static_cast<std::size_t>(start) * sizeof(Sample);
    float y = 0.0f;
    for (int64_t r = 0; r < rows; ++r, d += dst_pitch) {
      const int32_t iy = SampleIndex(y, src.rows);
      const int upper = pairs.Fetch(iy, -1);
      const int lower = pairs.Fetch(iy < src.rows ? iy + 1 : iy, upper);
      row(d, pairs.Bytes(upper), pairs.Bytes(lower), fx, Fraction(y), width);
      y += scale_y;
    }
  }
}

}  // namespace

extern "C" {

QBO_API int32_t QBO_CALLEE QN_BufferZoom(void* dst, int32_t dstWidth, int32_t dstHeight,
                                         const void* src, int32_t srcWidth, int32_t srcHeight) {
  if (!dst || !src || dstWidth == 0 || dstHeight == 0 || srcWidth == 0 || srcHeight == 0) {
    return QBO_E_FAIL;
  }
  // A negative width or source height describes no plane; rejecting it is
  // the one reading that cannot touch memory the caller does not own.
  if (dstWidth < 0 || srcWidth < 0 || srcHeight < 0) return QBO_E_FAIL;
  if (dstHeight < 0) return 0;
  const float scale_x = static_cast<float>(srcWidth) / static_cast<float>(dstWidth);
  const float scale_y = static_cast<float>(srcHeight) / static_cast<float>(dstHeight);
  const SourceView<uint8_t> view{static_cast<const uint8_t*>(src),
                                 static_cast<std::size_t>(srcWidth), srcWidth, srcHeight};
  ZoomPlane(static_cast<uint8_t*>(dst), static_cast<std::size_t>(dstWidth), dstWidth, dstHeight,
            view, scale_x, scale_y, qbo::Kernels().zoom.zoom8);
  return 0;
}

QBO_API int32_t QBO_CALLEE QN_DwordBufferZoom(void* dst, int32_t dstX, int32_t dstY, int32_t width,
                                              int32_t height, int32_t dstWidth, int32_t dstHeight,
                                              const void* src, int32_t srcX, int32_t srcY,
                                              int32_t srcRectWidth, int32_t srcRectHeight,
                                              int32_t srcWidth, int32_t srcHeight) {
  qbo::DwordZoomRects r{dstX, dstY, width,        height,        dstWidth, dstHeight,
                        srcX, srcY, srcRectWidth, srcRectHeight, srcWidth, srcHeight};
  if (!dst || !src || !qbo::ClipDwordZoom(&r)) return QBO_E_FAIL;
  const auto dst_pitch = static_cast<std::size_t>(r.dst_width) * sizeof(Pixel32);
  const auto src_pitch = static_cast<std::size_t>(r.src_width);
  uint8_t* first = static_cast<uint8_t*>(dst) + static_cast<std::size_t>(r.dst_y) * dst_pitch +
                   static_cast<std::size_t>(r.dst_x) * sizeof(Pixel32);
  const SourceView<Pixel32> view{static_cast<const Pixel32*>(src) +
                                     static_cast<std::size_t>(r.src_y) * src_pitch +
                                     static_cast<std::size_t>(r.src_x),
                                 src_pitch, r.src_rect_width, r.src_rect_height};
  ZoomPlane(first, dst_pitch, r.width, r.height, view, r.scale_x, r.scale_y,
            qbo::Kernels().zoom.zoom32);
  return 0;
}

}  // extern "C"
