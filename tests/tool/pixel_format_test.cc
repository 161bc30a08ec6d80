#include "pixel_format.h"

#include <gtest/gtest.h>

#include "pixel_ops.h"
#include "progress.h"
#include "tool_test_support.h"

namespace quillon {
namespace {

TEST(PixelFormat, NamesRoundTrip) {
  for (PixelFormat format :
       {PixelFormat::kYuv420p, PixelFormat::kYuv422p, PixelFormat::kYuyv422, PixelFormat::kBgra,
        PixelFormat::kRgba, PixelFormat::kRgb24, PixelFormat::kBgr24}) {
    EXPECT_EQ(ParseFormat(FormatName(format)), format);
  }
  EXPECT_FALSE(ParseFormat("nv12"));
  EXPECT_FALSE(ParseFormat("YUV420P"));
  EXPECT_EQ(FormatList(), "yuv420p, yuv422p, yuyv422, bgra, rgba, rgb24, bgr24");
}

TEST(PixelFormat, PlanesAndSizes) {
  struct Case {
    PixelFormat format;
    int width, height;
    std::size_t bytes;
    int planes;
    int chroma_pitch, chroma_rows;  // of plane 1, when planar
  };
  const Case cases[] = {
      // 720x576 4:2:0: 414720 luma + 2 x 360 x 288 chroma.
      {PixelFormat::kYuv420p, 720, 576, 622080, 3, 360, 288},
      // 4:2:2: 2 x 360 x 576 chroma.
      {PixelFormat::kYuv422p, 720, 576, 829440, 3, 360, 576},
      {PixelFormat::kYuyv422, 720, 576, 829440, 1, 0, 0},
      {PixelFormat::kBgra, 3, 5, 60, 1, 0, 0},
      {PixelFormat::kRgb24, 3, 5, 45, 1, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(FormatName(c.format));
    Frame frame(c.format, c.width, c.height);
    EXPECT_EQ(frame.byte_size(), c.bytes);
    EXPECT_EQ(frame.plane_count(), c.planes);
    if (c.planes == 3) {
      const Plane u = frame.plane(1);
      const Plane v = frame.plane(2);
      EXPECT_EQ(u.pitch, c.chroma_pitch);
      EXPECT_EQ(u.rows, c.chroma_rows);
      // The planes follow one another with no gap, as in a raw file.
      EXPECT_EQ(u.data, frame.data() + c.width * c.height);
      EXPECT_EQ(v.data + v.pitch * v.rows, frame.data() + frame.byte_size());
    } else {
      EXPECT_EQ(frame.plane(0).pitch * c.height, static_cast<int32_t>(c.bytes));
    }
  }
}

TEST(PixelFormat, SubsampledFormatsNeedEvenSizes) {
  struct Case {
    PixelFormat format;
    int width, height;
    bool ok;
  };
  const Case cases[] = {
      {PixelFormat::kYuv420p, 2, 2, true},  {PixelFormat::kYuv420p, 3, 2, false},
      {PixelFormat::kYuv420p, 2, 3, false}, {PixelFormat::kYuv422p, 2, 3, true},
      {PixelFormat::kYuyv422, 1, 1, false}, {PixelFormat::kRgb24, 1, 1, true},
      {PixelFormat::kBgra, 0, 1, false},    {PixelFormat::kBgra, 32769, 1, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(FormatName(c.format)) + " " + std::to_string(c.width) + "x" +
                 std::to_string(c.height));
    EXPECT_EQ(CheckSize(c.format, c.width, c.height).empty(), c.ok);
  }
}

TEST(Swizzle, MovesBytesBetweenRgbLayouts) {
  // One pixel R=1 G=2 B=3 A=4 in each layout.
  struct Layout {
    PixelFormat format;
    std::vector<uint8_t> bytes;
  };
  const Layout layouts[] = {{PixelFormat::kRgba, {1, 2, 3, 4}},
                            {PixelFormat::kBgra, {3, 2, 1, 4}},
                            {PixelFormat::kRgb24, {1, 2, 3}},
                            {PixelFormat::kBgr24, {3, 2, 1}}};
  for (const Layout& from : layouts) {
    for (const Layout& to : layouts) {
      SCOPED_TRACE(std::string(FormatName(from.format)) + " -> " + FormatName(to.format));
      Frame src(from.format, 1, 1);
      std::copy(from.bytes.begin(), from.bytes.end(), src.data());
      Frame dst;
      Swizzle(src, to.format, dst);
      std::vector<uint8_t> expected = to.bytes;
      // Alpha appears as opaque when the source has none.
      if (expected.size() == 4 && from.bytes.size() == 3) expected[3] = 255;
      EXPECT_EQ(std::vector<uint8_t>(dst.data(), dst.data() + dst.byte_size()), expected);
    }
  }
}

TEST(Progress, LineShowsCountsRateAndTimeLeft) {
  struct Case {
    int64_t done, total;
    double seconds;
    int columns;
    std::string line;
  };
  const Case cases[] = {
      // 50 frames in 2 s: 25 fps, 150 left take 6 s.
      // The bar fills what the text leaves of the line, one column spare:
      // 22 cells here, a quarter of them done.
      {50, 200, 2.0, 60, "[#####.................] 50/200 frames  25.0 fps  0:06 left"},
      {200, 200, 4.0, 60, "[#####################] 200/200 frames  50.0 fps  0:00 left"},
      // No room for a bar on a narrow terminal.
      {1, 3, 1.0, 30, " 1/3 frames  1.0 fps  0:02 left"},
      // Unknown total: count, rate and time spent.
      {90, -1, 65.0, 80, " 90 frames  1.4 fps  1:05"},
      {0, 10, 0.0, 30, " 0/10 frames  0.0 fps  ? left"},
      // Hours once they are needed: 1 frame left at 1/4000 fps.
      {1, 2, 4000.0, 20, " 1/2 frames  0.0 fps  1:06:40 left"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ProgressLine(c.done, c.total, c.seconds, c.columns), c.line);
  }
}

TEST(FieldSplit, HeightsMustPairUp) {
  EXPECT_EQ(CheckSplit(PixelFormat::kBgra, 6), "");
  EXPECT_NE(CheckSplit(PixelFormat::kBgra, 5), "");
  EXPECT_EQ(CheckSplit(PixelFormat::kYuv420p, 8), "");
  // Each 4:2:0 field needs an even height of its own.
  EXPECT_NE(CheckSplit(PixelFormat::kYuv420p, 6), "");
}

}  // namespace
}  // namespace quillon
