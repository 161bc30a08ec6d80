// The filter rows worked by hand: blur weights and rows, resampling
// phases and sums, YUYV mixing.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <numeric>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "filter/blur_split_row.h"
#include "filter/resample_row.h"
#include "filter/yuyv_mix_row.h"
#include "frame/kernel_table.h"
#include "frame/lookup_tables.h"
#include "tests/support/fake_platform.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

std::vector<int> Phase(const ResampleKernel& k, int phase) {
  std::vector<int> w;
  for (int t = 0; t < k.taps; ++t) w.push_back(k.weight(phase, t));
  return w;
}

TEST(BlurWeights, HandWorkedQ14) {
  struct Case {
    int32_t w[3];
    int16_t q[3];
  };
  const Case cases[] = {
      {{1, 2, 1}, {4096, 8192, 4096}},
      {{0, 1, 0}, {0, 16384, 0}},
      // scale = (float)(1 / 3.0) = 0.333333343; 16384 * that = 5461.33 -> 5461.
      {{1, 1, 1}, {5461, 5461, 5461}},
      // 8: 0.125 -> 6144 + 0.5 and 4096 + 0.5 truncate down.
      {{3, 3, 2}, {6144, 6144, 4096}},
      // S = 2: -8192 + 0.5 truncates toward zero to -8191; 32768 + 0.5 ->
      // 32768, which as a 16-bit weight is -32768.
      {{-1, 4, -1}, {-8191, -32768, -8191}},
  };
  for (const Case& c : cases) {
    const BlurWeights q = BlurWeightsOf(c.w);
    EXPECT_EQ(std::vector<int>(q.q, q.q + 3), std::vector<int>(c.q, c.q + 3))
        << c.w[0] << "," << c.w[1] << "," << c.w[2];
  }
}

