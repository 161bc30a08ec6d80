#include "progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace quillon {

namespace {

int TerminalColumns() {
  struct winsize size;
  if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 20) return size.ws_col;
  return 80;
}

std::string Clock(double seconds) {
  const long total = static_cast<long>(seconds + 0.5);
  char text[32];
  if (total >= 3600) {
    std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", total / 3600, total / 60 % 60, total % 60);
  } else {
    std::snprintf(text, sizeof text, "%ld:%02ld", total / 60, total % 60);
  }
  return text;
}

}  // namespace

std::string ProgressLine(int64_t done, int64_t total, double seconds, int columns) {
  const double fps = seconds > 0 ? static_cast<double>(done) / seconds : 0.0;
  char counts[96];
  if (total > 0) {
    const std::string left =
        fps > 0 ? Clock(static_cast<double>(std::max<int64_t>(total - done, 0)) / fps) : "?";
    std::snprintf(counts, sizeof counts, " %lld/%lld frames  %.1f fps  %s left",
                  static_cast<long long>(done), static_cast<long long>(total), fps, left.c_str());
  } else {
    std::snprintf(counts, sizeof counts, " %lld frames  %.1f fps  %s", static_cast<long long>(done),
                  fps, Clock(seconds).c_str());
  }
  std::string line;
  const int bar = columns - 1 - static_cast<int>(std::string(counts).size()) - 2;
  if (total > 0 && bar >= 10) {
    const int filled = static_cast<int>(std::min<int64_t>(done, total) * bar / total);
    line.reserve(static_cast<std::size_t>(bar) + 2);
    line.push_back('[');
    line.append(static_cast<std::size_t>(filled), '#');
    line.append(static_cast<std::size_t>(bar - filled), '.');
    line.push_back(']');
  }
  line.append(counts);
  return line;
}

bool StderrIsTerminal() { return ::isatty(STDERR_FILENO) == 1; }

Progress::Progress(int64_t total, bool enabled)
    : total_(total), enabled_(enabled), start_(Clock::now()) {}

Progress::~Progress() {
  if (drawn_) std::fputc('\n', stderr);
}

void Progress::Update(int64_t done) {
  if (!enabled_) return;
  const Clock::time_point now = Clock::now();
  // A few redraws a second are enough to read, and cost nothing.
  if (drawn_ && now - last_draw_ < std::chrono::milliseconds(125)) return;
  last_draw_ = now;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  std::fprintf(stderr, "\r%s\033[K",
               ProgressLine(done, total_, seconds, TerminalColumns()).c_str());
  drawn_ = true;
}

void Progress::Finish(int64_t done) {
  if (!enabled_) return;
  drawn_ = false;
  last_draw_ = {};
  Update(done);
  std::fputc('\n', stderr);
  drawn_ = false;
}

}  // namespace quillon
