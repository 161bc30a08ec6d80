// The resampling exports: pass order, the streamed intermediate against a
// whole-image model, clipping of the rectangle exports, memory failure.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/filter/resample_model.h"
#include "tests/support/fake_platform.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

using WholeFn = int32_t (*)(void*, int32_t, int32_t, const void*, int32_t, int32_t);
using RectFn = int32_t (*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                           const void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t);

WholeFn Whole(int taps) { return taps == 4 ? QN_Re4Sampling : QN_Re8Sampling; }
RectFn Rect(int taps) { return taps == 4 ? QN_Re4SamplingEx : QN_Re8SamplingEx; }

std::size_t Bytes(int32_t w, int32_t h) { return static_cast<std::size_t>(w) * h * 4; }

struct Size2 {
  int32_t dw, dh, sw, sh;
};

// Up, down, 1:1, odd ratios, mixed directions, 1-pixel lines, both orders.
constexpr Size2 kSizes[] = {
    {16, 16, 16, 16}, {37, 23, 19, 11}, {19, 11, 37, 23}, {33, 9, 20, 27}, {20, 27, 33, 9},
    {7, 5, 1, 5},     {5, 7, 5, 1},     {1, 1, 9, 9},     {64, 3, 3, 64}, {45, 30, 64, 48},
    {3, 2, 2, 3},     {100, 17, 17, 100}};

TEST(Resample, WholeImageMatchesTheModelAtEveryLevel) {
  const uint32_t seed = 4242;
  ForEachLevel([&](KernelLevel) {
    for (int taps : {4, 8}) {
      for (const Size2& s : kSizes) {
        SCOPED_TRACE(::testing::Message() << taps << " taps " << s.sw << "x" << s.sh << " -> "
                                          << s.dw << "x" << s.dh << " seed=" << seed);
        const std::vector<uint8_t> src = RandomBytes(Bytes(s.sw, s.sh), seed + s.dw);
        std::vector<uint8_t> want(Bytes(s.dw, s.dh));
        // (dh + sh) * dw <= (dh + sh) * sw: the column pass first.
        const bool vertical_first = s.dw <= s.sw;
        ModelResample(taps, {want.data(), s.dw * 4, s.dw, s.dh},
                      {src.data(), s.sw * 4, s.sw, s.sh}, s.sh - 1, vertical_first);
        GuardedBuffer got(want.size(), 4);
        ASSERT_EQ(Whole(taps)(got.data(), s.dw, s.dh, src.data(), s.sw, s.sh), 1);
        ASSERT_EQ(MismatchMap(want.data(), got.data(), static_cast<std::size_t>(s.dw) * 4,
                              static_cast<std::size_t>(s.dh), 4),
                  "");
        ASSERT_TRUE(got.GuardsIntact());
      }
    }
  });
}

TEST(Resample, ScaleOneReproducesShortLines) {
  ForEachLevel([](KernelLevel) {
    for (int taps : {4, 8}) {
      for (auto [w, h] : {std::pair{1, 1}, {5, 3}, {2047, 2}, {3, 300}}) {
        SCOPED_TRACE(::testing::Message() << taps << " taps " << w << "x" << h);
        const std::vector<uint8_t> src = RandomBytes(Bytes(w, h), 99);
        std::vector<uint8_t> dst(src.size());
        ASSERT_EQ(Whole(taps)(dst.data(), w, h, src.data(), w, h), 1);
        ASSERT_EQ(MismatchMap(src.data(), dst.data(), static_cast<std::size_t>(w) * 4,
                              static_cast<std::size_t>(h), 4),
                  "");
      }
    }
  });
}

