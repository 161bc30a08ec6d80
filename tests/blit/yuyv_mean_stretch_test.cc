// QN_CS_YUYV2BGRA_MeanStretch and QN_CS_YUYV2RGBA_MeanStretch: conversion
// values, byte orders, flips, the byte (not pixel) displacement of dstX and
// srcX, agreement with the 32-bit mean on neutral chroma, and levels.
#include <gtest/gtest.h>

#include <vector>

#include "tests/blit/blit_test_util.h"

namespace qbo::test {
namespace {

using YuyvFn = int32_t (QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                           const void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                           int32_t, int32_t, int32_t);

// A YUYV image with neutral chroma and luma given per pixel.
std::vector<uint8_t> NeutralYuyv(int32_t w, int32_t h, const std::vector<uint8_t>& luma) {
  std::vector<uint8_t> yuyv(std::size_t(w) * h * 2);
  for (std::size_t p = 0; p < std::size_t(w) * h; ++p) {
    yuyv[2 * p] = luma[p];
    yuyv[2 * p + 1] = 128;
  }
  return yuyv;
}

struct Stretch {
  int32_t dst_x = 0, dst_y = 0, width, height, dst_width, dst_height;
  int32_t src_x = 0, src_y = 0, src_rect_width, src_rect_height, src_width, src_height;
  int32_t matrix = 0, flip = 0;
};

int32_t RunYuyv(YuyvFn fn, uint8_t* dst, const uint8_t* src, const Stretch& s) {
  return fn(dst, s.dst_width * 4, s.dst_x, s.dst_y, s.width, s.height, s.dst_width, s.dst_height,
            src, s.src_width * 2, s.src_x, s.src_y, s.src_rect_width, s.src_rect_height,
            s.src_width, s.src_height, s.matrix, s.flip);
}

TEST(YuyvMeanStretch, GreyAndFootStayInBothOrders) {
  // Equal sizes: every pixel is its own source pixel converted. Y = U = V =
  // 128 gives 128 grey; Y = 235 with neutral chroma gives 235 (no range
  // expansion), in either matrix.
  for (YuyvFn fn : {QN_CS_YUYV2BGRA_MeanStretch, QN_CS_YUYV2RGBA_MeanStretch}) {
    for (int32_t matrix : {0, 1}) {
      for (uint8_t y : {128, 235}) {
        ForEachLevel([&](KernelLevel) {
          const std::vector<uint8_t> src = NeutralYuyv(6, 3, std::vector<uint8_t>(18, y));
          GuardedBuffer dst(6 * 3 * 4);
          ASSERT_EQ(RunYuyv(fn, dst.data(), src.data(), {.width = 6, .height = 3, .dst_width = 6, .dst_height = 3,
                                                     .src_rect_width = 6, .src_rect_height = 3, .src_width = 6,
                                                     .src_height = 3, .matrix = matrix}), 1);
          for (std::size_t p = 0; p < 18; ++p) {
            ASSERT_EQ(std::vector<uint8_t>(dst.data() + 4 * p, dst.data() + 4 * p + 4),
                      (std::vector<uint8_t>{y, y, y, 255})) << "pixel " << p;
          }
          EXPECT_TRUE(dst.GuardsIntact());
        });
      }
    }
  }
}

TEST(YuyvMeanStretch, ChromaOrderAndSpread) {
  // One row of two groups: (Y 100, U 128, Y 100, V 200), (Y 100, U 128, Y
  // 100, V 100). Pixel 0 takes V 200: R = 72 x 1.401978 + 100 = 200.94 ->
  // 201, G = -0.714111 x 72 + 100 = 48.58 -> 49, B = 100. Pixel 1 takes the
  // mean V (200 + 100) x 0.5 = 150: R = 22 x 1.401978 + 100 = 130.84 -> 131,
  // G = -15.71 + 100 = 84.29 -> 84. Pixel 2 has group 1's own V 100: R =
  // -28 x 1.401978 + 100 = 60.74 -> 61, G = 20.0 + 100 = 119.99 -> 120;
  // pixel 3, of the last group, keeps that V.
  const std::vector<uint8_t> src = {100, 128, 100, 200, 100, 128, 100, 100};
  const Stretch s{.width = 4, .height = 1, .dst_width = 4, .dst_height = 1, .src_rect_width = 4,
                  .src_rect_height = 1, .src_width = 4, .src_height = 1};
  GuardedBuffer bgra(16), rgba(16);
  ASSERT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, bgra.data(), src.data(), s), 1);
  ASSERT_EQ(RunYuyv(QN_CS_YUYV2RGBA_MeanStretch, rgba.data(), src.data(), s), 1);
  EXPECT_EQ(std::vector<uint8_t>(rgba.data(), rgba.data() + 16),
            (std::vector<uint8_t>{201, 49, 100, 255, 131, 84, 100, 255, 61, 120, 100, 255, 61, 120, 100, 255}));
  for (int p = 0; p < 4; ++p) {
    EXPECT_EQ(bgra.data()[4 * p], rgba.data()[4 * p + 2]);
    EXPECT_EQ(bgra.data()[4 * p + 2], rgba.data()[4 * p]);
  }
}

