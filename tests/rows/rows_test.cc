// Every row of the kernel table, at every level this machine runs, against
// the same row of the reference level: widths from 0 to past two of the
// widest blocks plus 719 and 1920, three misalignments, sources that end
// at an inaccessible page and guard bytes around every destination. A row
// family costs one entry: how to size and fill its arguments.
#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "blit/bilinear_row.h"
#include "blit/blend_row.h"
#include "colorspace/rgba_to_yuyv_row.h"
#include "colorspace/yuv_to_rgb_core.h"
#include "filter/blur_split_row.h"
#include "filter/resample_row.h"
#include "frame/kernel_table.h"
#include "frame/lookup_tables.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

// The arguments of one run. Two runs built with the same seed and skew
// get the same inputs, whatever the level.
class Io {
 public:
  Io(uint32_t seed, std::size_t skew) : rng_(seed), skew_(skew) {}
  std::size_t skew() const { return skew_; }
  uint32_t Next() { return static_cast<uint32_t>(rng_()); }

  // `n` seeded bytes ending where an inaccessible page begins.
  uint8_t* Src(std::size_t n) {
    sources_.push_back(std::make_unique<PageEndBuffer>(n));
    uint8_t* p = sources_.back()->data();
    for (std::size_t i = 0; i < n; ++i) p[i] = static_cast<uint8_t>(Next() >> 24);
    return p;
  }
  // A destination of `n` bytes with seeded contents (rows that mix into
  // their destination read them), `skew` bytes past a 64-byte boundary
  // rounded down to a multiple of `unit`.
  uint8_t* Dst(std::size_t n, std::size_t unit = 1) {
    dsts_.emplace_back(n, skew_ / unit * unit);
    uint8_t* p = dsts_.back().data();
    for (std::size_t i = 0; i < n; ++i) p[i] = static_cast<uint8_t>(Next() >> 24);
    return p;
  }
  template <typename T>
  T* DstOf(std::size_t n) {
    return reinterpret_cast<T*>(Dst(n * sizeof(T), alignof(T)));
  }
  template <typename T>
  T* Values(std::size_t n, const std::function<T(uint32_t)>& make) {
    auto& v = values_.emplace_back(std::max<std::size_t>(n, 1) * sizeof(T) + alignof(T));
    T* p = reinterpret_cast<T*>(v.data() + (alignof(T) - reinterpret_cast<uintptr_t>(v.data()) % alignof(T)) % alignof(T));
    for (std::size_t i = 0; i < n; ++i) p[i] = make(Next());
    return p;
  }
  bool GuardsIntact() const {
    for (const GuardedBuffer& d : dsts_) {
      if (!d.GuardsIntact()) return false;
    }
    return true;
  }
  // Every destination byte, and whether each destination's guards held.
  std::vector<uint8_t> Written() const {
    std::vector<uint8_t> all;
    for (const GuardedBuffer& d : dsts_) {
      all.insert(all.end(), d.data(), d.data() + d.size());
      all.push_back(d.GuardsIntact() ? 1 : 0);
    }
    return all;
  }

 private:
  std::mt19937 rng_;
  std::size_t skew_;
  std::vector<std::unique_ptr<PageEndBuffer>> sources_;
  std::deque<GuardedBuffer> dsts_;
  std::deque<std::vector<uint8_t>> values_;
};

// Alpha in runs of 0, of 255 and of noise, so every shortcut for clear and
// opaque groups is taken.
void AlphaRuns(uint8_t* px, std::size_t n, std::size_t stride, std::size_t at) {
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t run = i / 9 % 3;
    if (run < 2) px[i * stride + at] = run == 0 ? 0 : 255;
  }
}

float Unit(uint32_t r) { return static_cast<float>(r >> 8) / 16777216.0f; }

