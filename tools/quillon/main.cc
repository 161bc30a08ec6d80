// quillon: runs the library's operations from the shell.
//
//   quillon demo     runs the frame chain on a built-in 1920x1080 picture
//                    and prints time per frame and throughput per stage.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "QuillonBufferOperaU.h"

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kPitch = kWidth * 4;

// A BGRA test picture: eight colour bars over a horizontal grey ramp.
std::vector<uint32_t> MakeTestPicture() {
  static const uint32_t kBars[8] = {0xFFFFFFFF, 0xFF00FFFF, 0xFFFFFF00, 0xFF00FF00,
                                    0xFFFF00FF, 0xFF0000FF, 0xFFFF0000, 0xFF000000};
  std::vector<uint32_t> picture(static_cast<std::size_t>(kWidth) * kHeight);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      uint32_t p = kBars[x * 8 / kWidth];
      if (y >= kHeight * 3 / 4) {
        const uint32_t g = static_cast<uint32_t>(x * 255 / (kWidth - 1));
        p = 0xFF000000u | g << 16 | g << 8 | g;
      }
      picture[static_cast<std::size_t>(y) * kWidth + x] = p;
    }
  }
  return picture;
}

struct Stage {
  const char* name;
  std::function<void()> run;
};

double MillisecondsPerRun(const std::function<void()>& run) {
  using Clock = std::chrono::steady_clock;
  run();  // warm up
  int runs = 0;
  const auto start = Clock::now();
  Clock::duration elapsed{};
  do {
    run();
    ++runs;
    elapsed = Clock::now() - start;
  } while (elapsed < std::chrono::milliseconds(200));
  return std::chrono::duration<double, std::milli>(elapsed).count() / runs;
}

int Demo() {
  std::vector<uint32_t> picture = MakeTestPicture();
  std::vector<uint32_t> frame(picture.size());
  const int32_t bytes = kPitch * kHeight;

  const Stage stages[] = {
      {"copy frame (QN_Memcpy)", [&] { QN_Memcpy(frame.data(), picture.data(), bytes); }},
      {"clear to black (QN_Clear)",
       [&] { QN_Clear(frame.data(), kPitch, 0, 0, kWidth, kHeight - 1, 0xFF000000u); }},
      {"fill (QN_MemsetDWORD)",
       [&] { QN_MemsetDWORD(frame.data(), 0xFF203040u, kWidth * kHeight); }},
      {"set alpha (QN_AlphaMemSet)", [&] { QN_AlphaMemSet(frame.data(), 128, kWidth, kHeight); }},
      {"flip in place (QN_OverTurnSelf)",
       [&] { QN_OverTurnSelf(frame.data(), kPitch, kHeight); }},
  };

  std::printf("%-34s %-11s %10s %10s\n", "stage", "size", "ms/frame", "MPix/s");
  for (const Stage& stage : stages) {
    const double ms = MillisecondsPerRun(stage.run);
    std::printf("%-34s %4dx%-6d %10.3f %10.1f\n", stage.name, kWidth, kHeight, ms,
                kWidth * static_cast<double>(kHeight) / (ms * 1000.0));
  }

  // The flip run an even number of times above leaves the picture upright;
  // check one last copy and flip pair for the record.
  QN_Memcpy(frame.data(), picture.data(), bytes);
  QN_OverTurnSelf(frame.data(), kPitch, kHeight);
  const bool flipped = std::memcmp(frame.data(), picture.data() + (kHeight - 1) * kWidth,
                                   static_cast<std::size_t>(kPitch)) == 0;
  std::printf("\nflip check: %s\n", flipped ? "ok" : "MISMATCH");
  return flipped ? 0 : 1;
}

void Usage(FILE* out) {
  std::fprintf(out,
               "usage: quillon COMMAND\n\n"
               "commands:\n"
               "  demo    run the frame chain on a built-in picture and time each stage\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc >= 2 && std::strcmp(argv[1], "demo") == 0) return Demo();
  if (argc >= 2 && (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0)) {
    Usage(stdout);
    return 0;
  }
  Usage(stderr);
  return 2;
}
