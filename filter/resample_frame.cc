// QN_ReSampling: describes two frames to the VelaVid module's ResampleFrame
// entry, which does the work.
#include <cmath>
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "frame/accel.h"

namespace qbo {
namespace {

using ResampleFrameFn = intptr_t (*)(intptr_t, intptr_t, intptr_t, intptr_t, intptr_t, intptr_t,
                                     intptr_t, intptr_t);

constexpr uint32_t FourCc(char a, char b, char c, char d) {
  return static_cast<uint32_t>(static_cast<uint8_t>(a)) |
         static_cast<uint32_t>(static_cast<uint8_t>(b)) << 8 |
         static_cast<uint32_t>(static_cast<uint8_t>(c)) << 16 |
         static_cast<uint32_t>(static_cast<uint8_t>(d)) << 24;
}

struct BitmapHeader {
  int32_t width, height;
  uint16_t bits_per_pixel;
  uint32_t compression;
  int32_t line_length, buffer_lines;
};

template <typename T>
T Field(const void* header, int offset) {
  T value;
  std::memcpy(&value, static_cast<const uint8_t*>(header) + offset, sizeof value);
  return value;
}

BitmapHeader ReadHeader(const void* h) {
  return {Field<int32_t>(h, 4),  Field<int32_t>(h, 8),  Field<uint16_t>(h, 14),
          Field<uint32_t>(h, 16), Field<int32_t>(h, 24), Field<int32_t>(h, 28)};
}

// -1 for a compression code the module does not take.
int FormatOf(const BitmapHeader& h) {
  switch (h.compression) {
    case 0:
      return h.bits_per_pixel == 24 ? 3 : 0;
    case FourCc('Y', 'U', 'Y', '2'):
      return 6;
    case FourCc('U', 'Y', 'V', 'Y'):
      return 7;
    case FourCc('Y', 'U', 'V', '8'):
      return 8;
    case FourCc('Y', 'U', 'V', '6'):
      return 9;
    default:
      return -1;
  }
}

bool Near(double ratio, double target) { return std::fabs(ratio - target) < 0.0001; }

QN_FrameDescriptor Describe(const BitmapHeader& h, void* pixels, int format, int fields) {
  QN_FrameDescriptor d{};
  const bool planar = format == 8 || format == 9;
  const int64_t height = planar ? (static_cast<int64_t>(h.height) + 3) / 4 * 4 : h.height;
  const int64_t line = h.line_length != 0 ? h.line_length : h.width;
  d.pixels = pixels;
  d.row_bytes = static_cast<intptr_t>(line * h.bits_per_pixel / 8 * fields);
  d.width = h.width;
  d.height = static_cast<intptr_t>(height / fields);
  d.bits_per_pixel = h.bits_per_pixel;
  d.format = format;
  d.field_count = fields;
  const bool below_1080 = h.height < 1080;
  // A zero height has no ratio; it counts as neither 4:3 nor 16:9.
  const double ratio = h.height != 0 ? static_cast<double>(h.width) / h.height : 0.0;
  if (Near(ratio, 4.0 / 3.0)) {
    d.aspect_class = 1;
  } else if (Near(ratio, 16.0 / 9.0)) {
    d.aspect_class = 0;
  } else {
    d.aspect_class = below_1080 ? 1 : 0;
  }
  d.below_1080 = below_1080 ? 1 : 0;
  d.buffer_lines = h.buffer_lines;
  return d;
}

}  // namespace
}  // namespace qbo

extern "C" QBO_API int32_t QBO_CALLER QN_ReSampling(const void* headerA, void* pixelsA,
                                                    const void* headerB, void* pixelsB) {
  using namespace qbo;
  if (!headerA || !headerB) return 0;
  const BitmapHeader a = ReadHeader(headerA), b = ReadHeader(headerB);
  const int format = FormatOf(a);
  if (format < 0) return 0;
  const auto entry = VelaVidScaleEntry<ResampleFrameFn>(kResampleFrameEntry);
  if (!entry) return 0;
  const int fields = a.height >= 480 && b.height >= 480 ? 2 : 1;
  QN_FrameDescriptor da = Describe(a, pixelsA, format, fields);
  QN_FrameDescriptor db = Describe(b, pixelsB, format, fields);
  const intptr_t result = entry(reinterpret_cast<intptr_t>(&db), reinterpret_cast<intptr_t>(&da),
                                2, 1, 0, 0, 1, 1);
  return (result & 0xFF) != 0 ? 1 : 0;
}
