// The colour conversion rows worked by hand, both ways, and the matrices.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "colorspace/planar_to_rgba_row.h"
#include "colorspace/rgba_to_yuyv_row.h"
#include "colorspace/yuyv_to_rgba_row.h"
#include "frame/coef_block.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

struct Pixel {
  uint8_t r, g, b;
};

struct HandCase {
  const char* what;
  bool bt709;
  std::vector<uint8_t> yuyv;
  std::vector<Pixel> expected;  // one per pixel
};

// Sums are 32 Y + terms + 16; each term is floor(coefficient x d' / 65536)
// with d' = 128 (C - 128) for even pixels, 64 (C + Cn - 256) for odd ones.
const HandCase kHandCases[] = {
    {"grey 235 stays grey", false, {235, 128, 235, 128}, {{235, 235, 235}, {235, 235, 235}}},
    {"black stays black", true, {0, 128, 0, 128}, {{0, 0, 0}, {0, 0, 0}}},
    // R = 8160 + floor(22970 x 16256 / 65536) = 5697, + 16 = 13873 >> 5 = 433 -> 255;
    // G = 8160 - 2903 + 16 = 5273 >> 5 = 164; B = 8176 >> 5 = 255.
    {"red saturates at 255", false, {255, 128, 255, 255}, {{255, 164, 255}, {255, 164, 255}}},
    // B = 0 + floor(29032 x -16384 / 65536) = -7258, + 16 < 0 -> 0;
    // G = 0 + 1409 + 16 = 1425 >> 5 = 44.
    {"negative blue sum becomes 0", false, {0, 0, 0, 128}, {{0, 44, 0}, {0, 44, 0}}},
    // TR = floor(22970 x -8448 / 65536) = floor(-2960.98) = -2961:
    // R = 3200 - 2961 + 16 = 255 >> 5 = 7 (truncating toward zero gives 8).
    {"terms round toward minus infinity",
     false,
     {100, 128, 100, 62},
     {{7, 147, 100}, {7, 147, 100}}},
    // BT.709 TB = floor(30402 x -16384 / 65536) = floor(-7600.5) = -7601:
    // B = 7680 - 7601 + 16 = 95 >> 5 = 2; G = 7680 + 767 + 16 -> 255.
    {"BT.709 blue floor", true, {240, 0, 240, 128}, {{240, 255, 2}, {240, 255, 2}}},
    // TGU = floor(-5638 x 128 / 65536) = -12, TGV = floor(-11700 x -9472 / 65536) = 1691:
    // G = 1600 - 12 + 1691 + 16 = 3295 >> 5 = 102; flooring the sum of both
    // products instead would give 1680 and 103.
    {"G terms truncate one by one", false, {50, 129, 50, 54}, {{0, 102, 52}, {0, 102, 52}}},
    // Pair 0 (V 200): even dV' = 9216, R = 3200 + 3230 + 16 = 6446 >> 5 = 201,
    // G = 3200 - 1646 + 16 = 1570 >> 5 = 49. Its odd pixel takes the mean of
    // V 200 and 56: dV' = 64 (72 - 72) = 0, grey 100. Pair 1 is last: its odd
    // pixel keeps V 56: R = 3200 - 3231 + 16 < 0 -> 0, G = 4861 >> 5 = 151.
    {"odd pixels average with the next pair, the last pair keeps its own",
     false,
     {100, 128, 100, 200, 100, 128, 100, 56},
     {{201, 49, 100}, {100, 100, 100}, {0, 151, 100}, {0, 151, 100}}},
};

std::vector<uint8_t> ConvertC(bool bgra, const uint8_t* y, const uint8_t* u, const uint8_t* v,
                              int width, bool bt709) {
  std::vector<uint8_t> out(4 * static_cast<std::size_t>(width));
  const YuvToRgbVectors vectors = YuvToRgbVectorsFor(bt709);
  (bgra ? PlanarToBgraRow_C : PlanarToRgbaRow_C)(out.data(), y, u, v, width, &vectors);
  return out;
}

using Bytes = std::vector<uint8_t>;

constexpr bool kRgba = false, kBgra = true;
constexpr bool k601 = false, k709 = true;

struct RowVector {
  const char* what;
  bool bgra, bt709;
  int width;
  Bytes src;       // width pixels of 4 bytes
  Bytes expected;  // YUYV bytes
};

