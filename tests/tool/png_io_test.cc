#include "png_io.h"

#include <gtest/gtest.h>

#include "errors.h"
#include "pixel_ops.h"
#include "tool_test_support.h"

namespace quillon {
namespace {

using test::RandomFrame;
using test::TempDir;

TEST(Png, RoundTripsRgbAndRgba) {
  struct Case {
    PixelFormat format;
    int width, height;
  };
  const Case cases[] = {
      {PixelFormat::kRgba, 1, 1},  {PixelFormat::kRgba, 33, 17},  {PixelFormat::kRgb24, 1, 5},
      {PixelFormat::kRgb24, 7, 3}, {PixelFormat::kRgb24, 640, 2},
  };
  TempDir dir;
  uint32_t seed = 100;
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(FormatName(c.format)) + " " + std::to_string(c.width));
    const Frame written = RandomFrame(c.format, c.width, c.height, seed++);
    WritePng(dir / "p.png", written);
    Frame read;
    ReadPng(dir / "p.png", read);
    EXPECT_TRUE(test::SameBytes(read, written));
    int w = 0;
    int h = 0;
    ASSERT_TRUE(PngSize(dir / "p.png", w, h));
    EXPECT_EQ(w, c.width);
    EXPECT_EQ(h, c.height);
  }
}

TEST(Png, UnreadableFilesSayWhy) {
  TempDir dir;
  WritePng(dir / "good.png", RandomFrame(PixelFormat::kRgba, 64, 64, 3));
  const std::string good = test::ReadFile(dir / "good.png");
  std::string corrupt = good;
  corrupt[40] = static_cast<char>(corrupt[40] ^ 0x55);  // inside the image data
  struct Case {
    std::string name;
    std::string bytes;
    std::string message;
  };
  const Case cases[] = {
      {"text.png", "hello, world", "unreadable PNG: not a PNG file"},
      {"empty.png", "", "unreadable PNG: not a PNG file"},
      {"header.png", good.substr(0, 20), "unreadable PNG:"},
      {"cut.png", good.substr(0, good.size() / 2), "unreadable PNG:"},
      {"corrupt.png", corrupt, "unreadable PNG:"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    test::WriteFile(dir / c.name, c.bytes);
    Frame frame;
    try {
      ReadPng(dir / c.name, frame);
      ADD_FAILURE() << "read";
    } catch (const ToolError& error) {
      const std::string prefix = dir / c.name + ": " + c.message;
      EXPECT_EQ(std::string(error.what()).substr(0, prefix.size()), prefix) << error.what();
    }
  }
  int w = 0;
  int h = 0;
  EXPECT_FALSE(PngSize(dir / "text.png", w, h));
}


}  // namespace
}  // namespace quillon
