// YUYV to BGRA and 24-bit to 32-bit on a 1920x1080 frame, one thread, at
// each kernel level beside libyuv, swscale and OpenCV doing the same job,
// and a memcpy of the 32-bit frame as the floor.
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"

#if defined(QBO_BENCH_LIBYUV)
#include <libyuv/convert_argb.h>
#include <libyuv/row.h>
#endif
#if defined(QBO_BENCH_SWSCALE)
extern "C" {
#include <libswscale/swscale.h>
}
#endif
#if defined(QBO_BENCH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace qbo::bench {
namespace {

constexpr int kW = kFrameWidth, kH = kFrameHeight;
constexpr std::size_t kYuyvBytes = std::size_t{kW} * kH * 2;
constexpr std::size_t kRgb24Bytes = std::size_t{kW} * kH * 3;
constexpr std::size_t kBgraBytes = std::size_t{kW} * kH * 4;

void Finish(benchmark::State& state, std::size_t bytes_out) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes_out));
}

void BM_CopyFloor_memcpy(benchmark::State& state) {
  Frame src(kBgraBytes), dst(kBgraBytes);
  for (auto _ : state) {
    std::memcpy(dst.data(), src.data(), kBgraBytes);
    benchmark::ClobberMemory();
  }
  Finish(state, kBgraBytes);
}
BENCHMARK(BM_CopyFloor_memcpy)->Unit(benchmark::kMillisecond);

void BM_YuyvToBgra(benchmark::State& state, KernelLevel level, int bt709) {
  LevelScope scope(state, level);
  Frame src(kYuyvBytes), dst(kBgraBytes);
  for (auto _ : state) {
    QN_CS_YUYV2BGRA_Frame(dst.data(), kW * 4, src.data(), kW * 2, kW, kH, bt709, 0);
    benchmark::ClobberMemory();
  }
  Finish(state, kBgraBytes);
}
BENCHMARK_CAPTURE(BM_YuyvToBgra, 601_C, KernelLevel::kC, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_YuyvToBgra, 601_SSE2, KernelLevel::kSse2, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_YuyvToBgra, 601_AVX2, KernelLevel::kAvx2, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_YuyvToBgra, 709_C, KernelLevel::kC, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_YuyvToBgra, 709_SSE2, KernelLevel::kSse2, 1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_YuyvToBgra, 709_AVX2, KernelLevel::kAvx2, 1)->Unit(benchmark::kMillisecond);

void BM_24To32(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame src(kRgb24Bytes), dst(kBgraBytes);
  for (auto _ : state) {
    QN_CS_24_to_32_Frame(dst.data(), kW * 4, src.data(), kW * 3, nullptr, 0, kW, kH, 0, 0);
    benchmark::ClobberMemory();
  }
  Finish(state, kBgraBytes);
}
QBO_BENCH_LEVELS(BM_24To32);

#if defined(QBO_BENCH_LIBYUV)
// libyuv's frame call is BT.601 limited range; its full-range constants are
// reached through its row function, run here row by row.
void BM_libyuv_YUY2ToARGB_601Limited(benchmark::State& state) {
  Frame src(kYuyvBytes), dst(kBgraBytes);
  for (auto _ : state) {
    libyuv::YUY2ToARGB(src.data(), kW * 2, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state, kBgraBytes);
}
BENCHMARK(BM_libyuv_YUY2ToARGB_601Limited)->Unit(benchmark::kMillisecond);

void BM_libyuv_YUY2ToARGBRow(benchmark::State& state, const libyuv::YuvConstants* constants) {
  Frame src(kYuyvBytes), dst(kBgraBytes);
  for (auto _ : state) {
    for (int y = 0; y < kH; ++y) {
      libyuv::YUY2ToARGBRow_Any_AVX2(src.data() + std::size_t{2} * kW * y,
                                     dst.data() + std::size_t{4} * kW * y, constants, kW);
    }
    benchmark::ClobberMemory();
  }
  Finish(state, kBgraBytes);
}
BENCHMARK_CAPTURE(BM_libyuv_YUY2ToARGBRow, 601Full, &libyuv::kYuvJPEGConstants)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_libyuv_YUY2ToARGBRow, 709Full, &libyuv::kYuvF709Constants)
    ->Unit(benchmark::kMillisecond);

