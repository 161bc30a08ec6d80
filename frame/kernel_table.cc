#include "frame/kernel_table.h"

#include <cstdlib>
#include <cstring>

#include "frame/cpu.h"

namespace qbo {

KernelTable g_kernels;

namespace {

KernelLevel g_level = KernelLevel::kC;

void FillTable(KernelLevel level) {
  g_level = level;
  FillBufferKernels(&g_kernels.buffer, level);
  FillMaskKernels(&g_kernels.mask, level);
  FillBlitKernels(&g_kernels.blit, level);
  FillZoomKernels(&g_kernels.zoom, level);
  FillFilterKernels(&g_kernels.filter, level);
  FillYuvLayoutKernels(&g_kernels.yuvlayout, level);
  FillColorspaceKernels(&g_kernels.colorspace, level);
  FillPlanarToRgbaKernels(&g_kernels.planar_to_rgba, level);
}

KernelLevel Min(KernelLevel a, KernelLevel b) { return a < b ? a : b; }

}  // namespace

KernelLevel MachineKernelLevel() {
  static const KernelLevel level = [] {
    const CpuFeatures& f = Cpu();
    if (f.avx512vbmi && f.sse2) return KernelLevel::kAvx512Vbmi;
    if (f.avx512 && f.sse2) return KernelLevel::kAvx512;
    if (f.avx2 && f.sse2) return KernelLevel::kAvx2;
    if (f.sse2) return KernelLevel::kSse2;
    return KernelLevel::kC;
  }();
  return level;
}

KernelLevel CurrentKernelLevel() { return g_level; }

const char* KernelLevelName(KernelLevel level) {
  switch (level) {
    case KernelLevel::kC:
      return "C";
    case KernelLevel::kSse2:
      return "SSE2";
    case KernelLevel::kAvx2:
      return "AVX2";
    case KernelLevel::kAvx512:
      return "AVX-512";
    case KernelLevel::kAvx512Vbmi:
      return "AVX-512 VBMI";
  }
  return "?";
}

std::vector<KernelLevel> AvailableKernelLevels() {
  std::vector<KernelLevel> levels;
  for (int l = 0; l <= static_cast<int>(MachineKernelLevel()); ++l) {
    levels.push_back(static_cast<KernelLevel>(l));
  }
  return levels;
}

void InitKernelTableFromEnvironment() {
  KernelLevel cap = MachineKernelLevel();
  if (const char* v = std::getenv("QBO_CPU")) {
    if (std::strcmp(v, "c") == 0) cap = KernelLevel::kC;
    if (std::strcmp(v, "sse2") == 0) cap = KernelLevel::kSse2;
    if (std::strcmp(v, "avx2") == 0) cap = KernelLevel::kAvx2;
    if (std::strcmp(v, "avx512") == 0) cap = KernelLevel::kAvx512;
    if (std::strcmp(v, "avx512vbmi") == 0) cap = KernelLevel::kAvx512Vbmi;
  }
  FillTable(Min(cap, MachineKernelLevel()));
}

void SetKernelLevelForTesting(KernelLevel level) {
  FillTable(Min(level, MachineKernelLevel()));
}

}  // namespace qbo
