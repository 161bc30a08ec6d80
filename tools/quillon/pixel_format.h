// Pixel formats the tool reads and writes, named as FFmpeg names them, and
// the frame buffer that carries one picture through a command.
#ifndef QUILLON_TOOL_PIXEL_FORMAT_H_
#define QUILLON_TOOL_PIXEL_FORMAT_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

enum class PixelFormat { kYuv420p, kYuv422p, kYuyv422, kBgra, kRgba, kRgb24, kBgr24 };

enum class FieldOrder { kProgressive, kTopFirst, kBottomFirst };

const char* FormatName(PixelFormat format);
std::optional<PixelFormat> ParseFormat(std::string_view name);
// "yuv420p, yuv422p, ..." for help texts and error messages.
std::string FormatList();

bool IsYuv(PixelFormat format);
bool IsPlanar(PixelFormat format);
// Bytes of one pixel in a packed format (2 for YUYV), 1 for planar luma.
int BytesPerPixel(PixelFormat format);
int PlaneCount(PixelFormat format);

// Returns "" when a width x height picture can be held in `format`, else
// the reason (chroma subsampling needs even sizes).
std::string CheckSize(PixelFormat format, int width, int height);

struct Plane {
  uint8_t* data;
  int32_t pitch;      // bytes from one row to the next
  int32_t row_bytes;  // bytes of picture in each row
  int32_t rows;
};

// Everything known about a stream of frames before the first one is read.
// The value range of YUV samples: full (0..255, the library's own) or
// limited (luma 16..235, chroma 16..240). kUnknown: the file does not say.
enum class ColorRange { kUnknown, kFull, kLimited };

struct StreamInfo {
  PixelFormat format = PixelFormat::kYuv420p;
  int width = 0;
  int height = 0;
  FieldOrder order = FieldOrder::kProgressive;
  int rate_num = 25;
  int rate_den = 1;
  int aspect_num = 0;  // 0:0 is "unknown", as in YUV4MPEG2
  int aspect_den = 0;
  int64_t frame_count = -1;  // -1 when the source cannot tell
  ColorRange range = ColorRange::kUnknown;
};

// One picture, its planes packed one after another with no padding, which
// is also the raw file layout. Reset() keeps the storage when it is big
// enough, so a stream of same-size frames allocates once.
class Frame {
 public:
  Frame() = default;
  Frame(PixelFormat format, int width, int height) { Reset(format, width, height); }

  void Reset(PixelFormat format, int width, int height);

  PixelFormat format() const { return format_; }
  int width() const { return width_; }
  int height() const { return height_; }
  int plane_count() const { return PlaneCount(format_); }
  Plane plane(int index);
  Plane plane(int index) const;
  uint8_t* data() { return storage_.data(); }
  const uint8_t* data() const { return storage_.data(); }
  std::size_t byte_size() const { return byte_size_; }

  FieldOrder order = FieldOrder::kProgressive;

 private:
  PixelFormat format_ = PixelFormat::kBgra;
  int width_ = 0;
  int height_ = 0;
  std::size_t byte_size_ = 0;
  std::vector<uint8_t> storage_;
};

std::size_t FrameBytes(PixelFormat format, int width, int height);

}  // namespace quillon

#endif  // QUILLON_TOOL_PIXEL_FORMAT_H_