TEST(Resample, ConstantImagesAndSinglePixelLines) {
  ForEachLevel([](KernelLevel) {
    // Four taps keep a constant image: every phase sums to 4096, and the
    // floors of four products lose less than the +4 rounding restores.
    for (uint8_t value : {0, 1, 128, 254, 255}) {
      std::vector<uint8_t> src(Bytes(13, 9), value), dst(Bytes(31, 4));
      ASSERT_EQ(QN_Re4Sampling(dst.data(), 31, 4, src.data(), 13, 9), 1);
      for (uint8_t b : dst) ASSERT_EQ(b, value) << "value " << int(value);
    }
    // A 1-pixel-wide source repeats its one sample along each row.
    const uint8_t column[8] = {10, 20, 30, 40, 50, 60, 70, 80};
    std::vector<uint8_t> dst(Bytes(6, 2));
    ASSERT_EQ(QN_Re4Sampling(dst.data(), 6, 2, column, 1, 2), 1);
    for (int x = 0; x < 6; ++x) {
      EXPECT_EQ(std::memcmp(dst.data() + 4 * x, column, 4), 0);
      EXPECT_EQ(std::memcmp(dst.data() + 24 + 4 * x, column + 4, 4), 0);
    }
  });
}

TEST(Resample, RejectsEmptyArgumentsWithoutDrawing) {
  uint8_t src[64] = {}, dst[64];
  std::memset(dst, 0x5A, sizeof dst);
  for (int taps : {4, 8}) {
    EXPECT_EQ(Whole(taps)(dst, 0, 2, src, 2, 2), 0);
    EXPECT_EQ(Whole(taps)(dst, 2, -1, src, 2, 2), 0);
    EXPECT_EQ(Whole(taps)(dst, 2, 2, src, 0, 2), 0);
    EXPECT_EQ(Whole(taps)(nullptr, 2, 2, src, 2, 2), 0);
    EXPECT_EQ(Whole(taps)(dst, 2, 2, nullptr, 2, 2), 0);
  }
  EXPECT_EQ(dst[0], 0x5A);
}

TEST(Resample, NoMemoryDrawsNothingAndOnlyFourTapsSays) {
  struct Case {
    int32_t dw, dh, sw, sh;
    const char* message;  // what the 4-tap export shows
  };
  const Case cases[] = {
      {8, 6, 10, 4, "VirtualAlloc alloc 10*6*4 fail"},  // columns first: sw * dh
      {12, 6, 10, 4, "VirtualAlloc alloc 4*12*4 fail"},  // lines first: sh * dw
  };
  for (const Case& c : cases) {
    FakePlatform fake;
    fake.fail_pages = true;
    SetPlatformForTesting(&fake);
    std::vector<uint8_t> src(Bytes(c.sw, c.sh), 7), dst(Bytes(c.dw, c.dh), 0x5A);
    EXPECT_EQ(QN_Re4Sampling(dst.data(), c.dw, c.dh, src.data(), c.sw, c.sh), 0);
    EXPECT_EQ(QN_Re8Sampling(dst.data(), c.dw, c.dh, src.data(), c.sw, c.sh), 0);
    EXPECT_EQ(QN_Re4SamplingEx(dst.data(), 0, 0, c.dw, c.dh, c.dw, c.dh, src.data(), 0, 0, c.sw,
                               c.sh, c.sw, c.sh),
              0);
    EXPECT_EQ(QN_Re8SamplingEx(dst.data(), 0, 0, c.dw, c.dh, c.dw, c.dh, src.data(), 0, 0, c.sw,
                               c.sh, c.sw, c.sh),
              0);
    SetPlatformForTesting(nullptr);
    EXPECT_EQ(fake.messages, std::vector<std::string>{c.message});
    for (uint8_t b : dst) ASSERT_EQ(b, 0x5A);
  }
}

struct RectCase {
  const char* name;
  int32_t x, y, w, h, dw, dh;                // destination rectangle and image
  int32_t sx, sy, srw, srh, sw, sh;          // source rectangle and image
  int32_t cx, cy, cw, ch, csx, csy, csrw, csrh;  // the same call, clipped by hand
};

