// quillon demo end to end: every file its table names is a PNG of the size
// the table states, and the run reports its checks as passed.
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <sstream>

#include "png_io.h"
#include "tool_test_support.h"

namespace quillon {
namespace {

TEST(Demo, EveryStageWritesAPngOfItsStatedSize) {
  test::TempDir dir;
  const test::RunResult r =
      test::RunQuillon({"demo", "--out", "stages", "--size", "320x240", "--frames", "3"}, dir);
  ASSERT_EQ(r.status, 0) << r.out << r.err;
  EXPECT_EQ(r.err, "");
  // A row: stage name, WxH, ms/frame, MPix/s, then file names or "-".
  const std::regex row(R"(^.*\s(\d+)x(\d+)\s+(\S+)\s+(\S+)\s+(\S+)$)");
  std::istringstream lines(r.out);
  std::string line;
  std::vector<std::string> named;
  int rows = 0;
  while (std::getline(lines, line)) {
    std::smatch m;
    if (!std::regex_match(line, m, row)) continue;
    ++rows;
    SCOPED_TRACE(line);
    const int width = std::stoi(m[1]);
    const int height = std::stoi(m[2]);
    std::istringstream names(m[5].str());
    std::string name;
    while (std::getline(names, name, ',')) {
      if (name == "-") continue;
      int w = 0;
      int h = 0;
      ASSERT_TRUE(PngSize(dir / ("stages/" + name), w, h)) << name;
      EXPECT_EQ(w, width);
      EXPECT_EQ(h, height);
      Frame picture;
      ReadPng(dir / ("stages/" + name), picture);  // decodes whole
      named.push_back(name);
    }
  }
  EXPECT_GE(rows, 6);           // test picture and the five frame primitives at least
  EXPECT_GE(named.size(), 2u);  // test picture and flip at least
  // The folder holds exactly the files the table names: none unlisted, none
  // left under a temporary name.
  std::vector<std::string> on_disk;
  for (const std::string& name : test::ListDir(dir / "stages")) on_disk.push_back(name);
  std::sort(named.begin(), named.end());
  EXPECT_EQ(on_disk, named);
  EXPECT_NE(r.out.find("flip check: ok"), std::string::npos);
  EXPECT_EQ(r.out.find("MISMATCH"), std::string::npos);
}

}  // namespace
}  // namespace quillon
