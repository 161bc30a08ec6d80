// ResampleFrame: one frame scaled into another with the library's 8-tap
// windowed-sinc resampler, field by field, keeping the picture's shape.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "filter/resample_pass.h"
#include "frame/platform.h"
#include "velavid/velavid.h"

namespace velavid {
namespace {

enum Format { kRgb32 = 0, kRgb24 = 3, kYuy2 = 6, kUyvy = 7 };

// Frames wider or taller than this are refused: far beyond any video frame,
// and small enough that every size and offset below fits its type.
constexpr intptr_t kMaxSide = 1 << 15;

// One field of a validated descriptor: `height` lines of `width` pixels,
// `stride` bytes apart.
struct Field {
  uint8_t* pixels;
  int64_t stride;
  int32_t width, height;
};

struct Frame {
  uint8_t* pixels;
  int64_t row_bytes;  // from a line of a field to the next of the same field
  int32_t width, height, fields, format, aspect;

  Field field(int f) const {
    return {pixels + f * (row_bytes / fields), row_bytes, width, height};
  }
};

int BytesPerPixel(intptr_t format) {
  switch (format) {
    case kRgb32:
      return 4;
    case kRgb24:
      return 3;
    case kYuy2:
    case kUyvy:
      return 2;
    default:
      // The planar formats 8 and 9 (YUV8, YUV6) are not served: no layout of
      // their planes inside one buffer is defined that a caller could rely on.
      return 0;
  }
}

bool Read(intptr_t word, Frame* out) {
  if (!word) return false;
  QN_FrameDescriptor d;
  std::memcpy(&d, reinterpret_cast<const void*>(word), sizeof d);
  const int bytes = BytesPerPixel(d.format);
  if (!d.pixels || bytes == 0 || d.bits_per_pixel != 8 * bytes) return false;
  if (d.field_count != 1 && d.field_count != 2) return false;
  if (d.width < 1 || d.width > kMaxSide || d.height < 1 || d.height > kMaxSide) return false;
  // A YUY2 or UYVY line is whole pairs.
  if (bytes == 2 && d.width % 2 != 0) return false;
  if (d.row_bytes <= 0 || d.row_bytes % d.field_count != 0 ||
      d.row_bytes / d.field_count < d.width * bytes) {
    return false;
  }
  *out = {static_cast<uint8_t*>(d.pixels), static_cast<int64_t>(d.row_bytes),
          static_cast<int32_t>(d.width), static_cast<int32_t>(d.height),
          static_cast<int32_t>(d.field_count), static_cast<int32_t>(d.format),
          static_cast<int32_t>(d.aspect_class)};
  return true;
}

// Where the picture goes in each destination field. A 4:3 picture (aspect
// class 1) in a 16:9 frame (class 0) is pillarboxed to 3/4 of the width; a
// 16:9 picture in a 4:3 frame is letterboxed to 3/4 of the field's lines;
// both centred. Columns stay even so YUY2 and UYVY pairs stay whole.
struct Rect {
  int32_t x, y, width, height;
};

Rect PictureRect(const Frame& src, const Frame& dst) {
  Rect r{0, 0, dst.width, dst.height};
  if (src.aspect == 1 && dst.aspect == 0) {
    const int32_t w = static_cast<int32_t>(int64_t{dst.width} * 3 / 4) & ~1;
    if (w >= 2) r = {((dst.width - w) / 2) & ~1, 0, w, dst.height};
  } else if (src.aspect == 0 && dst.aspect == 1) {
    const int32_t h = static_cast<int32_t>(int64_t{dst.height} * 3 / 4);
    if (h >= 1) r = {0, (dst.height - h) / 2, dst.width, h};
  }
  return r;
}

// Black of each format, as the bytes of one pixel (one pair for YUY2 and
// UYVY): RGB 0 (the fourth byte of 32-bit RGB is no alpha), video black Y 16
// with neutral chroma.
struct Black {
  uint8_t bytes[4];
  int size;
};

Black BlackOf(int format) {
  switch (format) {
    case kRgb24:
      return {{0, 0, 0, 0}, 3};
    case kYuy2:
      return {{16, 128, 16, 128}, 4};
    case kUyvy:
      return {{128, 16, 128, 16}, 4};
    default:
      return {{0, 0, 0, 0}, 4};
  }
}

void FillBlack(uint8_t* p, int64_t bytes, const Black& black) {
  for (int64_t i = 0; i + black.size <= bytes; i += black.size) {
    std::memcpy(p + i, black.bytes, static_cast<std::size_t>(black.size));
  }
}

// Everything of the destination field outside the picture.
void FillBars(const Field& dst, const Rect& r, int format) {
  const Black black = BlackOf(format);
  const int bpp = BytesPerPixel(format);
  for (int32_t y = 0; y < dst.height; ++y) {
    uint8_t* line = dst.pixels + y * dst.stride;
    if (y < r.y || y >= r.y + r.height) {
      FillBlack(line, int64_t{dst.width} * bpp, black);
      continue;
    }
    FillBlack(line, int64_t{r.x} * bpp, black);
    const int64_t right = int64_t{r.x + r.width} * bpp;
    FillBlack(line + right, int64_t{dst.width} * bpp - right, black);
  }
}

// A plane of 32-bit pixels the resampler reads or writes.
struct Plane32 {
  uint8_t* pixels;
  int64_t stride;
  int32_t width, height;
};

bool Resample(const Plane32& dst, const Plane32& src) {
  qbo::ResampleJob job{};
  job.taps = 8;
  job.dst = dst.pixels;
  job.dst_stride = dst.stride;
  job.dst_width = dst.width;
  job.dst_height = dst.height;
  job.src = src.pixels;
  job.src_stride = src.stride;
  job.src_width = src.width;
  job.src_height = src.height;
  job.src_last_row = src.height - 1;
  job.vertical_first = qbo::VerticalFirst(dst.width, dst.height, src.width, src.height);
  return qbo::RunResample(job) == qbo::ResampleOutcome::kDone;
}

// Temporary 32-bit planes, one block for all of them.
class Scratch {
 public:
  explicit Scratch(uint64_t bytes)
      : buffer_(bytes <= SIZE_MAX / 2 ? static_cast<std::size_t>(bytes) : SIZE_MAX) {}
  explicit operator bool() const { return static_cast<bool>(buffer_); }
  Plane32 Take(int32_t width, int32_t height) {
    Plane32 p{static_cast<uint8_t*>(buffer_.get()) + used_, int64_t{width} * 4, width, height};
    used_ += static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    return p;
  }

