// quillon convert on real files. Cases whose export the library does not
// have yet are skipped, and run as soon as it does.
#include "convert.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

#include "errors.h"
#include "png_io.h"
#include "tool_test_support.h"
#include "y4m_io.h"

namespace quillon {
namespace {

using test::RandomFrame;
using test::RunQuillon;
using test::TempDir;

#define SKIP_WITHOUT(name)                                              \
  if (!LibraryHas(name)) {                                              \
    GTEST_SKIP() << name << " is not in this build of the library yet"; \
  }

Frame ReadOnePng(const std::string& path) {
  Frame frame;
  ReadPng(path, frame);
  return frame;
}

std::vector<Frame> ReadAllY4m(const std::string& path) {
  Y4mReader reader(path);
  std::vector<Frame> frames;
  Frame frame;
  while (reader.Read(frame)) frames.push_back(frame);
  return frames;
}

void WriteY4m(const std::string& path, const StreamInfo& info, const std::vector<Frame>& frames) {
  Y4mWriter writer(path, info);
  for (const Frame& frame : frames) writer.Write(frame);
  writer.Finish();
}

TEST(ConvertChain, WorksOutTheOutputStream) {
  StreamInfo in;
  in.format = PixelFormat::kYuv420p;
  in.width = 64;
  in.height = 48;
  in.order = FieldOrder::kTopFirst;
  in.frame_count = 10;
  struct Case {
    const char* name;
    Container container;
    ConvertOptions options;
    PixelFormat format;
    int width, height;
    FieldOrder order;
    int64_t frames;
    std::vector<const char*> needs;
  };
  const ConvertOptions plain;
  ConvertOptions split;
  split.fields = FieldMode::kSplit;
  ConvertOptions compose;
  compose.fields = FieldMode::kCompose;
  ConvertOptions scaled;
  scaled.width = 32;
  scaled.height = 24;
  scaled.filter = ScaleFilter::kMean;
  ConvertOptions to_yuyv;
  to_yuyv.out_format = PixelFormat::kYuyv422;
  const Case cases[] = {
      {"copy",
       Container::kY4m,
       plain,
       PixelFormat::kYuv420p,
       64,
       48,
       FieldOrder::kTopFirst,
       10,
       {}},
      {"to png",
       Container::kPng,
       plain,
       PixelFormat::kRgb24,
       64,
       48,
       FieldOrder::kTopFirst,
       10,
       {"QN_CS_YUV420_BGRA_Frame"}},
      {"split",
       Container::kY4m,
       split,
       PixelFormat::kYuv420p,
       64,
       24,
       FieldOrder::kProgressive,
       20,
       {"QN_CS_SplitFrame"}},
      {"compose",
       Container::kY4m,
       compose,
       PixelFormat::kYuv420p,
       64,
       96,
       FieldOrder::kTopFirst,
       5,
       {"QN_CS_ComposeFields"}},
      {"scale",
       Container::kY4m,
       scaled,
       PixelFormat::kYuv420p,
       32,
       24,
       FieldOrder::kTopFirst,
       10,
       {"QN_CS_YUV420_BGRA_Frame", "QN_StretchBlt_Mean", "QN_CS_BGRA2YUYV_Frame"}},
      {"yuyv",
       Container::kRaw,
       to_yuyv,
       PixelFormat::kYuyv422,
       64,
       48,
       FieldOrder::kTopFirst,
       10,
       {"QN_CS_YUV420_BGRA_Frame", "QN_CS_BGRA2YUYV_Frame"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    bool available = true;
    for (const char* name : c.needs) available = available && LibraryHas(name);
    if (!available) {
      // The missing export is named before any frame is read.
      EXPECT_THROW(ConvertChain(in, c.container, c.options), ToolError);
      continue;
    }
    const ConvertChain chain(in, c.container, c.options);
    EXPECT_EQ(chain.output_info().format, c.format);
    EXPECT_EQ(chain.output_info().width, c.width);
    EXPECT_EQ(chain.output_info().height, c.height);
    EXPECT_EQ(chain.output_info().order, c.order);
    EXPECT_EQ(chain.output_info().frame_count, c.frames);
  }
}

TEST(ConvertChain, PixelAspectFollowsTheShapeOfThePixels) {
  struct Case {
    FieldMode fields;
    int width, height;  // 0: no scaling
    int in_num, in_den;
    int num, den;
  };
  const Case cases[] = {
      {FieldMode::kNone, 0, 0, 16, 15, 16, 15},
      // A field's rows are twice as tall: 16:15 becomes 16:30 = 8:15.
      {FieldMode::kSplit, 0, 0, 16, 15, 8, 15},
      {FieldMode::kCompose, 0, 0, 8, 15, 16, 15},
      // 720x576 at 16:15 is a 4:3 picture; stretched to 1024x576 it stays
      // 4:3, so its pixels are 16/15 x (720 x 576) / (576 x 1024) = 3:4.
      {FieldMode::kNone, 1024, 576, 16, 15, 3, 4},
      {FieldMode::kNone, 360, 288, 16, 15, 16, 15},
      // Squeezed to half the width, each pixel is twice as wide.
      {FieldMode::kNone, 360, 576, 1, 1, 2, 1},
      {FieldMode::kSplit, 0, 0, 0, 0, 0, 0},  // unknown stays unknown
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.in_num) + ":" + std::to_string(c.in_den));
    StreamInfo in;
    in.format = PixelFormat::kYuv422p;
    in.width = 720;
    in.height = 576;
    in.aspect_num = c.in_num;
    in.aspect_den = c.in_den;
    ConvertOptions options;
    options.fields = c.fields;
    options.width = c.width;
    options.height = c.height;
    std::vector<std::string> needs = {c.fields == FieldMode::kSplit     ? "QN_CS_SplitFrame"
                                      : c.fields == FieldMode::kCompose ? "QN_CS_ComposeFields"
                                                                        : "QN_OverTurnSelf"};
    if (c.width != 0) needs = {"QN_StretchBlt", "QN_CS_YUV422_BGRA_Frame"};
    bool available = true;
    for (const std::string& name : needs) available = available && LibraryHas(name);
    if (!available) continue;
    const ConvertChain chain(in, Container::kY4m, options);
    EXPECT_EQ(chain.output_info().aspect_num, c.num);
    EXPECT_EQ(chain.output_info().aspect_den, c.den);
  }
}

TEST(ConvertChain, RefusesSizesTheOutputCannotHold) {
  StreamInfo in;
  in.format = PixelFormat::kRgba;
  in.width = 10;
  in.height = 6;
  ConvertOptions split;
  split.fields = FieldMode::kSplit;
  split.out_format = PixelFormat::kYuv420p;  // fields of 3 rows: no 4:2:0
  EXPECT_THROW(ConvertChain(in, Container::kY4m, split), ToolError);
  ConvertOptions odd;
  odd.width = 7;
  odd.height = 4;
  EXPECT_THROW(ConvertChain(in, Container::kY4m, odd), ToolError);
}

TEST(Convert, FlipTurnsEveryPlaneOver) {
  TempDir dir;
  StreamInfo info;
  info.width = 8;
  info.height = 4;
  const Frame frame = RandomFrame(PixelFormat::kYuv420p, 8, 4, 3);
  WriteY4m(dir / "in.y4m", info, {frame});
  ASSERT_EQ(RunQuillon({"convert", "--flip", "in.y4m", "out.y4m"}, dir).status, 0);
  const std::vector<Frame> out = ReadAllY4m(dir / "out.y4m");
  ASSERT_EQ(out.size(), 1u);
  for (int p = 0; p < 3; ++p) {
    const Plane a = frame.plane(p);
    const Plane b = out[0].plane(p);
    for (int row = 0; row < a.rows; ++row) {
      EXPECT_EQ(0, std::memcmp(a.data + row * a.pitch, b.data + (a.rows - 1 - row) * b.pitch,
                               static_cast<std::size_t>(a.row_bytes)))
          << "plane " << p << " row " << row;
    }
  }
}

// At an unchanged size every filter gives back its input: bilinear and the
// area mean by weights of 1 and 0, the sinc filters by their phase-0 taps.
TEST(Convert, ScalingToTheSameSizeChangesNothing) {
  TempDir dir;
  const Frame picture = RandomFrame(PixelFormat::kRgba, 37, 21, 11);
  WritePng(dir / "in.png", picture);
  for (const char* filter : {"bilinear", "mean", "4tap", "8tap"}) {
    SCOPED_TRACE(filter);
    const test::RunResult r =
        RunQuillon({"convert", "in.png", "out.png", "--size", "37x21", "--filter", filter}, dir);
    const char* needed = std::string(filter) == "bilinear" ? "QN_StretchBlt"
                         : std::string(filter) == "mean"   ? "QN_StretchBlt_Mean"
                         : std::string(filter) == "4tap"   ? "QN_Re4Sampling"
                                                           : "QN_Re8Sampling";
    if (!LibraryHas(needed)) {
      EXPECT_EQ(r.status, 1);
      EXPECT_NE(r.err.find(needed), std::string::npos) << r.err;
      continue;
    }
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(test::SameBytes(ReadOnePng(dir / "out.png"), picture));
  }
}

TEST(Convert, ScalingReachesTheRequestedSize) {
  SKIP_WITHOUT("QN_StretchBlt");
  TempDir dir;
  WritePng(dir / "in.png", RandomFrame(PixelFormat::kRgb24, 40, 30, 5));
  ASSERT_EQ(RunQuillon({"convert", "in.png", "out.png", "--size", "17x61"}, dir).status, 0);
  const Frame out = ReadOnePng(dir / "out.png");
  EXPECT_EQ(out.width(), 17);
  EXPECT_EQ(out.height(), 61);
  EXPECT_EQ(out.format(), PixelFormat::kRgb24);
}

TEST(Convert, OpaqueOverlayReplacesAndClipsAtTheEdge) {
  SKIP_WITHOUT("QN_BitBlt");
  TempDir dir;
  const Frame base = RandomFrame(PixelFormat::kRgba, 12, 8, 21);
  Frame logo = RandomFrame(PixelFormat::kRgba, 5, 4, 22);
  for (int i = 0; i < 5 * 4; ++i) logo.data()[4 * i + 3] = 255;
  WritePng(dir / "base.png", base);
  WritePng(dir / "logo.png", logo);
  // Laid at (9, -1): the logo's first row and its last two columns fall off.
  ASSERT_EQ(
      RunQuillon({"convert", "base.png", "out.png", "--overlay", "logo.png@9,-1"}, dir).status, 0);
  const Frame out = ReadOnePng(dir / "out.png");
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 12; ++x) {
      const bool covered = x >= 9 && y <= 2;
      const uint8_t* expected =
          covered ? logo.data() + 4 * ((y + 1) * 5 + (x - 9)) : base.data() + 4 * (y * 12 + x);
      EXPECT_EQ(0, std::memcmp(out.data() + 4 * (y * 12 + x), expected, 4))
          << "pixel " << x << "," << y;
    }
  }
}

