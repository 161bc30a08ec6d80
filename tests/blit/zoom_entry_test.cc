// The zoom exports against a direct, pixel-by-pixel model of the bilinear
// sampling (positions stepped by repeated float addition, neighbours past
// the source counting 0), at every level, plus hand-worked zooms, result
// codes and extreme arguments.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "blit/zoom_clip.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

// Samples `channels`-byte pixels of a plane of src_cols x src_rows (row
// pitch `pitch` pixels) onto cols x rows, writing with pitch `dst_pitch`.
// `wide` selects the 8-bit zoom's double sum and truncation; otherwise the
// 32-bit zoom's float sum rounded half to even.
void ModelZoom(uint8_t* dst, int64_t dst_pitch, int64_t cols, int64_t rows, const uint8_t* src,
               int64_t pitch, int64_t src_cols, int64_t src_rows, float scale_x, float scale_y,
               int channels, bool wide) {
  auto at = [&](int64_t r, int64_t c, int ch) -> int {
    return r < src_rows && c < src_cols ? src[(r * pitch + c) * channels + ch] : 0;
  };
  float y = 0.0f;
  for (int64_t r = 0; r < rows; ++r, y += scale_y) {
    const auto iy = static_cast<int64_t>(y);
    const float fy = std::fmod(y, 1.0f);
    float x = 0.0f;
    for (int64_t c = 0; c < cols; ++c, x += scale_x) {
      const auto ix = static_cast<int64_t>(x);
      const float fx = std::fmod(x, 1.0f);
      for (int ch = 0; ch < channels; ++ch) {
        const int p00 = at(iy, ix, ch), p01 = at(iy, ix + 1, ch);
        const int p10 = at(iy + 1, ix, ch), p11 = at(iy + 1, ix + 1, ch);
        uint8_t& out = dst[(r * dst_pitch + c) * channels + ch];
        if (wide) {
          const double v = double{(1 - fy) * (1 - fx)} * p00 + double{(1 - fy) * fx} * p01 +
                           double{(1 - fx) * fy} * p10 + double{fy * fx} * p11;
          out = static_cast<uint8_t>(static_cast<int>(v));
        } else {
          const float v = p00 * (1 - fx) * (1 - fy) + p01 * fx * (1 - fy) +
                          (p10 * (1 - fx) * fy + p11 * fx * fy);
          out = static_cast<uint8_t>(std::min(255L, std::max(0L, std::lrint(v))));
        }
      }
    }
  }
}

TEST(BufferZoom, TwoByTwoToFourByFourFadesPastTheLastSample) {
  const uint8_t src[4] = {10, 20, 30, 40};
  // Positions 0, 0.5, 1, 1.5 both ways; samples past row/column 1 are 0.
  const uint8_t expected[16] = {
      10, 15, 20, 10,                  // 0.5 x 20 + 0.5 x 0 in the last column
      20, 25, 30, 15,                  // 0.25 x (10 + 20 + 30 + 40); 0.25 x (20 + 40)
      30, 35, 40, 20, 15, 17, 20, 10,  // 0.5 x 30 + 0.5 x 0 ...; 0.25 x 70 = 17.5 truncated
  };
  ForEachLevel([&](KernelLevel) {
    GuardedBuffer dst(16);
    ASSERT_EQ(QN_BufferZoom(dst.data(), 4, 4, src, 2, 2), 0);
    EXPECT_EQ(MismatchMap(expected, dst.data(), 4, 4), "");
    EXPECT_TRUE(dst.GuardsIntact());
  });
}

TEST(BufferZoom, EqualSizesCopy) {
  ForEachLevel([](KernelLevel) {
    for (auto [w, h] : {std::pair{1, 1}, {37, 23}, {2100, 3}}) {
      SCOPED_TRACE(::testing::Message() << w << "x" << h);
      const std::size_t bytes = static_cast<std::size_t>(w) * h;
      PageEndBuffer src(bytes);
      FillRandom(src.data(), bytes, 77);
      GuardedBuffer dst(bytes);
      ASSERT_EQ(QN_BufferZoom(dst.data(), w, h, src.data(), w, h), 0);
      EXPECT_EQ(MismatchMap(src.data(), dst.data(), static_cast<std::size_t>(w), h), "");
      EXPECT_TRUE(dst.GuardsIntact());
    }
  });
}

