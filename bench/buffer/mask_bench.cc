// Mask mixing, subtraction and colouring over a whole 1920x1080 mask, at
// each kernel level. The planes are as wide as the rectangle, so each call
// runs as one long row; the _Rows variants place the mask one column in
// and so run row by row.
#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"

namespace qbo::bench {
namespace {

constexpr std::size_t kMaskBytes = std::size_t{kFrameWidth} * kFrameHeight;

// x = 0 covers the planes whole (one long row); x = 1 runs row by row.
void MixMaskAt(benchmark::State& state, KernelLevel level, int32_t x) {
  LevelScope scope(state, level);
  Frame dst(kMaskBytes), src(kMaskBytes);
  for (auto _ : state) {
    QN_MixMask(dst.data(), x, 0, kFrameWidth, kFrameHeight, kFrameWidth, kFrameHeight, src.data(),
               0, 0, 0, 0, kFrameWidth, kFrameHeight);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kMaskBytes));
}

void BM_QN_MixMask(benchmark::State& state, KernelLevel level) { MixMaskAt(state, level, 0); }
void BM_QN_MixMask_Rows(benchmark::State& state, KernelLevel level) { MixMaskAt(state, level, 1); }

void BM_QN_SubMask(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame dst(kMaskBytes), src(kMaskBytes);
  for (auto _ : state) {
    QN_SubMask(dst.data(), 0, 0, kFrameWidth, kFrameHeight, src.data(), 0, 0, kFrameWidth,
               kFrameHeight, kFrameWidth, kFrameHeight, 0);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kMaskBytes));
}

void BM_QN_FillMaskColor(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame dst(kMaskBytes * 4), mask(kMaskBytes);
  for (auto _ : state) {
    QN_FillMaskColor(dst.data(), 0, 0, kFrameWidth, kFrameHeight, mask.data(), 0, 0, kFrameWidth,
                     kFrameHeight);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kMaskBytes * 4));
}

QBO_BENCH_LEVELS(BM_QN_MixMask);
QBO_BENCH_LEVELS(BM_QN_MixMask_Rows);
QBO_BENCH_LEVELS(BM_QN_SubMask);
QBO_BENCH_LEVELS(BM_QN_FillMaskColor);

}  // namespace
}  // namespace qbo::bench
