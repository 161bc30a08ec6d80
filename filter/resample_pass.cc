#include "filter/resample_pass.h"

#include <algorithm>

#include "filter/resample_row.h"
#include "frame/kernel_table.h"
#include "frame/platform.h"

namespace qbo {
namespace {

int32_t WrapMul(int32_t a, int32_t b) {
  return static_cast<int32_t>(static_cast<uint32_t>(a) * static_cast<uint32_t>(b));
}

struct Position {
  int64_t n;
  int phase;
};

Position At(const ResampleKernel& k, int64_t index, int64_t step) {
  const int64_t pos = index * step;
  return {pos >> 16, static_cast<int>((pos & 0xFFFF) >> k.phase_shift)};
}

// Vertical first: each output row is the column pass of the source into one
// line of the source width, at once carried through the line pass into the
// destination, so the intermediate stays one line long and in cache.
void VerticalThenHorizontal(const ResampleJob& job, uint8_t* line, ResampleSite* sites,
                            ResampleRowVFn column, ResampleRowHFn across) {
  ResampleKernel kv, kh;
  BuildResampleKernel(&kv, job.taps, job.dst_height, job.src_height);
  BuildResampleKernel(&kh, job.taps, job.dst_width, job.src_width);
  const ResampleLineParams line_params{&kh, ResampleStep(job.src_width, job.dst_width),
                                       job.src_width, sites};
  BuildResampleSites(&line_params, job.dst_width, sites);
  const int64_t step = ResampleStep(job.src_height, job.dst_height);
  ResampleColumnTaps taps{};
  for (int32_t i = 0; i < job.dst_height; ++i) {
    const Position at = At(kv, i, step);
    for (int t = 0; t < job.taps; ++t) {
      const int64_t row = std::clamp<int64_t>(at.n - kv.centre + t, 0, job.src_last_row);
      taps.rows[t] = job.src + row * job.src_stride;
      taps.weights[t] = kv.weight(at.phase, t);
    }
    column(line, &taps, job.src_width * 4);
    across(job.dst + i * job.dst_stride, line, 0, job.dst_width, &line_params);
  }
}

// Horizontal first: source rows go through the line pass on demand into a
// ring of `taps` lines (row r in slot r % taps); a window of taps
// consecutive rows never puts two rows in one slot. Rows no output reads are
// never filtered.
void HorizontalThenVertical(const ResampleJob& job, uint8_t* ring, ResampleSite* sites,
                            ResampleRowVFn column, ResampleRowHFn across) {
  ResampleKernel kv, kh;
  BuildResampleKernel(&kh, job.taps, job.dst_width, job.src_width);
  BuildResampleKernel(&kv, job.taps, job.dst_height, job.src_height);
  const ResampleLineParams line_params{&kh, ResampleStep(job.src_width, job.dst_width),
                                       job.src_width, sites};
  BuildResampleSites(&line_params, job.dst_width, sites);
  const int64_t step = ResampleStep(job.src_height, job.dst_height);
  const int64_t line_bytes = static_cast<int64_t>(job.dst_width) * 4;
  int64_t held[kMaxResampleTaps];
  std::fill(held, held + kMaxResampleTaps, -1);
  ResampleColumnTaps taps{};
  for (int32_t i = 0; i < job.dst_height; ++i) {
    const Position at = At(kv, i, step);
    for (int t = 0; t < job.taps; ++t) {
      const int64_t row = std::clamp<int64_t>(at.n - kv.centre + t, 0, job.src_height - 1);
      const int slot = static_cast<int>(row % job.taps);
      uint8_t* line = ring + slot * line_bytes;
      if (held[slot] != row) {
        across(line, job.src + row * job.src_stride, 0, job.dst_width, &line_params);
        held[slot] = row;
      }
      taps.rows[t] = line;
      taps.weights[t] = kv.weight(at.phase, t);
    }
    column(job.dst + i * job.dst_stride, &taps, static_cast<int32_t>(line_bytes));
  }
}

}  // namespace

bool VerticalFirst(int32_t dst_width, int32_t dst_height, int32_t src_width,
                   int32_t src_height) {
  const int32_t rows = static_cast<int32_t>(static_cast<uint32_t>(dst_height) +
                                            static_cast<uint32_t>(src_height));
  return WrapMul(rows, dst_width) <= WrapMul(rows, src_width);
}

ResampleOutcome RunResample(const ResampleJob& job) {
  const FilterKernels& k = Kernels().filter;
  const ResampleRowVFn column = job.taps == 4 ? k.resample_v4 : k.resample_v8;
  const ResampleRowHFn across = job.taps == 4 ? k.resample_h4 : k.resample_h8;
  // The intermediate line(s), then the sites of the line pass.
  const std::size_t line_bytes =
      job.vertical_first ? static_cast<std::size_t>(job.src_width) * 4
                         : static_cast<std::size_t>(job.dst_width) * 4 * job.taps;
  const std::size_t sites_offset = (line_bytes + 63) & ~std::size_t{63};
  const std::size_t bytes = sites_offset + sizeof(ResampleSite) * job.dst_width;
  Platform& platform = CurrentPlatform();
  auto* temp = static_cast<uint8_t*>(platform.AllocPages(bytes));
  if (!temp) return ResampleOutcome::kNoMemory;
  auto* sites = reinterpret_cast<ResampleSite*>(temp + sites_offset);
  if (job.vertical_first) {
    VerticalThenHorizontal(job, temp, sites, column, across);
  } else {
    HorizontalThenVertical(job, temp, sites, column, across);
  }
  return platform.FreePages(temp) ? ResampleOutcome::kDone : ResampleOutcome::kDoneNoFree;
}

}  // namespace qbo
