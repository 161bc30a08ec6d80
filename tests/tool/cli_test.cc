// The program as a user runs it: exit status, what it prints, and what it
// leaves on disk.
#include <gtest/gtest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "png_io.h"
#include "tool_test_support.h"
#include "y4m_io.h"

namespace quillon {
namespace {

using test::RunQuillon;
using test::TempDir;

// Writes a YUV4MPEG2 stream of `frames` random frames.
std::string MakeY4m(const TempDir& dir, const std::string& name, const StreamInfo& info, int frames,
                    uint32_t seed) {
  Y4mWriter writer(dir / name, info);
  std::string pixels;
  for (int i = 0; i < frames; ++i) {
    const Frame frame = test::RandomFrame(info.format, info.width, info.height, seed + i);
    writer.Write(frame);
    pixels.append(reinterpret_cast<const char*>(frame.data()), frame.byte_size());
  }
  writer.Finish();
  return pixels;
}

TEST(Cli, Y4mPassesThroughUnchangedAndFramesLimits) {
  TempDir dir;
  StreamInfo info;
  info.width = 16;
  info.height = 8;
  info.order = FieldOrder::kTopFirst;
  info.format = PixelFormat::kYuv422p;
  const std::string pixels = MakeY4m(dir, "in.y4m", info, 5, 9);
  test::RunResult r = RunQuillon({"convert", "in.y4m", "out.y4m"}, dir);
  ASSERT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(r.err, "");  // no bar when standard error is no terminal
  EXPECT_EQ(test::ReadFile(dir / "out.y4m"), test::ReadFile(dir / "in.y4m"));

  r = RunQuillon({"convert", "in.y4m", "three.yuv", "--frames", "3"}, dir);
  ASSERT_EQ(r.status, 0) << r.err;
  const std::size_t frame_bytes = 16 * 8 * 2;
  EXPECT_EQ(test::ReadFile(dir / "three.yuv"), pixels.substr(0, 3 * frame_bytes));

  // Raw back to Y4M: the raw stream's format, size and field order come from
  // the options.
  r = RunQuillon(
      {"convert", "-f", "yuv422p", "-s", "16x8", "--interlace", "tff", "three.yuv", "back.y4m"},
      dir);
  ASSERT_EQ(r.status, 0) << r.err;
  Y4mReader back(dir / "back.y4m");
  EXPECT_EQ(back.info().order, FieldOrder::kTopFirst);
  EXPECT_EQ(back.info().frame_count, 3);
}

// Every failure: exit status 1, one line naming the file and the fault, no
// output file, finished or temporary, left behind, and an older file under
// the output's name kept as it was.
TEST(Cli, ErrorsAreOneLineAndLeaveNoOutput) {
  TempDir dir;
  StreamInfo info;
  info.width = 8;
  info.height = 4;
  MakeY4m(dir, "good.y4m", info, 2, 1);
  const std::string good = test::ReadFile(dir / "good.y4m");
  info.height = 6;
  MakeY4m(dir, "six.y4m", info, 1, 1);
  test::WriteFile(dir / "cut.y4m", good.substr(0, good.size() - 10));
  test::WriteFile(dir / "c444.y4m", "YUV4MPEG2 W8 H4 C444\nFRAME\n" + std::string(96, 'x'));
  test::WriteFile(dir / "notes.y4m", "these are notes\n");
  test::WriteFile(dir / "bad.png", "not a png at all");
  test::WriteFile(dir / "short.yuv", std::string(47, 'x'));
  // A header that claims far more than the file holds is caught before
  // the frame is allocated.
  test::WriteFile(dir / "huge.y4m", "YUV4MPEG2 W32768 H32768 C420\nFRAME\nabc");
  WritePng(dir / "seq1.png", test::RandomFrame(PixelFormat::kRgb24, 4, 4, 1));
  WritePng(dir / "seq2.png", test::RandomFrame(PixelFormat::kRgb24, 4, 2, 2));
  test::WriteFile(dir / "out.y4m", "precious");
  struct Case {
    std::vector<std::string> args;
    std::string err;
  };
  const Case cases[] = {
      {{"convert", "missing.y4m", "out.y4m"},
       "quillon: missing.y4m: cannot open: No such file or directory\n"},
      {{"convert", "notes.y4m", "out.y4m"},
       "quillon: notes.y4m: unknown format: not a YUV4MPEG2 stream\n"},
      {{"convert", "short.yuv", "out.y4m"},
       "quillon: short.yuv: unknown format: raw frames need --in-format FMT and --in-size WxH "
       "(or name the file *.y4m or *.png, or give --in-container)\n"},
      {{"convert", "cut.y4m", "out.y4m"}, "quillon: cut.y4m: truncated frame 2: 38 of 48 bytes\n"},
      {{"convert", "-f", "yuv420p", "-s", "8x4", "short.yuv", "out.yuv"},
       "quillon: short.yuv: truncated frame 1: 47 of 48 bytes of a 8x4 yuv420p frame\n"},
      {{"convert", "huge.y4m", "out.y4m"},
       "quillon: huge.y4m: truncated frame 1: 3 of 1610612736 bytes\n"},
      {{"convert", "-f", "yuv420p", "-s", "32768x32768", "short.yuv", "out.yuv"},
       "quillon: short.yuv: truncated frame 1: 47 of 1610612736 bytes of a 32768x32768 yuv420p "
       "frame\n"},
      {{"convert", "c444.y4m", "out.y4m"},
       "quillon: c444.y4m: unsupported chroma layout C444 (quillon reads 4:2:0 and 4:2:2: "
       "C420jpeg, C420mpeg2, C420paldv, C420, C422)\n"},
      {{"convert", "bad.png", "out.png"}, "quillon: bad.png: unreadable PNG: not a PNG file\n"},
      {{"convert", "seq%d.png", "out%d.png"},
       "quillon: seq2.png: size mismatch: 4x2, the first picture of the sequence is 4x4\n"},
      {{"convert", "good.y4m", "out.y4m", "--out-format", "bgra"},
       "quillon: --out-format: the output file cannot hold bgra\n"},
      {{"convert", "good.y4m", "no-folder/out.y4m"}, "quillon: no-folder/out.y4m: cannot create"},
      {{"convert", "six.y4m", "f.y4m", "--fields", "split"},
       "quillon: f.y4m: unsupported size: splitting yuv420p into fields needs a height that is a "
       "multiple of 4, not 6"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.args));
    const std::vector<std::string> before = dir.List();
    const test::RunResult r = RunQuillon(c.args, dir);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err.substr(0, c.err.size()), c.err);
    EXPECT_EQ(std::count(r.err.begin(), r.err.end(), '\n'), 1) << r.err;
    EXPECT_EQ(dir.List(), before);
  }
  EXPECT_EQ(test::ReadFile(dir / "out.y4m"), "precious");
}

