// QN_StretchBlt and QN_StretchBlt_Mean: the shared preparation, the tables,
// the bilinear result against a per-pixel model of its formula, the mean on
// hand-worked images, modes, fields, hand-over and results, at every level.
#include <gtest/gtest.h>

#include <algorithm>

#include "blit/blend_row.h"
#include "blit/stretch_blt.h"
#include "blit/stretch_plan.h"
#include "frame/lookup_tables.h"
#include "tests/blit/blit_test_util.h"
#include "tests/support/fake_platform.h"

namespace qbo::test {
namespace {

BlitArgs Args(const Rects& r) {
  return MakeBlitArgs(nullptr, r.dst_x, r.dst_y, r.width, r.height, r.dst_width, r.dst_height,
                      nullptr, r.src_x, r.src_y, r.src_rect_width, r.src_rect_height,
                      r.src_width, r.src_height, r.mode, r.field);
}

TEST(StretchPlan, ClippingSteps) {
  struct Case {
    const char* name;
    Rects r;
    bool mean, ok;
    int64_t dst_x, width, src_x, src_rect_width;
    float start_x;
  };
  const Case cases[] = {
      // scaleX 1.5; dstX -2: k = int(0.5 + 3.0) = 3, srcX 4 -> 7, srcRect
      // 15 - 3 = 12, width 10 - 2 = 8; startX = 4 + 2 x 1.5 = 7.0 exactly.
      {"destination overhang", {-2, 0, 10, 4, 40, 8, 4, 0, 15, 4, 40, 8, 1, 0}, false, true, 0, 8, 7, 12, 7.0f},
      // dstX -3: k = int(0.5 + 4.5) = 5 (4 without the half); startX 8.5.
      {"destination overhang with a half", {-3, 0, 10, 4, 40, 8, 4, 0, 15, 4, 40, 8, 1, 0}, false, true, 0, 7, 9, 10, 8.5f},
      // scaleX 0.5; srcX -3: k = ceil(3 / 0.5) = 6, dstX 1 -> 7, width 20 -
      // 6 = 14, srcRect 10 - 3 = 7; startX = -3 + 6 x 0.5 = 0.
      {"source overhang", {1, 0, 20, 4, 40, 8, -3, 0, 10, 4, 40, 8, 1, 0}, false, true, 7, 14, 0, 7, 0.0f},
      // Destination excess 5 of width 10 at scale 2: srcRect 20 - 10 = 10.
      {"destination excess", {35, 0, 10, 4, 40, 8, 0, 0, 20, 4, 40, 8, 1, 0}, false, true, 35, 5, 0, 10, 0.0f},
      // Source excess 6 at scale 2: width 10 - ceil(3) = 7.
      {"source excess", {0, 0, 10, 4, 40, 8, 26, 0, 20, 4, 40, 8, 1, 0}, false, true, 0, 7, 26, 14, 26.0f},
      // Excess 7 at scale 2: width 10 - ceil(3.5) = 6.
      {"source excess with a fraction", {0, 0, 10, 4, 40, 8, 27, 0, 20, 4, 40, 8, 1, 0}, false, true, 0, 6, 27, 13, 27.0f},
      // scaleX 31/9 = 3.4444444f; srcX -25: k = ceil(7.26) = 8; startX =
      // -25 + 8 x 3.4444444f = 2.5555553 (not 2.5555556 from the double).
      {"scale on a float edge", {0, 0, 9, 4, 40, 8, -25, 0, 31, 4, 40, 8, 1, 0}, false, true, 8, 1, 0, 6, 2.5555553436279297f},
      {"zero width", {0, 0, 0, 4, 40, 8, 0, 0, 20, 4, 40, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
      {"start past the source", {0, 0, 4, 4, 40, 8, 40, 0, 20, 4, 40, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
      {"rectangle ends before the buffer", {-4, 0, 4, 4, 40, 8, 0, 0, 20, 4, 40, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
      // Mean only: the destination overhang moves the source start past
      // its buffer (k = int(0.5 + 5 x 2) = 10 -> srcX 12 >= 12).
      {"mean fails after overhang", {-5, 0, 8, 4, 40, 8, 2, 0, 16, 4, 12, 8, 1, 0}, true, false, 0, 0, 0, 0, 0},
      {"bilinear fails at the source excess", {-5, 0, 8, 4, 40, 8, 2, 0, 16, 4, 12, 8, 1, 0}, false, false, 0, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    StretchPlan p;
    ASSERT_EQ(PrepareStretch(Args(c.r), c.mean, &p), c.ok);
    if (!c.ok) continue;
    EXPECT_EQ(p.dst_x, c.dst_x);
    EXPECT_EQ(p.width, c.width);
    EXPECT_EQ(p.src_x, c.src_x);
    EXPECT_EQ(p.src_rect_width, c.src_rect_width);
    EXPECT_EQ(p.start_x, c.start_x);
  }
}

TEST(StretchPlan, FieldStepping) {
  struct Case {
    int32_t field, dst_y;
    bool ok;
    int64_t new_dst_y, first_row, step;
  };
  const Case cases[] = {{0, 3, true, 3, 0, 1}, {1, 3, true, 4, 1, 2}, {1, 4, true, 4, 0, 2},
                        {2, 4, true, 5, 1, 2}, {2, 5, true, 5, 0, 2}, {1, 7, false, 0, 0, 0},
                        {3, 2, false, 0, 0, 0}, {-1, 2, false, 0, 0, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "field " << c.field << " dstY " << c.dst_y);
    StretchPlan p;
    const Rects r{0, c.dst_y, 4, 1, 8, 8, 0, 0, 2, 2, 8, 8, 1, c.field};
    ASSERT_EQ(PrepareStretch(Args(r), false, &p), c.ok);
    if (!c.ok) continue;
    EXPECT_EQ(p.dst_y, c.new_dst_y);
    EXPECT_EQ(p.first_row, c.first_row);
    EXPECT_EQ(p.row_step, c.step);
  }
}

TEST(StretchTables, BilinearAxis) {
  int32_t index[5];
  uint32_t weight[5];
  // Scale 0.5 from 0: x = 0, 0.5, 1.0, 1.5, 2.0. Weights (ix + 1 - x) x
  // 65535 + 0.5: 65535, 32768, 65535, 32768; last column inside the
  // buffer: x = 2.0 -> ix 2, 65535.
  BuildBilinearAxis(0.0f, 0.5f, 5, 6, true, index, weight);
  EXPECT_EQ(std::vector<int32_t>(index, index + 5), (std::vector<int32_t>{0, 0, 1, 1, 2}));
  EXPECT_EQ(std::vector<uint32_t>(weight, weight + 5), (std::vector<uint32_t>{65535, 32768, 65535, 32768, 65535}));
  // At the buffer's edge the last position copies the last column: index
  // lastCol, weight 0. Indices past lastCol (1) are clamped to it.
  BuildBilinearAxis(0.0f, 0.75f, 5, 1, false, index, weight);
  EXPECT_EQ(std::vector<int32_t>(index, index + 5), (std::vector<int32_t>{0, 0, 1, 1, 1}));
  // x = 0.75: 0.25 x 65535 + 0.5 = 16384.25 -> 16384; x = 1.5: 32768; 2.25: 49151.
  EXPECT_EQ(std::vector<uint32_t>(weight, weight + 5), (std::vector<uint32_t>{65535, 16384, 32768, 49151, 0}));
}

TEST(StretchTables, MeanAxis) {
  int32_t counts[4];
  float w[8];
  // Upscale by 4 (s = 0.25): each source pixel serves four destination
  // pixels with count 1 and first weight 0.25 (the carry goes 0.25, 0.5,
  // 0.75). The last has s = 1 - c: first 1 - c = 0.25, count floor(0) + 1
  // = 1, closing weight 1.0.
  BuildMeanAxis(0.0f, 0.25f, 4, counts, w);
  EXPECT_EQ(std::vector<int32_t>(counts, counts + 4), (std::vector<int32_t>{1, 1, 1, 1}));
  EXPECT_EQ(std::vector<float>(w, w + 8), (std::vector<float>{0.25f, 0, 0.25f, 0, 0.25f, 0, 0.25f, 1.0f}));
  // Downscale by 2.5 from 0: i0: first 1, r 1.5, m 1, c 0.5, count 3;
  // i1: first 0.5, r 2.0, m 2, c 0, count 4; i2: first 1, r 1.5 -> count 3,
  // c 0.5; last: first 0.5, count floor(2.5 - 0.5) + 1 = 3, closing 1.0.
  BuildMeanAxis(0.0f, 2.5f, 4, counts, w);
  EXPECT_EQ(std::vector<int32_t>(counts, counts + 4), (std::vector<int32_t>{3, 4, 3, 3}));
  EXPECT_EQ(std::vector<float>(w, w + 8), (std::vector<float>{1, 0.5f, 0.5f, 0, 1, 0.5f, 0.5f, 1.0f}));
  // A carried start fraction: start 3.75, s 1 -> first 0.25, r 0.25,
  // count 2, c 0.25 each step; last count floor(1 - 0.75) + 1 = 1.
  BuildMeanAxis(3.75f, 1.0f, 2, counts, w);
  EXPECT_EQ(std::vector<int32_t>(counts, counts + 2), (std::vector<int32_t>{2, 1}));
  EXPECT_EQ(std::vector<float>(w, w + 4), (std::vector<float>{0.25f, 0.75f, 0.25f, 1.0f}));
}

// The bilinear formula evaluated per destination pixel, straight from the
// source buffer and the tables.
std::vector<uint8_t> BilinearModel(const Image& src, const Rects& r, const Image& dst_in, int64_t* rows_written) {
  std::vector<uint8_t> out = dst_in.Bytes();
  StretchPlan p;
  *rows_written = 0;
  if (!PrepareStretch(Args(r), false, &p)) return out;
  std::vector<int32_t> cols(p.width), rows(p.height);
  std::vector<uint32_t> wl(p.width), wt(p.height);
  BuildBilinearAxis(p.start_x, p.scale_x, p.width, std::max(r.src_width - 2, 0),
                    p.src_x + p.src_rect_width < r.src_width, cols.data(), wl.data());
  BuildBilinearAxis(p.start_y, p.scale_y, p.height, std::max(r.src_height - 2, 0),
                    p.src_y + p.src_rect_height < r.src_height, rows.data(), wt.data());
  auto byte = [&](int32_t x, int32_t y, int b) {
    x = std::min(x, r.src_width - 1);
    y = std::min(y, r.src_height - 1);
    return uint32_t(src.data()[(std::size_t(y) * r.src_width + x) * 4 + b]);
  };
  for (int64_t j = p.first_row; j < p.height; j += p.row_step) {
    std::vector<uint8_t> row(p.width * 4);
    for (int64_t i = 0; i < p.width; ++i) {
      for (int b = 0; b < 4; ++b) {
        auto v = [&](int32_t x) {
          const uint32_t t = byte(x, rows[j], b), d = byte(x, rows[j] + 1, b);
          return std::min(65535u, std::min(65535u, ((t + 1) * wt[j] >> 16) + 1) + ((d + 1) * (65535 - wt[j]) >> 16));
        };
        const uint32_t sum = std::min(65535u, (v(cols[i]) * wl[i] >> 16) + (v(cols[i] + 1) * (65535 - wl[i]) >> 16));
        row[i * 4 + b] = uint8_t(std::min(sum, 255u));
      }
    }
    uint8_t* d = out.data() + (std::size_t(p.dst_y + j - p.first_row) * r.dst_width + p.dst_x) * 4;
    if (r.mode == 1) std::memcpy(d, row.data(), row.size());
    if (r.mode == 0) BlendOverRow_C(d, row.data(), g_tables.over_share, p.width);
    if (r.mode == 2) BlendOverInvertedRow_C(d, row.data(), g_tables.over_share, p.width);
    ++*rows_written;
  }
  return out;
}

TEST(StretchBlt, BilinearMatchesThePerPixelFormula) {
  struct Scale {
    const char* name;
    int32_t width, height, src_rect_width, src_rect_height, src_x, src_y;
  };
  const Scale scales[] = {
      {"1:1", 23, 9, 23, 9, 1, 1},          {"up 2x", 40, 14, 20, 7, 0, 0},
      {"down 2x", 12, 5, 24, 10, 2, 0},     {"up 3:7", 49, 17, 21, 7, 3, 2},
      {"down 7:3", 9, 4, 21, 10, 0, 1},     {"to the buffer edge", 30, 9, 19, 8, 17, 3},
      {"one column, inverted", 17, 6, 1, 5, 4, 1}, {"one row, inverted", 17, 6, 5, 1, 4, 10},
      {"wide odd", 1920 / 8 + 3, 3, 719 / 4, 2, 5, 0},
  };
  for (const Scale& s : scales) {
    for (int32_t mode : {0, 1, 2}) {
      if (mode != 2 && (s.src_rect_width < 2 || s.src_rect_height < 2)) continue;
      for (int32_t field : {0, 1, 2}) {
        for (int32_t dst_x : {-3, 2}) {
          const Rects r{dst_x, 1, s.width, s.height, 250, 22, s.src_x, s.src_y, s.src_rect_width,
                        s.src_rect_height, 36, 12, mode, field};
          Image src(36, 12, 100 + mode), start(250, 22, 200 + field);
          int64_t rows = 0;
          const std::vector<uint8_t> expected = BilinearModel(src, r, start, &rows);
          ForEachLevel([&](KernelLevel) {
            SCOPED_TRACE(::testing::Message() << s.name << " mode " << mode << " field " << field << " dstX " << dst_x);
            Image dst(250, 22, 200 + field);
            ASSERT_EQ(Call(QN_StretchBlt, dst.data(), src.data(), r), 1);
            EXPECT_GT(rows, 0);
            ASSERT_EQ(MismatchMap(expected.data(), dst.data(), 1000, 22, 4), "");
            ASSERT_TRUE(dst.GuardsIntact());
          });
        }
      }
    }
  }
}

TEST(StretchBlt, EqualSizesCopyTheSource) {
  ForEachLevel([](KernelLevel) {
    Image src(19, 7, 5), dst(19, 7, 6);
    ASSERT_EQ(Call(QN_StretchBlt, dst.data(), src.data(), {0, 0, 19, 7, 19, 7, 0, 0, 19, 7, 19, 7, 1, 0}), 1);
    EXPECT_EQ(MismatchMap(src.data(), dst.data(), 76, 7, 4), "");
  });
}

TEST(StretchBlt, ResultsAndHandOver) {
  Image src(9, 8, 1);
  struct Case {
    const char* name;
    BlitFn fn;
    Rects r;
    bool null_dst;
    int32_t expected;
  };
  const Case cases[] = {
      {"bilinear mode 7", QN_StretchBlt, {0, 0, 4, 4, 9, 8, 0, 0, 2, 2, 9, 8, 7, 0}, false, QBO_E_FAIL},
      {"mean mode 7", QN_StretchBlt_Mean, {0, 0, 4, 4, 9, 8, 0, 0, 2, 2, 9, 8, 7, 0}, false, 0},
      {"bilinear null dst", QN_StretchBlt, {0, 0, 4, 4, 9, 8, 0, 0, 2, 2, 9, 8, 1, 0}, true, 0},
      {"mean null dst", QN_StretchBlt_Mean, {0, 0, 4, 4, 9, 8, 0, 0, 2, 2, 9, 8, 1, 0}, true, 0},
      {"bilinear bad field", QN_StretchBlt, {0, 0, 4, 4, 9, 8, 0, 0, 2, 2, 9, 8, 1, 3}, false, 0},
      {"mean zero height", QN_StretchBlt_Mean, {0, 0, 4, 0, 9, 8, 0, 0, 2, 2, 9, 8, 1, 0}, false, 0},
      // Refusals of the clipping: k = int(0.5 + 5 x 2) = 10 moves srcX to
      // 12, the source's edge; k = ceil(20 / 15) = 2 hides both destination
      // columns; field 1 moves dstY 7 to row 8, below the buffer.
      {"bilinear source start pushed to the edge", QN_StretchBlt, {-5, 0, 8, 4, 40, 8, 2, 0, 16, 4, 12, 8, 1, 0}, false, 0},
      {"mean source start pushed to the edge", QN_StretchBlt_Mean, {-5, 0, 8, 4, 40, 8, 2, 0, 16, 4, 12, 8, 1, 0}, false, 0},
      {"bilinear every column hidden", QN_StretchBlt, {0, 0, 2, 4, 9, 8, -20, 0, 30, 2, 9, 8, 1, 0}, false, 0},
      {"mean every column hidden", QN_StretchBlt_Mean, {0, 0, 2, 4, 9, 8, -20, 0, 30, 2, 9, 8, 1, 0}, false, 0},
      {"bilinear field below the buffer", QN_StretchBlt, {0, 7, 4, 1, 9, 8, 0, 0, 2, 2, 9, 8, 1, 1}, false, 0},
      {"mean field below the buffer", QN_StretchBlt_Mean, {0, 7, 4, 1, 9, 8, 0, 0, 2, 2, 9, 8, 1, 1}, false, 0},
      {"bilinear runs", QN_StretchBlt, {0, 0, 4, 4, 9, 8, 0, 0, 2, 2, 9, 8, 0, 0}, false, 1},
      {"mean runs", QN_StretchBlt_Mean, {0, 0, 4, 4, 9, 8, 0, 0, 2, 2, 9, 8, 2, 1}, false, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    Image dst(c.r.dst_width, c.r.dst_height, 2);
    const std::vector<uint8_t> before = dst.Bytes();
    EXPECT_EQ(Call(c.fn, c.null_dst ? nullptr : dst.data(), src.data(), c.r), c.expected);
    if (c.expected != 1) {
      EXPECT_EQ(dst.Bytes(), before);
    }
  }
  // A one-pixel-wide source: modes 0 and 1 are the mean's; mode 2
  // interpolates with the column to its right and differs.
  for (int32_t mode : {0, 1, 2}) {
    const Rects r{0, 0, 6, 5, 9, 8, 3, 1, 1, 4, 9, 8, mode, 0};
    Image a(9, 8, 3), b(9, 8, 3);
    EXPECT_EQ(Call(QN_StretchBlt, a.data(), src.data(), r), 1);
    EXPECT_EQ(Call(QN_StretchBlt_Mean, b.data(), src.data(), r), 1);
    EXPECT_EQ(a.Bytes() == b.Bytes(), mode != 2) << "mode " << mode;
  }
}

// Fills a w x h image with one value per 2 x 2 block.
TEST(StretchBltMean, HalvingAveragesBlocks) {
  // Scale 2: the first area of each axis has count 3 with last weight 0,
  // the closing one count 2 with weight 1.0, so each output is the mean of
  // its 2 x 2 block: (10 + 20 + 30 + 41) / 4 = 25.25 -> 25; (0 + 1 + 2 + 3)
  // / 4 = 1.5 -> 2 (ties to even); (255 x 3 + 254) / 4 = 254.75 -> 255.
  const uint8_t block[3][4] = {{10, 20, 30, 41}, {0, 1, 2, 3}, {255, 255, 255, 254}};
  Image src(4, 4, 0);
  for (int32_t y = 0; y < 4; ++y) {
    for (int32_t x = 0; x < 4; ++x) {
      for (int b = 0; b < 3; ++b) src.Pixel(x, y)[b] = block[b][(y % 2) * 2 + x % 2];
      src.Pixel(x, y)[3] = uint8_t(x * 4 + y);
    }
  }
  ForEachLevel([&](KernelLevel) {
    Image dst(2, 2, 9);
    ASSERT_EQ(Call(QN_StretchBlt_Mean, dst.data(), src.data(), {0, 0, 2, 2, 2, 2, 0, 0, 4, 4, 4, 4, 1, 0}), 1);
    for (int32_t y = 0; y < 2; ++y) {
      for (int32_t x = 0; x < 2; ++x) {
        // Alpha block of (x, y): 4 values 8x + 2y + {0, 1, 4, 5}: mean + 2.5.
        const float alpha = 8.0f * x + 2.0f * y + 2.5f;
        const uint8_t a = uint8_t(std::nearbyint(alpha));
        EXPECT_EQ(dst.At(x, y), 25u | 2u << 8 | 255u << 16 | uint32_t(a) << 24) << x << "," << y;
      }
    }
  });
}

TEST(StretchBltMean, TallAreasSaturateTheirMiddleSums) {
  // 1000 rows of 255 into 2: middle sums stop at 65535 before the float
  // step, so the result is (1 x 255 + 65535 + 0.0 x 255) / 500 = 131.58 -> 132.
  Image src(2, 1000, 0);
  std::memset(src.data(), 255, src.size());
  Image dst(1, 2, 0);
  ASSERT_EQ(Call(QN_StretchBlt_Mean, dst.data(), src.data(), {0, 0, 1, 2, 1, 2, 0, 0, 2, 1000, 2, 1000, 1, 0}), 1);
  // Horizontally scale 2 over flat values: (1 x 132 + 1 x 132) / 2 stays.
  EXPECT_EQ(dst.At(0, 0), 0x84848484u);
}

TEST(Stretch, FieldsWriteTheirRowsOfTheFullFrame) {
  for (BlitFn fn : {QN_StretchBlt, QN_StretchBlt_Mean}) {
    for (const Rects& base : {Rects{1, 2, 13, 9, 16, 14, 0, 1, 7, 11, 9, 13, 1, 0},
                              Rects{0, 3, 15, 10, 16, 14, 2, 0, 7, 4, 9, 13, 1, 0}}) {
      Image src(9, 13, 4), full(16, 14, 5);
      ASSERT_EQ(Call(fn, full.data(), src.data(), base), 1);
      for (int32_t field : {1, 2}) {
        Rects r = base;
        r.field = field;
        Image dst(16, 14, 5), expected(16, 14, 5);
        for (int32_t y = r.dst_y; y < r.dst_y + r.height; ++y) {
          if (y % 2 == (field == 1 ? 0 : 1)) std::memcpy(expected.Pixel(0, y), full.Pixel(0, y), 64);
        }
        ASSERT_EQ(Call(fn, dst.data(), src.data(), r), 1);
        EXPECT_EQ(MismatchMap(expected.data(), dst.data(), 64, 14, 4), "")
            << (fn == QN_StretchBlt ? "bilinear" : "mean") << " field " << field;
      }
    }
  }
}

TEST(Stretch, EveryLevelGivesTheSameBytes) {
  const Rects cases[] = {
      {0, 0, 1280 / 8, 720 / 8, 240, 135, 0, 0, 1920 / 8, 1080 / 8, 240, 135, 1, 0},
      {-7, -3, 1920 / 8, 1080 / 8, 240, 135, 0, 0, 1280 / 8, 720 / 8, 240, 135, 0, 2},
      {3, 2, 640 / 8, 360 / 8, 240, 135, 5, 1, 1920 / 8 - 5, 1080 / 8 - 1, 240, 135, 2, 1},
      {0, 0, 31, 29, 240, 135, -4, -9, 97, 61, 240, 135, 1, 0},
  };
  for (BlitFn fn : {QN_StretchBlt, QN_StretchBlt_Mean}) {
    for (const Rects& r : cases) {
      Image src(240, 135, 11);
      std::vector<uint8_t> reference;
      ForEachLevel([&](KernelLevel level) {
        Image dst(240, 135, 12);
        ASSERT_EQ(Call(fn, dst.data(), src.data(), r), 1);
        if (level == KernelLevel::kC) reference = dst.Bytes();
        EXPECT_EQ(MismatchMap(reference.data(), dst.data(), 960, 135, 4), "");
      });
    }
  }
}

TEST(Stretch, ScratchFailureWritesNothing) {
  // Every scratch allocation of each stretch in turn fails: the call
  // returns 0 and leaves the destination as it was, and nothing leaks.
  const Rects r{0, 0, 9, 7, 12, 10, 1, 1, 5, 4, 9, 8, 0, 1};
  Image src(9, 8, 1);
  for (BlitFn fn : {QN_StretchBlt, QN_StretchBlt_Mean}) {
    for (int fail_at = 1;; ++fail_at) {
      FakePlatform fake;
      fake.fail_aligned_alloc_at = fail_at;
      Image dst(12, 10, 2);
      const std::vector<uint8_t> before = dst.Bytes();
      SetPlatformForTesting(&fake);
      const int32_t result = Call(fn, dst.data(), src.data(), r);
      SetPlatformForTesting(nullptr);
      EXPECT_EQ(fake.live_aligned, 0);
      if (fake.aligned_allocs < fail_at) {
        EXPECT_EQ(result, 1) << "every allocation tried";
        break;
      }
      EXPECT_EQ(result, 0) << "allocation " << fail_at;
      EXPECT_EQ(dst.Bytes(), before) << "allocation " << fail_at;
    }
  }
}

}  // namespace
}  // namespace qbo::test