// Counts of 0 to 4 columns a pixel, random edge weights, and the
// accumulator columns (four floats each) the counts walk over.
struct MeanArgs {
  const int32_t* counts;
  const float* weights;
  const float* acc;
};
MeanArgs RandomMeanArgs(int w, Io& io) {
  const int32_t* counts = io.Values<int32_t>(w, [](uint32_t r) { return int32_t(r % 5); });
  std::size_t cols = 5;
  for (int i = 0; i < w; ++i) cols += counts[i] >= 2 ? counts[i] - 1 : 0;
  const float* weights = io.Values<float>(2 * w, Unit);
  return {counts, weights, io.Values<float>(4 * cols, [](uint32_t r) { return float(r % 600) * 0.5f; })};
}

struct Row {
  const char* name;
  int block;  // pixels the widest SIMD level takes at once
  std::function<void(const KernelTable&, int, Io&)> run;
};

const ChromaTaps kTaps[] = {{-1, 3, 3, -1, 2, 2, 2}, {0, 3, 1, 0, 2, 2, 1}, {0, 2, 2, 0, 2, 2, 2},
                            {3, -1, 0, 7, 8, 4, 4}};

std::vector<Row> Rows() {
  using K = const KernelTable&;
  std::vector<Row> rows = {
      {"copy_row_bytes", 64,
       [=](K k, int w, Io& io) {
         const uint8_t* s = io.Src(w);
         k.buffer.copy_row_bytes(io.Dst(w), s, w / 16, w % 16);
       }},
      {"stream_copy", 256,
       [](K k, int w, Io& io) {
         const uint8_t* s = io.Src(4 * w + io.skew());
         k.buffer.stream_copy(io.Dst(4 * w + io.skew()), s, 4 * w + io.skew());
       }},
      {"fill32", 32, [](K k, int w, Io& io) { k.buffer.fill32(io.DstOf<uint32_t>(w), io.Next(), w); }},
      {"fill32_stream", 32,
       [](K k, int w, Io& io) {
         k.buffer.fill32_stream(io.DstOf<uint32_t>(w), io.Next(), w);
         k.buffer.stream_fence();
       }},
      {"set_alpha", 32, [](K k, int w, Io& io) { k.buffer.set_alpha(io.DstOf<uint32_t>(w), io.Next() & 255, w); }},
      {"fill_mask_color", 32,
       [](K k, int w, Io& io) {
         const uint8_t* m = io.Src(w);
         k.mask.fill_mask_color(io.Dst(4 * w), m, g_tables.inv_byte, w);
       }},
      {"mix_mask", 64, [](K k, int w, Io& io) { const uint8_t* s = io.Src(w); k.mask.mix_mask(io.Dst(w), s, w); }},
      {"sub_mask", 64, [](K k, int w, Io& io) { const uint8_t* s = io.Src(w); k.mask.sub_mask(io.Dst(w), s, w); }},
      {"blend_over", 32,
       [](K k, int w, Io& io) {
         uint8_t* s = io.Src(4 * w);
         AlphaRuns(s, w, 4, 3);
         uint8_t* d = io.Dst(4 * w);
         AlphaRuns(d, w / 2, 8, 3);
         k.blit.blend_over(d, s, g_tables.over_share, w);
       }},
      {"blend_over_inverted", 32,
       [](K k, int w, Io& io) {
         uint8_t* s = io.Src(4 * w);
         AlphaRuns(s, w, 4, 3);
         k.blit.blend_over_inverted(io.Dst(4 * w), s, g_tables.over_share, w);
       }},
      {"bilinear_vert", 64,
       [](K k, int w, Io& io) {
         const uint8_t* top = io.Src(4 * w);
         const uint8_t* bottom = io.Src(4 * w);
         k.blit.bilinear_vert(io.DstOf<uint16_t>(4 * w), top, bottom, io.Next() % 65536, 4 * w);
       }},
      {"bilinear_horiz", 32,
       [](K k, int w, Io& io) {
         // Columns each with a right neighbour; V values up to 511, the
         // most the vertical pass leaves.
         const uint16_t* v = io.Values<uint16_t>(4 * w + 8, [](uint32_t r) { return uint16_t(r % 512); });
         const int32_t* cols = io.Values<int32_t>(w, [w](uint32_t r) { return int32_t(r % (w + 1)); });
         uint16_t* weights = io.Values<uint16_t>(8 * w, [](uint32_t) { return uint16_t(0); });
         for (int i = 0; i < w; ++i) SpreadBilinearWeights(weights + 8 * i, io.Next() % 65536);
         k.blit.bilinear_horiz(io.Dst(4 * w), v, cols, weights, w);
         k.blit.bilinear_horiz_stream(io.Dst(4 * w), v, cols, weights, w);
       }},
      {"mean_vert", 32,
       [](K k, int w, Io& io) {
         // 300 rows of 255 saturate the middle sum.
         const int32_t n = w % 7 == 6 ? 300 : w % 7;
         std::vector<const uint8_t*> area;
         const uint8_t* bright = nullptr;
         if (n == 300) {
           uint8_t* b = io.Src(4 * w);
           std::memset(b, 255, 4 * w);
           bright = b;
         }
         for (int32_t r = 0; r < std::max(n, 1); ++r) area.push_back(bright ? bright : io.Src(4 * w));
         const std::size_t begin = w > 3 ? 3 : 0;
         float* acc = io.DstOf<float>(4 * w);
         k.blit.mean_vert(acc, area.data(), n, Unit(io.Next()), Unit(io.Next()), 0.0123f, begin, 4 * w);
       }},
      {"mean_horiz", 8,
       [](K k, int w, Io& io) {
         const MeanArgs m = RandomMeanArgs(w, io);
         k.blit.mean_horiz(io.Dst(4 * w), m.acc, m.counts, m.weights, 0.61f, w);
       }},
      {"yuyv_expand", 8,
       [](K k, int w, Io& io) {
         const float* acc = io.Values<float>(4 * w, [](uint32_t r) { return float(r % 65536) / 7.0f; });
         k.blit.yuyv_expand(io.DstOf<float>(8 * w), acc, w);
       }},
      {"yuyv_mean_horiz", 8,
       [](K k, int w, Io& io) {
         const MeanArgs m = RandomMeanArgs(w, io);
         const YuyvMeanParams bgra{{1.0f, -0.187314f, -0.468207f, 0.0f}, {1.0f, 1.855615f, 1.574722f, 1.0f}, 2, 0};
         const YuyvMeanParams rgba{{1.0f, -0.344136f, -0.714136f, 0.0f}, {1.0f, 1.772f, 1.402f, 1.0f}, 0, 2};
         k.blit.yuyv_mean_horiz(io.Dst(4 * w), m.acc, m.counts, m.weights, 0.61f, w % 2 ? &bgra : &rgba, w);
       }},
      {"zoom8", 16,
       [](K k, int w, Io& io) {
         const uint8_t* up = io.Src(2 * w);
         const uint8_t* lo = io.Src(2 * w);
         const float* fx = io.Values<float>(w, Unit);
         k.zoom.zoom8(io.Dst(w), up, lo, fx, Unit(io.Next()), w);
       }},
      {"zoom32", 8,
       [](K k, int w, Io& io) {
         const uint8_t* up = io.Src(8 * w);
         const uint8_t* lo = io.Src(8 * w);
         const float* fx = io.Values<float>(w, Unit);
         k.zoom.zoom32(io.Dst(4 * w), up, lo, fx, Unit(io.Next()), w);
       }},
      {"blur_row3", 16,
       [](K k, int w, Io& io) {
         // Ordinary weights, and ones whose sums wrap.
         const BlurWeights q[] = {{{4096, 8192, 4096}}, {{-8191, -32768, -8191}}, {{32767, -5, 77}}};
         const uint8_t* a = io.Src(4 * w);
         const uint8_t* b = io.Src(4 * w);
         const uint8_t* c = io.Src(4 * w);
         k.filter.blur_row3(io.Dst(4 * w), a, b, c, w, &q[w % 3]);
       }},
      {"yuyv_split", 32,
       [](K k, int w, Io& io) {
         const uint8_t* s = io.Src(4 * w);
         k.filter.yuyv_split(io.Dst(2 * w), io.Dst(w), io.Dst(w), s, w);
       }},
      {"yuyv_mix_opaque", 16,
       [](K k, int w, Io& io) {
         const uint8_t* s = io.Src(4 * w);
         uint8_t* sa = io.Src(2 * w);
         AlphaRuns(sa, 2 * w, 1, 0);
         k.filter.yuyv_mix_opaque(io.Dst(4 * w), nullptr, s, sa, w, g_tables.over_share);
       }},
      {"yuyv_mix_alpha", 16,
       [](K k, int w, Io& io) {
         const uint8_t* s = io.Src(4 * w);
         uint8_t* sa = io.Src(2 * w);
         AlphaRuns(sa, 2 * w, 1, 0);
         uint8_t* d = io.Dst(4 * w);
         k.filter.yuyv_mix_alpha(d, io.Dst(2 * w), s, sa, w, g_tables.over_share);
       }},
      {"resample_v", 32,
       [](K k, int w, Io& io) {
         // A real phase of a kernel, or any 16-bit weights so the sums wrap.
         for (int taps : {4, 8}) {
           ResampleKernel kernel;
           BuildResampleKernel(&kernel, taps, 2, 3);
           ResampleColumnTaps t{};
           const bool real = w % 2 == 0;
           for (int i = 0; i < taps; ++i) {
             t.rows[i] = io.Src(4 * w);
             t.weights[i] = real ? kernel.weight(w % kernel.phases, i) : static_cast<int16_t>(io.Next());
           }
           (taps == 4 ? k.filter.resample_v4 : k.filter.resample_v8)(io.Dst(4 * w), &t, 4 * w);
         }
       }},
      {"resample_h", 8,
       [](K k, int w, Io& io) {
         // Shrinking and enlarging lines, starting part-way in too.
         if (w == 0) return;
         for (int taps : {4, 8}) {
           for (int num : {1, 3, 7}) {
             const int32_t src_len = std::max(1, w * num / 4);
             ResampleKernel kernel;
             BuildResampleKernel(&kernel, taps, w, src_len);
             std::vector<ResampleSite> sites(w);
             const ResampleLineParams p{&kernel, ResampleStep(src_len, w), src_len, sites.data()};
             BuildResampleSites(&p, w, sites.data());
             const uint8_t* line = io.Src(4 * src_len);
             const int x0 = w % 3;
             (taps == 4 ? k.filter.resample_h4 : k.filter.resample_h8)(io.Dst(4 * (w - x0)), line, x0, w - x0, &p);
           }
         }
       }},
      {"interleave_yuyv", 32,
       [](K k, int w, Io& io) {
         const uint8_t* y = io.Src(w & ~1);
         const uint8_t* u = io.Src(w / 2);
         const uint8_t* v = io.Src(w / 2);
         k.yuvlayout.interleave_yuyv(io.Dst(2 * (w & ~1)), y, u, v, w);
       }},
      {"blend_chroma", 32,
       [](K k, int w, Io& io) {
         const uint8_t* a = io.Src(w);
         const uint8_t* b = io.Src(w);
         const ChromaBlend cw{static_cast<uint16_t>(w % 9), static_cast<uint16_t>(8 - w % 9)};
         k.yuvlayout.blend_chroma(io.Dst(w), a, b, w, &cw);
       }},
      {"yuv420_to_yuyv", 64,
       [](K k, int w, Io& io) {
         // Every third width streams its stores (where the skew leaves
         // the destination aligned; the others fall back to cached ones).
         const ChromaBlend cw{static_cast<uint16_t>(w % 9), static_cast<uint16_t>(8 - w % 9),
                              w % 3 == 0};
         const uint8_t* y = io.Src(w & ~1);
         const uint8_t *ua = io.Src(w / 2), *ub = io.Src(w / 2), *va = io.Src(w / 2), *vb = io.Src(w / 2);
         k.yuvlayout.yuv420_to_yuyv(io.Dst(2 * (w & ~1)), y, ua, ub, va, vb, w, &cw);
       }},
      {"yuyv_to_luma", 32,
       [](K k, int w, Io& io) {
         const uint8_t* s = io.Src(2 * (w & ~1));
         k.yuvlayout.yuyv_to_luma(io.Dst(w & ~1), s, w);
       }},
      {"yuyv_to_chroma", 32,
       [](K k, int w, Io& io) {
         const std::size_t n = 2 * (w & ~1);
         const uint8_t *a = io.Src(n), *b = io.Src(n), *c = io.Src(n), *d = io.Src(n);
         uint8_t* u = io.Dst(w / 2);
         k.yuvlayout.yuyv_to_chroma(u, io.Dst(w / 2), a, b, c, d, w, &kTaps[w % 4]);
       }},
  };
  // The YUV to RGB rows: both standards, every output order.
  for (int bt709 : {0, 1}) {
    rows.push_back({bt709 ? "yuyv_to_pixels 709" : "yuyv_to_pixels 601", 64, [bt709](K k, int w, Io& io) {
                      YuvToRgbVectors v = YuvToRgbVectorsFor(bt709);
                      v.stream = w % 3 == 0;  // as yuv420_to_yuyv
                      const int even = (w + 1) & ~1;
                      if (even == 0) return;
                      const uint8_t* s = io.Src(2 * even);
                      k.colorspace.yuyv_to_rgba_row(s, io.Dst(4 * even), even, &v);
                      k.colorspace.yuyv_to_bgra_row(s, io.Dst(4 * even), even, &v);
                      k.colorspace.yuyv_to_rgb24_row(s, io.Dst(3 * even), even, &v);
                    }});
    rows.push_back({bt709 ? "planar_to_pixels 709" : "planar_to_pixels 601", 64, [bt709](K k, int w, Io& io) {
                      YuvToRgbVectors v = YuvToRgbVectorsFor(bt709);
                      v.stream = w % 3 == 0;  // as yuv420_to_yuyv
                      if (w == 0) return;
                      const uint8_t* y = io.Src(w);
                      const uint8_t* u = io.Src((w + 1) / 2);
                      const uint8_t* cv = io.Src((w + 1) / 2);
                      k.planar_to_rgba.to_rgba(io.Dst(4 * w), y, u, cv, w, &v);
                      k.planar_to_rgba.to_bgra(io.Dst(4 * w), y, u, cv, w, &v);
                    }});
  }
  rows.push_back({"rgb24_to_rgba", 16, [](K k, int w, Io& io) {
                    if (w == 0) return;
                    const uint8_t* s = io.Src(3 * w);
                    const uint8_t* a = io.Src(w);
                    k.colorspace.rgb24_to_rgba_row(s, nullptr, io.Dst(4 * w), w);
                    k.colorspace.rgb24_alpha_to_rgba_row(s, a, io.Dst(4 * w), w);
                  }});
  rows.push_back({"rgb_to_yuyv", 16, [](K k, int w, Io& io) {
                    if (w == 0) return;
                    // Extremes now and then: the sums' limits.
                    uint8_t* s = io.Src(4 * w);
                    if (w % 5 == 0) for (int i = 0; i < 4 * w; ++i) s[i] = (i / 3) % 2 ? 255 : 0;
                    const uint8_t* s24 = io.Src(w % 4 == 3 ? 3 * w + 3 : 3 * w);
                    const std::size_t out = (2 * w + 3) / 4 * 4;
                    for (int p = 0; p < 4; ++p) {
                      const RgbToYuyvParams params = SelectRgbToYuyvParams(p & 1, p & 2);
                      k.colorspace.rgba_to_yuyv(s, io.Dst(out), w, &params);
                      uint8_t* d = io.Dst(out);
                      k.colorspace.rgba_to_yuyva(s, d, io.Dst(w + (w & 1)), w, &params);
                      k.colorspace.rgb24_to_yuyv(s24, io.Dst(out), w, &params);
                    }
                  }});
  return rows;
}

