// 4:2:0 <-> YUYV at 1920x1080, one thread, beside libyuv and swscale. The
// peers treat chroma as progressive, so only the speed compares.
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

namespace qbo::bench {
namespace {

constexpr int kW = kFrameWidth, kH = kFrameHeight;
constexpr std::size_t kLuma = std::size_t{kW} * kH;
constexpr std::size_t kChroma420 = kLuma / 4;

// A planar 4:2:0 picture and a YUYV picture of the same size.
struct Pictures {
  Frame y{kLuma}, u{kChroma420}, v{kChroma420}, yuyv{2 * kLuma};
};

void Finish(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * (kLuma * 3 / 2 + 2 * kLuma)));
}

void BM_420ToYuyv(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Pictures p;
  for (auto _ : state) {
    QN_CS_420_422_YUVFrame(p.yuyv.data(), 2 * kW, p.y.data(), kW, p.u.data(), kW / 2, p.v.data(),
                           kW / 2, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
QBO_BENCH_LEVELS(BM_420ToYuyv);

template <void(QBO_CALLEE* Fn)(void*, int32_t, void*, int32_t, void*, int32_t, const void*,
                               int32_t, int32_t, int32_t)>
void BM_YuyvTo420(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Pictures p;
  for (auto _ : state) {
    Fn(p.y.data(), kW, p.u.data(), kW / 2, p.v.data(), kW / 2, p.yuyv.data(), 2 * kW, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
void BM_YuyvTo420_Plain(benchmark::State& s, KernelLevel l) {
  BM_YuyvTo420<QN_CS_422_420_YUVFrame>(s, l);
}
void BM_YuyvTo420_4Tap(benchmark::State& s, KernelLevel l) {
  BM_YuyvTo420<QN_CS_422_420_YUVFrame_4>(s, l);
}
void BM_YuyvTo420_Xdcam(benchmark::State& s, KernelLevel l) {
  BM_YuyvTo420<QN_CS_422_420_YUVFrame_XDCAM>(s, l);
}
QBO_BENCH_LEVELS(BM_YuyvTo420_Plain);
QBO_BENCH_LEVELS(BM_YuyvTo420_4Tap);
QBO_BENCH_LEVELS(BM_YuyvTo420_Xdcam);

#if defined(QBO_BENCH_LIBYUV)
void BM_libyuv_I420ToYUY2(benchmark::State& state) {
  Pictures p;
  for (auto _ : state) {
    libyuv::I420ToYUY2(p.y.data(), kW, p.u.data(), kW / 2, p.v.data(), kW / 2, p.yuyv.data(),
                       2 * kW, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
BENCHMARK(BM_libyuv_I420ToYUY2)->Unit(benchmark::kMicrosecond);

void BM_libyuv_YUY2ToI420(benchmark::State& state) {
  Pictures p;
  for (auto _ : state) {
    libyuv::YUY2ToI420(p.yuyv.data(), 2 * kW, p.y.data(), kW, p.u.data(), kW / 2, p.v.data(),
                       kW / 2, kW, kH);
    benchmark::ClobberMemory();
  }
  Finish(state);
}
BENCHMARK(BM_libyuv_YUY2ToI420)->Unit(benchmark::kMicrosecond);
#endif

#if defined(QBO_BENCH_SWSCALE)
void SwscaleLayout(benchmark::State& state, bool to_yuyv) {
  Pictures p;
  const AVPixelFormat planar = AV_PIX_FMT_YUV420P, packed = AV_PIX_FMT_YUYV422;
  SwsContext* ctx = sws_getContext(kW, kH, to_yuyv ? planar : packed, kW, kH,
                                    to_yuyv ? packed : planar, SWS_POINT, nullptr, nullptr,
                                    nullptr);
  const uint8_t* planes[3] = {p.y.data(), p.u.data(), p.v.data()};
  uint8_t* planes_out[3] = {p.y.data(), p.u.data(), p.v.data()};
  const int planar_pitch[3] = {kW, kW / 2, kW / 2};
  const uint8_t* packed_in[1] = {p.yuyv.data()};
  uint8_t* packed_out[1] = {p.yuyv.data()};
  const int packed_pitch[1] = {2 * kW};
  for (auto _ : state) {
    if (to_yuyv) {
      sws_scale(ctx, planes, planar_pitch, 0, kH, packed_out, packed_pitch);
    } else {
      sws_scale(ctx, packed_in, packed_pitch, 0, kH, planes_out, planar_pitch);
    }
    benchmark::ClobberMemory();
  }
  sws_freeContext(ctx);
  Finish(state);
}
void BM_swscale_420ToYuyv(benchmark::State& state) { SwscaleLayout(state, true); }
void BM_swscale_YuyvTo420(benchmark::State& state) { SwscaleLayout(state, false); }
BENCHMARK(BM_swscale_420ToYuyv)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_swscale_YuyvTo420)->Unit(benchmark::kMicrosecond);
#endif

}  // namespace
}  // namespace qbo::bench
