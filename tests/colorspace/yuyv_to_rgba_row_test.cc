// YUYV rows: the reference against hand-worked pixels, then every SIMD row
// against the reference, byte for byte, over swept widths and alignments.
#include "colorspace/yuyv_to_rgba_row.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

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

struct RowUnderTest {
  const char* name;
  YuyvToPixelsRowFn fn;
  YuyvToPixelsRowFn reference;
  int bytes_per_pixel;
  int multiple;  // widths the row accepts: multiples of this
  KernelLevel level;
};

#define QBO_ROWS(Name, bpp)                                                       \
  {#Name "_SSE2", Name##_SSE2, Name##_C, bpp, 8, KernelLevel::kSse2},             \
      {#Name "_Any_SSE2", Name##_Any_SSE2, Name##_C, bpp, 2, KernelLevel::kSse2}, \
      {#Name "_AVX2", Name##_AVX2, Name##_C, bpp, 16, KernelLevel::kAvx2}, {      \
#Name "_Any_AVX2", Name##_Any_AVX2, Name##_C, bpp, 2, KernelLevel::kAvx2      \
  }

const RowUnderTest kRows[] = {QBO_ROWS(YuyvToRgbaRow, 4), QBO_ROWS(YuyvToBgraRow, 4),
                              QBO_ROWS(YuyvToRgb24Row, 3)};
#undef QBO_ROWS

std::vector<int> SweptWidths() {
  std::vector<int> widths;
  for (int w = 2; w <= 2 * 16 + 16; w += 2) widths.push_back(w);
  widths.push_back(720);  // 719 rounded up to even, as the exports do
  widths.push_back(1920);
  widths.push_back(4098);
  return widths;
}

// Runs `row` and the reference on the same source; the source ends at an
// inaccessible page so any read past the row faults.
void CompareOnce(const RowUnderTest& row, const uint8_t* src_bytes, int width, bool bt709,
                 std::size_t dst_offset, uint32_t seed) {
  SCOPED_TRACE(::testing::Message() << row.name << " width=" << width << " bt709=" << bt709
                                    << " dst_offset=" << dst_offset << " seed=" << seed);
  const std::size_t src_size = 2 * static_cast<std::size_t>(width);
  const std::size_t dst_size = static_cast<std::size_t>(row.bytes_per_pixel) * width;
  PageEndBuffer src(src_size);
  std::memcpy(src.data(), src_bytes, src_size);
  GuardedBuffer expected(dst_size, dst_offset), actual(dst_size, dst_offset);
  const YuvToRgbVectors v = YuvToRgbVectorsFor(bt709);
  row.reference(src.data(), expected.data(), width, &v);
  row.fn(src.data(), actual.data(), width, &v);
  ASSERT_EQ(MismatchMap(expected.data(), actual.data(), dst_size, 1, row.bytes_per_pixel), "");
  ASSERT_TRUE(actual.GuardsIntact());
}

TEST(YuyvRows, SimdRowsMatchTheReference) {
  for (const RowUnderTest& row : kRows) {
    if (row.level > MachineKernelLevel()) continue;
    for (int width : SweptWidths()) {
      if (width % row.multiple != 0) continue;
      const uint32_t seed = 1000u + static_cast<uint32_t>(width);
      const std::vector<uint8_t> src = RandomBytes(2 * static_cast<std::size_t>(width), seed);
      for (bool bt709 : {false, true}) {
        for (std::size_t dst_offset = 0; dst_offset < 4; ++dst_offset) {
          CompareOnce(row, src.data(), width, bt709, dst_offset, seed);
        }
      }
    }
  }
}

TEST(YuyvRows, SimdRowsReadMisalignedSources) {
  for (const RowUnderTest& row : kRows) {
    if (row.level > MachineKernelLevel()) continue;
    const int width = row.multiple == 2 ? 38 : 2 * row.multiple;
    for (std::size_t src_offset = 1; src_offset < 32; src_offset += 3) {
      SCOPED_TRACE(::testing::Message() << row.name << " src_offset=" << src_offset);
      const std::vector<uint8_t> bytes = RandomBytes(2 * width + 32, 77);
      GuardedBuffer src(2 * width, src_offset);
      std::memcpy(src.data(), bytes.data(), 2 * width);
      const std::size_t dst_size = static_cast<std::size_t>(row.bytes_per_pixel) * width;
      std::vector<uint8_t> expected(dst_size), actual(dst_size);
      const YuvToRgbVectors v = YuvToRgbVectorsFor(true);
      row.reference(src.data(), expected.data(), width, &v);
      row.fn(src.data(), actual.data(), width, &v);
      ASSERT_EQ(expected, actual);
    }
  }
}

// Extreme chroma at every position exercises the clamps of every lane.
TEST(YuyvRows, SimdRowsMatchOnExtremeValues) {
  const uint8_t levels[] = {0, 1, 16, 127, 128, 129, 235, 240, 254, 255};
  std::vector<uint8_t> src;
  for (uint8_t y : levels) {
    for (uint8_t u : levels) {
      for (uint8_t v : levels) src.insert(src.end(), {y, u, static_cast<uint8_t>(255 - y), v});
    }
  }
  const int width = static_cast<int>(src.size() / 2);  // 2000 pixels
  for (const RowUnderTest& row : kRows) {
    if (row.level > MachineKernelLevel() || width % row.multiple != 0) continue;
    for (bool bt709 : {false, true}) CompareOnce(row, src.data(), width, bt709, 0, 0);
  }
}

}  // namespace
}  // namespace qbo::test
