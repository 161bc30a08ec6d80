// Row kernels of the 8-bit and 32-bit buffer zooms.
#ifndef QBO_BLIT_ZOOM_KERNELS_H_
#define QBO_BLIT_ZOOM_KERNELS_H_

#include "blit/zoom_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct ZoomKernels {
  ZoomRowFn zoom8 = nullptr;
  ZoomRowFn zoom32 = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillZoomKernels(ZoomKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_BLIT_ZOOM_KERNELS_H_
