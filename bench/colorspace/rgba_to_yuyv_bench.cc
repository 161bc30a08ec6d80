// BGRA and BGR24 to YUYV of a 1920x1080 frame, one thread, at each kernel
// level, beside libyuv (ARGBToYUY2, limited-range constants and averaged
// chroma: compare speed only), swscale (full range, point sampling) and a
// memcpy of the source frame as the floor. OpenCV 4.6 has no conversion
// to YUY2 (only from it), so it has no entry here.
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "bench/bench_support.h"
#include "colorspace/rgba_to_yuyv_row.h"

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

constexpr int kSrcPitch = kFrameWidth * 4;
constexpr int kSrc24Pitch = kFrameWidth * 3;
constexpr int kDstPitch = kFrameWidth * 2;
constexpr std::size_t kSrcBytes = std::size_t{kSrcPitch} * kFrameHeight;
constexpr std::size_t kSrc24Bytes = std::size_t{kSrc24Pitch} * kFrameHeight;
constexpr std::size_t kDstBytes = std::size_t{kDstPitch} * kFrameHeight;

void BM_memcpy_BgraFrame(benchmark::State& state) {
  Frame src(kSrcBytes), dst(kSrcBytes);
  for (auto _ : state) {
    std::memcpy(dst.data(), src.data(), kSrcBytes);
    benchmark::DoNotOptimize(dst.data());
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSrcBytes));
}
BENCHMARK(BM_memcpy_BgraFrame)->Unit(benchmark::kMicrosecond);

void BM_QN_CS_BGRA2YUYV_Frame(benchmark::State& state, KernelLevel level, int bt709) {
  LevelScope scope(state, level);
  Frame src(kSrcBytes), dst(kDstBytes);
  for (auto _ : state) {
    QN_CS_BGRA2YUYV_Frame(dst.data(), kDstPitch, src.data(), kSrcPitch, kFrameWidth,
                          kFrameHeight, bt709, 0);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSrcBytes));
}

void BM_QN_CS_BGRA2YUYVA_Frame(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame src(kSrcBytes), dst(kDstBytes), alpha(kSrcBytes / 4);
  for (auto _ : state) {
    QN_CS_BGRA2YUYVA_Frame(dst.data(), kDstPitch, alpha.data(), kFrameWidth, src.data(),
                           kSrcPitch, kFrameWidth, kFrameHeight, 1, 0);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSrcBytes));
}

void BM_QN_CS_BGR2YUYV_Frame(benchmark::State& state, KernelLevel level) {
  LevelScope scope(state, level);
  Frame src(kSrc24Bytes), dst(kDstBytes);
  for (auto _ : state) {
    QN_CS_BGR2YUYV_Frame(dst.data(), kDstPitch, src.data(), kSrc24Pitch, kFrameWidth,
                         kFrameHeight, 1, 0);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSrc24Bytes));
}

#define QBO_BENCH_STANDARDS(fn)                                                          \
  BENCHMARK_CAPTURE(fn, C_601, KernelLevel::kC, 0)->Unit(benchmark::kMicrosecond);       \
  BENCHMARK_CAPTURE(fn, SSE2_601, KernelLevel::kSse2, 0)->Unit(benchmark::kMicrosecond); \
  BENCHMARK_CAPTURE(fn, AVX2_601, KernelLevel::kAvx2, 0)->Unit(benchmark::kMicrosecond); \
  BENCHMARK_CAPTURE(fn, C_709, KernelLevel::kC, 1)->Unit(benchmark::kMicrosecond);       \
  BENCHMARK_CAPTURE(fn, SSE2_709, KernelLevel::kSse2, 1)->Unit(benchmark::kMicrosecond); \
  BENCHMARK_CAPTURE(fn, AVX2_709, KernelLevel::kAvx2, 1)->Unit(benchmark::kMicrosecond)

QBO_BENCH_STANDARDS(BM_QN_CS_BGRA2YUYV_Frame);
QBO_BENCH_LEVELS(BM_QN_CS_BGRA2YUYVA_Frame);
QBO_BENCH_LEVELS(BM_QN_CS_BGR2YUYV_Frame);

// One row again and again: the rows' arithmetic cost with the data in the
// first-level cache (BGRA / BGR, BT.709).
void BM_Row(benchmark::State& state, RgbaToYuyvRowFn row, KernelLevel level, int src_bpp) {
  if (level > MachineKernelLevel()) state.SkipWithError("level not available on this CPU");
  const int width = static_cast<int>(state.range(0));
  const RgbToYuyvParams params = SelectRgbToYuyvParams(true, true);
  Frame src(static_cast<std::size_t>(width) * src_bpp), dst(static_cast<std::size_t>(width) * 2);
  for (auto _ : state) {
    row(src.data(), dst.data(), width, &params);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * src.size()));
}

