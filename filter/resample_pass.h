// The two-pass resampling driver shared by the whole-image and rectangle
// exports.
#ifndef QBO_FILTER_RESAMPLE_PASS_H_
#define QBO_FILTER_RESAMPLE_PASS_H_

#include <cstdint>

namespace qbo {

struct ResampleJob {
  int taps;  // 4 or 8
  uint8_t* dst;
  int64_t dst_stride;  // bytes
  int32_t dst_width, dst_height;
  const uint8_t* src;
  int64_t src_stride;  // bytes
  int32_t src_width, src_height;
  // Last row, counted from `src`, that the column pass of the vertical-first
  // order may read; src_height - 1 unless the caller lets it read below.
  int32_t src_last_row;
  bool vertical_first;
};

enum class ResampleOutcome {
  kNoMemory,     // the temporary could not be had; nothing drawn
  kDone,         // drawn, temporary released
  kDoneNoFree,   // drawn, but releasing the temporary failed
};

// Runs the column and line passes in the job's order. All sizes >= 1.
ResampleOutcome RunResample(const ResampleJob& job);

// The whole-image exports' order test, in wrapping 32-bit arithmetic:
// vertical first when (dh + sh) x dw <= (dh + sh) x sw.
bool VerticalFirst(int32_t dst_width, int32_t dst_height, int32_t src_width,
                   int32_t src_height);

}  // namespace qbo

#endif  // QBO_FILTER_RESAMPLE_PASS_H_
