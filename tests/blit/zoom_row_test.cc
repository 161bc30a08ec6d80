// Zoom rows: the reference against hand-worked blends, every vector row
// against the reference byte for byte over swept widths and fractions.
#include "blit/zoom_row.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <vector>

#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

struct BlendCase {
  float fx, fy;
  uint8_t p00, p01, p10, p11;
  uint8_t zoom8, zoom32;  // truncated double sum / float rounded half to even
};

const BlendCase kBlends[] = {
    {0.0f, 0.0f, 200, 9, 9, 9, 200, 200},        // on a sample: the sample itself
    {0.5f, 0.0f, 100, 0, 50, 50, 50, 50},        // 0.5 x 100
    {0.5f, 0.5f, 10, 20, 30, 40, 25, 25},        // 0.25 x (10 + 20 + 30 + 40)
    {0.5f, 0.0f, 7, 0, 0, 0, 3, 4},              // 3.5: truncated / to even 4
    {0.5f, 0.0f, 5, 0, 0, 0, 2, 2},              // 2.5: truncated / to even 2
    {0.25f, 0.0f, 255, 255, 0, 0, 255, 255},     // 191.25 + 63.75
    {0.75f, 0.75f, 0, 0, 0, 255, 143, 143},      // 0.5625 x 255 = 143.4375
    {0.5f, 0.5f, 255, 255, 255, 255, 255, 255},  // weights sum to exactly 1
};

TEST(ZoomRowsReference, BlendHandWorkedValues) {
  for (const BlendCase& b : kBlends) {
    SCOPED_TRACE(::testing::Message()
                 << "fx=" << b.fx << " fy=" << b.fy << " p=" << int(b.p00) << "," << int(b.p01)
                 << "," << int(b.p10) << "," << int(b.p11));
    const uint8_t upper8[2] = {b.p00, b.p01}, lower8[2] = {b.p10, b.p11};
    uint8_t out8 = 0;
    Zoom8Row_C(&out8, upper8, lower8, &b.fx, b.fy, 1);
    EXPECT_EQ(out8, b.zoom8);
    // The same sample in all four bytes of a 32-bit pixel.
    uint8_t upper32[8], lower32[8], out32[4] = {};
    std::memset(upper32, b.p00, 4);
    std::memset(upper32 + 4, b.p01, 4);
    std::memset(lower32, b.p10, 4);
    std::memset(lower32 + 4, b.p11, 4);
    Zoom32Row_C(out32, upper32, lower32, &b.fx, b.fy, 1);
    for (uint8_t v : out32) EXPECT_EQ(v, b.zoom32);
  }
}

struct ZoomRow {
  const char* name;
  ZoomRowFn ref, fn;
  KernelLevel level;
  std::size_t multiple, sample_bytes;
};

// Fractions as the driver produces them, with the ends of [0, 1).
std::vector<float> Fractions(std::size_t n, uint32_t seed) {
  std::mt19937 rng(seed);
  const float specials[] = {0.0f, 0.5f, 0.25f, 0.99999994f, 1.0f / 3.0f, 5.9604645e-8f};
  std::vector<float> f(n);
  for (std::size_t i = 0; i < n; ++i) {
    f[i] = rng() % 4 == 0 ? specials[rng() % 6]
                          : static_cast<float>(rng() >> 8) * (1.0f / 16777216.0f);
  }
  return f;
}

TEST(ZoomRows, VectorRowsMatchTheReference) {
  const ZoomRow rows[] = {
      {"Zoom8_SSE2", Zoom8Row_C, Zoom8Row_SSE2, KernelLevel::kSse2, 4, 1},
      {"Zoom8_Any_SSE2", Zoom8Row_C, Zoom8Row_Any_SSE2, KernelLevel::kSse2, 1, 1},
      {"Zoom8_AVX2", Zoom8Row_C, Zoom8Row_AVX2, KernelLevel::kAvx2, 8, 1},
      {"Zoom8_Any_AVX2", Zoom8Row_C, Zoom8Row_Any_AVX2, KernelLevel::kAvx2, 1, 1},
      {"Zoom32_SSE2", Zoom32Row_C, Zoom32Row_SSE2, KernelLevel::kSse2, 4, 4},
      {"Zoom32_Any_SSE2", Zoom32Row_C, Zoom32Row_Any_SSE2, KernelLevel::kSse2, 1, 4},
      {"Zoom32_AVX2", Zoom32Row_C, Zoom32Row_AVX2, KernelLevel::kAvx2, 4, 4},
      {"Zoom32_Any_AVX2", Zoom32Row_C, Zoom32Row_Any_AVX2, KernelLevel::kAvx2, 1, 4},
  };
  std::vector<std::size_t> widths;
  for (std::size_t w = 1; w <= 2 * 8 + 15; ++w) widths.push_back(w);
  widths.insert(widths.end(), {719, 1920, 2048});
  const float row_fractions[] = {0.0f, 0.5f, 0.99999994f, 0.3337f};
  const uint32_t seed = 0x200F;
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  for (const ZoomRow& row : rows) {
    if (row.level > MachineKernelLevel()) continue;
    for (std::size_t width : widths) {
      if (width % row.multiple) continue;
      for (std::size_t offset = 0; offset < 4; ++offset) {
        const uint32_t case_seed = seed + static_cast<uint32_t>(width * 4 + offset);
        const std::size_t pair_bytes = 2 * width * row.sample_bytes;
        const std::size_t out_bytes = width * row.sample_bytes;
        PageEndBuffer upper(pair_bytes), lower(pair_bytes);
        FillRandom(upper.data(), pair_bytes, case_seed);
        FillRandom(lower.data(), pair_bytes, case_seed + 1);
        if (offset == 3) std::memset(upper.data(), 255, pair_bytes);  // saturated blends
        const std::vector<float> fx = Fractions(width, case_seed);
        for (float fy : row_fractions) {
          SCOPED_TRACE(::testing::Message()
                       << row.name << " width=" << width << " off=" << offset << " fy=" << fy);
          GuardedBuffer expected(out_bytes, offset), actual(out_bytes, offset);
          row.ref(expected.data(), upper.data(), lower.data(), fx.data(), fy, width);
          row.fn(actual.data(), upper.data(), lower.data(), fx.data(), fy, width);
          ASSERT_EQ(MismatchMap(expected.data(), actual.data(), out_bytes, 1, row.sample_bytes),
                    "");
          ASSERT_TRUE(actual.GuardsIntact());
        }
      }
    }
  }
}

TEST(ZoomRows, GatherGivesZeroPastTheLimit) {
  const uint8_t row[4] = {1, 2, 3, 4};
  const int32_t ix[5] = {0, 2, 3, 4, 4};
  uint8_t pairs[10];
  GatherZoomPairs(pairs, row, ix, 4, 5);
  const uint8_t expected[10] = {1, 2, 3, 4, 4, 0, 0, 0, 0, 0};
  EXPECT_EQ(std::memcmp(pairs, expected, 10), 0);
  GatherZoomPairs<uint8_t>(pairs, nullptr, ix, 4, 5);
  EXPECT_EQ(std::memcmp(pairs, expected + 5, 5), 0) << "an absent row is all zeros";
}

}  // namespace
}  // namespace qbo::test
