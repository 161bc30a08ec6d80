#include "demo.h"

#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>

#include "QuillonBufferOperaU.h"
#include "args.h"
#include "errors.h"
#include "pixel_ops.h"
#include "png_io.h"
#include "test_picture.h"

namespace quillon {

namespace {

const std::vector<OptionSpec>& DemoOptionsTable() {
  static const std::vector<OptionSpec> table = {
      {"out", 'o', "DIR", "write the stage pictures into DIR (default ./quillon-demo)"},
      {"size", 0, "WxH", "size of the test picture (default 1920x1080)"},
      {"frames", 'n', "N", "frames of the moving test sequence (default 4)"},
      {"help", 'h', nullptr, "display this help and exit"},
  };
  return table;
}

// Runs `run` until 150 ms have passed (at least twice, after one warm-up
// run) and returns the mean time of one run.
double MillisecondsPerRun(const std::function<void()>& run) {
  using Clock = std::chrono::steady_clock;
  run();
  int runs = 0;
  const auto start = Clock::now();
  Clock::duration elapsed{};
  do {
    run();
    ++runs;
    elapsed = Clock::now() - start;
  } while (runs < 2 || elapsed < std::chrono::milliseconds(150));
  return std::chrono::duration<double, std::milli>(elapsed).count() / runs;
}

void MakeDirectory(const std::string& dir) {
  std::string partial;
  for (std::size_t i = 0; i <= dir.size(); ++i) {
    if (i == dir.size() || (dir[i] == '/' && i > 0)) {
      partial = dir.substr(0, i);
      if (::mkdir(partial.c_str(), 0777) != 0 && errno != EEXIST) {
        Fail(partial, std::string("cannot create the folder: ") + std::strerror(errno));
      }
    }
  }
  struct stat st;
  if (::stat(dir.c_str(), &st) != 0 || !S_ISDIR(st.st_mode)) Fail(dir, "is not a folder");
}

class StageTable {
 public:
  explicit StageTable(std::string dir) : dir_(std::move(dir)) {
    std::printf("%-48s %-11s %9s %9s  %s\n", "stage", "size", "ms/frame", "MPix/s", "file");
  }

  // Prints one timed row; `files` are written by the caller beforehand.
  // Throughput counts the pixels written: the whole picture unless the
  // stage touches only `work_pixels` of it.
  void Row(const std::string& name, int width, int height, double ms, const std::string& files,
           double work_pixels = 0) {
    const double pixels = work_pixels > 0 ? work_pixels : width * static_cast<double>(height);
    const double mpix = pixels / (ms * 1000.0);
    std::printf("%-48s %-11s %9.3f %9.1f  %s\n", name.c_str(), SizeText(width, height).c_str(), ms,
                mpix, files.empty() ? "-" : files.c_str());
    std::fflush(stdout);
  }

  void Untimed(const std::string& name, int width, int height, const std::string& files) {
    std::printf("%-48s %-11s %9s %9s  %s\n", name.c_str(), SizeText(width, height).c_str(), "-",
                "-", files.c_str());
  }

  void Missing(const std::string& name, const std::string& export_name) {
    std::printf("%-48s (%s is not in this build of the library)\n", name.c_str(),
                export_name.c_str());
    ++missing_;
  }

  // Writes `frame` as DIR/name and returns the name for the table.
  std::string Save(const Frame& frame, const std::string& name) {
    WritePng(dir_ + "/" + name, frame);
    return name;
  }

  int missing() const { return missing_; }

