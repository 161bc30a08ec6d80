// The YUYV and 24-bit rows on one cached row, per level, at 64 to 3840
// pixels: what the arithmetic costs with memory out of the way.
#include "bench/bench_support.h"
#include "colorspace/colorspace_kernels.h"

#if defined(QBO_BENCH_LIBYUV)
#include <libyuv/convert_argb.h>
#include <libyuv/row.h>
#endif

namespace qbo::bench {
namespace {

void BM_YuyvToBgraRow(benchmark::State& state, YuyvToPixelsRowFn row, KernelLevel level) {
  if (level > MachineKernelLevel()) state.SkipWithError("level not available on this CPU");
  const int width = static_cast<int>(state.range(0));
  Frame src(2 * static_cast<std::size_t>(width)), dst(4 * static_cast<std::size_t>(width));
  const YuvToRgbVectors v = YuvToRgbVectorsFor(false);
  for (auto _ : state) {
    row(src.data(), dst.data(), width, &v);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * width);
}
BENCHMARK_CAPTURE(BM_YuyvToBgraRow, C, YuyvToBgraRow_C, KernelLevel::kC)
    ->Arg(64)
    ->Arg(720)
    ->Arg(1920)
    ->Arg(3840);
BENCHMARK_CAPTURE(BM_YuyvToBgraRow, SSE2, YuyvToBgraRow_Any_SSE2, KernelLevel::kSse2)
    ->Arg(64)
    ->Arg(720)
    ->Arg(1920)
    ->Arg(3840);
BENCHMARK_CAPTURE(BM_YuyvToBgraRow, AVX2, YuyvToBgraRow_Any_AVX2, KernelLevel::kAvx2)
    ->Arg(64)
    ->Arg(720)
    ->Arg(1920)
    ->Arg(3840);

void BM_Rgb24ToRgbaRow(benchmark::State& state, Rgb24ToRgbaRowFn row, KernelLevel level) {
  if (level > MachineKernelLevel()) state.SkipWithError("level not available on this CPU");
  const int width = static_cast<int>(state.range(0));
  Frame src(3 * static_cast<std::size_t>(width)), dst(4 * static_cast<std::size_t>(width));
  for (auto _ : state) {
    row(src.data(), nullptr, dst.data(), width);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * width);
}
BENCHMARK_CAPTURE(BM_Rgb24ToRgbaRow, C, Rgb24ToRgbaRow_C, KernelLevel::kC)->Arg(1920);
BENCHMARK_CAPTURE(BM_Rgb24ToRgbaRow, SSE2, Rgb24ToRgbaRow_Any_SSE2, KernelLevel::kSse2)
    ->Arg(64)
    ->Arg(720)
    ->Arg(1920)
    ->Arg(3840);
BENCHMARK_CAPTURE(BM_Rgb24ToRgbaRow, AVX2, Rgb24ToRgbaRow_Any_AVX2, KernelLevel::kAvx2)
    ->Arg(64)
    ->Arg(720)
    ->Arg(1920)
    ->Arg(3840);

#if defined(QBO_BENCH_LIBYUV)
void BM_libyuv_YUY2ToARGBRow_AVX2(benchmark::State& state) {
  const int width = static_cast<int>(state.range(0));
  Frame src(2 * static_cast<std::size_t>(width)), dst(4 * static_cast<std::size_t>(width));
  for (auto _ : state) {
    libyuv::YUY2ToARGBRow_Any_AVX2(src.data(), dst.data(), &libyuv::kYuvJPEGConstants, width);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * width);
}
BENCHMARK(BM_libyuv_YUY2ToARGBRow_AVX2)->Arg(1920);
#endif

}  // namespace
}  // namespace qbo::bench