// Each clipped call draws exactly what the call with the hand-clipped
// arguments draws (and nothing outside its destination rectangle).
const RectCase kRectCases[] = {
    // sx = 100 / 50 = 2: x = -10 hides trunc(-10 / 2 - 0.5) = -5 source
    // columns.
    {"left", -10, 0, 100, 20, 120, 20, 0, 0, 50, 20, 60, 20, 0, 0, 90, 20, 5, 0, 45, 20},
    // x + width - dstWidth = 30 past the edge: trunc(30 / 2 + 0.5) = 15.
    {"right", 50, 0, 100, 20, 120, 20, 0, 0, 50, 20, 60, 20, 50, 0, 70, 20, 0, 0, 35, 20},
    // sy = 30 / 60 = 0.5: y = -3 hides trunc(-6 - 0.5) = -6 source rows.
    {"top", 0, -3, 20, 30, 20, 40, 0, 0, 20, 60, 20, 80, 0, 0, 20, 27, 0, 6, 20, 54},
    // 7 rows past the bottom: trunc(7 / 0.5 + 0.5) = 14 source rows.
    {"bottom", 0, 17, 20, 30, 20, 40, 0, 0, 20, 60, 20, 80, 0, 17, 20, 23, 0, 0, 20, 46},
    // The source rectangle is cut to its image first; negative srcX is 0.
    {"source", 1, 1, 10, 10, 16, 16, -4, 5, 40, 40, 20, 30, 1, 1, 10, 10, 0, 5, 20, 25},
    // sx = 9 / 7 = 1.2857143: -5 / sx - 0.5 = -4.39 -> 4 columns; sy = 6 / 5:
    // -1 / 1.2 - 0.5 = -1.33 -> 1 row.
    {"odd", -5, -1, 9, 6, 9, 9, 3, 2, 7, 5, 12, 9, 0, 0, 4, 5, 7, 3, 3, 4},
};

TEST(ResampleEx, ClipsLikeTheHandClippedCall) {
  ForEachLevel([](KernelLevel) {
    for (int taps : {4, 8}) {
      for (const RectCase& c : kRectCases) {
        SCOPED_TRACE(::testing::Message() << c.name << " " << taps << " taps");
        const std::vector<uint8_t> src = RandomBytes(Bytes(c.sw, c.sh), 31);
        std::vector<uint8_t> want(Bytes(c.dw, c.dh), 0x11), got(want.size(), 0x11);
        ASSERT_EQ(Rect(taps)(want.data(), c.cx, c.cy, c.cw, c.ch, c.dw, c.dh, src.data(), c.csx,
                             c.csy, c.csrw, c.csrh, c.sw, c.sh),
                  1);
        ASSERT_EQ(Rect(taps)(got.data(), c.x, c.y, c.w, c.h, c.dw, c.dh, src.data(), c.sx, c.sy,
                             c.srw, c.srh, c.sw, c.sh),
                  1);
        ASSERT_EQ(MismatchMap(want.data(), got.data(), static_cast<std::size_t>(c.dw) * 4,
                              static_cast<std::size_t>(c.dh), 4),
                  "");
        // Outside the clipped rectangle nothing changed.
        for (int32_t r = 0; r < c.dh; ++r) {
          for (int32_t x = 0; x < c.dw; ++x) {
            const bool inside = r >= c.cy && r < c.cy + c.ch && x >= c.cx && x < c.cx + c.cw;
            if (!inside) {
              ASSERT_EQ(got[(static_cast<std::size_t>(r) * c.dw + x) * 4], 0x11);
            }
          }
        }
      }
    }
  });
}

TEST(ResampleEx, MatchesTheModelOfTheSubImage) {
  ForEachLevel([](KernelLevel) {
    for (int taps : {4, 8}) {
      for (bool vertical_first : {true, false}) {
        // Source rectangle 12x7 at (3, 4) of a 20x16 image into 9x11 at
        // (2, 1) (column pass first) or 17x11 (line pass first).
        const int32_t dw = vertical_first ? 9 : 17, dh = 11;
        const std::vector<uint8_t> src = RandomBytes(Bytes(20, 16), 57);
        std::vector<uint8_t> got(Bytes(24, 14), 0), want(Bytes(24, 14), 0);
        ASSERT_EQ(Rect(taps)(got.data(), 2, 1, dw, dh, 24, 14, src.data(), 3, 4, 12, 7, 20, 16), 1);
        // Column taps below the rectangle read on to the image's last row
        // (row 15 = 11 rows below the top) in the column-first order.
        const uint8_t* corner = src.data() + (4 * 20 + 3) * 4;
        ModelResample(taps, {want.data() + (1 * 24 + 2) * 4, 24 * 4, dw, dh},
                      {corner, 20 * 4, 12, 7}, 11, vertical_first);
        ASSERT_EQ(MismatchMap(want.data(), got.data(), 24 * 4, 14, 4), "")
            << taps << " taps, vertical first " << vertical_first;
      }
    }
  });
}

