// The phase tables and the resampling rows: hand-worked tables and samples
// for the reference, every level against it over swept sizes and ratios.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <numeric>
#include <vector>

#include "filter/resample_row.h"
#include "frame/kernel_table.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

std::vector<int> Phase(const ResampleKernel& k, int phase) {
  std::vector<int> w;
  for (int t = 0; t < k.taps; ++t) w.push_back(k.weight(phase, t));
  return w;
}

TEST(ResampleKernel, HandWorkedPhases) {
  struct Case {
    int taps, dst, src, phase;
    std::vector<int> weights;
  };
  const Case cases[] = {
      // Phase 0 at scale 1: the sinc is ~0 at every other integer.
      {4, 1, 1, 0, {0, 4096, 0, 0}},
      {8, 1, 1, 0, {0, 0, 0, 4096, 0, 0, 0, 0}},
      // Half-way, scale 1: x = -1.5pi, -0.5pi, 0.5pi, 1.5pi; raw
      // sin(x)/x * window * 4096 = -530, 2479, 2479, -530, S = 3898;
      // -530 * 4096 / 3898 = -556 (truncated), 2479 * 4096 / 3898 = 2604,
      // tap 1 = 4096 - (-556 + 2604 - 556) = 2604.
      {4, 2, 1, 16, {-556, 2604, 2604, -556}},
      // Downscale by 2, phase 0: fc = pi/2, x = -pi/2, 0, pi/2, pi; the
      // window goes by tap index, so taps 0 and 2 differ: raw 1590, 4096,
      // 2479, 0, S = 8165 -> 797, (4096), 1243, 0; tap 1 = 4096 - 2040.
      {4, 1, 2, 0, {797, 2056, 1243, 0}},
      {8, 1, 1, 8, {-93, 280, -707, 2567, 2569, -707, 280, -93}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.taps << " taps " << c.dst << "/" << c.src << " phase "
                                      << c.phase);
    ResampleKernel k;
    BuildResampleKernel(&k, c.taps, c.dst, c.src);
    EXPECT_EQ(Phase(k, c.phase), c.weights);
  }
}

TEST(ResampleKernel, EveryPhaseSumsToUnityInBothHalves) {
  for (int taps : {4, 8}) {
    for (auto [dst, src] : {std::pair{1, 1}, {1, 2}, {2, 3}, {3, 2}, {1, 7}, {1280, 1920},
                            {1920, 1280}, {1, 1000}, {1000, 1}}) {
      ResampleKernel k;
      BuildResampleKernel(&k, taps, dst, src);
      for (int p = 0; p < k.phases; ++p) {
        int sum = 0;
        for (int t = 0; t < taps; ++t) {
          const uint32_t word = static_cast<uint32_t>(k.words[p * taps + t]);
          ASSERT_EQ(word >> 16, word & 0xFFFF) << "both halves hold the weight";
          sum += k.weight(p, t);
          ASSERT_EQ(k.lanes[(p * taps + t) * 2], k.words[p * taps + t]);
          ASSERT_EQ(k.lanes[(p * taps + t) * 2 + 1], k.words[p * taps + t]);
        }
        ASSERT_EQ(sum, 4096) << taps << " taps " << dst << "/" << src << " phase " << p;
      }
    }
  }
}

TEST(ResampleStep, IsTheQuotientPlusOne) {
  EXPECT_EQ(ResampleStep(1, 1), 65537);  // phase stays 0 up to sample 2047
  EXPECT_EQ(ResampleStep(1920, 1280), 98305);
  EXPECT_EQ(ResampleStep(3, 7), 28087);  // 196608 / 7 = 28086.86
}