TEST(YuyvMeanStretch, FlipWritesTheFirstRowAtTheBottom) {
  std::vector<uint8_t> luma(8 * 5);
  for (std::size_t i = 0; i < luma.size(); ++i) luma[i] = uint8_t(i * 5);
  const std::vector<uint8_t> src = NeutralYuyv(8, 5, luma);
  Stretch s{.width = 8, .height = 5, .dst_width = 8, .dst_height = 5, .src_rect_width = 8,
            .src_rect_height = 5, .src_width = 8, .src_height = 5};
  GuardedBuffer up(160), down(160);
  ASSERT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, up.data(), src.data(), s), 1);
  s.flip = 1;
  ASSERT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, down.data(), src.data(), s), 1);
  for (int row = 0; row < 5; ++row) {
    EXPECT_EQ(0, std::memcmp(up.data() + row * 32, down.data() + (4 - row) * 32, 32)) << row;
  }
  EXPECT_EQ(up.data()[4], 5) << "pixel 1 of row 0 is its own source pixel";
}

TEST(YuyvMeanStretch, StartColumnsDisplaceByBytes) {
  std::vector<uint8_t> luma(12);
  for (std::size_t i = 0; i < 12; ++i) luma[i] = uint8_t(10 + 10 * i);
  const std::vector<uint8_t> src = NeutralYuyv(12, 1, luma);
  struct Case {
    int32_t src_x, dst_x;
    std::size_t first_byte;      // where the first output pixel lands
    std::vector<uint8_t> lumas;  // its B value and the next ones
  };
  const Case cases[] = {
      {0, 0, 0, {10, 20, 30}},
      // srcX 1: the run widens to pixel 0 and the walk starts at quad 1.
      {1, 0, 0, {20, 30, 40}},
      // srcX 2: the row starts 2 bytes in, on the Y1 of group 0, so the
      // output starts at source pixel 1, not 2.
      {2, 0, 0, {20, 30, 40}},
      // dstX 4 is one pixel in; dstX 1 one byte in.
      {0, 4, 4, {10, 20, 30}},
      {0, 1, 1, {10, 20, 30}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << "srcX " << c.src_x << " dstX " << c.dst_x);
    GuardedBuffer dst(8 * 4);
    std::memset(dst.data(), 0, 32);
    ASSERT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, dst.data(), src.data(),
                  {.dst_x = c.dst_x, .width = 3, .height = 1, .dst_width = 8, .dst_height = 1,
                   .src_x = c.src_x, .src_rect_width = 3, .src_rect_height = 1, .src_width = 12,
                   .src_height = 1}), 1);
    for (std::size_t p = 0; p < c.lumas.size(); ++p) {
      EXPECT_EQ(dst.data()[c.first_byte + 4 * p], c.lumas[p]) << "pixel " << p;
      EXPECT_EQ(dst.data()[c.first_byte + 4 * p + 3], 255);
    }
    EXPECT_TRUE(dst.GuardsIntact());
  }
}

