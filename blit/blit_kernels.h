// Row kernels of the block transfers, bilinear and mean stretches, YUYV mean stretch.
#ifndef QBO_BLIT_BLIT_KERNELS_H_
#define QBO_BLIT_BLIT_KERNELS_H_

#include "frame/kernel_level.h"

namespace qbo {

struct BlitKernels {
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillBlitKernels(BlitKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_BLIT_BLIT_KERNELS_H_
