// Block transfer and stretches on 1920x1080 BGRA, one thread, beside the
// peers a player would use instead. Peer formulas differ from ours; only
// the speed compares.
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"

#if defined(QBO_BENCH_LIBYUV)
#include <libyuv/convert_argb.h>
#include <libyuv/planar_functions.h>
#include <libyuv/scale_argb.h>
#endif
#if defined(QBO_BENCH_OPENCV)
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#endif
#if defined(QBO_BENCH_SWSCALE)
extern "C" {
#include <libswscale/swscale.h>
}
#endif
#if defined(QBO_BENCH_PIXMAN)
#include <pixman.h>
#endif

namespace qbo::bench {
namespace {

constexpr int kW = kFrameWidth, kH = kFrameHeight;

std::size_t Bytes(int w, int h) { return std::size_t(w) * h * 4; }

// An overlay with a mix of clear, opaque and partial alphas, as a caption
// or logo layer has.
void MakeOverlay(Frame& f) {
  uint8_t* p = f.data();
  for (std::size_t i = 0; i < f.size() / 4; ++i) {
    const std::size_t run = (i / 37) % 4;
    if (run == 0) p[4 * i + 3] = 0;
    if (run == 1) p[4 * i + 3] = 255;
  }
}

// Arg 0: random pixels over random pixels. Arg 1: the overlay over random
// pixels. Arg 2: the overlay over an opaque video frame, a player's case.
void MakeBlendPair(benchmark::State& state, Frame& src, Frame& dst) {
  if (state.range(0) >= 1) MakeOverlay(src);
  if (state.range(0) == 2) {
    for (std::size_t i = 3; i < dst.size(); i += 4) dst.data()[i] = 255;
  }
}

void SetFrameCounters(benchmark::State& state, std::size_t bytes) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

// ---- alpha over, 1920x1080 ----
void BM_QN_BitBlt_Over(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame src(Bytes(kW, kH)), dst(Bytes(kW, kH));
  MakeBlendPair(state, src, dst);
  for (auto _ : state) {
    QN_BitBlt(dst.data(), 0, 0, kW, kH, kW, kH, src.data(), 0, 0, kW, kH, kW, kH, 0, 0);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(kW, kH));
}
BENCHMARK_CAPTURE(BM_QN_BitBlt_Over, C, KernelLevel::kC)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QN_BitBlt_Over, SSE2, KernelLevel::kSse2)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QN_BitBlt_Over, AVX2, KernelLevel::kAvx2)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

#if defined(QBO_BENCH_LIBYUV)
void BM_libyuv_ARGBBlend(benchmark::State& state) {
  Frame src(Bytes(kW, kH)), dst(Bytes(kW, kH));
  MakeBlendPair(state, src, dst);
  for (auto _ : state) {
    libyuv::ARGBBlend(src.data(), kW * 4, dst.data(), kW * 4, dst.data(), kW * 4, kW, kH);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(kW, kH));
}
BENCHMARK(BM_libyuv_ARGBBlend)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
#endif

#if defined(QBO_BENCH_PIXMAN)
void BM_pixman_Over(benchmark::State& state) {
  Frame src(Bytes(kW, kH)), dst(Bytes(kW, kH));
  MakeBlendPair(state, src, dst);
  pixman_image_t* s = pixman_image_create_bits(PIXMAN_a8r8g8b8, kW, kH,
                                               reinterpret_cast<uint32_t*>(src.data()), kW * 4);
  pixman_image_t* d = pixman_image_create_bits(PIXMAN_a8r8g8b8, kW, kH,
                                               reinterpret_cast<uint32_t*>(dst.data()), kW * 4);
  for (auto _ : state) {
    pixman_image_composite32(PIXMAN_OP_OVER, s, nullptr, d, 0, 0, 0, 0, 0, 0, kW, kH);
    benchmark::ClobberMemory();
  }
  pixman_image_unref(s);
  pixman_image_unref(d);
  SetFrameCounters(state, Bytes(kW, kH));
}
BENCHMARK(BM_pixman_Over)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
#endif

// ---- bilinear and area scales ----
struct ScaleCase {
  int sw, sh, dw, dh;
};
constexpr ScaleCase kScales[] = {{1920, 1080, 1280, 720}, {1280, 720, 1920, 1080}, {1920, 1080, 640, 360}};

using StretchFn = int32_t(QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                                       const void*, int32_t, int32_t, int32_t, int32_t, int32_t,
                                       int32_t, int32_t, int32_t);

void RunStretch(benchmark::State& state, KernelLevel level, StretchFn fn) {
  LevelScope scope(state, level);
  const ScaleCase c = kScales[state.range(0)];
  Frame src(Bytes(c.sw, c.sh)), dst(Bytes(c.dw, c.dh));
  for (auto _ : state) {
    fn(dst.data(), 0, 0, c.dw, c.dh, c.dw, c.dh, src.data(), 0, 0, c.sw, c.sh, c.sw, c.sh, 1, 0);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(c.dw, c.dh));
}

void BM_QN_StretchBlt(benchmark::State& state, KernelLevel level) { RunStretch(state, level, QN_StretchBlt); }
void BM_QN_StretchBlt_Mean(benchmark::State& state, KernelLevel level) {
  RunStretch(state, level, QN_StretchBlt_Mean);
}

