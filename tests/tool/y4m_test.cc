#include <gtest/gtest.h>

#include "errors.h"
#include "tool_test_support.h"
#include "y4m_io.h"

namespace quillon {
namespace {

using test::RandomFrame;
using test::TempDir;

TEST(Y4mHeader, RejectsWhatItCannotHold) {
  struct Case {
    const char* line;
    const char* message;
  };
  const Case cases[] = {
      {"YUV4MPEG W4 H4", "f.y4m: unknown format: not a YUV4MPEG2 stream"},
      {"YUV4MPEG2 W4", "f.y4m: YUV4MPEG2 header lacks the W or H tag"},
      {"YUV4MPEG2 W4 H4 C444",
       "f.y4m: unsupported chroma layout C444 (quillon reads 4:2:0 and 4:2:2: C420jpeg, "
       "C420mpeg2, C420paldv, C420, C422)"},
      {"YUV4MPEG2 W4 H4 Cmono", nullptr},
      {"YUV4MPEG2 W4 H4 C420p10", nullptr},
      {"YUV4MPEG2 W4 H4 Im",
       "f.y4m: unsupported interlace mode Im (quillon reads Ip, It and Ib "
       "streams)"},
      {"YUV4MPEG2 W0 H4", "f.y4m: bad width '0' in the YUV4MPEG2 header"},
      {"YUV4MPEG2 W4 H-4", "f.y4m: bad height '-4' in the YUV4MPEG2 header"},
      {"YUV4MPEG2 W4 H4 F25", "f.y4m: bad frame rate '25' in the YUV4MPEG2 header"},
      {"YUV4MPEG2 W4 H4 F25:0", "f.y4m: bad frame rate '25:0' in the YUV4MPEG2 header"},
      {"YUV4MPEG2 W4 H4 Ax", "f.y4m: bad aspect ratio 'x' in the YUV4MPEG2 header"},
      {"YUV4MPEG2 W5 H4", "f.y4m: unsupported size: yuv420p needs an even width, not 5"},
      {"YUV4MPEG2 W4 H3", "f.y4m: unsupported size: yuv420p needs an even height, not 3"},
      {"YUV4MPEG2 W3 H3 C422", "f.y4m: unsupported size: yuv422p needs an even width, not 3"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.line);
    try {
      ParseY4mHeader("f.y4m", c.line);
      ADD_FAILURE() << "accepted";
    } catch (const ToolError& error) {
      if (c.message != nullptr) {
        EXPECT_EQ(std::string(error.what()), c.message);
      }
    }
  }
}

TEST(Y4m, RoundTripsFramesOfEveryLayoutAndOrder) {
  struct Case {
    PixelFormat format;
    int width, height;
    FieldOrder order;
  };
  const Case cases[] = {
      {PixelFormat::kYuv420p, 2, 2, FieldOrder::kProgressive},
      {PixelFormat::kYuv420p, 46, 30, FieldOrder::kTopFirst},
      {PixelFormat::kYuv420p, 720, 576, FieldOrder::kBottomFirst},
      {PixelFormat::kYuv422p, 10, 7, FieldOrder::kTopFirst},
      {PixelFormat::kYuv422p, 64, 1, FieldOrder::kProgressive},
  };
  TempDir dir;
  uint32_t seed = 1;
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(FormatName(c.format)) + " " + std::to_string(c.width) + "x" +
                 std::to_string(c.height));
    StreamInfo info;
    info.format = c.format;
    info.width = c.width;
    info.height = c.height;
    info.order = c.order;
    info.rate_num = 30000;
    info.rate_den = 1001;
    info.range = c.order == FieldOrder::kTopFirst ? ColorRange::kLimited : ColorRange::kFull;
    std::vector<Frame> frames;
    {
      Y4mWriter writer(dir / "rt.y4m", info);
      for (int i = 0; i < 3; ++i) {
        frames.push_back(RandomFrame(c.format, c.width, c.height, seed++));
        writer.Write(frames.back());
      }
      writer.Finish();
    }
    Y4mReader reader(dir / "rt.y4m");
    EXPECT_EQ(reader.info().format, c.format);
    EXPECT_EQ(reader.info().order, c.order);
    EXPECT_EQ(reader.info().rate_num, 30000);
    EXPECT_EQ(reader.info().frame_count, 3);
    EXPECT_EQ(reader.info().range, info.range);
    Frame frame;
    for (const Frame& expected : frames) {
      ASSERT_TRUE(reader.Read(frame));
      EXPECT_TRUE(test::SameBytes(frame, expected));
      EXPECT_EQ(frame.order, c.order);
    }
    EXPECT_FALSE(reader.Read(frame));
  }
}


}  // namespace
}  // namespace quillon
