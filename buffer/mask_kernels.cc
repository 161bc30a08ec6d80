#include "buffer/mask_kernels.h"

namespace qbo {

void FillMaskKernels(MaskKernels* k, KernelLevel level) {
  *k = MaskKernels{FillMaskColorRow_C, MixMaskRow_C, SubMaskRow_C};
  if (level >= KernelLevel::kSse2) {
    *k = MaskKernels{FillMaskColorRow_Any_SSE2, MixMaskRow_Any_SSE2, SubMaskRow_Any_SSE2};
  }
  if (level >= KernelLevel::kAvx2) {
    *k = MaskKernels{FillMaskColorRow_Any_AVX2, MixMaskRow_Any_AVX2, SubMaskRow_Any_AVX2};
  }
}

}  // namespace qbo
