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

// Bytes of the cache that one leaf-4-style descriptor (CPUID 4 on Intel,
// 0x8000001D on AMD) describes at `subleaf`, with its level; 0 past the
// last one.
std::size_t DescribedCache(unsigned leaf, unsigned subleaf, unsigned* level) {
  unsigned eax, ebx, ecx, edx;
  __cpuid_count(leaf, subleaf, eax, ebx, ecx, edx);
  if ((eax & 31) == 0) return 0;
  *level = (eax >> 5) & 7;
  return std::size_t{((ebx >> 22) & 0x3FF) + 1} * (((ebx >> 12) & 0x3FF) + 1) *
         ((ebx & 0xFFF) + 1) * (std::size_t{ecx} + 1);
}

std::size_t LastLevelCache() {
  unsigned eax, ebx, ecx, edx;
  const unsigned max_ext = __get_cpuid_max(0x80000000u, nullptr);
  bool topology = false;
  if (max_ext >= 0x80000001u) {
    __cpuid(0x80000001u, eax, ebx, ecx, edx);
    topology = (ecx & (1u << 22)) != 0;
  }
  unsigned leaf = 0;
  if (__get_cpuid_max(0, nullptr) >= 4) leaf = 4;
  if (topology && max_ext >= 0x8000001Du) leaf = 0x8000001Du;
  std::size_t best = 0;
  unsigned best_level = 0;
  for (unsigned i = 0; leaf && i < 16; ++i) {
    unsigned level = 0;
    const std::size_t bytes = DescribedCache(leaf, i, &level);
    if (bytes == 0) break;
    if (level >= best_level) {
      best = bytes;
      best_level = level;
    }
  }
  if (best == 0 && max_ext >= 0x80000006u) {
    // The legacy AMD leaf: L3 in 512 KB units, else L2 in KB.
    __cpuid(0x80000006u, eax, ebx, ecx, edx);
    best = std::size_t{edx >> 18} * 512 * 1024;
    if (best == 0) best = std::size_t{ecx >> 16} * 1024;
  }
  return best;
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
    // XCR0 bits 5-7: opmask registers and both halves of ZMM0-31.
    f.avx512 = f.avx2 && (ebx & bit_AVX512F) && (ebx & bit_AVX512BW) &&
               (ReadXcr0() & 0xE6) == 0xE6;
    f.avx512vbmi = f.avx512 && (ecx & bit_AVX512VBMI) != 0;
  }
  if (__get_cpuid_max(0, nullptr) >= 7) {
    __cpuid_count(7, 0, eax, ebx, ecx, edx);
    f.fast_strings = (ebx & (1u << 9)) != 0;
  }
  f.last_level_cache = LastLevelCache();
  return f;
}

const CpuFeatures& Cpu() {
  static const CpuFeatures features = DetectCpu();
  return features;
}

std::size_t StreamStoresAbove() {
  static const std::size_t bytes = [] {
    constexpr std::size_t kMb = std::size_t{1} << 20;
    const std::size_t llc = Cpu().last_level_cache;
    return llc == 0 ? 8 * kMb : llc < 32 * kMb ? llc : 32 * kMb;
  }();
  return bytes;
}

}  // namespace qbo