TEST(Convert, TransparentOverlayLeavesThePicture) {
  SKIP_WITHOUT("QN_BitBlt");
  TempDir dir;
  const Frame base = RandomFrame(PixelFormat::kRgb24, 9, 9, 31);
  Frame logo = RandomFrame(PixelFormat::kRgba, 4, 4, 32);
  for (int i = 0; i < 16; ++i) logo.data()[4 * i + 3] = 0;
  WritePng(dir / "base.png", base);
  WritePng(dir / "logo.png", logo);
  ASSERT_EQ(RunQuillon({"convert", "base.png", "out.png", "--overlay", "logo.png@2,2"}, dir).status,
            0);
  EXPECT_TRUE(test::SameBytes(ReadOnePng(dir / "out.png"), base));
}

TEST(Convert, FieldsSplitAndComposeBackExactly) {
  SKIP_WITHOUT("QN_CS_SplitFrame");
  TempDir dir;
  for (PixelFormat format : {PixelFormat::kYuv420p, PixelFormat::kYuv422p}) {
    SCOPED_TRACE(FormatName(format));
    StreamInfo info;
    info.format = format;
    info.width = 16;
    info.height = 8;
    info.order = FieldOrder::kTopFirst;
    const std::vector<Frame> frames = {RandomFrame(format, 16, 8, 1),
                                       RandomFrame(format, 16, 8, 2)};
    WriteY4m(dir / "in.y4m", info, frames);
    ASSERT_EQ(RunQuillon({"convert", "in.y4m", "fields.y4m", "--fields", "split"}, dir).status, 0);
    const std::vector<Frame> fields = ReadAllY4m(dir / "fields.y4m");
    ASSERT_EQ(fields.size(), 4u);
    // The top field holds rows 0, 2, 4, ... of every plane.
    const Plane luma = frames[1].plane(0);
    const Plane field_luma = fields[3].plane(0);
    EXPECT_EQ(0, std::memcmp(field_luma.data + field_luma.pitch, luma.data + 3 * luma.pitch, 16));
    ASSERT_EQ(RunQuillon({"convert", "fields.y4m", "back.y4m", "--fields", "compose"}, dir).status,
              0);
    EXPECT_EQ(test::ReadFile(dir / "back.y4m"), test::ReadFile(dir / "in.y4m"));
  }
}

