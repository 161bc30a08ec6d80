// Vertical blur and YUYV split: hand-worked weights and rows, every level
// against the reference, the in-place export against a whole-image model.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "filter/blur_split_row.h"
#include "tests/support/fake_platform.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

TEST(BlurWeights, HandWorkedQ14) {
  struct Case {
    int32_t w[3];
    int16_t q[3];
  };
  const Case cases[] = {
      {{1, 2, 1}, {4096, 8192, 4096}},
      {{0, 1, 0}, {0, 16384, 0}},
      // scale = (float)(1 / 3.0) = 0.333333343; 16384 * that = 5461.33 -> 5461.
      {{1, 1, 1}, {5461, 5461, 5461}},
      // 8: 0.125 -> 6144 + 0.5 and 4096 + 0.5 truncate down.
      {{3, 3, 2}, {6144, 6144, 4096}},
      // S = 2: -8192 + 0.5 truncates toward zero to -8191; 32768 + 0.5 ->
      // 32768, which as a 16-bit weight is -32768.
      {{-1, 4, -1}, {-8191, -32768, -8191}},
  };
  for (const Case& c : cases) {
    const BlurWeights q = BlurWeightsOf(c.w);
    EXPECT_EQ(std::vector<int>(q.q, q.q + 3), std::vector<int>(c.q, c.q + 3))
        << c.w[0] << "," << c.w[1] << "," << c.w[2];
  }
}

