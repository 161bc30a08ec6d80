#include "buffer/buffer_kernels.h"

namespace qbo {

void FillBufferKernels(BufferKernels* k, KernelLevel level) {
  // The reference level has no cache-bypassing stores: its streaming fill
  // is the plain fill, which writes the same bytes.
  *k = BufferKernels{CopyRowBytes_C, StreamCopy_C, Fill32_C, Fill32_C, StreamFence_C, SetAlpha_C};
  if (level >= KernelLevel::kSse2) {
    *k = BufferKernels{CopyRowBytes_SSE2, StreamCopy_SSE2, Fill32_SSE2, Fill32Stream_SSE2,
                       StreamFence_SSE2, SetAlpha_SSE2};
  }
  if (level >= KernelLevel::kAvx2) {
    *k = BufferKernels{CopyRowBytes_AVX2, StreamCopy_AVX2, Fill32_AVX2, Fill32Stream_AVX2,
                       StreamFence_SSE2, SetAlpha_AVX2};
  }
}

}  // namespace qbo
