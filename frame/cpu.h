// CPU feature detection, run once when the kernel table is filled.
#ifndef QBO_FRAME_CPU_H_
#define QBO_FRAME_CPU_H_

#include <cstddef>
#include <cstdint>

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

// Bytes of cache one core's work can count on, past which stores had
// better bypass it: a frame bigger than this evicts everything and is
// itself gone before anyone reads it. The last level CPUID describes, at
// most 32 MB (one L3 slice of current parts; a virtual machine may report
// a whole socket's), 8 MB where CPUID describes none.
std::size_t StreamStoresAbove();

// Whether a frame conversion that reads and writes `bytes` in all should
// write its rows with streaming stores: past half the budget its own
// stores evict the source rows it reads again (a 4:2:0 chroma row serves
// four frame rows), and the frame is gone from the cache before the next
// step reads it. Smaller frames stay in the cache for that next step.
inline bool StreamFrameStores(uint64_t bytes) { return bytes > StreamStoresAbove() / 2; }

}  // namespace qbo

#endif  // QBO_FRAME_CPU_H_
