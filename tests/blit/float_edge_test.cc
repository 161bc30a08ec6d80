// Stretches whose scale sits on a single-precision rounding edge: the start
// position after an overhang must come from the scale rounded to float, in
// every build (an optimiser once reused the double quotient instead).
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/blit/blit_test_util.h"

namespace qbo::test {
namespace {

// scale 31/9 = 3.4444444 as a float. Source top overhang 25 hides
// ceil(25 / 3.4444444) = 8 destination rows, so row 13 + 8 = 21 is the one
// row written and startY = -25 + 8 x 3.4444444 = 2.5555553 (from the double
// quotient it would be 2.5555556). Carry 0.5555553: floor(3.4444444 -
// 0.4444447) = floor(2.9999998) = 2, so the area is rows 2..4, count 3 (4
// from the double quotient). Its weights, 0.4444447 and 1.0 for the
// closing row, do not add up to the area.
constexpr int32_t kRow = 21;

// Source rows (or columns) of value 6 x index in every byte.
std::vector<uint8_t> Gradient(int32_t w, int32_t h, int bytes_a_pixel, bool across) {
  std::vector<uint8_t> v(std::size_t(w) * h * bytes_a_pixel);
  for (int32_t y = 0; y < h; ++y) {
    for (int32_t x = 0; x < w * bytes_a_pixel; ++x) {
      v[std::size_t(y) * w * bytes_a_pixel + x] =
          static_cast<uint8_t>(6 * (across ? x / bytes_a_pixel : y));
    }
  }
  return v;
}

TEST(FloatEdges, YuyvMeanStretchCoversThreeRows) {
  // Rows of Y = 6r with U = V = 128 (the gradient's odd bytes patched).
  std::vector<uint8_t> src = Gradient(34, 40, 2, false);
  for (std::size_t i = 1; i < src.size(); i += 2) src[i] = 128;
  // The short weights scale chroma 128 down with the luma, so even this
  // neutral source comes out green: B = R = 0, G = 45. The four-row area
  // of the double start gives grey 10 instead.
  ForEachLevel([&](KernelLevel) {
    for (auto fn : {QN_CS_YUYV2BGRA_MeanStretch, QN_CS_YUYV2RGBA_MeanStretch}) {
      std::vector<uint8_t> dst(284 * 28, 0xAA);
      ASSERT_EQ(fn(dst.data(), 284, 0, 13, 7, 9, 68, 28, src.data(), 72, 0, -25, 23, 31, 34, 40,
                   0, 1),
                1);
      for (int32_t y = 0; y < 28; ++y) {
        for (int32_t x = 0; x < 7; ++x) {
          const uint8_t* p = dst.data() + y * 284 + x * 4;
          const std::vector<uint8_t> got(p, p + 4);
          if (y == kRow) {
            EXPECT_EQ(got, (std::vector<uint8_t>{0, 45, 0, 255})) << "x " << x;
          } else {
            EXPECT_EQ(got, (std::vector<uint8_t>(4, 0xAA))) << "y " << y << " x " << x;
          }
        }
      }
    }
  });
}

TEST(FloatEdges, MeanAndBilinearStartFromTheRoundedScale) {
  // A fixed pseudo-random source: the bilinear case differs by one in a
  // few bytes of the last row when the start comes from the double.
  std::vector<uint8_t> noise(64 * 64 * 4);
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<uint8_t>(i * 37 + i / 256 * 11);
  struct Case {
    const char* name;
    BlitFn fn;
    Rects r;
    const std::vector<uint8_t>* src;
    int32_t x, y, byte;  // probe
    uint8_t want;
  };
  const std::vector<uint8_t> rows = Gradient(34, 40, 4, false);
  const std::vector<uint8_t> cols = Gradient(34, 40, 4, true);
  // Mean: the three-row area gives 5 in every byte, the four-row one 10.
  const Case cases[] = {
      {"mean, top overhang", QN_StretchBlt_Mean, {0, 13, 7, 9, 68, 28, 0, -25, 23, 31, 34, 40, 1, 0}, &rows, 3, kRow, 0, 5},
      {"mean, left overhang", QN_StretchBlt_Mean, {13, 0, 9, 7, 68, 28, -25, 0, 31, 23, 34, 40, 1, 0}, &cols, kRow, 3, 2, 5},
      {"bilinear, 555 rows onto 693", QN_StretchBlt, {0, 0, 9, 693, 64, 64, 0, -28, 5, 555, 64, 64, 1, 0}, &noise, 2, 63, 2, 200},
      {"bilinear, second byte", QN_StretchBlt, {0, 0, 9, 693, 64, 64, 0, -28, 5, 555, 64, 64, 1, 0}, &noise, 3, 63, 2, 140},
      {"block transfer of differing sizes", QN_BitBlt, {0, 0, 9, 693, 64, 64, 0, -28, 5, 555, 64, 64, 1, 0}, &noise, 2, 63, 2, 200},
  };
  ForEachLevel([&](KernelLevel) {
    for (const Case& c : cases) {
      SCOPED_TRACE(c.name);
      std::vector<uint8_t> dst(std::size_t(c.r.dst_width) * c.r.dst_height * 4, 0xAA);
      ASSERT_EQ(Call(c.fn, dst.data(), c.src->data(), c.r), 1);
      EXPECT_EQ(dst[(std::size_t(c.y) * c.r.dst_width + c.x) * 4 + c.byte], c.want);
    }
  });
}

}  // namespace
}  // namespace qbo::test