TEST(Convert, BottomFieldFirstSplitsBottomFirst) {
  SKIP_WITHOUT("QN_CS_SplitFrame");
  TempDir dir;
  StreamInfo info;
  info.width = 4;
  info.height = 4;
  info.format = PixelFormat::kYuv422p;
  info.order = FieldOrder::kBottomFirst;
  const Frame frame = RandomFrame(PixelFormat::kYuv422p, 4, 4, 8);
  WriteY4m(dir / "in.y4m", info, {frame});
  ASSERT_EQ(RunQuillon({"convert", "in.y4m", "f.y4m", "--fields", "split"}, dir).status, 0);
  const std::vector<Frame> fields = ReadAllY4m(dir / "f.y4m");
  ASSERT_EQ(fields.size(), 2u);
  EXPECT_EQ(0, std::memcmp(fields[0].data(), frame.data() + 4, 4));  // frame row 1 first
}

// Neutral chroma gives grey equal to luma in either standard, a value the
// conversion must keep exactly; the corners are black and white.
TEST(Convert, GreyYuvBecomesTheSameGreyRgb) {
  TempDir dir;
  for (const char* interlace : {"progressive", "tff"}) {
    for (const char* standard : {"--bt709", "--frames=1"}) {
      SCOPED_TRACE(std::string(interlace) + " " + standard);
      Frame yuv(PixelFormat::kYuv420p, 8, 4);
      for (int i = 0; i < 32; ++i) yuv.data()[i] = static_cast<uint8_t>(i * 8);
      yuv.data()[31] = 255;
      std::fill(yuv.data() + 32, yuv.data() + yuv.byte_size(), 128);
      test::WriteFile(dir / "grey.yuv",
                      std::string(reinterpret_cast<const char*>(yuv.data()), yuv.byte_size()));
      const test::RunResult r = RunQuillon({"convert", "-f", "yuv420p", "-s", "8x4", "--interlace",
                                            interlace, standard, "grey.yuv", "grey.png"},
                                           dir);
      const FieldOrder order =
          std::string(interlace) == "tff" ? FieldOrder::kTopFirst : FieldOrder::kProgressive;
      bool available = true;
      for (const std::string& name : ExportsForToBgra(PixelFormat::kYuv420p, order)) {
        available = available && LibraryHas(name);
      }
      if (!available) {
        EXPECT_EQ(r.status, 1);
        continue;
      }
      ASSERT_EQ(r.status, 0) << r.err;
      const Frame rgb = ReadOnePng(dir / "grey.png");
      ASSERT_EQ(rgb.format(), PixelFormat::kRgb24);
      for (int i = 0; i < 32; ++i) {
        for (int c = 0; c < 3; ++c) {
          EXPECT_EQ(rgb.data()[3 * i + c], yuv.data()[i]) << "pixel " << i;
        }
      }
    }
  }
}

}  // namespace
}  // namespace quillon
