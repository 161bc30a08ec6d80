// Row kernels of the resampling passes, vertical blur, YUYV split and alpha mixing.
#ifndef QBO_FILTER_FILTER_KERNELS_H_
#define QBO_FILTER_FILTER_KERNELS_H_

#include "filter/blur_split_row.h"
#include "filter/resample_row.h"
#include "filter/yuyv_mix_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct FilterKernels {
  ResampleRowHFn resample_h4 = nullptr;
  ResampleRowHFn resample_h8 = nullptr;
  ResampleRowVFn resample_v4 = nullptr;
  ResampleRowVFn resample_v8 = nullptr;
  BlurRow3Fn blur_row3 = nullptr;
  YuyvSplitRowFn yuyv_split = nullptr;
  YuyvMixRowFn yuyv_mix_opaque = nullptr;
  YuyvMixRowFn yuyv_mix_alpha = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillFilterKernels(FilterKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_FILTER_FILTER_KERNELS_H_