TEST(BlurRow3, HandWorkedBytes) {
  struct Case {
    BlurWeights q;
    uint8_t a, b, c, out;
  };
  const Case cases[] = {
      // (1280*4096 >> 16) + (2560*8192 >> 16) + (3840*4096 >> 16) + 16
      // = 80 + 320 + 240 + 16 = 656; 656 >> 5 = 20.
      {{{4096, 8192, 4096}}, 10, 20, 30, 20},
      // 2040 + 4080 + 2040 + 16 = 8176 >> 5 = 255: white stays white.
      {{{4096, 8192, 4096}}, 255, 255, 255, 255},
      {{{0, 16384, 0}}, 9, 77, 200, 77},
      // (-1, 4, -1) on 100: -1600 - 6400 - 1600 + 16 = -9584 = 55952
      // unsigned; >> 5 = 1748; low byte 212. The sum wraps, unclamped.
      {{{-8191, -32768, -8191}}, 100, 100, 100, 212},
      {{{4096, 8192, 4096}}, 0, 0, 0, 0},
  };
  for (const Case& c : cases) {
    const uint8_t above[4] = {c.a, c.a, c.a, c.a}, centre[4] = {c.b, c.b, c.b, c.b},
                  below[4] = {c.c, c.c, c.c, c.c};
    uint8_t out[4];
    BlurRow3_C(out, above, centre, below, 1, &c.q);
    EXPECT_EQ(out[0], c.out) << int(c.a) << "," << int(c.b) << "," << int(c.c);
    EXPECT_EQ(out[3], c.out);
  }
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

struct OpaqueCase {
  uint8_t a, s, d, out;
};

TEST(YuyvMixOpaqueRow, HandWorkedBytes) {
  const OpaqueCase cases[] = {
      {255, 255, 0, 254},   // 0 + (65025 >> 8 = 254) - 0
      {255, 0, 255, 1},     // 255 + 0 - 254
      {128, 200, 100, 150},  // 100 + (25600 >> 8 = 100) - (12800 >> 8 = 50)
      {0, 255, 16, 16},     // transparent: unchanged
      {1, 255, 128, 128},   // 128 + 0 - 0
  };
  for (const OpaqueCase& c : cases) {
    // One pair: both pixels share the alpha.
    uint8_t dst[4] = {c.d, c.d, c.d, c.d};
    const uint8_t src[4] = {c.s, c.s, c.s, c.s}, alpha[2] = {c.a, c.a};
    YuyvMixOpaqueRow_C(dst, nullptr, src, alpha, 1, nullptr);
    EXPECT_EQ(dst[0], c.out) << "a=" << int(c.a) << " s=" << int(c.s) << " d=" << int(c.d);
    EXPECT_EQ(dst[3], c.out);
  }
  // Y0 and U follow the first pixel's alpha, Y1 and V the second's.
  uint8_t dst[4] = {0, 0, 0, 0};
  const uint8_t src[4] = {255, 255, 255, 255}, alpha[2] = {255, 0};
  YuyvMixOpaqueRow_C(dst, nullptr, src, alpha, 1, nullptr);
  EXPECT_EQ(std::vector<int>(dst, dst + 4), (std::vector<int>{254, 254, 0, 0}));
}

struct ShareCase {
  uint8_t sa, da, s, d, out, alpha;
};

TEST(YuyvMixAlphaRow, HandWorkedBytes) {
  const ShareCase cases[] = {
      // w = 32767: 0 + (255 * 32767 >> 16) = 127, half-way; alpha 0 + 255.
      {255, 0, 255, 0, 127, 255},
      // (0 - 200) * 32767 >> 16 = floor(-99.997) = -100 -> 100.
      {255, 0, 0, 200, 100, 255},
      // 255 + 255 - 254 = 256, clamped to 255.
      {255, 255, 255, 0, 127, 255},
      // w = OverShare[128][255] = 16447: 255 * 16447 >> 16 = 63; alpha
      // 255 + 128 - (32640 >> 8 = 127) = 256 -> 255.
      {128, 255, 255, 0, 63, 255},
      // No source alpha: w = 0, nothing moves, alpha unchanged.
      {0, 77, 255, 10, 10, 77},
      // w = 50 * 8355585 / (255 * 50 + 205 * 100) = 12564; 40 + (160 * 12564
      // >> 16 = 30) = 70; alpha 100 + 50 - (5000 >> 8 = 19) = 131.
      {50, 100, 200, 40, 70, 131},
  };
  for (const ShareCase& c : cases) {
    SCOPED_TRACE(::testing::Message() << "sa=" << int(c.sa) << " da=" << int(c.da));
    uint8_t dst[4] = {c.d, c.d, c.d, c.d}, dst_alpha[2] = {c.da, c.da};
    const uint8_t src[4] = {c.s, c.s, c.s, c.s}, src_alpha[2] = {c.sa, c.sa};
    YuyvMixAlphaRow_C(dst, dst_alpha, src, src_alpha, 1, g_tables.over_share);
    EXPECT_EQ(std::vector<int>(dst, dst + 4), std::vector<int>(4, c.out));
    EXPECT_EQ(dst_alpha[0], c.alpha);
    EXPECT_EQ(dst_alpha[1], c.alpha);
  }
  // V takes the first pixel's share like U; only Y1 follows the second.
  uint8_t dst[4] = {0, 0, 0, 0}, dst_alpha[2] = {0, 0};
  const uint8_t src[4] = {255, 255, 255, 255}, src_alpha[2] = {255, 0};
  YuyvMixAlphaRow_C(dst, dst_alpha, src, src_alpha, 1, g_tables.over_share);
  EXPECT_EQ(std::vector<int>(dst, dst + 4), (std::vector<int>{127, 127, 0, 127}));
  EXPECT_EQ(std::vector<int>(dst_alpha, dst_alpha + 2), (std::vector<int>{255, 0}));
}

}  // namespace
}  // namespace qbo::test
