#include "pixel_format.h"

#include <array>

namespace quillon {

namespace {

struct FormatRow {
  PixelFormat format;
  const char* name;
  int bytes_per_pixel;
  int planes;
  bool yuv;
};

constexpr std::array<FormatRow, 7> kFormats = {{
    {PixelFormat::kYuv420p, "yuv420p", 1, 3, true},
    {PixelFormat::kYuv422p, "yuv422p", 1, 3, true},
    {PixelFormat::kYuyv422, "yuyv422", 2, 1, true},
    {PixelFormat::kBgra, "bgra", 4, 1, false},
    {PixelFormat::kRgba, "rgba", 4, 1, false},
    {PixelFormat::kRgb24, "rgb24", 3, 1, false},
    {PixelFormat::kBgr24, "bgr24", 3, 1, false},
}};

const FormatRow& Row(PixelFormat format) {
  for (const FormatRow& row : kFormats) {
    if (row.format == format) return row;
  }
  return kFormats[0];
}

}  // namespace

const char* FormatName(PixelFormat format) { return Row(format).name; }

std::optional<PixelFormat> ParseFormat(std::string_view name) {
  for (const FormatRow& row : kFormats) {
    if (name == row.name) return row.format;
  }
  return std::nullopt;
}

std::string FormatList() {
  std::string list;
  for (const FormatRow& row : kFormats) {
    if (!list.empty()) list += ", ";
    list += row.name;
  }
  return list;
}

bool IsYuv(PixelFormat format) { return Row(format).yuv; }
bool IsPlanar(PixelFormat format) { return Row(format).planes > 1; }
int BytesPerPixel(PixelFormat format) { return Row(format).bytes_per_pixel; }
int PlaneCount(PixelFormat format) { return Row(format).planes; }

std::string CheckSize(PixelFormat format, int width, int height) {
  if (width < 1 || height < 1) return "picture size must be at least 1x1";
  if (width > 32768 || height > 32768) return "picture size is above 32768x32768";
  const bool half_width = IsYuv(format);
  const bool half_height = format == PixelFormat::kYuv420p;
  if (half_width && width % 2 != 0) {
    return std::string(FormatName(format)) + " needs an even width, not " + std::to_string(width);
  }
  if (half_height && height % 2 != 0) {
    return std::string(FormatName(format)) + " needs an even height, not " + std::to_string(height);
  }
  return "";
}

std::size_t FrameBytes(PixelFormat format, int width, int height) {
  const std::size_t pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  switch (format) {
    case PixelFormat::kYuv420p:
      return pixels + 2 * (static_cast<std::size_t>(width / 2) * (height / 2));
    case PixelFormat::kYuv422p:
      return pixels + 2 * (static_cast<std::size_t>(width / 2) * height);
    default:
      return pixels * BytesPerPixel(format);
  }
}

void Frame::Reset(PixelFormat format, int width, int height) {
  format_ = format;
  width_ = width;
  height_ = height;
  byte_size_ = FrameBytes(format, width, height);
  if (storage_.size() < byte_size_) storage_.resize(byte_size_);
}

Plane Frame::plane(int index) const {
  uint8_t* base = const_cast<uint8_t*>(storage_.data());
  if (!IsPlanar(format_)) {
    const int32_t row = width_ * BytesPerPixel(format_);
    return {base, row, row, height_};
  }
  const int32_t luma = width_;
  const int32_t chroma = width_ / 2;
  const int32_t chroma_rows = format_ == PixelFormat::kYuv420p ? height_ / 2 : height_;
  const std::size_t luma_bytes = static_cast<std::size_t>(luma) * height_;
  const std::size_t chroma_bytes = static_cast<std::size_t>(chroma) * chroma_rows;
  if (index == 0) return {base, luma, luma, height_};
  return {base + luma_bytes + (index - 1) * chroma_bytes, chroma, chroma, chroma_rows};
}

Plane Frame::plane(int index) { return static_cast<const Frame&>(*this).plane(index); }

}  // namespace quillon