// Output 1 with step 0.5 sits half-way between samples 0 and 1 (phase 16).
TEST(ResampleRowH4, HandWorkedSamples) {
  ResampleKernel k;
  BuildResampleKernel(&k, 4, 2, 1);  // phase 16 = -556, 2604, 2604, -556
  const ResampleLineParams p{&k, 0x8000, 3, nullptr};
  // Channel 0: taps read samples 0, 0, 1, 2 = 100, 100, 200, 50:
  //   (12800 * -556) >> 16 = -109, (12800 * 2604) >> 16 = 508,
  //   (25600 * 2604) >> 16 = 1017, (6400 * -556) >> 16 = -55;
  //   sum 1361, (1361 + 4) >> 3 = 170.
  // Channel 1: 0, 0, 255, 255 -> 0 + 0 + 1296 - 277 = 1019 -> 127.
  // Channel 2: 255, 255, 0, 0 -> -277 + 1296 = 1019 -> 127.
  // Channel 3: 255, 255, 0, 255 -> -277 + 1296 + 0 - 277 = 742 -> 93.
  const uint8_t src[12] = {100, 0, 255, 255, 200, 255, 0, 0, 50, 255, 0, 255};
  uint8_t out[8];
  ResampleRowH4_C(out, src, 0, 2, &p);
  EXPECT_EQ(std::vector<int>(out + 4, out + 8), (std::vector<int>{170, 127, 127, 93}));
  EXPECT_EQ(std::vector<int>(out, out + 4), (std::vector<int>{100, 0, 255, 255}))
      << "phase 0 reproduces sample 0";
}

TEST(ResampleRowV, HandWorkedSumsClampAndRound) {
  const uint8_t zero[1] = {0}, full[1] = {255};
  uint8_t out[1];
  // 0, 255, 255, 0 at half-way: 1296 + 1296 = 2592 -> 324 -> clamped 255.
  ResampleColumnTaps t4{{zero, full, full, zero}, {-556, 2604, 2604, -556}};
  ResampleRowV4_C(out, &t4, 1);
  EXPECT_EQ(out[0], 255);
  // 255, 0, 0, 255: -277 - 277 = -554 -> negative -> 0.
  t4 = {{full, zero, zero, full}, {-556, 2604, 2604, -556}};
  ResampleRowV4_C(out, &t4, 1);
  EXPECT_EQ(out[0], 0);
  // A constant 255 under 8 taps at scale 1, phase 8: the floored products
  // -47 + 139 - 353 + 1278 + 1279 - 353 + 139 - 47 = 2035, (2035 + 4) >> 3
  // = 254: flooring every product loses one.
  ResampleColumnTaps t8{{full, full, full, full, full, full, full, full},
                        {-93, 280, -707, 2567, 2569, -707, 280, -93}};
  ResampleRowV8_C(out, &t8, 1);
  EXPECT_EQ(out[0], 254);
  // The sum wraps in 16 bits: 8 x ((32640 * 32767) >> 16 = 16319) = 130552
  // = -434 (mod 65536) -> 0.
  ResampleColumnTaps wrap{{full, full, full, full, full, full, full, full},
                          {32767, 32767, 32767, 32767, 32767, 32767, 32767, 32767}};
  ResampleRowV8_C(out, &wrap, 1);
  EXPECT_EQ(out[0], 0);
}

struct Ratio {
  int num, den;  // source length = output length * num / den (at least 1)
};
constexpr Ratio kRatios[] = {{1, 1}, {2, 1}, {1, 2}, {3, 2}, {2, 3}, {7, 3}, {3, 7}, {5, 1}, {1, 5}};

std::vector<int32_t> SweptWidths(int block) {
  std::vector<int32_t> w(static_cast<std::size_t>(2 * block + 15));
  std::iota(w.begin(), w.end(), 1);
  w.push_back(719);
  w.push_back(1920);
  return w;
}

