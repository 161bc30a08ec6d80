// Helpers shared by the benchmarks.
#ifndef QBO_BENCH_BENCH_SUPPORT_H_
#define QBO_BENCH_BENCH_SUPPORT_H_

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "frame/kernel_table.h"

namespace qbo::bench {

inline constexpr int kFrameWidth = 1920;
inline constexpr int kFrameHeight = 1080;

// 64-byte aligned bytes filled with a fixed pseudo-random pattern.
class Frame {
 public:
  explicit Frame(std::size_t bytes) : bytes_(bytes) {
    data_ = static_cast<uint8_t*>(std::aligned_alloc(64, (bytes + 63) & ~std::size_t{63}));
    uint32_t x = 12345;
    for (std::size_t i = 0; i < bytes; ++i) {
      x = x * 1103515245u + 12345u;
      data_[i] = static_cast<uint8_t>(x >> 24);
    }
  }
  ~Frame() { std::free(data_); }
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;
  uint8_t* data() { return data_; }
  std::size_t size() const { return bytes_; }

 private:
  uint8_t* data_;
  std::size_t bytes_;
};

// Runs a benchmark body at one kernel level; skips levels the CPU lacks.
class LevelScope {
 public:
  LevelScope(benchmark::State& state, KernelLevel level) : saved_(CurrentKernelLevel()) {
    if (level > MachineKernelLevel()) state.SkipWithError("level not available on this CPU");
    SetKernelLevelForTesting(level);
  }
  ~LevelScope() { SetKernelLevelForTesting(saved_); }

 private:
  KernelLevel saved_;
};

}  // namespace qbo::bench

// Registers `fn(state, level)` once per kernel level.
#define QBO_BENCH_LEVELS(fn)                                                          \
  BENCHMARK_CAPTURE(fn, C, KernelLevel::kC)->Unit(benchmark::kMicrosecond);       \
  BENCHMARK_CAPTURE(fn, SSE2, KernelLevel::kSse2)->Unit(benchmark::kMicrosecond); \
  BENCHMARK_CAPTURE(fn, AVX2, KernelLevel::kAvx2)->Unit(benchmark::kMicrosecond)

#endif  // QBO_BENCH_BENCH_SUPPORT_H_
