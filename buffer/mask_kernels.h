// Row kernels of the mask colouring, mixing and subtraction.
#ifndef QBO_BUFFER_MASK_KERNELS_H_
#define QBO_BUFFER_MASK_KERNELS_H_

#include "frame/kernel_level.h"

namespace qbo {

struct MaskKernels {
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillMaskKernels(MaskKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_BUFFER_MASK_KERNELS_H_
