// The kernel table: every row kernel the exports run, one function pointer
// per kernel, filled once at attach from the reference rows upwards (C,
// then SSE2, AVX2, AVX-512 where the CPU allows), each level overwriting the
// last. Exports read it; they never test the CPU themselves.
#ifndef QBO_FRAME_KERNEL_TABLE_H_
#define QBO_FRAME_KERNEL_TABLE_H_

#include <vector>

#include "blit/blit_kernels.h"
#include "blit/zoom_kernels.h"
#include "buffer/buffer_kernels.h"
#include "buffer/mask_kernels.h"
#include "colorspace/colorspace_kernels.h"
#include "colorspace/planar_to_rgba_kernels.h"
#include "filter/filter_kernels.h"
#include "frame/kernel_level.h"
#include "yuvlayout/yuvlayout_kernels.h"

namespace qbo {

struct KernelTable {
  BufferKernels buffer;
  MaskKernels mask;
  BlitKernels blit;
  ZoomKernels zoom;
  FilterKernels filter;
  YuvLayoutKernels yuvlayout;
  ColorspaceKernels colorspace;
  PlanarToRgbaKernels planar_to_rgba;
};

// Filled by attach. It has no dynamic initializer of its own on purpose:
// one would run in an unspecified order against the shared library's
// constructor and could reset the table to the reference rows after
// attach had chosen the machine's level.
extern KernelTable g_kernels;

inline const KernelTable& Kernels() { return g_kernels; }

// Highest level this CPU runs.
KernelLevel MachineKernelLevel();
// Level the table is filled at now.
KernelLevel CurrentKernelLevel();
const char* KernelLevelName(KernelLevel level);
// Every level this machine runs, lowest first.
std::vector<KernelLevel> AvailableKernelLevels();

// Fills the table at the machine's level, capped by the QBO_CPU variable
// ("c", "sse2", "avx2", "avx512", "avx512vbmi"; anything else leaves the machine's level).
void InitKernelTableFromEnvironment();

// Test and benchmark hook, never exported: refills the table at `level`,
// capped by what the machine runs.
void SetKernelLevelForTesting(KernelLevel level);

}  // namespace qbo

#endif  // QBO_FRAME_KERNEL_TABLE_H_
