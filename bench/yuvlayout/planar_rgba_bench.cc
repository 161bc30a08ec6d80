// Planar 4:2:0 / 4:2:2 to BGRA at 1920x1080, one thread, beside libyuv,
// swscale and OpenCV. The peers treat 4:2:0 chroma as progressive, so only
// the speed compares.
#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"

#if defined(QBO_BENCH_LIBYUV)
#include <libyuv.h>
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
constexpr std::size_t kLuma = std::size_t{kW} * kH;

// One contiguous planar picture (Y, then U, then V) with 4:2:2-sized
// chroma, so 4:2:0 uses the first half of each chroma plane; and a BGRA
// frame.
struct Pictures {
  Frame planes{2 * kLuma}, bgra{4 * kLuma};
  uint8_t* y() { return planes.data(); }
  uint8_t* u() { return planes.data() + kLuma; }
  uint8_t* v420() { return u() + kLuma / 4; }  // I420 layout: V right after U
  uint8_t* v422() { return u() + kLuma / 2; }
};

void Finish(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * 4 * kLuma));
}

void BM_420ToBgra_Frame(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Pictures p;
  for (auto _ : state) {
    QN_CS_YUV420_BGRA_Frame(p.bgra.data(), 4 * kW, p.y(), kW, p.u(), kW / 2, p.v420(), kW / 2, kW,
                            kH, 0, 0);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
QBO_BENCH_LEVELS(BM_420ToBgra_Frame);

void BM_420ToBgra_Split(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Pictures p;
  uint8_t* bottom = p.bgra.data() + 2 * kLuma;
  for (auto _ : state) {
    QN_CS_YUV420_BGRA_Split(p.bgra.data(), 4 * kW, bottom, 4 * kW, p.y(), kW, p.u(), kW / 2,
                            p.v420(), kW / 2, kW, kH, 0, 0);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
QBO_BENCH_LEVELS(BM_420ToBgra_Split);

void BM_422ToBgra_Frame(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Pictures p;
  for (auto _ : state) {
    QN_CS_YUV422_BGRA_Frame(p.bgra.data(), 4 * kW, p.y(), kW, p.u(), kW / 2, p.v422(), kW / 2, kW,
                            kH, 0, 0);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
QBO_BENCH_LEVELS(BM_422ToBgra_Frame);

#if defined(QBO_BENCH_LIBYUV)
// libyuv's "ARGB" is B, G, R, A in memory: the same bytes as BGRA here.
void BM_libyuv_I420ToARGB(benchmark::State& state) {
  Pictures p;
  for (auto _ : state) {
    libyuv::I420ToARGB(p.y(), kW, p.u(), kW / 2, p.v420(), kW / 2, p.bgra.data(), 4 * kW, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
BENCHMARK(BM_libyuv_I420ToARGB)->Unit(benchmark::kMicrosecond);

void BM_libyuv_I422ToARGB(benchmark::State& state) {
  Pictures p;
  for (auto _ : state) {
    libyuv::I422ToARGB(p.y(), kW, p.u(), kW / 2, p.v422(), kW / 2, p.bgra.data(), 4 * kW, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
BENCHMARK(BM_libyuv_I422ToARGB)->Unit(benchmark::kMicrosecond);
#endif

#if defined(QBO_BENCH_SWSCALE)
void SwscaleToBgra(benchmark::State& state, AVPixelFormat format) {
  Pictures p;
  SwsContext* ctx = sws_getContext(kW, kH, format, kW, kH, AV_PIX_FMT_BGRA, SWS_POINT, nullptr,
                                    nullptr, nullptr);
  const bool is420 = format == AV_PIX_FMT_YUV420P;
  const uint8_t* planes[3] = {p.y(), p.u(), is420 ? p.v420() : p.v422()};
  const int pitches[3] = {kW, kW / 2, kW / 2};
  uint8_t* out[1] = {p.bgra.data()};
  const int out_pitch[1] = {4 * kW};
  for (auto _ : state) {
    sws_scale(ctx, planes, pitches, 0, kH, out, out_pitch);
    benchmark::ClobberMemory();
  }
  sws_freeContext(ctx);
  Finish(state);
}
void BM_swscale_420ToBgra(benchmark::State& state) { SwscaleToBgra(state, AV_PIX_FMT_YUV420P); }
void BM_swscale_422ToBgra(benchmark::State& state) { SwscaleToBgra(state, AV_PIX_FMT_YUV422P); }
BENCHMARK(BM_swscale_420ToBgra)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_swscale_422ToBgra)->Unit(benchmark::kMicrosecond);
#endif

#if defined(QBO_BENCH_OPENCV)
void BM_opencv_I420ToBgra(benchmark::State& state) {
  cv::setNumThreads(1);
  Pictures p;
  // OpenCV reads I420 as one (height x 3 / 2) x width plane.
  const cv::Mat src(kH * 3 / 2, kW, CV_8UC1, p.y());
  cv::Mat dst(kH, kW, CV_8UC4, p.bgra.data());
  for (auto _ : state) {
    cv::cvtColor(src, dst, cv::COLOR_YUV2BGRA_I420);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
BENCHMARK(BM_opencv_I420ToBgra)->Unit(benchmark::kMicrosecond);
#endif

}  // namespace
}  // namespace qbo::bench