 private:
  static std::string SizeText(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
  }
  std::string dir_;
  int missing_ = 0;
};

// Even sizes keep every stage's output valid for the YUV layouts too.
int EvenScaled(int value, int num, int den) { return std::max(2, value * num / den / 2 * 2); }

}  // namespace

int RunDemo(const std::vector<std::string>& args) {
  const ParsedArgs parsed = ParseArgs(args, DemoOptionsTable(), "demo");
  if (parsed.Has("help")) {
    std::fputs(DemoHelp().c_str(), stdout);
    return 0;
  }
  if (!parsed.positional.empty()) {
    throw UsageError("demo: unexpected argument '" + parsed.positional[0] + "'");
  }
  const std::string dir = parsed.Value("out").value_or("quillon-demo");
  int width = 1920;
  int height = 1080;
  if (auto v = parsed.Value("size")) ParseSize(*v, "--size", width, height);
  if (width < 16 || height < 16 || width % 2 != 0 || height % 4 != 0) {
    throw UsageError(
        "--size: the test picture needs an even width and a height that is a "
        "multiple of 4, both at least 16");
  }
  const int frames = static_cast<int>(
      parsed.Value("frames") ? ParseInteger(*parsed.Value("frames"), "--frames", 1, 100) : 4);
  MakeDirectory(dir);

  std::printf("quillon demo: %dx%d interlaced 4:2:0 test picture, %d frames, into %s/\n\n", width,
              height, frames, dir.c_str());
  StageTable table(dir);
  std::vector<Frame> yuv(frames);
  for (int i = 0; i < frames; ++i) DrawTestPicture420(i, width, height, yuv[i]);
  Frame reference;
  DrawTestPictureBgra(0, width, height, reference);
  table.Untimed("test picture, drawn by quillon", width, height,
                table.Save(reference, "00-test-picture.png"));

  // The picture every later stage starts from: the library's own 4:2:0
  // conversion (direct, else by way of YUYV) when it has one, quillon's
  // drawing otherwise.
  Frame display = reference;
  const std::string direct = "QN_CS_YUV420_BGRA_Frame";
  if (LibraryHas(direct)) {
    const double ms = MillisecondsPerRun([&] { ToBgra(yuv[0], display, false); });
    std::string files = table.Save(display, "01-yuv420-to-bgra.png");
    Frame motion;
    for (int i = 1; i < frames; ++i) {
      ToBgra(yuv[i], motion, false);
      char name[48];
      std::snprintf(name, sizeof name, "01-yuv420-to-bgra-frame%d.png", i + 1);
      files.append(",").append(table.Save(motion, name));
    }
    table.Row("4:2:0 -> BGRA (" + direct + ")", width, height, ms, files);
  } else {
    table.Missing("4:2:0 -> BGRA", direct);
  }

  Frame yuyv;
  if (LibraryHas("QN_CS_420_422_YUVFrame")) {
    const double ms = MillisecondsPerRun([&] { Yuv420ToYuyv(yuv[0], yuyv); });
    table.Row("4:2:0 -> YUYV (QN_CS_420_422_YUVFrame)", width, height, ms, "");
    if (LibraryHas("QN_CS_YUYV2BGRA_Frame")) {
      Frame via;
      const double ms2 = MillisecondsPerRun([&] { YuyvToBgra(yuyv, via, false); });
      table.Row("YUYV -> BGRA (QN_CS_YUYV2BGRA_Frame)", width, height, ms2,
                table.Save(via, "03-yuyv-to-bgra.png"));
      if (!LibraryHas(direct)) display = via;
    } else {
      table.Missing("YUYV -> BGRA", "QN_CS_YUYV2BGRA_Frame");
    }
  } else {
    table.Missing("4:2:0 -> YUYV", "QN_CS_420_422_YUVFrame");
  }

  // The overlay goes on near the bottom right, over the bars, the ramps and
  // the field lines, so its soft alpha shows against all of them.
  Frame composite = display;
  if (LibraryHas("QN_BitBlt")) {
    Frame rgba;
    Frame panel;
    DrawOverlayRgba(EvenScaled(width, 1, 3), EvenScaled(height, 1, 4), rgba);
    Swizzle(rgba, PixelFormat::kBgra, panel);
    const int x = width - panel.width() - width / 16;
    const int y = height * 11 / 20;
    Frame scratch = display;
    const double ms = MillisecondsPerRun([&] { Overlay(scratch, panel, x, y); });
    Overlay(composite, panel, x, y);
    table.Row("overlay " + std::to_string(panel.width()) + "x" + std::to_string(panel.height()) +
                  ", alpha over (QN_BitBlt mode 0)",
              width, height, ms, table.Save(composite, "04-overlay.png"),
              panel.width() * static_cast<double>(panel.height()));
  } else {
    table.Missing("overlay, alpha over", "QN_BitBlt");
  }

  struct ScaleStage {
    ScaleFilter filter;
    int num, den;
    const char* label;
  };
  const ScaleStage scales[] = {
      {ScaleFilter::kBilinear, 2, 3, "bilinear"},   {ScaleFilter::kBilinear, 5, 4, "bilinear"},
      {ScaleFilter::kMean, 2, 3, "area mean"},      {ScaleFilter::kMean, 5, 4, "area mean"},
      {ScaleFilter::kEightTap, 2, 3, "8-tap sinc"},
  };
  int number = 5;
  for (const ScaleStage& s : scales) {
    const int w = EvenScaled(width, s.num, s.den);
    const int h = EvenScaled(height, s.num, s.den);
    const std::string name = std::string(s.label) + " to " + std::to_string(w) + "x" +
                             std::to_string(h) + " (" + ScaleExport(s.filter) + ")";
    if (!LibraryHas(ScaleExport(s.filter))) {
      table.Missing(name, ScaleExport(s.filter));
      continue;
    }
    Frame scaled(PixelFormat::kBgra, w, h);
    const double ms = MillisecondsPerRun([&] { Scale(composite, scaled, s.filter); });
    char file[64];
    std::snprintf(file, sizeof file, "%02d-%s-%dx%d.png", number++, ScaleFilterName(s.filter), w,
                  h);
    table.Row(name, w, h, ms, table.Save(scaled, file));
  }

  bool fields_ok = true;
  if (LibraryHas("QN_CS_SplitFrame") && LibraryHas("QN_CS_ComposeFields")) {
    Frame top;
    Frame bottom;
    const double ms = MillisecondsPerRun([&] { SplitFields(display, top, bottom); });
    table.Row(
        "split into fields (QN_CS_SplitFrame)", width, height / 2, ms,
        table.Save(top, "10-field-top.png") + "," + table.Save(bottom, "10-field-bottom.png"));
    Frame composed;
    const double ms2 = MillisecondsPerRun([&] { ComposeFields(top, bottom, composed); });
    table.Row("fields back to a frame (QN_CS_ComposeFields)", width, height, ms2,
              table.Save(composed, "11-composed.png"));
    fields_ok = std::memcmp(composed.data(), display.data(), display.byte_size()) == 0;
  } else {
    table.Missing("split into fields and compose back", "QN_CS_SplitFrame/QN_CS_ComposeFields");
  }

  // The frame primitives, on the display picture.
  const int32_t pitch = width * 4;
  const int32_t bytes = pitch * height;
  Frame work = display;
  table.Row("copy frame (QN_Memcpy)", width, height,
            MillisecondsPerRun([&] { QN_Memcpy(work.data(), display.data(), bytes); }), "");
  table.Row("clear to black (QN_Clear)", width, height, MillisecondsPerRun([&] {
              QN_Clear(work.data(), pitch, 0, 0, width, height - 1, 0xFF000000u);
            }),
            "");
  table.Row("fill (QN_MemsetDWORD)", width, height,
            MillisecondsPerRun([&] { QN_MemsetDWORD(work.data(), 0xFF203040u, width * height); }),
            "");
  table.Row("set alpha (QN_AlphaMemSet)", width, height,
            MillisecondsPerRun([&] { QN_AlphaMemSet(work.data(), 128, width, height); }), "");
  const double flip_ms = MillisecondsPerRun([&] { QN_OverTurnSelf(work.data(), pitch, height); });
  Frame flipped = display;
  FlipVertically(flipped);
  table.Row("flip in place (QN_OverTurnSelf)", width, height, flip_ms,
            table.Save(flipped, "16-flipped.png"));
  const bool flip_ok =
      std::memcmp(flipped.data(), display.data() + static_cast<std::size_t>(height - 1) * pitch,
                  static_cast<std::size_t>(pitch)) == 0;

  std::printf("\nflip check: %s\n", flip_ok ? "ok" : "MISMATCH");
  if (LibraryHas("QN_CS_ComposeFields")) {
    std::printf("fields split and composed back: %s\n", fields_ok ? "identical" : "MISMATCH");
  }
  if (table.missing() > 0) {
    std::printf("%d stage(s) skipped: this build of the library lacks their export.\n",
                table.missing());
  }
  return flip_ok && fields_ok ? 0 : 1;
}

std::string DemoHelp() {
  return "Usage: quillon demo [OPTION]...\n"
         "Build an interlaced 4:2:0 test picture (colour bars, ramps, lines that differ\n"
         "between the fields, a disc moving across the frames), run the library's frame\n"
         "chain on it, write each stage as a PNG and print the time per frame.\n"
         "\n"
         "The chain: 4:2:0 to BGRA directly and by way of YUYV; an RGBA overlay with soft\n"
         "alpha laid over (alpha over); stretched bilinearly and by area mean into a smaller\n"
         "and a larger window; 8-tap sinc resampling; split into fields and composed back;\n"
         "then the frame primitives (copy, clear, fill, alpha, flip).\n"
         "\n"
         "Options:\n" +
         OptionHelp(DemoOptionsTable());
}

}  // namespace quillon