void BM_libyuv_RGB24ToARGB(benchmark::State& state) {
  Frame src(kRgb24Bytes), dst(kBgraBytes);
  for (auto _ : state) {
    libyuv::RGB24ToARGB(src.data(), kW * 3, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state, kBgraBytes);
}
BENCHMARK(BM_libyuv_RGB24ToARGB)->Unit(benchmark::kMillisecond);
#endif

#if defined(QBO_BENCH_SWSCALE)
void RunSws(benchmark::State& state, AVPixelFormat from, std::size_t src_bytes, int src_stride,
            int colorspace) {
  SwsContext* ctx =
      sws_getContext(kW, kH, from, kW, kH, AV_PIX_FMT_BGRA, SWS_POINT, nullptr, nullptr, nullptr);
  if (!ctx) {
    state.SkipWithError("no swscale context");
    return;
  }
  // Full range in and out, the chosen standard's coefficients.
  const int* coefficients = sws_getCoefficients(colorspace);
  sws_setColorspaceDetails(ctx, coefficients, 1, coefficients, 1, 0, 1 << 16, 1 << 16);
  Frame src(src_bytes), dst(kBgraBytes);
  const uint8_t* src_planes[4] = {src.data(), nullptr, nullptr, nullptr};
  const int src_strides[4] = {src_stride, 0, 0, 0};
  uint8_t* dst_planes[4] = {dst.data(), nullptr, nullptr, nullptr};
  const int dst_strides[4] = {kW * 4, 0, 0, 0};
  for (auto _ : state) {
    sws_scale(ctx, src_planes, src_strides, 0, kH, dst_planes, dst_strides);
    benchmark::ClobberMemory();
  }
  sws_freeContext(ctx);
  Finish(state, kBgraBytes);
}
void BM_swscale_YUYVToBGRA(benchmark::State& state, int colorspace) {
  RunSws(state, AV_PIX_FMT_YUYV422, kYuyvBytes, kW * 2, colorspace);
}
BENCHMARK_CAPTURE(BM_swscale_YUYVToBGRA, 601Full, SWS_CS_ITU601)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_swscale_YUYVToBGRA, 709Full, SWS_CS_ITU709)->Unit(benchmark::kMillisecond);
void BM_swscale_RGB24ToBGRA(benchmark::State& state) {
  RunSws(state, AV_PIX_FMT_BGR24, kRgb24Bytes, kW * 3, SWS_CS_ITU601);
}
BENCHMARK(BM_swscale_RGB24ToBGRA)->Unit(benchmark::kMillisecond);
#endif

#if defined(QBO_BENCH_OPENCV)
void BM_opencv_cvtColor(benchmark::State& state, int src_type, int code) {
  cv::setNumThreads(1);
  Frame src(kW * kH * CV_ELEM_SIZE(src_type)), dst(kBgraBytes);
  const cv::Mat in(kH, kW, src_type, src.data());
  cv::Mat out(kH, kW, CV_8UC4, dst.data());
  for (auto _ : state) {
    cv::cvtColor(in, out, code);
    benchmark::ClobberMemory();
  }
  Finish(state, kBgraBytes);
}
BENCHMARK_CAPTURE(BM_opencv_cvtColor, YUV2BGRA_YUY2, CV_8UC2, cv::COLOR_YUV2BGRA_YUY2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_opencv_cvtColor, BGR2BGRA, CV_8UC3, cv::COLOR_BGR2BGRA)
    ->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace qbo::bench