// The AVX-512 rows run only where the CPU has them; say so when it does not.
TEST(Rows, Avx512LevelsAreSwept) {
  if (MachineKernelLevel() < KernelLevel::kAvx512) GTEST_SKIP() << "this CPU has no AVX-512";
  EXPECT_EQ(AvailableKernelLevels()[3], KernelLevel::kAvx512);
  if (MachineKernelLevel() < KernelLevel::kAvx512Vbmi) GTEST_SKIP() << "this CPU has no VBMI";
  EXPECT_EQ(AvailableKernelLevels().back(), KernelLevel::kAvx512Vbmi);
}

// The SIMD blends compute the over-share entry instead of reading the
// table: every (source, destination) alpha pair, in blocks whose
// destination alpha is fixed (the opaque-destination path) and in blocks
// where it varies (the general one), against the reference row.
TEST(Rows, BlendsMatchTheReferenceForEveryAlphaPair) {
  const std::size_t n = 65536;
  for (bool alpha_pair_swapped : {false, true}) {
    std::vector<uint8_t> src = RandomBytes(4 * n, 11), dst = RandomBytes(4 * n, 12);
    for (std::size_t i = 0; i < n; ++i) {
      src[4 * i + 3] = static_cast<uint8_t>(alpha_pair_swapped ? i >> 8 : i);
      dst[4 * i + 3] = static_cast<uint8_t>(alpha_pair_swapped ? i : i >> 8);
    }
    for (bool inverted : {false, true}) {
      std::vector<uint8_t> want = dst;
      (inverted ? BlendOverInvertedRow_C : BlendOverRow_C)(want.data(), src.data(),
                                                           g_tables.over_share, n);
      ForEachLevel([&](KernelLevel) {
        std::vector<uint8_t> got = dst;
        const BlitKernels& k = Kernels().blit;
        (inverted ? k.blend_over_inverted : k.blend_over)(got.data(), src.data(),
                                                          g_tables.over_share, n);
        ASSERT_EQ(want, got) << "inverted=" << inverted;
      });
    }
  }
}

