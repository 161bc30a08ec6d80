// The frame the VelaVid module's ResampleFrame must give, worked out
// independently: every plane of every field gathered into 32-bit pixels,
// scaled with the whole-image 8-tap export, and scattered into the picture;
// black around it.
#ifndef QBO_TESTS_SUPPORT_DIRECT_RESAMPLE_H_
#define QBO_TESTS_SUPPORT_DIRECT_RESAMPLE_H_

#include <cstdint>
#include <vector>

#include "QuillonBufferOperaU.h"

namespace qbo::test {

using Re8Fn = int32_t(QBO_CALLER*)(void*, int32_t, int32_t, const void*, int32_t, int32_t);

// A packed frame: `lines` lines of `line_bytes`, field f on lines f, f +
// fields, ...
struct PackedFrame {
  std::vector<uint8_t> bytes;
  int32_t width, lines, format, fields;
  int64_t line_bytes;
};

struct PictureRect {
  int32_t x, y, width, height;  // y and height in lines of a field
};

// Where one plane's samples sit in a line: sample i, channel c at byte
// i * group + at[c] (-1: channel unused), the plane `div` times narrower.
struct PlaneMap {
  int div, group, at[4];
};

inline std::vector<PlaneMap> PlanesOf(int32_t format) {
  switch (format) {
    case 0:
      return {{1, 4, {0, 1, 2, 3}}};
    case 3:
      return {{1, 3, {0, 1, 2, -1}}};
    case 6:
      return {{1, 2, {0, -1, -1, -1}}, {2, 4, {1, 3, -1, -1}}};
    default:
      return {{1, 2, {1, -1, -1, -1}}, {2, 4, {0, 2, -1, -1}}};
  }
}

inline std::vector<uint8_t> BlackPixelOf(int32_t format) {
  switch (format) {
    case 3:
      return {0, 0, 0};
    case 6:
      return {16, 128, 16, 128};
    case 7:
      return {128, 16, 128, 16};
    default:
      return {0, 0, 0, 0};
  }
}

inline PackedFrame DirectResample(Re8Fn re8, const PackedFrame& src, PackedFrame dst,
                                  const PictureRect& r) {
  const int32_t src_h = src.lines / src.fields, dst_h = dst.lines / dst.fields;
  const std::vector<uint8_t> black = BlackPixelOf(dst.format);
  for (int f = 0; f < dst.fields; ++f) {
    auto line = [f](auto& p, int32_t y) {
      return p.bytes.data() + (int64_t{y} * p.fields + f) * p.line_bytes;
    };
    const int bytes_per_pixel = dst.format == 0 ? 4 : dst.format == 3 ? 3 : 2;
    for (int32_t y = 0; y < dst_h; ++y) {
      for (int32_t x = 0; x < dst.width;
           x += static_cast<int32_t>(black.size()) / bytes_per_pixel) {
        for (std::size_t b = 0; b < black.size(); ++b)
          line(dst, y)[x * bytes_per_pixel + b] = black[b];
      }
    }
    for (const PlaneMap& m : PlanesOf(src.format)) {
      const int32_t sw = src.width / m.div, dw = r.width / m.div;
      std::vector<uint8_t> in(static_cast<std::size_t>(sw) * src_h * 4);
      std::vector<uint8_t> out(static_cast<std::size_t>(dw) * r.height * 4);
      for (int32_t y = 0; y < src_h; ++y) {
        for (int32_t i = 0; i < sw; ++i) {
          for (int c = 0; c < 4; ++c) {
            in[(static_cast<std::size_t>(y) * sw + i) * 4 + c] =
                m.at[c] < 0 ? 0 : line(src, y)[i * m.group + m.at[c]];
          }
        }
      }
      re8(out.data(), dw, r.height, in.data(), sw, src_h);
      for (int32_t y = 0; y < r.height; ++y) {
        uint8_t* d = line(dst, r.y + y) + int64_t{r.x} * bytes_per_pixel;
        for (int32_t i = 0; i < dw; ++i) {
          for (int c = 0; c < 4; ++c) {
            if (m.at[c] >= 0)
              d[i * m.group + m.at[c]] = out[(static_cast<std::size_t>(y) * dw + i) * 4 + c];
          }
        }
      }
    }
  }
  return dst;
}

}  // namespace qbo::test

#endif  // QBO_TESTS_SUPPORT_DIRECT_RESAMPLE_H_
