// A one-line progress bar on standard error, drawn only when that is a
// terminal: frames done, frames per second and the time left.
#ifndef QUILLON_TOOL_PROGRESS_H_
#define QUILLON_TOOL_PROGRESS_H_

#include <chrono>
#include <cstdint>
#include <string>

namespace quillon {

// The text of the bar after `done` of `total` frames (total < 0: unknown)
// in `seconds`, fitted to `columns`.
std::string ProgressLine(int64_t done, int64_t total, double seconds, int columns);

class Progress {
 public:
  Progress(int64_t total, bool enabled);
  ~Progress();
  void Update(int64_t done);
  // Draws the final state and ends the line.
  void Finish(int64_t done);

 private:
  using Clock = std::chrono::steady_clock;
  int64_t total_;
  bool enabled_;
  bool drawn_ = false;
  Clock::time_point start_;
  Clock::time_point last_draw_;
};

// True when standard error is a terminal.
bool StderrIsTerminal();

}  // namespace quillon

#endif  // QUILLON_TOOL_PROGRESS_H_
