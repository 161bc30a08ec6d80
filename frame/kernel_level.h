#ifndef QBO_FRAME_KERNEL_LEVEL_H_
#define QBO_FRAME_KERNEL_LEVEL_H_

namespace qbo {

// Instruction-set levels of the row kernels, lowest first. SSE2 is the x86
// baseline; AVX2 and AVX-512 are taken only where CPUID and XGETBV allow
// them. AVX-512 (F and BW) replaces the AVX2 rows only on the per-frame
// paths where 64-byte registers measurably pay; every other row keeps its
// AVX2 form at that level. AVX-512 VBMI, where the CPU has it, adds rows
// whose byte placement a two-register byte permute does in one step
// instead of several shuffles; the level below keeps the plain AVX-512
// rows, so both stay selectable and tested on a machine that has VBMI.
enum class KernelLevel { kC = 0, kSse2 = 1, kAvx2 = 2, kAvx512 = 3, kAvx512Vbmi = 4 };

}  // namespace qbo

#endif  // QBO_FRAME_KERNEL_LEVEL_H_