TEST(YuyvMeanStretch, NeutralChromaMatchesThe32BitMean) {
  // With U = V = 128 every channel is y exactly (y x 1.0 + 0), so the
  // output is the 32-bit mean of a grey image at the same scale. Not in the
  // last column and row: their closing weight 1.0 makes the weights add up
  // to other than the scale, so the chroma mean there leaves 128.
  struct Case {
    int32_t width, height, src_x, src_y, src_rect_width, src_rect_height;
  };
  const Case cases[] = {{20, 10, 0, 0, 40, 20}, {13, 7, 1, 2, 37, 17}, {40, 20, 0, 0, 17, 9},
                        {11, 5, 1, 0, 39, 21}, {40, 20, 0, 1, 40, 19}, {7, 30, 0, 0, 3, 9}};
  std::vector<uint8_t> luma = RandomBytes(40 * 21, 77);
  const std::vector<uint8_t> yuyv = NeutralYuyv(40, 21, luma);
  Image grey(40, 21, 0);
  for (std::size_t p = 0; p < luma.size(); ++p) {
    std::memset(grey.data() + 4 * p, luma[p], 3);
    grey.data()[4 * p + 3] = 255;
  }
  for (const Case& c : cases) {
    ForEachLevel([&](KernelLevel) {
      SCOPED_TRACE(::testing::Message() << c.width << "x" << c.height << " from " << c.src_rect_width << "x" << c.src_rect_height);
      Image expected(40, 30, 1), actual(40, 30, 1);
      ASSERT_EQ(Call(QN_StretchBlt_Mean, expected.data(), grey.data(),
                     {0, 0, c.width, c.height, 40, 30, c.src_x, c.src_y, c.src_rect_width, c.src_rect_height, 40, 21, 1, 0}), 1);
      ASSERT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, actual.data(), yuyv.data(),
                    {.width = c.width, .height = c.height, .dst_width = 40, .dst_height = 30, .src_x = c.src_x,
                     .src_y = c.src_y, .src_rect_width = c.src_rect_width, .src_rect_height = c.src_rect_height,
                     .src_width = 40, .src_height = 21}), 1);
      for (int32_t y = 0; y + 1 < c.height; ++y) {
        EXPECT_EQ(MismatchMap(expected.Pixel(0, y), actual.Pixel(0, y), std::size_t(c.width - 1) * 4, 1, 4), "")
            << "row " << y;
      }
    });
  }
}

TEST(YuyvMeanStretch, EveryLevelGivesTheSameBytes) {
  const std::vector<uint8_t> src = RandomBytes(240 * 135 * 2, 31);
  const Stretch cases[] = {
      {.width = 120, .height = 67, .dst_width = 240, .dst_height = 135, .src_rect_width = 240,
       .src_rect_height = 135, .src_width = 240, .src_height = 135},
      {.dst_x = -5, .dst_y = 3, .width = 239, .height = 140, .dst_width = 240, .dst_height = 135,
       .src_x = 3, .src_y = 1, .src_rect_width = 77, .src_rect_height = 50, .src_width = 240,
       .src_height = 135, .matrix = 1, .flip = 1},
  };
  for (YuyvFn fn : {QN_CS_YUYV2BGRA_MeanStretch, QN_CS_YUYV2RGBA_MeanStretch}) {
    for (const Stretch& s : cases) {
      std::vector<uint8_t> reference;
      ForEachLevel([&](KernelLevel level) {
        GuardedBuffer dst(240 * 135 * 4);
        std::memset(dst.data(), 0, dst.size());
        ASSERT_EQ(RunYuyv(fn, dst.data(), src.data(), s), 1);
        if (level == KernelLevel::kC) reference.assign(dst.data(), dst.data() + dst.size());
        EXPECT_EQ(MismatchMap(reference.data(), dst.data(), 960, 135, 4), "");
        EXPECT_TRUE(dst.GuardsIntact());
      });
    }
  }
}

TEST(YuyvMeanStretch, FailuresWriteNothing) {
  const std::vector<uint8_t> src(64, 128);
  GuardedBuffer dst(64);
  std::memset(dst.data(), 7, 64);
  const Stretch ok{.width = 4, .height = 4, .dst_width = 4, .dst_height = 4, .src_rect_width = 4,
                   .src_rect_height = 4, .src_width = 4, .src_height = 4};
  EXPECT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, nullptr, src.data(), ok), 0);
  EXPECT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, dst.data(), nullptr, ok), 0);
  Stretch bad = ok;
  bad.src_x = 4;
  EXPECT_EQ(RunYuyv(QN_CS_YUYV2RGBA_MeanStretch, dst.data(), src.data(), bad), 0);
  bad = ok;
  bad.height = 0;
  EXPECT_EQ(RunYuyv(QN_CS_YUYV2RGBA_MeanStretch, dst.data(), src.data(), bad), 0);
  // The destination overhang moves the source start by int(0.5 + 3 x 2) = 6
  // columns, past the 4-pixel source.
  bad = ok;
  bad.dst_x = -3;
  bad.src_rect_width = 8;
  EXPECT_EQ(RunYuyv(QN_CS_YUYV2BGRA_MeanStretch, dst.data(), src.data(), bad), 0);
  EXPECT_EQ(std::vector<uint8_t>(dst.data(), dst.data() + 64), std::vector<uint8_t>(64, 7));
}

}  // namespace
}  // namespace qbo::test