TEST(BlurRow3, HandWorkedBytes) {
  struct Case {
    BlurWeights q;
    uint8_t a, b, c, out;
  };
  const Case cases[] = {
      // (1280*4096 >> 16) + (2560*8192 >> 16) + (3840*4096 >> 16) + 16
      // = 80 + 320 + 240 + 16 = 656; 656 >> 5 = 20.
      {{{4096, 8192, 4096}}, 10, 20, 30, 20},
      // 2040 + 4080 + 2040 + 16 = 8176 >> 5 = 255: white stays white.
      {{{4096, 8192, 4096}}, 255, 255, 255, 255},
      {{{0, 16384, 0}}, 9, 77, 200, 77},
      // (-1, 4, -1) on 100: -1600 - 6400 - 1600 + 16 = -9584 = 55952
      // unsigned; >> 5 = 1748; low byte 212. The sum wraps, unclamped.
      {{{-8191, -32768, -8191}}, 100, 100, 100, 212},
      {{{4096, 8192, 4096}}, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    const uint8_t above[4] = {c.a, c.a, c.a, c.a}, centre[4] = {c.b, c.b, c.b, c.b},
                  below[4] = {c.c, c.c, c.c, c.c};
    uint8_t out[4];
    BlurRow3_C(out, above, centre, below, 1, &c.q);
    EXPECT_EQ(out[0], c.out) << int(c.a) << "," << int(c.b) << "," << int(c.c);
    EXPECT_EQ(out[3], c.out);
  }
}

std::vector<int32_t> Widths(int block) {
  std::vector<int32_t> w;
  for (int32_t i = 1; i <= 2 * block + 15; ++i) w.push_back(i);
  w.push_back(719);
  w.push_back(1920);
  return w;
}

TEST(BlurRow3, EveryLevelMatchesTheReference) {
  const uint32_t seed = 1357;
  const BlurWeights weights[] = {{{4096, 8192, 4096}}, {{-8191, -32768, -8191}}, {{32767, -5, 77}}};
  ForEachLevel([&](KernelLevel level) {
    for (const BlurWeights& q : weights) {
      for (int32_t pixels : Widths(8)) {
        SCOPED_TRACE(::testing::Message() << KernelLevelName(level) << " pixels=" << pixels
                                          << " q0=" << q.q[0] << " seed=" << seed);
        const std::size_t bytes = static_cast<std::size_t>(pixels) * 4;
        PageEndBuffer a(bytes + 1), b(bytes + 2), c(bytes + 3);
        FillRandom(a.data(), a.size(), seed + pixels);
        FillRandom(b.data(), b.size(), seed * 2 + pixels);
        FillRandom(c.data(), c.size(), seed * 3 + pixels);
        GuardedBuffer want(bytes), got(bytes, 1);
        BlurRow3_C(want.data(), a.data() + 1, b.data() + 2, c.data() + 3, pixels, &q);
        Kernels().filter.blur_row3(got.data(), a.data() + 1, b.data() + 2, c.data() + 3, pixels, &q);
        ASSERT_EQ(MismatchMap(want.data(), got.data(), bytes, 1, 4), "");
        ASSERT_TRUE(got.GuardsIntact());
      }
    }
  });
}

// The blur as defined: a whole output image from the untouched input, the
// first and last rows mirrored.
std::vector<uint8_t> ModelBlur(const std::vector<uint8_t>& in, int32_t width, int32_t height,
                               const int32_t w[3]) {
  const BlurWeights q = BlurWeightsOf(w);
  const std::size_t row = static_cast<std::size_t>(width) * 4;
  std::vector<uint8_t> out(in.size());
  for (int32_t i = 0; i < height; ++i) {
    const int32_t up = i == 0 ? 1 : i - 1, down = i == height - 1 ? height - 2 : i + 1;
    BlurRow3_C(out.data() + i * row, in.data() + up * row, in.data() + i * row,
               in.data() + down * row, width, &q);
  }
  return out;
}

TEST(VerticalBlur, InPlaceMatchesTheWholeImageModel) {
  struct Case {
    int32_t width, height;
    int32_t w[3];
  };
  const Case cases[] = {{1, 2, {1, 2, 1}},    {7, 3, {1, 2, 1}},  {33, 9, {1, 1, 1}},
                        {17, 5, {-1, 4, -1}}, {64, 2, {3, 3, 2}}, {5, 11, {2, -7, 9}}};
  ForEachLevel([&](KernelLevel) {
    for (const Case& c : cases) {
      SCOPED_TRACE(::testing::Message() << c.width << "x" << c.height << " w=" << c.w[0] << ","
                                        << c.w[1] << "," << c.w[2]);
      const std::vector<uint8_t> in = RandomBytes(static_cast<std::size_t>(c.width) * c.height * 4, 8);
      const std::vector<uint8_t> want = ModelBlur(in, c.width, c.height, c.w);
      GuardedBuffer got(in.size(), 4);
      std::memcpy(got.data(), in.data(), in.size());
      EXPECT_EQ(QN_VerticalBlur(got.data(), c.width, c.height, c.w), got.data());
      ASSERT_EQ(MismatchMap(want.data(), got.data(), static_cast<std::size_t>(c.width) * 4,
                            static_cast<std::size_t>(c.height), 4),
                "");
      ASSERT_TRUE(got.GuardsIntact());
    }
  });
}

TEST(VerticalBlur, ConstantAndIdentityWeights) {
  ForEachLevel([](KernelLevel) {
    const int32_t smooth[3] = {1, 2, 1}, identity[3] = {0, 1, 0};
    for (uint8_t v : {0, 1, 16, 128, 254, 255}) {
      std::vector<uint8_t> img(static_cast<std::size_t>(9) * 4 * 4, v);
      QN_VerticalBlur(img.data(), 9, 4, smooth);
      for (uint8_t b : img) ASSERT_EQ(b, v);
    }
    const std::vector<uint8_t> in = RandomBytes(static_cast<std::size_t>(13) * 6 * 4, 21);
    std::vector<uint8_t> img = in;
    QN_VerticalBlur(img.data(), 13, 6, identity);
    EXPECT_EQ(img, in);
  });
}

TEST(VerticalBlur, LeavesTheImageWhenItCannot) {
  const std::vector<uint8_t> in = RandomBytes(64, 2);
  std::vector<uint8_t> img = in;
  const int32_t smooth[3] = {1, 2, 1}, zero_sum[3] = {1, -2, 1};
  EXPECT_EQ(QN_VerticalBlur(img.data(), 4, 1, smooth), img.data());  // one row
  EXPECT_EQ(QN_VerticalBlur(img.data(), 4, 4, zero_sum), img.data());
  EXPECT_EQ(QN_VerticalBlur(img.data(), 0, 4, smooth), img.data());
  EXPECT_EQ(QN_VerticalBlur(img.data(), 4, 4, nullptr), img.data());
  EXPECT_EQ(QN_VerticalBlur(nullptr, 4, 4, smooth), nullptr);
  FakePlatform fake;
  fake.fail_aligned_alloc_at = 1;
  SetPlatformForTesting(&fake);
  EXPECT_EQ(QN_VerticalBlur(img.data(), 4, 4, smooth), img.data());
  SetPlatformForTesting(nullptr);
  EXPECT_EQ(img, in);
}

TEST(YuyvSplitRow, EveryLevelMatchesTheReference) {
  const uint32_t seed = 99;
  ForEachLevel([&](KernelLevel level) {
    for (int32_t pairs : Widths(16)) {
      SCOPED_TRACE(::testing::Message() << KernelLevelName(level) << " pairs=" << pairs);
      const std::size_t n = static_cast<std::size_t>(pairs);
      PageEndBuffer src(4 * n + 1);
      FillRandom(src.data(), src.size(), seed + pairs);
      GuardedBuffer wy(2 * n), wu(n), wv(n), gy(2 * n, 1), gu(n, 2), gv(n, 3);
      YuyvSplitRow_C(wy.data(), wu.data(), wv.data(), src.data() + 1, pairs);
      Kernels().filter.yuyv_split(gy.data(), gu.data(), gv.data(), src.data() + 1, pairs);
      ASSERT_EQ(std::memcmp(wy.data(), gy.data(), 2 * n), 0);
      ASSERT_EQ(std::memcmp(wu.data(), gu.data(), n), 0);
      ASSERT_EQ(std::memcmp(wv.data(), gv.data(), n), 0);
      ASSERT_TRUE(gy.GuardsIntact() && gu.GuardsIntact() && gv.GuardsIntact());
    }
  });
}

TEST(YuyvSplit, SplitsWholePairsOnly) {
  // Black, then a pair of 235/240/90 and an odd pixel that is not read.
  const uint8_t src[12] = {16, 128, 16, 128, 235, 240, 236, 90, 77, 1, 2, 3};
  for (int32_t count : {0, 1, 4, 5}) {
    SCOPED_TRACE(count);
    GuardedBuffer y(static_cast<std::size_t>(count & ~1)), u(static_cast<std::size_t>(count / 2)),
        v(static_cast<std::size_t>(count / 2));
    EXPECT_EQ(QN_CS_YUYVSplit(y.data(), u.data(), v.data(), src, count), count & ~1);
    if (count >= 4) {
      EXPECT_EQ(std::vector<int>(y.data(), y.data() + 4), (std::vector<int>{16, 16, 235, 236}));
      EXPECT_EQ(std::vector<int>(u.data(), u.data() + 2), (std::vector<int>{128, 240}));
      EXPECT_EQ(std::vector<int>(v.data(), v.data() + 2), (std::vector<int>{128, 90}));
    }
    EXPECT_TRUE(y.GuardsIntact() && u.GuardsIntact() && v.GuardsIntact());
  }
}

}  // namespace
}  // namespace qbo::test
