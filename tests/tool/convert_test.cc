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

// Between YUV formats only the layout and the chroma change: packed <->
// planar 4:2:2 round-trips byte for byte, and 4:2:2 <-> 4:2:0 keeps every
// luma byte, interlaced (576 rows, whose last row the library's 4:2:0 to
// 4:2:2 layout blackens) and progressive.
TEST(Convert, YuvLayoutChangesKeepLumaExactly) {
  TempDir dir;
  const Frame yuyv = RandomFrame(PixelFormat::kYuyv422, 10, 576, 5);
  test::WriteFile(dir / "in.yuv",
                  std::string(reinterpret_cast<const char*>(yuyv.data()), yuyv.byte_size()));
  for (const char* interlace : {"tff", "progressive"}) {
    SCOPED_TRACE(interlace);
    const std::vector<std::string> raw = {"-f", "yuyv422", "-s", "10x576", "--interlace", interlace};
    std::vector<std::string> args = {"convert"};
    args.insert(args.end(), raw.begin(), raw.end());
    args.insert(args.end(), {"in.yuv", "p422.y4m", "-p", "yuv422p"});
    ASSERT_EQ(RunQuillon(args, dir).status, 0);
    ASSERT_EQ(RunQuillon({"convert", "p422.y4m", "back.yuv", "-p", "yuyv422"}, dir).status, 0);
    EXPECT_EQ(test::ReadFile(dir / "back.yuv"), test::ReadFile(dir / "in.yuv"));
    ASSERT_EQ(RunQuillon({"convert", "p422.y4m", "p420.y4m", "-p", "yuv420p"}, dir).status, 0);
    ASSERT_EQ(RunQuillon({"convert", "p420.y4m", "again.yuv", "-p", "yuyv422"}, dir).status, 0);
    const std::string again = test::ReadFile(dir / "again.yuv");
    const std::vector<Frame> p420 = ReadAllY4m(dir / "p420.y4m");
    ASSERT_EQ(again.size(), yuyv.byte_size());
    ASSERT_EQ(p420.size(), 1u);
    for (std::size_t i = 0; i < 10 * 576; ++i) {
      ASSERT_EQ(static_cast<uint8_t>(again[2 * i]), yuyv.data()[2 * i]) << "luma " << i;
      ASSERT_EQ(p420[0].data()[i], yuyv.data()[2 * i]) << "4:2:0 luma " << i;
    }
  }
}

// Ranges: a limited clip's black (16) and white (235) become RGB 0 and 255,
// stay 16 and 235 between YUV files unless full range is asked for, and
// RGB becomes limited YUV by default. The tag says which range a file has.
TEST(Convert, LimitedRangeBlackStaysOrExpandsAsAsked) {
  TempDir dir;
  StreamInfo info;
  info.width = 8;
  info.height = 4;
  info.range = ColorRange::kLimited;
  Frame clip(PixelFormat::kYuv420p, 8, 4);
  std::fill(clip.data(), clip.data() + clip.byte_size(), 128);
  std::fill(clip.data(), clip.data() + 16, 16);      // rows 0-1 black
  std::fill(clip.data() + 16, clip.data() + 32, 235);  // rows 2-3 white
  WriteY4m(dir / "tv.y4m", info, {clip});
  struct Case {
    std::vector<std::string> options;
    const char* out;
    uint8_t black, white;  // first byte of row 0 and of row 2
    const char* tag;       // in the output header, "" for none
  };
  const Case cases[] = {
      {{}, "rgb.png", 0, 255, ""},
      {{}, "same.y4m", 16, 235, "XCOLORRANGE=LIMITED"},
      {{"--out-range", "full"}, "pc.y4m", 0, 255, "XCOLORRANGE=FULL"},
      {{"-p", "yuyv422"}, "tv.yuv", 16, 235, ""},
      {{"--size", "4x4"}, "small.y4m", 16, 235, "XCOLORRANGE=LIMITED"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.out);
    std::vector<std::string> args = {"convert", "tv.y4m", c.out};
    args.insert(args.end(), c.options.begin(), c.options.end());
    const test::RunResult r = RunQuillon(args, dir);
    ASSERT_EQ(r.status, 0) << r.err;
    const std::string out = test::ReadFile(dir / c.out);
    const std::string c_out = c.out;
    if (c_out.ends_with(".png")) {
      const Frame rgb = ReadOnePng(dir / c.out);
      EXPECT_EQ(rgb.data()[0], c.black);
      EXPECT_EQ(rgb.data()[2 * 8 * 3], c.white);
    } else if (c_out.ends_with(".yuv")) {
      EXPECT_EQ(static_cast<uint8_t>(out[0]), c.black);
      EXPECT_EQ(static_cast<uint8_t>(out[2 * 16]), c.white);
    } else {
      const Frame f = ReadAllY4m(dir / c.out).at(0);
      EXPECT_EQ(f.data()[0], c.black);
      EXPECT_EQ(f.data()[2 * f.width()], c.white);
      EXPECT_NE(out.substr(0, out.find('\n')).find(c.tag), std::string::npos) << out.substr(0, 80);
    }
  }
  // RGB black to YUV: 16 by default, 0 when full range is asked for.
  WritePng(dir / "black.png", Frame(PixelFormat::kRgb24, 8, 4));
  for (const auto& [range, black] : {std::pair{"limited", 16}, {"full", 0}}) {
    ASSERT_EQ(RunQuillon({"convert", "black.png", "b.y4m", "--out-range", range}, dir).status, 0);
    EXPECT_EQ(ReadAllY4m(dir / "b.y4m").at(0).data()[0], black) << range;
  }
}