// Only a regular OUT is replaced by a rename: a FIFO is written straight
// through and stays a FIFO, a symbolic link is followed and stays a link.
TEST(Cli, OutputsThatAreNotRegularFilesKeepTheirKind) {
  TempDir dir;
  StreamInfo info;
  info.width = 8;
  info.height = 4;
  MakeY4m(dir, "in.y4m", info, 2, 7);
  const std::string expected = test::ReadFile(dir / "in.y4m");

  // The read end is opened first and without waiting, so the writer never
  // blocks; the little output fits the pipe's buffer.
  ASSERT_EQ(::mkfifo((dir / "fifo.y4m").c_str(), 0600), 0);
  const int fd = ::open((dir / "fifo.y4m").c_str(), O_RDONLY | O_NONBLOCK);
  ASSERT_GE(fd, 0);
  const test::RunResult r = RunQuillon({"convert", "in.y4m", "fifo.y4m"}, dir);
  std::string through_fifo;
  char buffer[4096];
  for (ssize_t n; (n = ::read(fd, buffer, sizeof buffer)) > 0;) through_fifo.append(buffer, n);
  ::close(fd);
  EXPECT_EQ(r.status, 0) << r.err;
  EXPECT_EQ(through_fifo, expected);
  EXPECT_TRUE(test::fs::is_fifo(dir / "fifo.y4m"));

  test::WriteFile(dir / "target.y4m", "old");
  test::fs::create_symlink("target.y4m", dir / "link.y4m");
  ASSERT_EQ(RunQuillon({"convert", "in.y4m", "link.y4m"}, dir).status, 0);
  EXPECT_TRUE(test::fs::is_symlink(dir / "link.y4m"));
  EXPECT_EQ(test::ReadFile(dir / "target.y4m"), expected);

  test::fs::create_symlink("nowhere/x.y4m", dir / "dangling.y4m");
  const test::RunResult dangling = RunQuillon({"convert", "in.y4m", "dangling.y4m"}, dir);
  EXPECT_EQ(dangling.status, 1);
  EXPECT_NE(dangling.err.find("is a symbolic link to a file that cannot be reached"),
            std::string::npos)
      << dangling.err;
  EXPECT_EQ(dir.List(), (std::vector<std::string>{"dangling.y4m", "fifo.y4m", "in.y4m", "link.y4m",
                                                  "target.y4m"}));
}