TEST(BufferZoom, RejectsAndEmptyCalls) {
  uint8_t src[4] = {1, 2, 3, 4};
  struct Case {
    int32_t dw, dh, sw, sh;
    bool null_dst, null_src;
    int32_t result;
  };
  const Case cases[] = {
      {0, 2, 2, 2, false, false, QBO_E_FAIL},  {2, 0, 2, 2, false, false, QBO_E_FAIL},
      {2, 2, 0, 2, false, false, QBO_E_FAIL},  {2, 2, 2, 0, false, false, QBO_E_FAIL},
      {2, 2, 2, 2, true, false, QBO_E_FAIL},   {2, 2, 2, 2, false, true, QBO_E_FAIL},
      {2, -2, 2, 2, false, false, 0},           // negative destination height: nothing, 0
      {-2, 2, 2, 2, false, false, QBO_E_FAIL},  // negative widths and source height: rejected
      {2, 2, -2, 2, false, false, QBO_E_FAIL}, {2, 2, 2, -2, false, false, QBO_E_FAIL},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.dw << "x" << c.dh << " from " << c.sw << "x" << c.sh);
    GuardedBuffer dst(0);
    EXPECT_EQ(QN_BufferZoom(c.null_dst ? nullptr : dst.data(), c.dw, c.dh,
                            c.null_src ? nullptr : src, c.sw, c.sh),
              c.result);
    EXPECT_TRUE(dst.GuardsIntact());
  }
}

struct Size {
  int32_t w, h;
};

// Up, down, 1:1 and odd ratios, and widths beyond one column strip.
const std::pair<Size, Size> kZooms[] = {
    {{4, 4}, {2, 2}},    {{2, 2}, {4, 4}},       {{17, 9}, {17, 9}},     {{7, 5}, {3, 2}},
    {{3, 2}, {7, 5}},    {{33, 11}, {20, 17}},   {{1, 1}, {9, 9}},       {{9, 9}, {1, 1}},
    {{64, 3}, {3, 64}},  {{2300, 2}, {1280, 3}}, {{2050, 3}, {4099, 2}}, {{100, 7}, {300, 21}},
    {{45, 13}, {16, 9}}, {{1, 40}, {40, 1}},
};

TEST(BufferZoom, MatchesTheModelAtEveryLevel) {
  const uint32_t seed = 0xB0F;
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  ForEachLevel([&](KernelLevel) {
    for (const auto& [d, s] : kZooms) {
      SCOPED_TRACE(::testing::Message() << s.w << "x" << s.h << " -> " << d.w << "x" << d.h);
      const std::size_t src_bytes = static_cast<std::size_t>(s.w) * s.h;
      const std::size_t dst_bytes = static_cast<std::size_t>(d.w) * d.h;
      PageEndBuffer src(src_bytes);
      FillRandom(src.data(), src_bytes, seed);
      std::vector<uint8_t> expected(dst_bytes);
      ModelZoom(expected.data(), d.w, d.w, d.h, src.data(), s.w, s.w, s.h,
                static_cast<float>(s.w) / d.w, static_cast<float>(s.h) / d.h, 1, true);
      GuardedBuffer dst(dst_bytes, 3);
      ASSERT_EQ(QN_BufferZoom(dst.data(), d.w, d.h, src.data(), s.w, s.h), 0);
      ASSERT_EQ(MismatchMap(expected.data(), dst.data(), static_cast<std::size_t>(d.w), d.h), "");
      ASSERT_TRUE(dst.GuardsIntact());
    }
  });
}

// One 32-bit zoom call; the expected image comes from the clip and the
// model, the rest of the destination must stay as it was.
struct DwordCall {
  int32_t dst_x, dst_y, width, height, dst_width, dst_height;
  int32_t src_x, src_y, src_rect_width, src_rect_height, src_width, src_height;
};

int32_t CallDword(uint8_t* dst, const uint8_t* src, const DwordCall& c) {
  return QN_DwordBufferZoom(dst, c.dst_x, c.dst_y, c.width, c.height, c.dst_width, c.dst_height,
                            src, c.src_x, c.src_y, c.src_rect_width, c.src_rect_height, c.src_width,
                            c.src_height);
}