// An interlaced clip is scaled field by field: a frame whose top field is
// dark and bottom field light keeps alternating rows at any size and with
// either filter, where scaling the frame would keep one field or mix both.
TEST(Convert, InterlacedClipsAreScaledFieldByField) {
  SKIP_WITHOUT("QN_CS_SplitFrame");
  TempDir dir;
  StreamInfo info;
  info.format = PixelFormat::kYuv422p;
  info.width = 16;
  info.height = 16;
  info.order = FieldOrder::kTopFirst;
  Frame clip(PixelFormat::kYuv422p, 16, 16);
  std::fill(clip.data(), clip.data() + clip.byte_size(), 128);
  for (int row = 0; row < 16; ++row) std::fill_n(clip.data() + 16 * row, 16, row % 2 ? 200 : 50);
  WriteY4m(dir / "in.y4m", info, {clip});
  for (const char* filter : {"bilinear", "mean"}) {
    for (const char* size : {"8x8", "24x12"}) {
      SCOPED_TRACE(std::string(filter) + " " + size);
      const test::RunResult r =
          RunQuillon({"convert", "in.y4m", "out.y4m", "--size", size, "--filter", filter}, dir);
      ASSERT_EQ(r.status, 0) << r.err;
      const Frame out = ReadAllY4m(dir / "out.y4m").at(0);
      for (int row = 0; row < out.height(); ++row) {
        EXPECT_NEAR(out.data()[row * out.width() + 3], row % 2 ? 200 : 50, 1) << "row " << row;
      }
    }
  }
  const test::RunResult odd = RunQuillon({"convert", "in.y4m", "o.y4m", "--size", "8x7"}, dir);
  EXPECT_EQ(odd.status, 1);
  EXPECT_NE(odd.err.find("field by field, which needs even heights"), std::string::npos) << odd.err;
}

// Neutral chroma gives grey equal to luma in either standard, a value the
// conversion must keep exactly: (32 x Y + 0 + 16) >> 5 = Y. Width 10 ends
// its rows on a lone final pair, the case the row converters treat apart.
TEST(Convert, GreyYuvBecomesTheSameGreyRgb) {
  TempDir dir;
  constexpr int kWidth = 10;
  constexpr int kHeight = 8;
  Frame yuv(PixelFormat::kYuv420p, kWidth, kHeight);
  for (int i = 0; i < kWidth * kHeight; ++i) yuv.data()[i] = static_cast<uint8_t>(i * 13);
  std::fill(yuv.data() + kWidth * kHeight, yuv.data() + yuv.byte_size(), 128);
  test::WriteFile(dir / "grey.yuv",
                  std::string(reinterpret_cast<const char*>(yuv.data()), yuv.byte_size()));
  for (const char* interlace : {"progressive", "tff"}) {
    for (const char* standard : {"--bt709", "--quiet"}) {
      SCOPED_TRACE(std::string(interlace) + " " + standard);
      const test::RunResult r = RunQuillon({"convert", "-f", "yuv420p", "-s", "10x8", "--in-range", "full",
                                            "--interlace", interlace, standard, "grey.yuv",
                                            "grey.png"},
                                           dir);
      ASSERT_EQ(r.status, 0) << r.err;
      const Frame rgb = ReadOnePng(dir / "grey.png");
      ASSERT_EQ(rgb.format(), PixelFormat::kRgb24);
      for (int i = 0; i < kWidth * kHeight; ++i) {
        for (int c = 0; c < 3; ++c) {
          EXPECT_EQ(rgb.data()[3 * i + c], yuv.data()[i]) << "pixel " << i;
        }
      }
    }
  }
  // Interlaced 4:2:0 needs two chroma rows in each field.
  test::WriteFile(dir / "small.yuv", std::string(8 * 4 * 3 / 2, '\x80'));
  const test::RunResult r = RunQuillon(
      {"convert", "-f", "yuv420p", "-s", "8x4", "--interlace", "tff", "small.yuv", "s.png"}, dir);
  EXPECT_EQ(r.status, 1);
  EXPECT_NE(r.err.find("multiple of 4 and at least 8, not 4"), std::string::npos) << r.err;
}


}  // namespace
}  // namespace quillon
