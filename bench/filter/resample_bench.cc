// Resampling of BGRA frames (1920x1080 <-> 1280x720) at each kernel level
// beside swscale and OpenCV (Lanczos for the 8-tap filter, bicubic for the
// 4-tap one, one thread each), plus the blur and YUYV mixing exports.
#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"

#if defined(QBO_BENCH_SWSCALE)
extern "C" {
#include <libavutil/pixfmt.h>
#include <libswscale/swscale.h>
}
#endif
#if defined(QBO_BENCH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif

namespace qbo::bench {
namespace {

struct Scale {
  int sw, sh, dw, dh;
};
constexpr Scale kDown{1920, 1080, 1280, 720};
constexpr Scale kUp{1280, 720, 1920, 1080};

std::size_t FrameBytes(int w, int h) { return static_cast<std::size_t>(w) * h * 4; }

void BM_QN_Resample(benchmark::State& state, KernelLevel level, int taps, Scale s) {
  LevelScope scope(state, level);
  Frame src(FrameBytes(s.sw, s.sh)), dst(FrameBytes(s.dw, s.dh));
  for (auto _ : state) {
    if (taps == 4) {
      QN_Re4Sampling(dst.data(), s.dw, s.dh, src.data(), s.sw, s.sh);
    } else {
      QN_Re8Sampling(dst.data(), s.dw, s.dh, src.data(), s.sw, s.sh);
    }
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations());
}

#define QBO_RESAMPLE_BENCH(taps, name, scale)                                              \
  BENCHMARK_CAPTURE(BM_QN_Resample, name##_C, KernelLevel::kC, taps, scale)               \
      ->Unit(benchmark::kMillisecond);                                                     \
  BENCHMARK_CAPTURE(BM_QN_Resample, name##_SSE2, KernelLevel::kSse2, taps, scale)         \
      ->Unit(benchmark::kMillisecond);                                                     \
  BENCHMARK_CAPTURE(BM_QN_Resample, name##_AVX2, KernelLevel::kAvx2, taps, scale)         \
      ->Unit(benchmark::kMillisecond)

QBO_RESAMPLE_BENCH(8, Re8_1080_to_720, kDown);
QBO_RESAMPLE_BENCH(8, Re8_720_to_1080, kUp);
QBO_RESAMPLE_BENCH(4, Re4_1080_to_720, kDown);
QBO_RESAMPLE_BENCH(4, Re4_720_to_1080, kUp);

#if defined(QBO_BENCH_SWSCALE)
void BM_swscale(benchmark::State& state, int flags, Scale s) {
  SwsContext* ctx = sws_getContext(s.sw, s.sh, AV_PIX_FMT_BGRA, s.dw, s.dh, AV_PIX_FMT_BGRA,
                                   flags, nullptr, nullptr, nullptr);
  Frame src(FrameBytes(s.sw, s.sh)), dst(FrameBytes(s.dw, s.dh));
  const uint8_t* src_planes[4] = {src.data(), nullptr, nullptr, nullptr};
  uint8_t* dst_planes[4] = {dst.data(), nullptr, nullptr, nullptr};
  const int src_stride[4] = {s.sw * 4, 0, 0, 0}, dst_stride[4] = {s.dw * 4, 0, 0, 0};
  for (auto _ : state) {
    sws_scale(ctx, src_planes, src_stride, 0, s.sh, dst_planes, dst_stride);
    benchmark::ClobberMemory();
  }
  sws_freeContext(ctx);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(BM_swscale, lanczos_1080_to_720, SWS_LANCZOS, kDown)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_swscale, lanczos_720_to_1080, SWS_LANCZOS, kUp)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_swscale, bicubic_1080_to_720, SWS_BICUBIC, kDown)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_swscale, bicubic_720_to_1080, SWS_BICUBIC, kUp)->Unit(benchmark::kMillisecond);
#endif

#if defined(QBO_BENCH_OPENCV)
void BM_opencv(benchmark::State& state, int interpolation, Scale s) {
  cv::setNumThreads(1);
  Frame src(FrameBytes(s.sw, s.sh)), dst(FrameBytes(s.dw, s.dh));
  const cv::Mat in(s.sh, s.sw, CV_8UC4, src.data());
  cv::Mat out(s.dh, s.dw, CV_8UC4, dst.data());
  for (auto _ : state) {
    cv::resize(in, out, cv::Size(s.dw, s.dh), 0, 0, interpolation);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(BM_opencv, lanczos4_1080_to_720, cv::INTER_LANCZOS4, kDown)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_opencv, lanczos4_720_to_1080, cv::INTER_LANCZOS4, kUp)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_opencv, cubic_1080_to_720, cv::INTER_CUBIC, kDown)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_opencv, cubic_720_to_1080, cv::INTER_CUBIC, kUp)->Unit(benchmark::kMillisecond);
#endif

void BM_QN_VerticalBlur(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame img(FrameBytes(kFrameWidth, kFrameHeight));
  const int32_t weights[3] = {1, 2, 1};
  for (auto _ : state) {
    QN_VerticalBlur(img.data(), kFrameWidth, kFrameHeight, weights);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * img.size()));
}
QBO_BENCH_LEVELS(BM_QN_VerticalBlur);

// mode 1: onto an opaque destination; mode 2: alpha over alpha.
void BM_QN_Yuyv_Alpha_Mixin(benchmark::State& state, KernelLevel level, int mode) {
  LevelScope scope(state, level);
  const int32_t pitch = kFrameWidth * 2;
  Frame dst(static_cast<std::size_t>(pitch) * kFrameHeight),
      src(static_cast<std::size_t>(pitch) * kFrameHeight),
      dst_alpha(static_cast<std::size_t>(kFrameWidth) * kFrameHeight),
      src_alpha(static_cast<std::size_t>(kFrameWidth) * kFrameHeight);
  for (auto _ : state) {
    QN_Yuyv_Alpha_Mixin(dst.data(), pitch, mode == 2 ? dst_alpha.data() : nullptr, kFrameWidth,
                        kFrameWidth, kFrameHeight, src.data(), pitch, src_alpha.data(),
                        kFrameWidth, 0, 0, 0, 0, kFrameWidth, kFrameHeight);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * dst.size()));
}
BENCHMARK_CAPTURE(BM_QN_Yuyv_Alpha_Mixin, opaque_C, KernelLevel::kC, 1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_QN_Yuyv_Alpha_Mixin, opaque_SSE2, KernelLevel::kSse2, 1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_QN_Yuyv_Alpha_Mixin, opaque_AVX2, KernelLevel::kAvx2, 1)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_QN_Yuyv_Alpha_Mixin, alpha_C, KernelLevel::kC, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_QN_Yuyv_Alpha_Mixin, alpha_SSE2, KernelLevel::kSse2, 2)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_QN_Yuyv_Alpha_Mixin, alpha_AVX2, KernelLevel::kAvx2, 2)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qbo::bench