TEST(DwordBufferZoom, SourceLeftOverhangWidensIntoZeros) {
  // 16 x 1 source of pixels (i, i, i, i); srcX -4 over 8 onto 8 at scale
  // 1: destination columns 4..7 copy source 0..3, columns 8..15 sample
  // past the 4-pixel source rectangle and come out 0.
  std::vector<uint8_t> src(16 * 4);
  for (std::size_t i = 0; i < src.size(); ++i) src[i] = static_cast<uint8_t>(1 + i / 4);
  ForEachLevel([&](KernelLevel) {
    std::vector<uint8_t> dst(16 * 4, 0xEE);
    ASSERT_EQ(CallDword(dst.data(), src.data(), {0, 0, 8, 1, 16, 1, -4, 0, 8, 1, 16, 1}), 0);
    for (int c = 0; c < 16; ++c) {
      const int expected = c < 4 ? 0xEE : c < 8 ? c - 3 : 0;
      EXPECT_EQ(dst[4 * c], expected) << "column " << c;
      EXPECT_EQ(dst[4 * c + 3], expected) << "column " << c;
    }
  });
}

const DwordCall kDwordCalls[] = {
    {0, 0, 16, 12, 16, 12, 0, 0, 8, 6, 8, 6},          // 2x up, whole buffers
    {2, 1, 5, 4, 12, 9, 1, 1, 9, 7, 11, 9},            // odd ratio down, inside
    {-3, -2, 10, 8, 12, 9, 0, 0, 7, 5, 11, 9},         // destination overhang
    {1, 1, 9, 6, 12, 9, -3, -2, 9, 7, 11, 9},          // source overhang (both rules)
    {8, 6, 9, 6, 12, 9, 5, 4, 9, 7, 11, 9},            // excess on every side
    {0, 0, 7, 7, 7, 7, 0, 0, 7, 7, 7, 7},              // 1:1
    {0, 0, 2101, 2, 2200, 3, 0, 0, 1400, 3, 1500, 3},  // crosses a column strip
    {4, 0, 3, 5, 8, 5, 2, 1, 1, 1, 4, 4},              // one source pixel
};

TEST(DwordBufferZoom, MatchesTheModelAtEveryLevel) {
  const uint32_t seed = 0xD0D0;
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  ForEachLevel([&](KernelLevel) {
    for (const DwordCall& c : kDwordCalls) {
      SCOPED_TRACE(::testing::Message() << "dst " << c.dst_x << "," << c.dst_y << " " << c.width
                                        << "x" << c.height << " src " << c.src_x << "," << c.src_y
                                        << " " << c.src_rect_width << "x" << c.src_rect_height);
      const std::size_t src_bytes = std::size_t{4} * c.src_width * c.src_height;
      const std::size_t dst_bytes = std::size_t{4} * c.dst_width * c.dst_height;
      PageEndBuffer src(src_bytes);
      FillRandom(src.data(), src_bytes, seed);
      std::vector<uint8_t> expected = RandomBytes(dst_bytes, seed + 1);
      GuardedBuffer dst(dst_bytes, 2);
      std::memcpy(dst.data(), expected.data(), dst_bytes);
      DwordZoomRects r{c.dst_x,          c.dst_y,           c.width,     c.height,
                       c.dst_width,      c.dst_height,      c.src_x,     c.src_y,
                       c.src_rect_width, c.src_rect_height, c.src_width, c.src_height};
      ASSERT_TRUE(ClipDwordZoom(&r));
      ModelZoom(expected.data() + 4 * (int64_t{r.dst_y} * r.dst_width + r.dst_x), r.dst_width,
                r.width, r.height, src.data() + 4 * (int64_t{r.src_y} * r.src_width + r.src_x),
                r.src_width, r.src_rect_width, r.src_rect_height, r.scale_x, r.scale_y, 4, false);
      ASSERT_EQ(CallDword(dst.data(), src.data(), c), 0);
      ASSERT_EQ(
          MismatchMap(expected.data(), dst.data(), std::size_t{4} * c.dst_width, c.dst_height, 4),
          "");
      ASSERT_TRUE(dst.GuardsIntact());
    }
  });
}

