#include "frame/cpu.h"

#include <cpuid.h>

#include <cstdint>

namespace qbo {
namespace {

uint64_t ReadXcr0() {
  uint32_t lo, hi;
  __asm__ volatile("xgetbv" : "=a"(lo), "=d"(hi) : "c"(0));
  return (uint64_t{hi} << 32) | lo;
}

}  // namespace

CpuFeatures DetectCpu() {
  CpuFeatures f;
  unsigned eax, ebx, ecx, edx;
  if (!__get_cpuid(1, &eax, &ebx, &ecx, &edx)) return f;
  f.sse2 = (edx & bit_SSE2) != 0;
  f.ssse3 = (ecx & bit_SSSE3) != 0;
  f.sse41 = (ecx & bit_SSE4_1) != 0;
  const bool osxsave = (ecx & bit_OSXSAVE) != 0;
  const bool avx = (ecx & bit_AVX) != 0;
  if (osxsave && avx && (ReadXcr0() & 0x6) == 0x6 && __get_cpuid_max(0, nullptr) >= 7) {
    __cpuid_count(7, 0, eax, ebx, ecx, edx);
    f.avx2 = (ebx & bit_AVX2) != 0;
  }
  return f;
}

}  // namespace qbo
