// Fills and copies of a 1920x1080 BGRA frame against memcpy/memset.
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"

namespace qbo::bench {
namespace {

constexpr std::size_t kFrameBytes = std::size_t{kFrameWidth} * kFrameHeight * 4;

void BM_memcpy(benchmark::State& state) {
  Frame src(kFrameBytes), dst(kFrameBytes);
  for (auto _ : state) {
    std::memcpy(dst.data(), src.data(), kFrameBytes);
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}
BENCHMARK(BM_memcpy)->Unit(benchmark::kMicrosecond);

void BM_memset(benchmark::State& state) {
  Frame dst(kFrameBytes);
  for (auto _ : state) {
    std::memset(dst.data(), 0x5A, kFrameBytes);
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}
BENCHMARK(BM_memset)->Unit(benchmark::kMicrosecond);

void BM_QN_Memcpy(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame src(kFrameBytes), dst(kFrameBytes);
  for (auto _ : state) {
    QN_Memcpy(dst.data(), src.data(), static_cast<int32_t>(kFrameBytes));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}

void BM_QN_MemsetDWORD(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame dst(kFrameBytes);
  for (auto _ : state) {
    QN_MemsetDWORD(dst.data(), 0xFF102030u, kFrameWidth * kFrameHeight);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}

void BM_QN_Clear(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame dst(kFrameBytes);
  for (auto _ : state) {
    QN_Clear(dst.data(), kFrameWidth * 4, 0, 0, kFrameWidth, kFrameHeight - 1, 0xFF000000u);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}

void BM_QN_AlphaMemSet(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame dst(kFrameBytes);
  for (auto _ : state) {
    QN_AlphaMemSet(dst.data(), 255, kFrameWidth, kFrameHeight);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}

void BM_QN_OverTurnSelf(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame dst(kFrameBytes);
  for (auto _ : state) {
    QN_OverTurnSelf(dst.data(), kFrameWidth * 4, kFrameHeight);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}

// Cold variants: the frames rotate through a pool far larger than the
// last-level cache, as the frames of many cameras do in a player. Hot loops
// over one frame measure cache bandwidth instead, where cache-bypassing
// stores lose by design.
constexpr int kPool = 12;

void BM_memcpy_cold(benchmark::State& state) {
  Frame src(kFrameBytes * kPool), dst(kFrameBytes * kPool);
  int i = 0;
  for (auto _ : state) {
    std::memcpy(dst.data() + i * kFrameBytes, src.data() + i * kFrameBytes, kFrameBytes);
    benchmark::ClobberMemory();
    i = (i + 1) % kPool;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}
BENCHMARK(BM_memcpy_cold)->Unit(benchmark::kMicrosecond);

void BM_memset_cold(benchmark::State& state) {
  Frame dst(kFrameBytes * kPool);
  int i = 0;
  for (auto _ : state) {
    std::memset(dst.data() + i * kFrameBytes, 0x5A, kFrameBytes);
    benchmark::ClobberMemory();
    i = (i + 1) % kPool;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}
BENCHMARK(BM_memset_cold)->Unit(benchmark::kMicrosecond);

void BM_QN_Memcpy_cold(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame src(kFrameBytes * kPool), dst(kFrameBytes * kPool);
  int i = 0;
  for (auto _ : state) {
    QN_Memcpy(dst.data() + i * kFrameBytes, src.data() + i * kFrameBytes,
              static_cast<int32_t>(kFrameBytes));
    benchmark::ClobberMemory();
    i = (i + 1) % kPool;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}

void BM_QN_Clear_cold(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame dst(kFrameBytes * kPool);
  int i = 0;
  for (auto _ : state) {
    QN_Clear(dst.data() + i * kFrameBytes, kFrameWidth * 4, 0, 0, kFrameWidth, kFrameHeight - 1,
             0xFF000000u);
    benchmark::ClobberMemory();
    i = (i + 1) % kPool;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kFrameBytes));
}

QBO_BENCH_LEVELS(BM_QN_Memcpy);
QBO_BENCH_LEVELS(BM_QN_Memcpy_cold);
QBO_BENCH_LEVELS(BM_QN_Clear_cold);
QBO_BENCH_LEVELS(BM_QN_MemsetDWORD);
QBO_BENCH_LEVELS(BM_QN_Clear);
QBO_BENCH_LEVELS(BM_QN_AlphaMemSet);
QBO_BENCH_LEVELS(BM_QN_OverTurnSelf);

}  // namespace
}  // namespace qbo::bench
