#include "frame_io.h"

#include <gtest/gtest.h>

#include "errors.h"
#include "files.h"
#include "png_io.h"
#include "tool_test_support.h"

namespace quillon {
namespace {

using test::RandomFrame;
using test::TempDir;

TEST(FrameIo, ContainerFollowsTheName) {
  struct Case {
    const char* path;
    Container container;
  };
  const Case cases[] = {{"a.y4m", Container::kY4m},
                        {"A.Y4M", Container::kY4m},
                        {"dir.y4m/a.png", Container::kPng},
                        {"f%04d.png", Container::kPng},
                        {"a.yuv", Container::kRaw},
                        {"-", Container::kRaw},
                        {"y4m", Container::kRaw}};
  for (const Case& c : cases) {
    EXPECT_EQ(ContainerFor(c.path), c.container) << c.path;
  }
}

TEST(FrameIo, SequencePatternsTakeOneNumber) {
  EXPECT_TRUE(IsSequencePattern("f%04d.png"));
  EXPECT_TRUE(IsSequencePattern("out/%d.png"));
  EXPECT_FALSE(IsSequencePattern("f%s.png"));
  EXPECT_FALSE(IsSequencePattern("f%d%d.png"));
  EXPECT_FALSE(IsSequencePattern("100%.png"));
  EXPECT_EQ(SequenceName("f%04d.png", 7), "f0007.png");
  EXPECT_EQ(SequenceName("%d.png", 12), "12.png");
}

TEST(FrameIo, RawRoundTripsEveryFormat) {
  TempDir dir;
  uint32_t seed = 40;
  for (PixelFormat format :
       {PixelFormat::kYuv420p, PixelFormat::kYuv422p, PixelFormat::kYuyv422, PixelFormat::kBgra,
        PixelFormat::kRgba, PixelFormat::kRgb24, PixelFormat::kBgr24}) {
    SCOPED_TRACE(FormatName(format));
    StreamInfo info;
    info.format = format;
    info.width = 6;
    info.height = 4;
    std::vector<Frame> frames;
    {
      std::unique_ptr<FrameSink> sink = OpenSink(dir / "r.raw", info);
      for (int i = 0; i < 2; ++i) {
        frames.push_back(RandomFrame(format, 6, 4, seed++));
        sink->Write(frames.back());
      }
      sink->Finish();
    }
    const RawInputSpec raw{format, 6, 4, FieldOrder::kTopFirst};
    std::unique_ptr<FrameSource> source = OpenSource(dir / "r.raw", raw);
    EXPECT_EQ(source->info().frame_count, 2);
    Frame frame;
    for (const Frame& expected : frames) {
      ASSERT_TRUE(source->Read(frame));
      EXPECT_TRUE(test::SameBytes(frame, expected));
      EXPECT_EQ(frame.order, FieldOrder::kTopFirst);
    }
    EXPECT_FALSE(source->Read(frame));
  }
}

TEST(FrameIo, RawErrors) {
  TempDir dir;
  test::WriteFile(dir / "r.yuv", std::string(6 * 4 * 3 / 2 + 5, 'x'));
  const auto message_of = [&](const RawInputSpec& raw) -> std::string {
    try {
      std::unique_ptr<FrameSource> source = OpenSource(dir / "r.yuv", raw);
      Frame frame;
      while (source->Read(frame)) {
      }
    } catch (const ToolError& error) {
      return error.what();
    }
    return "no error";
  };
  const std::string path = dir / "r.yuv";
  EXPECT_EQ(message_of({}), path +
                                ": unknown format: raw frames need --in-format FMT and "
                                "--in-size WxH (or name the file *.y4m or *.png)");
  EXPECT_EQ(message_of({PixelFormat::kYuv420p, 0, 0, FieldOrder::kProgressive}), message_of({}));
  EXPECT_EQ(message_of({PixelFormat::kYuv420p, 6, 4, FieldOrder::kProgressive}),
            path + ": truncated frame 2: 5 of 36 bytes of a 6x4 yuv420p frame");
  EXPECT_EQ(message_of({PixelFormat::kYuyv422, 5, 4, FieldOrder::kProgressive}),
            path + ": unsupported size: yuyv422 needs an even width, not 5");
}

TEST(FrameIo, PngSequencesReadInOrderAndCheckSizes) {
  TempDir dir;
  // Numbered from 1: the reader finds the start itself.
  const Frame a = RandomFrame(PixelFormat::kRgb24, 5, 3, 1);
  const Frame b = RandomFrame(PixelFormat::kRgb24, 5, 3, 2);
  WritePng(dir / "s0001.png", a);
  WritePng(dir / "s0002.png", b);
  std::unique_ptr<FrameSource> source = OpenSource(dir / "s%04d.png", {});
  EXPECT_EQ(source->info().frame_count, 2);
  EXPECT_EQ(source->info().format, PixelFormat::kRgb24);
  Frame frame;
  ASSERT_TRUE(source->Read(frame));
  EXPECT_TRUE(test::SameBytes(frame, a));
  ASSERT_TRUE(source->Read(frame));
  EXPECT_TRUE(test::SameBytes(frame, b));
  EXPECT_FALSE(source->Read(frame));

  WritePng(dir / "s0003.png", RandomFrame(PixelFormat::kRgb24, 5, 4, 3));
  source = OpenSource(dir / "s%04d.png", {});
  try {
    while (source->Read(frame)) {
    }
    ADD_FAILURE() << "no size mismatch";
  } catch (const ToolError& error) {
    EXPECT_EQ(std::string(error.what()),
              dir / "s0003.png" + ": size mismatch: 5x4, the first picture of the sequence is 5x3");
  }
  EXPECT_THROW(OpenSource(dir / "none%03d.png", {}), ToolError);
}

TEST(FrameIo, SinksRefuseWhatTheirContainerCannotHold) {
  TempDir dir;
  StreamInfo info;
  info.width = 4;
  info.height = 4;
  struct Case {
    const char* name;
    PixelFormat format;
    bool ok;
  };
  const Case cases[] = {
      {"a.y4m", PixelFormat::kYuv420p, true},  {"a.y4m", PixelFormat::kYuv422p, true},
      {"a.y4m", PixelFormat::kYuyv422, false}, {"a.y4m", PixelFormat::kBgra, false},
      {"a.png", PixelFormat::kRgba, true},     {"a.png", PixelFormat::kYuv420p, false},
      {"a.png", PixelFormat::kYuyv422, false}, {"a.raw", PixelFormat::kYuyv422, true},
      {"a%s.png", PixelFormat::kRgba, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.name) + " " + FormatName(c.format));
    info.format = c.format;
    if (c.ok) {
      EXPECT_NO_THROW(OpenSink(dir / c.name, info));
    } else {
      EXPECT_THROW(OpenSink(dir / c.name, info), ToolError);
    }
  }
}

TEST(FrameIo, OnePngTakesOnePicture) {
  TempDir dir;
  StreamInfo info;
  info.format = PixelFormat::kRgba;
  info.width = 2;
  info.height = 2;
  std::unique_ptr<FrameSink> sink = OpenSink(dir / "one.png", info);
  const Frame frame = RandomFrame(PixelFormat::kRgba, 2, 2, 5);
  sink->Write(frame);
  EXPECT_THROW(sink->Write(frame), ToolError);
  sink = OpenSink(dir / "many%02d.png", info);
  sink->Write(frame);
  sink->Write(frame);
  // Nothing shows under the final names before Finish().
  EXPECT_FALSE(test::FileExists(dir / "many01.png"));
  sink->Finish();
  EXPECT_TRUE(test::FileExists(dir / "many01.png"));
  EXPECT_TRUE(test::FileExists(dir / "many02.png"));
}

TEST(OutputFile, AppearsOnlyWhenCommitted) {
  TempDir dir;
  test::WriteFile(dir / "keep.bin", "old");
  {
    OutputFile out(dir / "keep.bin");
    out.Write("new", 3);
    // Until the rename the old file stands, the new one under a hidden name.
    EXPECT_EQ(test::ReadFile(dir / "keep.bin"), "old");
    EXPECT_EQ(dir.List().size(), 2u);
  }
  EXPECT_EQ(test::ReadFile(dir / "keep.bin"), "old");
  EXPECT_EQ(dir.List(), std::vector<std::string>{"keep.bin"});
  {
    OutputFile out(dir / "keep.bin");
    out.Write("new", 3);
    out.Commit();
  }
  EXPECT_EQ(test::ReadFile(dir / "keep.bin"), "new");
  EXPECT_EQ(dir.List(), std::vector<std::string>{"keep.bin"});
  EXPECT_THROW(OutputFile(dir / "missing-folder/x.bin"), ToolError);
  EXPECT_THROW(OutputFile(dir.path()), ToolError);
}

}  // namespace
}  // namespace quillon
