#include <gtest/gtest.h>

#include "errors.h"
#include "tool_test_support.h"
#include "y4m_io.h"

namespace quillon {
namespace {

using test::RandomFrame;
using test::TempDir;

TEST(Y4mHeader, ReadsEveryTagItKnows) {
  struct Case {
    const char* line;
    PixelFormat format;
    int width, height;
    FieldOrder order;
    int rate_num, rate_den, aspect_num, aspect_den;
  };
  const Case cases[] = {
      // No C tag means 4:2:0; no I tag means progressive; 25 fps default.
      {"YUV4MPEG2 W720 H576", PixelFormat::kYuv420p, 720, 576, FieldOrder::kProgressive, 25, 1, 0,
       0},
      {"YUV4MPEG2 W1920 H1080 F30000:1001 It A1:1 C420mpeg2", PixelFormat::kYuv420p, 1920, 1080,
       FieldOrder::kTopFirst, 30000, 1001, 1, 1},
      {"YUV4MPEG2 C422 Ib W720 H480 F30:1", PixelFormat::kYuv422p, 720, 480,
       FieldOrder::kBottomFirst, 30, 1, 0, 0},
      {"YUV4MPEG2 W2 H2 C420paldv Ip XYSCSS=420PALDV", PixelFormat::kYuv420p, 2, 2,
       FieldOrder::kProgressive, 25, 1, 0, 0},
      {"YUV4MPEG2 W4 H4 C420jpeg A128:117", PixelFormat::kYuv420p, 4, 4, FieldOrder::kProgressive,
       25, 1, 128, 117},
      {"YUV4MPEG2 W6 H3 C422 I?", PixelFormat::kYuv422p, 6, 3, FieldOrder::kProgressive, 25, 1, 0,
       0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.line);
    const StreamInfo info = ParseY4mHeader("f.y4m", c.line);
    EXPECT_EQ(info.format, c.format);
    EXPECT_EQ(info.width, c.width);
    EXPECT_EQ(info.height, c.height);
    EXPECT_EQ(info.order, c.order);
    EXPECT_EQ(info.rate_num, c.rate_num);
    EXPECT_EQ(info.rate_den, c.rate_den);
    EXPECT_EQ(info.aspect_num, c.aspect_num);
    EXPECT_EQ(info.aspect_den, c.aspect_den);
  }
}

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
    Frame frame;
    for (const Frame& expected : frames) {
      ASSERT_TRUE(reader.Read(frame));
      EXPECT_TRUE(test::SameBytes(frame, expected));
      EXPECT_EQ(frame.order, c.order);
    }
    EXPECT_FALSE(reader.Read(frame));
  }
}

TEST(Y4m, FrameParametersAreSkipped) {
  TempDir dir;
  const std::string pixels(6, 'p');  // a 2x2 4:2:0 frame
  test::WriteFile(dir / "p.y4m", "YUV4MPEG2 W2 H2\nFRAME Ixyz\n" + pixels + "FRAME\n" + pixels);
  Y4mReader reader(dir / "p.y4m");
  Frame frame;
  EXPECT_TRUE(reader.Read(frame));
  EXPECT_TRUE(reader.Read(frame));
  EXPECT_EQ(frame.data()[5], 'p');
  EXPECT_FALSE(reader.Read(frame));
}

TEST(Y4m, BrokenStreamsNameTheFrame) {
  struct Case {
    std::string bytes;
    std::string message;  // after "<path>: "
  };
  const std::string frame(6, 'x');
  const Case cases[] = {
      {"YUV4MPEG2 W2 H2\nFRAME\n" + frame + "FRAME\nxyz", "truncated frame 2: 3 of 6 bytes"},
      {"YUV4MPEG2 W2 H2\nFRAME\n" + frame + "FRAMX\n" + frame,
       "frame 2: no FRAME header where one was due (truncated or corrupt frame)"},
      {"YUV4MPEG2 W2 H2\nFRAME\n" + frame + "FRA",
       "frame 2: no FRAME header where one was due (truncated or corrupt frame)"},
      {"YUV4MPEG2 W2 H2\nFRAMES\n" + frame,
       "frame 1: no FRAME header where one was due (truncated or corrupt frame)"},
  };
  TempDir dir;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.message);
    test::WriteFile(dir / "b.y4m", c.bytes);
    Y4mReader reader(dir / "b.y4m");
    Frame f;
    try {
      while (reader.Read(f)) {
      }
      ADD_FAILURE() << "read to the end";
    } catch (const ToolError& error) {
      EXPECT_EQ(std::string(error.what()), dir / "b.y4m" + (": " + c.message));
    }
  }
}

TEST(Y4m, NonStreamsAreUnknownFormats) {
  TempDir dir;
  for (const std::string& bytes :
       {std::string(""), std::string("\x89PNG\r\n"), std::string(5000, 'Y')}) {
    test::WriteFile(dir / "n.y4m", bytes);
    try {
      Y4mReader reader(dir / "n.y4m");
      ADD_FAILURE() << "opened";
    } catch (const ToolError& error) {
      EXPECT_NE(std::string(error.what()).find("unknown format"), std::string::npos)
          << error.what();
    }
  }
}

TEST(Y4m, WriterRefusesAFrameOfAnotherSize) {
  TempDir dir;
  StreamInfo info;
  info.width = 4;
  info.height = 4;
  Y4mWriter writer(dir / "w.y4m", info);
  EXPECT_THROW(writer.Write(Frame(PixelFormat::kYuv420p, 4, 2)), ToolError);
  EXPECT_THROW(writer.Write(Frame(PixelFormat::kYuv422p, 4, 4)), ToolError);
}

TEST(Y4m, HeaderWritesTheInterlaceTag) {
  StreamInfo info;
  info.width = 8;
  info.height = 6;
  info.order = FieldOrder::kBottomFirst;
  info.format = PixelFormat::kYuv422p;
  EXPECT_EQ(FormatY4mHeader(info), "YUV4MPEG2 W8 H6 F25:1 Ib A0:0 C422\n");
  info.order = FieldOrder::kTopFirst;
  info.format = PixelFormat::kYuv420p;
  EXPECT_EQ(FormatY4mHeader(info), "YUV4MPEG2 W8 H6 F25:1 It A0:0 C420jpeg\n");
}

}  // namespace
}  // namespace quillon