TEST(DwordBufferZoom, ArgumentErrorsWriteNothing) {
  const DwordCall good{0, 0, 4, 4, 4, 4, 0, 0, 4, 4, 4, 4};
  std::vector<uint8_t> src(64, 9);
  GuardedBuffer dst(64);
  std::memset(dst.data(), 0, 64);
  EXPECT_EQ(CallDword(nullptr, src.data(), good), QBO_E_FAIL);
  EXPECT_EQ(CallDword(dst.data(), nullptr, good), QBO_E_FAIL);
  DwordCall bad = good;
  bad.src_x = 4;
  EXPECT_EQ(CallDword(dst.data(), src.data(), bad), QBO_E_FAIL);
  bad = good;
  bad.src_rect_height = 0;
  EXPECT_EQ(CallDword(dst.data(), src.data(), bad), QBO_E_FAIL);
  EXPECT_EQ(dst.data()[0], 0);
  EXPECT_EQ(CallDword(dst.data(), src.data(), good), 0) << "success is 0, not 1";
  EXPECT_EQ(dst.data()[0], 9);
  EXPECT_TRUE(dst.GuardsIntact());
}

// Every argument in turn at the ends of the int32 range with buffers sized
// as described (a huge buffer is one row or column, reserved, not
// touched); nothing may fault or overflow.
TEST(ZoomExports, ExtremeArgumentsStayInsideTheBuffers) {
  const int32_t extremes[] = {INT32_MIN, INT32_MIN + 1, -1, 0, INT32_MAX - 1, INT32_MAX};
  int32_t DwordCall::*const fields[] = {
      &DwordCall::dst_x,           &DwordCall::dst_y,     &DwordCall::width,
      &DwordCall::height,          &DwordCall::dst_width, &DwordCall::dst_height,
      &DwordCall::src_x,           &DwordCall::src_y,     &DwordCall::src_rect_width,
      &DwordCall::src_rect_height, &DwordCall::src_width, &DwordCall::src_height};
  const DwordCall base{1, 1, 5, 4, 8, 6, 1, 0, 4, 3, 6, 5};
  for (int field = 0; field < 12; ++field) {
    for (int32_t value : extremes) {
      SCOPED_TRACE(::testing::Message() << "field " << field << " = " << value);
      DwordCall c = base;
      if (value > 1000 && (field == 4 || field == 5)) c.dst_width = c.dst_height = 1;
      if (value > 1000 && (field == 4 || field == 5)) c.dst_x = c.dst_y = 0;
      if (value > 1000 && (field == 10 || field == 11)) c.src_width = c.src_height = 1;
      if (value > 1000 && (field == 10 || field == 11)) c.src_x = c.src_y = 0;
      const bool plane_size = field == 4 || field == 5 || field == 10 || field == 11;
      c.*fields[field] = plane_size ? std::min(value, LargestPlane(4)) : value;
      const auto plane = [](int32_t w, int32_t h) {
        return w < 1 || h < 1 ? std::size_t{0} : std::size_t{4} * w * static_cast<std::size_t>(h);
      };
      PageEndBuffer dst(plane(c.dst_width, c.dst_height)), src(plane(c.src_width, c.src_height));
      const int32_t result = CallDword(dst.data(), src.data(), c);
      EXPECT_TRUE(result == 0 || result == QBO_E_FAIL) << result;
    }
  }
  // The 8-bit zoom: sizes at the ends of the range that describe no plane
  // are rejected; a huge source is read only where positions fall.
  for (int field = 0; field < 4; ++field) {
    for (int32_t value : {INT32_MIN, INT32_MIN + 1, -1, 0, INT32_MAX}) {
      int32_t size[4] = {6, 5, 4, 3};        // dstWidth, dstHeight, srcWidth, srcHeight
      if (value > 0 && field < 2) continue;  // a huge destination is 2^31 bytes of real work
      size[field] = std::min(value, LargestPlane(1));
      if (value > 1000) size[field ^ 1] = 1;
      SCOPED_TRACE(::testing::Message() << "size " << field << " = " << value);
      const auto plane = [](int32_t w, int32_t h) {
        return w < 1 || h < 1 ? std::size_t{0} : std::size_t{1} * w * static_cast<std::size_t>(h);
      };
      PageEndBuffer dst(plane(size[0], size[1])), src(plane(size[2], size[3]));
      const int32_t result =
          QN_BufferZoom(dst.data(), size[0], size[1], src.data(), size[2], size[3]);
      const bool plane_ok = size[0] > 0 && size[2] > 0 && size[3] > 0 && size[1] != 0;
      EXPECT_EQ(result, plane_ok ? 0 : QBO_E_FAIL);
    }
  }
}

}  // namespace
}  // namespace qbo::test
