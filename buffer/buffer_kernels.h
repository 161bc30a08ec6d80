// Row kernels of the fills, copies and alpha fills.
#ifndef QBO_BUFFER_BUFFER_KERNELS_H_
#define QBO_BUFFER_BUFFER_KERNELS_H_

#include "buffer/fill_copy_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct BufferKernels {
  CopyRowBytesFn copy_row_bytes = nullptr;
  StreamCopyFn stream_copy = nullptr;
  Fill32Fn fill32 = nullptr;
  Fill32Fn fill32_stream = nullptr;
  StreamFenceFn stream_fence = nullptr;
  SetAlphaFn set_alpha = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillBufferKernels(BufferKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_BUFFER_BUFFER_KERNELS_H_