TEST(ResampleRowH, EveryLevelMatchesTheReference) {
  const uint32_t seed = 20261122;
  ForEachLevel([&](KernelLevel level) {
    for (int taps : {4, 8}) {
      const ResampleRowHFn row = taps == 4 ? Kernels().filter.resample_h4 : Kernels().filter.resample_h8;
      const ResampleRowHFn ref = taps == 4 ? ResampleRowH4_C : ResampleRowH8_C;
      for (const Ratio& r : kRatios) {
        for (int32_t width : SweptWidths(8)) {
          const int32_t src_len = std::max(1, width * r.num / r.den);
          const int32_t x0 = width % 3;  // start part-way into the line too
          const std::size_t offset = static_cast<std::size_t>(width % 4);
          SCOPED_TRACE(::testing::Message() << KernelLevelName(level) << " taps=" << taps
                                            << " width=" << width << " src=" << src_len
                                            << " x0=" << x0 << " seed=" << seed);
          ResampleKernel k;
          BuildResampleKernel(&k, taps, width, src_len);
          std::vector<ResampleSite> sites(static_cast<std::size_t>(width));
          const ResampleLineParams p{&k, ResampleStep(src_len, width), src_len, sites.data()};
          BuildResampleSites(&p, width, sites.data());
          PageEndBuffer src(static_cast<std::size_t>(src_len) * 4 + offset);
          FillRandom(src.data(), src.size(), seed + static_cast<uint32_t>(width));
          const uint8_t* line = src.data() + offset;
          const std::size_t bytes = static_cast<std::size_t>(width - x0) * 4;
          GuardedBuffer want(bytes), got(bytes, offset);
          ref(want.data(), line, x0, width - x0, &p);
          row(got.data(), line, x0, width - x0, &p);
          ASSERT_EQ(MismatchMap(want.data(), got.data(), bytes, 1, 4), "");
          ASSERT_TRUE(got.GuardsIntact());
        }
      }
    }
  });
}

TEST(ResampleRowV, EveryLevelMatchesTheReference) {
  const uint32_t seed = 7001;
  std::vector<int32_t> widths = SweptWidths(32);
  widths.push_back(719 * 4);
  widths.push_back(1920 * 4);
  ForEachLevel([&](KernelLevel level) {
    for (int taps : {4, 8}) {
      const ResampleRowVFn row = taps == 4 ? Kernels().filter.resample_v4 : Kernels().filter.resample_v8;
      const ResampleRowVFn ref = taps == 4 ? ResampleRowV4_C : ResampleRowV8_C;
      for (int32_t bytes : widths) {
        for (int weights_kind = 0; weights_kind < 2; ++weights_kind) {
          SCOPED_TRACE(::testing::Message() << KernelLevelName(level) << " taps=" << taps
                                            << " bytes=" << bytes << " kind=" << weights_kind
                                            << " seed=" << seed);
          std::vector<std::unique_ptr<PageEndBuffer>> rows;
          ResampleColumnTaps t{};
          const std::vector<uint8_t> wbytes = RandomBytes(2 * taps, seed + static_cast<uint32_t>(bytes));
          ResampleKernel k;
          BuildResampleKernel(&k, taps, 2, 3);
          for (int i = 0; i < taps; ++i) {
            rows.push_back(std::make_unique<PageEndBuffer>(static_cast<std::size_t>(bytes + i)));
            FillRandom(rows.back()->data(), rows.back()->size(), seed * 3 + static_cast<uint32_t>(i + bytes));
            t.rows[i] = rows.back()->data() + i;  // each row misaligned differently
            // A real phase, or any 16-bit weights so the sums wrap.
            t.weights[i] = weights_kind == 0
                               ? k.weight(bytes % k.phases, i)
                               : static_cast<int16_t>(wbytes[2 * i] | wbytes[2 * i + 1] << 8);
          }
          GuardedBuffer want(static_cast<std::size_t>(bytes)), got(static_cast<std::size_t>(bytes), 3);
          ref(want.data(), &t, bytes);
          row(got.data(), &t, bytes);
          ASSERT_EQ(MismatchMap(want.data(), got.data(), static_cast<std::size_t>(bytes), 1), "");
          ASSERT_TRUE(got.GuardsIntact());
        }
      }
    }
  });
}

}  // namespace
}  // namespace qbo::test