 private:
  qbo::ScratchBuffer buffer_;
  std::size_t used_ = 0;
};

uint64_t PlaneBytes(int64_t width, int64_t height) { return static_cast<uint64_t>(width * height * 4); }

// 24-bit lines through 32-bit pixels: each byte is filtered on its own, so
// the unused fourth byte changes nothing.
bool ResampleRgb24(const Field& dst, const Rect& r, const Field& src) {
  Scratch scratch(PlaneBytes(src.width, src.height) + PlaneBytes(r.width, r.height));
  if (!scratch) return false;
  const Plane32 in = scratch.Take(src.width, src.height);
  const Plane32 out = scratch.Take(r.width, r.height);
  for (int32_t y = 0; y < src.height; ++y) {
    const uint8_t* s = src.pixels + y * src.stride;
    uint8_t* d = in.pixels + y * in.stride;
    for (int32_t x = 0; x < src.width; ++x) {
      std::memcpy(d + 4 * x, s + 3 * x, 3);
      d[4 * x + 3] = 0;
    }
  }
  if (!Resample(out, in)) return false;
  for (int32_t y = 0; y < r.height; ++y) {
    const uint8_t* s = out.pixels + y * out.stride;
    uint8_t* d = dst.pixels + (r.y + y) * dst.stride + int64_t{r.x} * 3;
    for (int32_t x = 0; x < r.width; ++x) std::memcpy(d + 3 * x, s + 4 * x, 3);
  }
  return true;
}

// YUY2 (Y0 U Y1 V) and UYVY (U Y0 V Y1): luma and chroma are scaled as
// planes of their own, chroma at half the width, each sample in the first
// bytes of a 32-bit pixel (Y; U, V) so the resampler weighs them alone.
bool ResamplePacked(const Field& dst, const Rect& r, const Field& src, int format) {
  const int y_at = format == kYuy2 ? 0 : 1, c_at = 1 - y_at;
  const int32_t sc = src.width / 2, dc = r.width / 2;
  Scratch scratch(PlaneBytes(src.width, src.height) + PlaneBytes(sc, src.height) +
                  PlaneBytes(r.width, r.height) + PlaneBytes(dc, r.height));
  if (!scratch) return false;
  const Plane32 luma_in = scratch.Take(src.width, src.height);
  const Plane32 chroma_in = scratch.Take(sc, src.height);
  const Plane32 luma_out = scratch.Take(r.width, r.height);
  const Plane32 chroma_out = scratch.Take(dc, r.height);
  for (int32_t y = 0; y < src.height; ++y) {
    const uint8_t* s = src.pixels + y * src.stride;
    uint8_t* l = luma_in.pixels + y * luma_in.stride;
    uint8_t* c = chroma_in.pixels + y * chroma_in.stride;
    for (int32_t i = 0; i < sc; ++i) {
      const uint8_t* pair = s + 4 * i;
      const uint8_t y0[4] = {pair[y_at], 0, 0, 0}, y1[4] = {pair[y_at + 2], 0, 0, 0};
      const uint8_t uv[4] = {pair[c_at], pair[c_at + 2], 0, 0};
      std::memcpy(l + 8 * i, y0, 4);
      std::memcpy(l + 8 * i + 4, y1, 4);
      std::memcpy(c + 4 * i, uv, 4);
    }
  }
  if (!Resample(luma_out, luma_in) || !Resample(chroma_out, chroma_in)) return false;
  for (int32_t y = 0; y < r.height; ++y) {
    const uint8_t* l = luma_out.pixels + y * luma_out.stride;
    const uint8_t* c = chroma_out.pixels + y * chroma_out.stride;
    uint8_t* d = dst.pixels + (r.y + y) * dst.stride + int64_t{r.x} * 2;
    for (int32_t i = 0; i < dc; ++i) {
      uint8_t* pair = d + 4 * i;
      pair[y_at] = l[8 * i];
      pair[y_at + 2] = l[8 * i + 4];
      pair[c_at] = c[4 * i];
      pair[c_at + 2] = c[4 * i + 1];
    }
  }
  return true;
}

bool ResampleField(const Field& dst, const Rect& r, const Field& src, int format) {
  switch (format) {
    case kRgb32:
      return Resample({dst.pixels + r.y * dst.stride + int64_t{r.x} * 4, dst.stride, r.width,
                       r.height},
                      {src.pixels, src.stride, src.width, src.height});
    case kRgb24:
      return ResampleRgb24(dst, r, src);
    default:
      return ResamplePacked(dst, r, src, format);
  }
}

}  // namespace

intptr_t ResampleFrame(intptr_t source, intptr_t destination, intptr_t, intptr_t, intptr_t,
                       intptr_t, intptr_t, intptr_t) {
  EnsureKernelsReady();
  Frame src, dst;
  if (!Read(source, &src) || !Read(destination, &dst)) return 0;
  if (src.format != dst.format || src.fields != dst.fields) return 0;
  const Rect r = PictureRect(src, dst);
  // With two fields each is scaled on its own, so lines of one field never
  // mix into the other.
  for (int f = 0; f < dst.fields; ++f) {
    const Field d = dst.field(f);
    if (!ResampleField(d, r, src.field(f), dst.format)) return 0;
    FillBars(d, r, dst.format);
  }
  return 1;
}

}  // namespace velavid
