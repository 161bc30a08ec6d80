#include "blit/zoom_kernels.h"

namespace qbo {

void FillZoomKernels(ZoomKernels* k, KernelLevel level) {
  *k = ZoomKernels{Zoom8Row_C, Zoom32Row_C};
  if (level >= KernelLevel::kSse2) *k = ZoomKernels{Zoom8Row_Any_SSE2, Zoom32Row_Any_SSE2};
  if (level >= KernelLevel::kAvx2) *k = ZoomKernels{Zoom8Row_Any_AVX2, Zoom32Row_Any_AVX2};
}

}  // namespace qbo