// Worked sums, BT.601 (weights R 4898, G 9618, B 1868; U -2764, -5428,
// 8192; V 8192, -6860, -1332), term = floor(w * b / 512):
//   255: R 2439, G 4790, B 930; U -1377, -2704, 4080; V 4080, -3417, -664.
//   white  Y (2439 + 4790 + 930 + 16) >> 5 = 255, U (-1 + 4112) >> 5 = 128,
//          V (-1 + 4112) >> 5 = 128
//   blue   Y (930 + 16) >> 5 = 29, U (4080 + 4112) >> 5 = 256 -> 255,
//          V (-664 + 4112) >> 5 = 107
//   red    Y (2439 + 16) >> 5 = 76, U (-1377 + 4112) >> 5 = 85, V 255
// BT.709 (R 3484, G 11717, B 1183; U -1877, -6315, 8192; V 8192, -7441,
// -751): blue Y (589 + 16) >> 5 = 18, V (-375 + 4112) >> 5 = 116; red
// Y (1735 + 16) >> 5 = 54, U (-935 + 4112) >> 5 = 99; white 255/128/128.
const RowVector kRowVectors[] = {
    {"white then black, a trailing pair", kRgba, k601, 2,
     {255, 255, 255, 255, 0, 0, 0, 255}, {255, 128, 0, 128}},
    {"chroma from the even pixel of each pair", kRgba, k601, 4,
     {0, 0, 255, 9, 255, 0, 0, 9, 255, 0, 0, 9, 0, 0, 255, 9},
     {29, 255, 76, 107, 76, 85, 29, 255}},
    // Each term truncated by itself. (1,1,0): U -6 - 11 + 0 = -17,
    // (-17 + 4112) >> 5 = 127 where the truncated whole sum gives 128;
    // V 16 - 14 = 2 -> 128; Y 9 + 18 + 0 -> (27 + 16) >> 5 = 1.
    // (0,1,52): Y 18 + 189 = 207 -> 6 where the whole sum gives 7.
    // (0,1,1): Y 18 + 3 -> 1; U -11 + 16 -> 128; V -14 - 3 = -17 -> 127.
    {"per-term truncation", kRgba, k601, 4,
     {1, 1, 0, 0, 0, 1, 52, 0, 0, 1, 1, 0, 255, 255, 255, 0},
     {1, 127, 6, 128, 1, 128, 255, 127}},
    {"BGRA BT.601 row tail takes U 128", kBgra, k601, 6,
     Bytes{255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 255,  //
           255, 0, 0, 255, 255, 0, 0, 255},
     {29, 255, 29, 107, 29, 255, 29, 107, 29, 128, 29, 107}},
    {"BGRA BT.709 row tail keeps its U", kBgra, k709, 6,
     Bytes{255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0},
     {18, 255, 18, 116, 18, 255, 18, 116, 18, 255, 18, 116}},
    {"odd width repeats the last luma", kRgba, k709, 5,
     Bytes{255, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 0,  //
           255, 0, 0, 0},
     {255, 128, 255, 128, 255, 128, 255, 128, 54, 99, 54, 255}},
};

using MatrixQuery = const float*(QBO_CALLEE*)(int32_t);
using CellQuery = float(QBO_CALLEE*)(int32_t, int32_t, int32_t);

TEST(YuyvRowReference, HandWorkedPixels) {
  for (const HandCase& c : kHandCases) {
    SCOPED_TRACE(c.what);
    const YuvToRgbVectors v = YuvToRgbVectorsFor(c.bt709);
    const int width = static_cast<int>(c.yuyv.size() / 2);
    std::vector<uint8_t> rgba(4 * width), bgra(4 * width), rgb(3 * width);
    YuyvToRgbaRow_C(c.yuyv.data(), rgba.data(), width, &v);
    YuyvToBgraRow_C(c.yuyv.data(), bgra.data(), width, &v);
    YuyvToRgb24Row_C(c.yuyv.data(), rgb.data(), width, &v);
    for (int i = 0; i < width; ++i) {
      const Pixel& e = c.expected[i];
      SCOPED_TRACE(i);
      EXPECT_EQ(std::vector<uint8_t>(rgba.begin() + 4 * i, rgba.begin() + 4 * i + 4),
                (std::vector<uint8_t>{e.r, e.g, e.b, 255}));
      EXPECT_EQ(std::vector<uint8_t>(bgra.begin() + 4 * i, bgra.begin() + 4 * i + 4),
                (std::vector<uint8_t>{e.b, e.g, e.r, 255}));
      EXPECT_EQ(std::vector<uint8_t>(rgb.begin() + 3 * i, rgb.begin() + 3 * i + 3),
                (std::vector<uint8_t>{e.r, e.g, e.b}));
    }
  }
}

