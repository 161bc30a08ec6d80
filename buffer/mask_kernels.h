// Row kernels of the mask colouring, mixing and subtraction.
#ifndef QBO_BUFFER_MASK_KERNELS_H_
#define QBO_BUFFER_MASK_KERNELS_H_

#include "buffer/mask_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct MaskKernels {
  FillMaskColorRowFn fill_mask_color = nullptr;
  MaskPairRowFn mix_mask = nullptr;
  MaskPairRowFn sub_mask = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillMaskKernels(MaskKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_BUFFER_MASK_KERNELS_H_