void RowWidths(benchmark::internal::Benchmark* b) {
  for (int width : {64, 720, 1920, 3840}) b->Arg(width);
}

void BM_RgbaToYuyvRow(benchmark::State& state, RgbaToYuyvRowFn row, KernelLevel level) {
  BM_Row(state, row, level, 4);
}
void BM_Rgb24ToYuyvRow(benchmark::State& state, RgbaToYuyvRowFn row, KernelLevel level) {
  BM_Row(state, row, level, 3);
}
BENCHMARK_CAPTURE(BM_RgbaToYuyvRow, C, RgbaToYuyvRow_C, KernelLevel::kC)->Apply(RowWidths);
BENCHMARK_CAPTURE(BM_RgbaToYuyvRow, SSE2, RgbaToYuyvRow_Any_SSE2, KernelLevel::kSse2)
    ->Apply(RowWidths);
BENCHMARK_CAPTURE(BM_RgbaToYuyvRow, AVX2, RgbaToYuyvRow_Any_AVX2, KernelLevel::kAvx2)
    ->Apply(RowWidths);
BENCHMARK_CAPTURE(BM_Rgb24ToYuyvRow, C, Rgb24ToYuyvRow_C, KernelLevel::kC)->Apply(RowWidths);
BENCHMARK_CAPTURE(BM_Rgb24ToYuyvRow, SSE2, Rgb24ToYuyvRow_Any_SSE2, KernelLevel::kSse2)
    ->Apply(RowWidths);
BENCHMARK_CAPTURE(BM_Rgb24ToYuyvRow, AVX2, Rgb24ToYuyvRow_Any_AVX2, KernelLevel::kAvx2)
    ->Apply(RowWidths);

#if defined(QBO_BENCH_LIBYUV)
// libyuv's "ARGB" is B, G, R, A in memory: the same bytes as BGRA here.
void BM_libyuv_ARGBToYUY2(benchmark::State& state) {
  Frame src(kSrcBytes), dst(kDstBytes);
  for (auto _ : state) {
    libyuv::ARGBToYUY2(src.data(), kSrcPitch, dst.data(), kDstPitch, kFrameWidth, kFrameHeight);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * kSrcBytes));
}
BENCHMARK(BM_libyuv_ARGBToYUY2)->Unit(benchmark::kMicrosecond);
#endif

#if defined(QBO_BENCH_SWSCALE)
// One context per run, full range on both sides, point sampling (the
// cheapest chroma siting swscale offers).
void SwscaleToYuyv(benchmark::State& state, AVPixelFormat from, int bytes_per_pixel) {
  SwsContext* ctx = sws_getContext(kFrameWidth, kFrameHeight, from, kFrameWidth, kFrameHeight,
                                   AV_PIX_FMT_YUYV422, SWS_POINT, nullptr, nullptr, nullptr);
  if (!ctx) {
    state.SkipWithError("swscale has no such conversion");
    return;
  }
  const int* coefs = sws_getCoefficients(SWS_CS_ITU709);
  sws_setColorspaceDetails(ctx, coefs, 1, coefs, 1, 0, 1 << 16, 1 << 16);
  const std::size_t src_bytes = std::size_t{kFrameWidth} * bytes_per_pixel * kFrameHeight;
  Frame src(src_bytes), dst(kDstBytes);
  const uint8_t* src_planes[1] = {src.data()};
  const int src_pitches[1] = {kFrameWidth * bytes_per_pixel};
  uint8_t* dst_planes[1] = {dst.data()};
  const int dst_pitches[1] = {kDstPitch};
  for (auto _ : state) {
    sws_scale(ctx, src_planes, src_pitches, 0, kFrameHeight, dst_planes, dst_pitches);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * src_bytes));
  sws_freeContext(ctx);
}

void BM_swscale_BGRA2YUYV(benchmark::State& state) { SwscaleToYuyv(state, AV_PIX_FMT_BGRA, 4); }
void BM_swscale_BGR24_2YUYV(benchmark::State& state) {
  SwscaleToYuyv(state, AV_PIX_FMT_BGR24, 3);
}
BENCHMARK(BM_swscale_BGRA2YUYV)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_swscale_BGR24_2YUYV)->Unit(benchmark::kMicrosecond);
#endif

}  // namespace
}  // namespace qbo::bench
