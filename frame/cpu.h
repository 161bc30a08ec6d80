// CPU feature detection, run once when the kernel table is filled.
#ifndef QBO_FRAME_CPU_H_
#define QBO_FRAME_CPU_H_

namespace qbo {

struct CpuFeatures {
  bool sse2 = false;
  bool ssse3 = false;
  bool sse41 = false;
  // AVX2 with the OS saving the YMM state (CPUID and XGETBV both agree).
  bool avx2 = false;
};

CpuFeatures DetectCpu();

}  // namespace qbo

#endif  // QBO_FRAME_CPU_H_
