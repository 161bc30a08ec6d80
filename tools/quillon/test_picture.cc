#include "test_picture.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace quillon {

namespace {

struct Rgb {
  int r, g, b;
};

// 75% bars in the usual order: white, yellow, cyan, green, magenta, red,
// blue, black.
constexpr Rgb kBars[8] = {{191, 191, 191}, {191, 191, 0}, {0, 191, 191}, {0, 191, 0},
                          {191, 0, 191},   {191, 0, 0},   {0, 0, 191},   {0, 0, 0}};

Rgb PixelAt(int x, int y, int width, int height, double time) {
  const int band = y * 20 / height;  // twentieths of the height
  Rgb p{};
  if (band < 11) {
    p = kBars[x * 8 / width];
    // The moving disc: each field sees it where it was at its own instant.
    const double cx = width * 0.12 + time * width * 0.06;
    const double cy = height * 0.28;
    const double r = height * 0.09;
    const double d = std::hypot(x - cx, y - cy);
    if (d < r) p = d < r * 0.6 ? Rgb{255, 140, 0} : Rgb{255, 255, 255};
  } else if (band < 13) {
    const int g = x * 255 / (width - 1);
    p = {g, g, g};
  } else if (band < 15) {
    const int v = x * 255 / (width - 1);
    const int third = (y - height * 13 / 20) * 3 / (height * 2 / 20 + 1);
    p = third == 0 ? Rgb{v, 0, 0} : third == 1 ? Rgb{0, v, 0} : Rgb{0, 0, v};
  } else {
    const bool top_field = y % 2 == 0;
    const int field_row = y / 2;
    if (x < width / 3) {
      // One-row lines: the top field is white, the bottom field black.
      p = top_field ? Rgb{235, 235, 235} : Rgb{16, 16, 16};
    } else if (x < width * 2 / 3) {
      // Within the top field, lines alternate every row; the bottom field
      // is an even mid grey.
      const int v = top_field ? (field_row % 2 == 0 ? 235 : 16) : 128;
      p = {v, v, v};
    } else {
      // Coloured lines: red in the top field, cyan in the bottom one.
      p = top_field ? Rgb{220, 30, 30} : Rgb{30, 200, 220};
    }
  }
  return p;
}

double FieldTime(int index, int y) { return index + (y % 2 == 0 ? 0.0 : 0.5); }

uint8_t Clamp(double v) { return static_cast<uint8_t>(std::clamp(std::lround(v), 0L, 255L)); }

}  // namespace

void DrawTestPictureBgra(int index, int width, int height, Frame& bgra) {
  bgra.Reset(PixelFormat::kBgra, width, height);
  bgra.order = FieldOrder::kTopFirst;
  const Plane plane = bgra.plane(0);
  for (int y = 0; y < height; ++y) {
    uint8_t* row = plane.data + y * plane.pitch;
    for (int x = 0; x < width; ++x) {
      const Rgb p = PixelAt(x, y, width, height, FieldTime(index, y));
      row[4 * x] = static_cast<uint8_t>(p.b);
      row[4 * x + 1] = static_cast<uint8_t>(p.g);
      row[4 * x + 2] = static_cast<uint8_t>(p.r);
      row[4 * x + 3] = 255;
    }
  }
}

void DrawTestPicture420(int index, int width, int height, Frame& yuv) {
  yuv.Reset(PixelFormat::kYuv420p, width, height);
  yuv.order = FieldOrder::kTopFirst;
  const Plane py = yuv.plane(0);
  const Plane pu = yuv.plane(1);
  const Plane pv = yuv.plane(2);
  // Full-range BT.601, the range the library's conversions expect (luma 0
  // is black, 255 white).
  const auto luma = [](const Rgb& p) { return 0.299 * p.r + 0.587 * p.g + 0.114 * p.b; };
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      py.data[y * py.pitch + x] = Clamp(luma(PixelAt(x, y, width, height, FieldTime(index, y))));
    }
  }
  for (int c = 0; c < height / 2; ++c) {
    // Chroma row c belongs to field c % 2 and covers that field's rows
    // 4 * (c / 2) + c % 2 and two rows below.
    const int first = 4 * (c / 2) + c % 2;
    const int rows[2] = {first, std::min(first + 2, height - 1)};
    for (int k = 0; k < width / 2; ++k) {
      double u = 0;
      double v = 0;
      for (int y : rows) {
        for (int x = 2 * k; x < 2 * k + 2; ++x) {
          const Rgb p = PixelAt(x, y, width, height, FieldTime(index, y));
          const double l = luma(p);
          u += 0.564 * (p.b - l);
          v += 0.713 * (p.r - l);
        }
      }
      pu.data[c * pu.pitch + k] = Clamp(128 + u / 4);
      pv.data[c * pv.pitch + k] = Clamp(128 + v / 4);
    }
  }
}

void DrawOverlayRgba(int width, int height, Frame& rgba) {
  rgba.Reset(PixelFormat::kRgba, width, height);
  const Plane plane = rgba.plane(0);
  const double radius = height * 0.25;
  const double soft = 10.0;
  for (int y = 0; y < height; ++y) {
    uint8_t* row = plane.data + y * plane.pitch;
    for (int x = 0; x < width; ++x) {
      // Distance inside the rounded rectangle's edge, for the soft border.
      const double qx = std::max(std::abs(x + 0.5 - width / 2.0) - (width / 2.0 - radius), 0.0);
      const double qy = std::max(std::abs(y + 0.5 - height / 2.0) - (height / 2.0 - radius), 0.0);
      const double inside = radius - std::hypot(qx, qy);
      const double edge = std::clamp(inside / soft, 0.0, 1.0);
      double alpha = (40 + 190.0 * x / (width - 1)) * edge;
      uint8_t r = 20, g = 40, b = 120;
      // An opaque yellow bar across the middle, a third of the panel long.
      const bool mark =
          x > width / 8 && x < width * 11 / 24 && std::abs(y - height / 2) < height / 8;
      if (mark && edge > 0) {
        r = 250;
        g = 220;
        b = 40;
        alpha = 255;
      }
      row[4 * x] = r;
      row[4 * x + 1] = g;
      row[4 * x + 2] = b;
      row[4 * x + 3] = Clamp(alpha);
    }
  }
}

}  // namespace quillon
