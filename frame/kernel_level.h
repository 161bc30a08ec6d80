#ifndef QBO_FRAME_KERNEL_LEVEL_H_
#define QBO_FRAME_KERNEL_LEVEL_H_

namespace qbo {

// Instruction-set levels of the row kernels, lowest first. SSE2 is the x86
// baseline; AVX2 is taken only where CPUID and XGETBV allow it.
enum class KernelLevel { kC = 0, kSse2 = 1, kAvx2 = 2 };

}  // namespace qbo

#endif  // QBO_FRAME_KERNEL_LEVEL_H_