TEST(Rows, EveryLevelWritesTheReferenceBytes) {
  std::vector<std::pair<KernelLevel, KernelTable>> tables;
  for (KernelLevel level : AvailableKernelLevels()) {
    ScopedKernelLevel scoped(level);
    tables.emplace_back(level, Kernels());
  }
  ASSERT_EQ(tables.front().first, KernelLevel::kC);
  for (const Row& row : Rows()) {
    std::vector<int> widths;
    for (int w = 0; w <= 2 * row.block + 15; ++w) widths.push_back(w);
    widths.insert(widths.end(), {719, 1920});
    for (int w : widths) {
      for (std::size_t skew : {0, 4, 7}) {
        const uint32_t seed = static_cast<uint32_t>(w * 31 + skew);
        SCOPED_TRACE(::testing::Message() << row.name << " width=" << w << " skew=" << skew << " seed=" << seed);
        Io want(seed, skew);
        row.run(tables.front().second, w, want);
        const std::vector<uint8_t> expected = want.Written();
        ASSERT_TRUE(want.GuardsIntact());
        for (std::size_t i = 1; i < tables.size(); ++i) {
          Io got(seed, skew);
          row.run(tables[i].second, w, got);
          ASSERT_EQ(expected, got.Written()) << KernelLevelName(tables[i].first);
        }
      }
    }
  }
}

}  // namespace
}  // namespace qbo::test
