// Row kernels of the resampling passes, vertical blur, YUYV split and alpha mixing.
#ifndef QBO_FILTER_FILTER_KERNELS_H_
#define QBO_FILTER_FILTER_KERNELS_H_

#include "frame/kernel_level.h"

namespace qbo {

struct FilterKernels {
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillFilterKernels(FilterKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_FILTER_FILTER_KERNELS_H_
