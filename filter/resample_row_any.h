// Splits a horizontal resampling row into the reference row for outputs
// whose taps leave the line or that do not fill a block, and a SIMD block
// function for the rest. Holds no intrinsics; each ISA file instantiates it
// with its own block function.
#ifndef QBO_FILTER_RESAMPLE_ROW_ANY_H_
#define QBO_FILTER_RESAMPLE_ROW_ANY_H_

#include "filter/resample_row.h"

namespace qbo {

// Source pixel of output j's first tap and the lanes of its phase. Only
// valid for interior outputs (first tap at or after sample 0).
struct TapSite {
  const uint8_t* first;
  const int16_t* lanes;
};

inline TapSite SiteOf(const uint8_t* src, int64_t j, const ResampleLineParams* p) {
  const ResampleKernel& k = *p->kernel;
  const int64_t pos = j * p->step;
  const int phase = static_cast<int>((pos & 0xFFFF) >> k.phase_shift);
  return {src + ((pos >> 16) - k.centre) * 4, k.phase_lanes(phase)};
}

// block(dst_of_j, src, j, p) writes kBlock outputs starting at output j.
template <int kBlock, typename BlockFn>
inline void ResampleRowAny(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                           const ResampleLineParams* p, ResampleRowHFn reference,
                           BlockFn block) {
  int32_t lo, hi;
  ResampleInteriorRange(p, x0, width, &lo, &hi);
  hi = lo + (hi - lo) / kBlock * kBlock;
  reference(dst, src, x0, lo - x0, p);
  for (int32_t j = lo; j < hi; j += kBlock) block(dst + (j - x0) * 4, src, j, p);
  reference(dst + (hi - x0) * 4, src, hi, x0 + width - hi, p);
}

}  // namespace qbo

#endif  // QBO_FILTER_RESAMPLE_ROW_ANY_H_