// The frame rate: -r for raw input, doubled by a field split (the clip
// keeps its duration) and halved again by the compose.
TEST(Cli, FrameRatesFollowTheFrames) {
  TempDir dir;
  test::WriteFile(dir / "in.yuv", std::string(4 * 8 * 4 * 3 / 2, '\x40'));
  ASSERT_EQ(RunQuillon({"convert", "-f", "yuv420p", "-s", "8x8", "-r", "30000/1001", "in.yuv",
                        "a.y4m"},
                       dir)
                .status,
            0);
  EXPECT_EQ(Y4mReader(dir / "a.y4m").info().rate_num, 30000);
  const test::RunResult split = RunQuillon({"convert", "a.y4m", "f.y4m", "--fields", "split"}, dir);
  ASSERT_EQ(split.status, 0) << split.err;
  const StreamInfo fields = Y4mReader(dir / "f.y4m").info();
  EXPECT_EQ(fields.rate_num, 60000);
  EXPECT_EQ(fields.rate_den, 1001);
  ASSERT_EQ(RunQuillon({"convert", "f.y4m", "b.y4m", "--fields", "compose"}, dir).status, 0);
  EXPECT_EQ(Y4mReader(dir / "b.y4m").info().rate_num, 30000);
  const test::RunResult bad = RunQuillon({"convert", "-f", "yuv420p", "-s", "8x8", "-r", "25/0",
                                          "in.yuv", "c.y4m"},
                                         dir);
  EXPECT_EQ(bad.status, 2);
}


// Y4M through standard input and output, as a pipe between programs uses
// it, when the container is named; "-" alone stays raw.
TEST(Cli, Y4mThroughPipesWhenNamed) {
  TempDir dir;
  StreamInfo info;
  info.width = 8;
  info.height = 4;
  MakeY4m(dir, "in.y4m", info, 3, 4);
  const std::string command = "cd '" + dir.path() + "' && cat in.y4m | '" + QUILLON_BINARY +
                              "' convert --in-container y4m --out-container y4m -q - - > out.y4m";
  ASSERT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(test::ReadFile(dir / "out.y4m"), test::ReadFile(dir / "in.y4m"));
  const test::RunResult raw = RunQuillon({"convert", "-", "out.yuv"}, dir);
  EXPECT_EQ(raw.status, 1);
  EXPECT_NE(raw.err.find("--in-container"), std::string::npos) << raw.err;
}

}  // namespace
}  // namespace quillon
