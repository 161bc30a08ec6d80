// Zooms between 1920x1080 and 1280x720, 8-bit plane and 32-bit pixels, at
// each kernel level, beside OpenCV's bilinear resize on one thread.
#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"

#if defined(QBO_BENCH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace qbo::bench {
namespace {

constexpr int kSmallWidth = 1280;
constexpr int kSmallHeight = 720;

// Pixels written per call: the destination of a down or up zoom.
int64_t DestinationPixels(bool down) {
  return down ? int64_t{kSmallWidth} * kSmallHeight : int64_t{kFrameWidth} * kFrameHeight;
}

void BM_QN_BufferZoom(benchmark::State& state, KernelLevel level, bool down) {
  LevelScope scope(state, level);
  const int sw = down ? kFrameWidth : kSmallWidth, sh = down ? kFrameHeight : kSmallHeight;
  const int dw = down ? kSmallWidth : kFrameWidth, dh = down ? kSmallHeight : kFrameHeight;
  Frame src(std::size_t(sw) * sh), dst(std::size_t(dw) * dh);
  for (auto _ : state) {
    QN_BufferZoom(dst.data(), dw, dh, src.data(), sw, sh);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * DestinationPixels(down));
}

void BM_QN_DwordBufferZoom(benchmark::State& state, KernelLevel level, bool down) {
  LevelScope scope(state, level);
  const int sw = down ? kFrameWidth : kSmallWidth, sh = down ? kFrameHeight : kSmallHeight;
  const int dw = down ? kSmallWidth : kFrameWidth, dh = down ? kSmallHeight : kFrameHeight;
  Frame src(std::size_t(sw) * sh * 4), dst(std::size_t(dw) * dh * 4);
  for (auto _ : state) {
    QN_DwordBufferZoom(dst.data(), 0, 0, dw, dh, dw, dh, src.data(), 0, 0, sw, sh, sw, sh);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * DestinationPixels(down));
}

#define QBO_ZOOM_BENCH(fn)                                                                   \
  BENCHMARK_CAPTURE(fn, Down_C, KernelLevel::kC, true)->Unit(benchmark::kMillisecond);       \
  BENCHMARK_CAPTURE(fn, Down_SSE2, KernelLevel::kSse2, true)->Unit(benchmark::kMillisecond); \
  BENCHMARK_CAPTURE(fn, Down_AVX2, KernelLevel::kAvx2, true)->Unit(benchmark::kMillisecond); \
  BENCHMARK_CAPTURE(fn, Up_C, KernelLevel::kC, false)->Unit(benchmark::kMillisecond);        \
  BENCHMARK_CAPTURE(fn, Up_SSE2, KernelLevel::kSse2, false)->Unit(benchmark::kMillisecond);  \
  BENCHMARK_CAPTURE(fn, Up_AVX2, KernelLevel::kAvx2, false)->Unit(benchmark::kMillisecond)

QBO_ZOOM_BENCH(BM_QN_BufferZoom);
QBO_ZOOM_BENCH(BM_QN_DwordBufferZoom);

#if defined(QBO_BENCH_OPENCV)
void BM_OpenCV_ResizeLinear(benchmark::State& state, int type, bool down) {
  cv::setNumThreads(1);
  const cv::Size big(kFrameWidth, kFrameHeight), small(kSmallWidth, kSmallHeight);
  cv::Mat src(down ? big : small, type), dst(down ? small : big, type);
  cv::randu(src, 0, 255);
  for (auto _ : state) {
    cv::resize(src, dst, dst.size(), 0, 0, cv::INTER_LINEAR);
    benchmark::DoNotOptimize(dst.data);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * DestinationPixels(down));
}
BENCHMARK_CAPTURE(BM_OpenCV_ResizeLinear, Gray_Down, CV_8UC1, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenCV_ResizeLinear, Gray_Up, CV_8UC1, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenCV_ResizeLinear, Bgra_Down, CV_8UC4, true)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_OpenCV_ResizeLinear, Bgra_Up, CV_8UC4, false)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace qbo::bench
