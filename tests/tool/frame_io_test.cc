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
