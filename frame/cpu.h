// CPU feature detection, run once when the kernel table is filled.
#ifndef QBO_FRAME_CPU_H_
#define QBO_FRAME_CPU_H_

#include <cstddef>

namespace qbo {

struct CpuFeatures {
  bool sse2 = false;
  bool ssse3 = false;
  bool sse41 = false;
  // AVX2 with the OS saving the YMM state (CPUID and XGETBV both agree).
  bool avx2 = false;
  // AVX-512 F and BW with the OS saving the ZMM and mask state.
  bool avx512 = false;
  // AVX-512 VBMI (byte permutes) on top of the above.
  bool avx512vbmi = false;
  // Fast `rep movsb` / `rep stos` (CPUID ERMS): long string moves run at the
  // cache's full rate and write whole lines without reading them first.
  bool fast_strings = false;
  // Bytes of the largest cache level CPUID describes; 0 when it says none.
  std::size_t last_level_cache = 0;
};

CpuFeatures DetectCpu();

// DetectCpu() of this machine, run once.
const CpuFeatures& Cpu();

}  // namespace qbo

#endif  // QBO_FRAME_CPU_H_
