#include "png_io.h"

#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <vector>

#include "errors.h"
#include "files.h"

namespace quillon {

namespace {

// libpng reports errors by longjmp. Only the small functions below call
// setjmp, and they hold nothing with a destructor, so the jump skips no
// C++ clean-up; the owning objects live in their callers.
struct PngErrorJump {
  std::jmp_buf jump;
  char message[200];
};

void OnPngError(png_structp png, png_const_charp message) {
  auto* error = static_cast<PngErrorJump*>(png_get_error_ptr(png));
  std::snprintf(error->message, sizeof error->message, "%s", message);
  std::longjmp(error->jump, 1);
}

void OnPngWarning(png_structp, png_const_charp) {}

struct PngHeader {
  png_uint_32 width;
  png_uint_32 height;
  int channels;
};

bool ReadHeader(png_structp png, png_infop info, std::FILE* file, PngErrorJump* error,
                PngHeader* header) {
  if (setjmp(error->jump)) return false;
  png_init_io(png, file);
  png_set_sig_bytes(png, 8);
  png_read_info(png, info);
  png_set_expand(png);
  png_set_strip_16(png);
  png_set_gray_to_rgb(png);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  header->width = png_get_image_width(png, info);
  header->height = png_get_image_height(png, info);
  header->channels = png_get_channels(png, info);
  return true;
}

bool ReadRows(png_structp png, png_infop info, png_bytepp rows, PngErrorJump* error) {
  if (setjmp(error->jump)) return false;
  png_read_image(png, rows);
  png_read_end(png, nullptr);
  return true;
}

bool WriteRows(png_structp png, png_infop info, std::FILE* file, const PngHeader* header, bool bgr,
               png_bytepp rows, PngErrorJump* error) {
  if (setjmp(error->jump)) return false;
  png_init_io(png, file);
  png_set_IHDR(png, info, header->width, header->height, 8,
               header->channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  // Level 3 keeps large pictures quick to write at little cost in size.
  png_set_compression_level(png, 3);
  png_write_info(png, info);
  if (bgr) png_set_bgr(png);
  png_write_image(png, rows);
  png_write_end(png, nullptr);
  return true;
}

class PngRead {
 public:
  PngRead() {
    png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, &error_, OnPngError, OnPngWarning);
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngRead() { png_destroy_read_struct(&png_, &info_, nullptr); }
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  PngErrorJump error_{};
};

class PngWrite {
 public:
  PngWrite() {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, &error_, OnPngError, OnPngWarning);
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngWrite() { png_destroy_write_struct(&png_, &info_); }
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  PngErrorJump error_{};
};

bool HasPngSignature(InputFile& file) {
  png_byte signature[8];
  return file.Read(signature, sizeof signature) == sizeof signature &&
         png_sig_cmp(signature, 0, sizeof signature) == 0;
}

}  // namespace

void ReadPng(const std::string& path, Frame& frame) {
  InputFile file(path);
  if (!HasPngSignature(file)) Fail(file.path(), "unreadable PNG: not a PNG file");
  PngRead read;
  if (read.info_ == nullptr) Fail(file.path(), "unreadable PNG: out of memory");
  PngHeader header{};
  if (!ReadHeader(read.png_, read.info_, file.stream(), &read.error_, &header)) {
    Fail(file.path(), std::string("unreadable PNG: ") + read.error_.message);
  }
  if (header.width > 32768 || header.height > 32768) {
    Fail(file.path(), "unsupported size: PNG is above 32768x32768");
  }
  frame.Reset(header.channels == 4 ? PixelFormat::kRgba : PixelFormat::kRgb24,
              static_cast<int>(header.width), static_cast<int>(header.height));
  frame.order = FieldOrder::kProgressive;
  const Plane plane = frame.plane(0);
  std::vector<png_bytep> rows(header.height);
  for (png_uint_32 y = 0; y < header.height; ++y) rows[y] = plane.data + y * plane.pitch;
  if (!ReadRows(read.png_, read.info_, rows.data(), &read.error_)) {
    Fail(file.path(), std::string("unreadable PNG: ") + read.error_.message);
  }
}

void WritePng(const std::string& path, const Frame& frame) {
  const PixelFormat format = frame.format();
  if (IsYuv(format)) Fail(path, "PNG holds RGB pictures, not " + std::string(FormatName(format)));
  OutputFile file(path);
  PngWrite write;
  if (write.info_ == nullptr) Fail(file.path(), "out of memory");
  const PngHeader header{static_cast<png_uint_32>(frame.width()),
                         static_cast<png_uint_32>(frame.height()), BytesPerPixel(format)};
  const bool bgr = format == PixelFormat::kBgra || format == PixelFormat::kBgr24;
  const Plane plane = frame.plane(0);
  std::vector<png_bytep> rows(header.height);
  for (png_uint_32 y = 0; y < header.height; ++y) rows[y] = plane.data + y * plane.pitch;
  if (!WriteRows(write.png_, write.info_, file.stream(), &header, bgr, rows.data(),
                 &write.error_)) {
    Fail(file.path(), std::string("cannot write PNG: ") + write.error_.message);
  }
  file.Commit();
}

bool PngSize(const std::string& path, int& width, int& height) {
  InputFile file(path);
  png_byte head[24];
  if (file.Read(head, sizeof head) != sizeof head || png_sig_cmp(head, 0, 8) != 0) return false;
  // IHDR is always the first chunk: length, "IHDR", then big-endian width
  // and height.
  const auto be32 = [&](int at) {
    return static_cast<int>((static_cast<uint32_t>(head[at] & 0x7F) << 24) |
                            static_cast<uint32_t>(head[at + 1]) << 16 |
                            static_cast<uint32_t>(head[at + 2]) << 8 | head[at + 3]);
  };
  width = be32(16);
  height = be32(20);
  return head[12] == 'I' && head[13] == 'H' && head[14] == 'D' && head[15] == 'R';
}

}  // namespace quillon
