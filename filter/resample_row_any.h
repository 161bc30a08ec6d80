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
  const ResampleSite site = p->sites[j];
  return {src + static_cast<int64_t>(site.first) * 4,
          reinterpret_cast<const int16_t*>(p->kernel->lanes) + site.lanes};
}

// block(dst_of_j, src, j, p) writes kBlock outputs starting at output j.
// The outputs before the interior go through `head` (the reference row);
// those after the last whole block through `tail`, a narrower row of the
// same contract.
template <int kBlock, typename BlockFn>
inline void ResampleRowAny(uint8_t* dst, const uint8_t* src, int32_t x0, int32_t width,
                           const ResampleLineParams* p, ResampleRowHFn head, ResampleRowHFn tail,
                           BlockFn block) {
  int32_t lo, hi;
  ResampleInteriorRange(p, x0, width, &lo, &hi);
  hi = lo + (hi - lo) / kBlock * kBlock;
  head(dst, src, x0, lo - x0, p);
  for (int32_t j = lo; j < hi; j += kBlock) block(dst + (j - x0) * 4, src, j, p);
  tail(dst + (hi - x0) * 4, src, hi, x0 + width - hi, p);
}

}  // namespace qbo

#endif  // QBO_FILTER_RESAMPLE_ROW_ANY_H_
