// Row kernels of the field/frame interleaving and 4:2:0 <-> 4:2:2 chroma.
#ifndef QBO_YUVLAYOUT_YUVLAYOUT_KERNELS_H_
#define QBO_YUVLAYOUT_YUVLAYOUT_KERNELS_H_

#include "frame/kernel_level.h"

namespace qbo {

struct YuvLayoutKernels {
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillYuvLayoutKernels(YuvLayoutKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_YUVLAYOUT_YUVLAYOUT_KERNELS_H_