TEST(PlanarToRgbaRow, HandWorkedPixels) {
  // Neutral chroma, Y 235: (32 x 235 + 16) >> 5 = 235 in every channel.
  const uint8_t y235[3] = {235, 235, 235}, neutral[2] = {128, 128};
  for (bool bgra : {false, true}) {
    for (bool bt709 : {false, true}) {
      EXPECT_EQ(ConvertC(bgra, y235, neutral, neutral, 3, bt709),
                (std::vector<uint8_t>{235, 235, 235, 255, 235, 235, 235, 255, 235, 235, 235, 255}));
    }
  }
  // Width 9, Y 100, U 128, V 128 except sample 4 with V 228, BT.601.
  // Pixel 7 (odd) mixes samples 3 and 4: dV' = 64 x (0 + 100) = 6400;
  //   R = (3200 + floor(22970 x 6400 / 65536) = 2243 + 16) >> 5 = 170,
  //   G = (3200 + floor(-11700 x 6400 / 65536) = -1143 + 16) >> 5 = 64, B = 100.
  // Pixel 8 (even, the last, its own sample 4): dV' = 12800;
  //   R = (3200 + 4486 + 16) >> 5 = 240, G = (3200 - 2286 + 16) >> 5 = 29, B = 100.
  // Pixel 6 (even, sample 3) stays grey 100.
  uint8_t y[9], u[5], v[5];
  std::memset(y, 100, sizeof y);
  std::memset(u, 128, sizeof u);
  std::memset(v, 128, sizeof v);
  v[4] = 228;
  const std::vector<uint8_t> rgba = ConvertC(false, y, u, v, 9, false);
  EXPECT_EQ(std::vector<uint8_t>(rgba.begin() + 24, rgba.end()),
            (std::vector<uint8_t>{100, 100, 100, 255, 170, 64, 100, 255, 240, 29, 100, 255}));
  const std::vector<uint8_t> bgra = ConvertC(true, y, u, v, 9, false);
  EXPECT_EQ(std::vector<uint8_t>(bgra.begin() + 28, bgra.end()),
            (std::vector<uint8_t>{100, 64, 170, 255, 100, 29, 240, 255}));
  // Width 1: one pixel, its own sample. Y 255, V 255 at BT.601:
  // R = (8160 + floor(22970 x 16256 / 65536) = 5697 + 16) >> 5 = 433 -> 255.
  const uint8_t y255 = 255, v255 = 255, u128 = 128;
  EXPECT_EQ(ConvertC(false, &y255, &u128, &v255, 1, false)[0], 255);
  // Y 0, U 0 at BT.601: B = 16 + floor(29032 x -16384 / 65536) < 0 -> 0.
  const uint8_t y0 = 0, u0 = 0;
  EXPECT_EQ(ConvertC(false, &y0, &u0, &u128, 1, false)[2], 0);
}

TEST(RgbaToYuyvRowC, HandWorkedVectors) {
  for (const RowVector& v : kRowVectors) {
    SCOPED_TRACE(v.what);
    const RgbToYuyvParams params = SelectRgbToYuyvParams(v.bgra, v.bt709);
    GuardedBuffer dst(v.expected.size());
    RgbaToYuyvRow_C(v.src.data(), dst.data(), v.width, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + dst.size()), v.expected);
    EXPECT_TRUE(dst.GuardsIntact());
  }
}

TEST(Rgb24ToYuyvRowC, HandWorkedVectors) {
  // BGR blue in a whole group: Y 29, U 255, V 107 as for 32-bit pixels.
  {
    const RgbToYuyvParams params = SelectRgbToYuyvParams(kBgra, k601);
    const Bytes src = {255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0};
    GuardedBuffer dst(8);
    Rgb24ToYuyvRow_C(src.data(), dst.data(), 4, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 8), (Bytes{29, 255, 29, 107, 29, 255, 29, 107}));
  }
  // Width 3 converts a whole group: the fourth pixel (white, past the
  // row) gives Y3 = 255. Red: Y 76, U 85, V 255.
  {
    const RgbToYuyvParams params = SelectRgbToYuyvParams(kRgba, k601);
    const Bytes src = {255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 255, 255};
    GuardedBuffer dst(8);
    Rgb24ToYuyvRow_C(src.data(), dst.data(), 3, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 8), (Bytes{76, 85, 76, 255, 76, 85, 255, 255}));
    EXPECT_TRUE(dst.GuardsIntact());
  }
  // A BGR BT.601 single pixel takes U through the zero quadruple: 128.
  {
    const RgbToYuyvParams params = SelectRgbToYuyvParams(kBgra, k601);
    const Bytes src = {255, 0, 0};
    GuardedBuffer dst(4);
    Rgb24ToYuyvRow_C(src.data(), dst.data(), 1, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 4), (Bytes{29, 128, 29, 107}));
  }
}

TEST(Matrices, KnownCells) {
  EXPECT_FLOAT_EQ(QN_CS_GetMatYUVA2RGBA(1)[0 * 4 + 2], 1.574722f);
  // BT.601 cells are exact fractions: 1.771973 and 0.29895 to six places.
  EXPECT_EQ(QN_CS_GetMatYUVA2RGBA(2)[2 * 4 + 1], 29032.0f / 16384.0f);
  EXPECT_EQ(QN_CS_GetMatRGBA2YUVA_Cell(0, 0, 2), 4898.0f / 16384.0f);
  EXPECT_EQ(QN_CS_GetMatRGBA2YUVA_Cell(1, 2, 1), 0.5f);
  EXPECT_FLOAT_EQ(QN_CS_GetMatLUVA2RGBA()[0 * 4 + 2], 1.468613f);
  EXPECT_FLOAT_EQ(QN_CS_GetMatLUVA2RGBA()[1 * 4 + 2], -0.7480668f);
  EXPECT_EQ(QN_CS_GetMatLUVA2RGBA(), QN_CS_GetMatLUVA2RGBA());
}

}  // namespace
}  // namespace qbo::test