TEST(ResampleEx, ReadsBelowTheRectangleOnlyInColumnFirstOrder) {
  for (bool vertical_first : {true, false}) {
    const int32_t dw = vertical_first ? 8 : 24;
    std::vector<uint8_t> src = RandomBytes(Bytes(16, 16), 5);
    std::vector<uint8_t> a(Bytes(dw, 5)), b(a.size());
    // Rows 0..7 of the image into 5 rows: the last outputs' taps reach
    // past row 7.
    ASSERT_EQ(QN_Re4SamplingEx(a.data(), 0, 0, dw, 5, dw, 5, src.data(), 0, 0, 16, 8, 16, 16), 1);
    std::memset(src.data() + Bytes(16, 8), 0xFF, Bytes(16, 8));
    ASSERT_EQ(QN_Re4SamplingEx(b.data(), 0, 0, dw, 5, dw, 5, src.data(), 0, 0, 16, 8, 16, 16), 1);
    EXPECT_EQ(a != b, vertical_first);
  }
}

TEST(ResampleEx, NeverReadsPastTheSourceImage) {
  ForEachLevel([](KernelLevel) {
    for (int taps : {4, 8}) {
      // The rectangle is the image's bottom rows; the image ends at an
      // inaccessible page.
      PageEndBuffer src(Bytes(10, 12));
      FillRandom(src.data(), src.size(), 3);
      std::vector<uint8_t> dst(Bytes(7, 9));
      ASSERT_EQ(Rect(taps)(dst.data(), 0, 0, 7, 9, 7, 9, src.data(), 2, 9, 8, 3, 10, 12), 1);
      ASSERT_EQ(Rect(taps)(dst.data(), 0, 0, 7, 2, 7, 9, src.data(), 0, 6, 10, 6, 10, 12), 1);
    }
  });
}

TEST(ResampleEx, ExtremeArgumentsDrawNothingOrStayInside) {
  struct Case {
    int32_t x, y, w, h, sx, sy, srw, srh;
    int32_t drawn;
  };
  const Case cases[] = {
      {INT_MIN, 0, INT_MAX, 4, 0, 0, 8, 8, 0},  // width + x = -1
      {INT_MAX, 0, INT_MAX, 4, 0, 0, 8, 8, 0},
      {0, 0, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, INT_MAX, 0},
      {0, 0, 8, 8, INT_MIN, INT_MIN, INT_MAX, INT_MAX, 1},
      {-6, -6, 8, 8, 0, 0, 8, 8, 1},
      {-7, 0, 8, 8, 0, 0, 8, 8, 0},  // one destination column left
      {0, 0, 1, 8, 0, 0, 8, 8, 0},
      {0, 0, 8, 8, 0, 0, 8, INT_MIN, 0},
      {INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, INT_MIN, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.x << "," << c.y << " " << c.w << "x" << c.h << " from "
                                      << c.sx << "," << c.sy << " " << c.srw << "x" << c.srh);
    const std::vector<uint8_t> src = RandomBytes(Bytes(8, 8), 1);
    GuardedBuffer dst(Bytes(8, 8));
    EXPECT_EQ(QN_Re8SamplingEx(dst.data(), c.x, c.y, c.w, c.h, 8, 8, src.data(), c.sx, c.sy, c.srw,
                               c.srh, 8, 8),
              c.drawn);
    EXPECT_TRUE(dst.GuardsIntact());
  }
}

}  // namespace
}  // namespace qbo::test