BENCHMARK_CAPTURE(BM_QN_StretchBlt, C, KernelLevel::kC)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QN_StretchBlt, SSE2, KernelLevel::kSse2)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QN_StretchBlt, AVX2, KernelLevel::kAvx2)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QN_StretchBlt_Mean, C, KernelLevel::kC)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QN_StretchBlt_Mean, SSE2, KernelLevel::kSse2)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_QN_StretchBlt_Mean, AVX2, KernelLevel::kAvx2)->Arg(2)->Unit(benchmark::kMillisecond);

#if defined(QBO_BENCH_LIBYUV)
void BM_libyuv_ARGBScale_Bilinear(benchmark::State& state) {
  const ScaleCase c = kScales[state.range(0)];
  Frame src(Bytes(c.sw, c.sh)), dst(Bytes(c.dw, c.dh));
  for (auto _ : state) {
    libyuv::ARGBScale(src.data(), c.sw * 4, c.sw, c.sh, dst.data(), c.dw * 4, c.dw, c.dh,
                      libyuv::kFilterBilinear);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(c.dw, c.dh));
}
BENCHMARK(BM_libyuv_ARGBScale_Bilinear)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
#endif

#if defined(QBO_BENCH_OPENCV)
void BM_opencv_resize(benchmark::State& state, int interpolation) {
  cv::setNumThreads(1);
  const ScaleCase c = kScales[state.range(0)];
  Frame src(Bytes(c.sw, c.sh)), dst(Bytes(c.dw, c.dh));
  const cv::Mat s(c.sh, c.sw, CV_8UC4, src.data());
  cv::Mat d(c.dh, c.dw, CV_8UC4, dst.data());
  for (auto _ : state) {
    cv::resize(s, d, d.size(), 0, 0, interpolation);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(c.dw, c.dh));
}
BENCHMARK_CAPTURE(BM_opencv_resize, LINEAR, cv::INTER_LINEAR)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_opencv_resize, AREA, cv::INTER_AREA)->Arg(2)->Unit(benchmark::kMillisecond);
#endif

#if defined(QBO_BENCH_SWSCALE)
void BM_swscale_Bilinear(benchmark::State& state) {
  const ScaleCase c = kScales[state.range(0)];
  Frame src(Bytes(c.sw, c.sh)), dst(Bytes(c.dw, c.dh));
  SwsContext* ctx = sws_getContext(c.sw, c.sh, AV_PIX_FMT_BGRA, c.dw, c.dh, AV_PIX_FMT_BGRA,
                                   SWS_BILINEAR, nullptr, nullptr, nullptr);
  const uint8_t* src_planes[1] = {src.data()};
  uint8_t* dst_planes[1] = {dst.data()};
  const int src_stride[1] = {c.sw * 4};
  const int dst_stride[1] = {c.dw * 4};
  for (auto _ : state) {
    sws_scale(ctx, src_planes, src_stride, 0, c.sh, dst_planes, dst_stride);
    benchmark::ClobberMemory();
  }
  sws_freeContext(ctx);
  SetFrameCounters(state, Bytes(c.dw, c.dh));
}
BENCHMARK(BM_swscale_Bilinear)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
#endif

// ---- YUYV 1920x1080 -> BGRA 960x540, area mean ----
constexpr int kYw = 960, kYh = 540;

void BM_QN_CS_YUYV2BGRA_MeanStretch(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame src(std::size_t(kW) * kH * 2), dst(Bytes(kYw, kYh));
  for (auto _ : state) {
    QN_CS_YUYV2BGRA_MeanStretch(dst.data(), kYw * 4, 0, 0, kYw, kYh, kYw, kYh, src.data(), kW * 2,
                                0, 0, kW, kH, kW, kH, 0, 0);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(kYw, kYh));
}
QBO_BENCH_LEVELS(BM_QN_CS_YUYV2BGRA_MeanStretch);

#if defined(QBO_BENCH_LIBYUV)
// Convert, then box-filter scale: the two-step route libyuv offers.
void BM_libyuv_YUY2ToARGB_ScaleBox(benchmark::State& state) {
  Frame src(std::size_t(kW) * kH * 2), mid(Bytes(kW, kH)), dst(Bytes(kYw, kYh));
  for (auto _ : state) {
    libyuv::YUY2ToARGB(src.data(), kW * 2, mid.data(), kW * 4, kW, kH);
    libyuv::ARGBScale(mid.data(), kW * 4, kW, kH, dst.data(), kYw * 4, kYw, kYh, libyuv::kFilterBox);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(kYw, kYh));
}
BENCHMARK(BM_libyuv_YUY2ToARGB_ScaleBox)->Unit(benchmark::kMillisecond);
#endif

#if defined(QBO_BENCH_OPENCV)
void BM_opencv_YUY2_Area(benchmark::State& state) {
  cv::setNumThreads(1);
  Frame src(std::size_t(kW) * kH * 2), mid(Bytes(kW, kH)), dst(Bytes(kYw, kYh));
  const cv::Mat s(kH, kW, CV_8UC2, src.data());
  cv::Mat m(kH, kW, CV_8UC4, mid.data()), d(kYh, kYw, CV_8UC4, dst.data());
  for (auto _ : state) {
    cv::cvtColor(s, m, cv::COLOR_YUV2BGRA_YUY2);
    cv::resize(m, d, d.size(), 0, 0, cv::INTER_AREA);
    benchmark::ClobberMemory();
  }
  SetFrameCounters(state, Bytes(kYw, kYh));
}
BENCHMARK(BM_opencv_YUY2_Area)->Unit(benchmark::kMillisecond);
#endif

}  // namespace
}  // namespace qbo::bench
