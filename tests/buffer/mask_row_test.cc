// Mask rows: the reference against hand-worked values, every vector row
// against the reference byte for byte.
#include "buffer/mask_row.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "frame/lookup_tables.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

struct PairCase {
  uint8_t d, s, expected;
};

TEST(MaskRowsReference, MixMaskIsTheRoundedScreen) {
  const PairCase cases[] = {
      {128, 128, 192},             // 256 - (16384 + 255) / 256 = 256 - 64
      {255, 255, 255},             // 510 - (65025 + 255) / 256 = 510 - 255
      {0, 77, 77},                 // 77 - 255 / 256 = 77
      {77, 0, 77},     {1, 1, 1},  // 2 - 256 / 256
      {200, 100, 221},             // 300 - 20255 / 256 = 300 - 79
      {255, 3, 255},               // 258 - 1020 / 256 = 258 - 3
  };
  for (const PairCase& c : cases) {
    uint8_t d = c.d;
    MixMaskRow_C(&d, &c.s, 1);
    EXPECT_EQ(d, c.expected) << int(c.d) << " mix " << int(c.s);
  }
}

TEST(MaskRowsReference, SubMaskFloorsAtZero) {
  const PairCase cases[] = {{200, 50, 150}, {50, 200, 0}, {7, 7, 0}, {255, 0, 255}, {0, 255, 0}};
  for (const PairCase& c : cases) {
    uint8_t d = c.d;
    SubMaskRow_C(&d, &c.s, 1);
    EXPECT_EQ(d, c.expected) << int(c.d) << " sub " << int(c.s);
  }
}

TEST(MaskRowsReference, FillMaskColorScalesOnlyAlpha) {
  struct Case {
    uint8_t alpha, mask, expected;
  };
  const Case cases[] = {
      {255, 128, 128},               // 255 x 0.50196081 = 128.0000
      {77, 255, 77},                 // x 1.0 exactly
      {200, 0, 0},     {3, 128, 2},  // 1.5058824 rounds up
      {1, 127, 0},                   // 0.4980392
      {1, 128, 1},                   // 0.5019608
      {100, 51, 20},                 // 51 x 0.003921569 = 0.2000000; 20.000000
  };
  for (const Case& c : cases) {
    uint8_t px[4] = {11, 22, 33, c.alpha};
    FillMaskColorRow_C(px, &c.mask, g_tables.inv_byte, 1);
    EXPECT_EQ(px[3], c.expected) << "alpha " << int(c.alpha) << " mask " << int(c.mask);
    EXPECT_EQ(px[0] + px[1] + px[2], 66) << "colour bytes untouched";
  }
}

// The vector rows form the table entry as float(m) x kMaskInvByte instead
// of loading it; that is the table's own construction.
TEST(MaskRowsReference, ByteTableIsTheProductTheVectorRowsForm) {
  for (int i = 0; i < 256; ++i) {
    ASSERT_EQ(g_tables.inv_byte[i], static_cast<float>(i) * kMaskInvByte) << i;
  }
}

struct PairRow {
  const char* name;
  MaskPairRowFn ref, fn;
  KernelLevel level;
  std::size_t multiple;
};

const PairRow kPairRows[] = {
    {"MixMask_SSE2", MixMaskRow_C, MixMaskRow_SSE2, KernelLevel::kSse2, 16},
    {"MixMask_Any_SSE2", MixMaskRow_C, MixMaskRow_Any_SSE2, KernelLevel::kSse2, 1},
    {"MixMask_AVX2", MixMaskRow_C, MixMaskRow_AVX2, KernelLevel::kAvx2, 32},
    {"MixMask_Any_AVX2", MixMaskRow_C, MixMaskRow_Any_AVX2, KernelLevel::kAvx2, 1},
    {"SubMask_SSE2", SubMaskRow_C, SubMaskRow_SSE2, KernelLevel::kSse2, 16},
    {"SubMask_Any_SSE2", SubMaskRow_C, SubMaskRow_Any_SSE2, KernelLevel::kSse2, 1},
    {"SubMask_AVX2", SubMaskRow_C, SubMaskRow_AVX2, KernelLevel::kAvx2, 32},
    {"SubMask_Any_AVX2", SubMaskRow_C, SubMaskRow_Any_AVX2, KernelLevel::kAvx2, 1},
};

std::vector<std::size_t> SweptWidths() {
  std::vector<std::size_t> widths;
  for (std::size_t w = 1; w <= 2 * 32 + 15; ++w) widths.push_back(w);
  widths.insert(widths.end(), {719, 1920, 4097});
  return widths;
}

TEST(MaskRows, PairRowsMatchTheReference) {
  const uint32_t seed = 0x5EED01;
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  for (const PairRow& row : kPairRows) {
    if (row.level > MachineKernelLevel()) continue;
    for (std::size_t width : SweptWidths()) {
      if (width % row.multiple) continue;
      for (std::size_t offset = 0; offset < 4; ++offset) {
        SCOPED_TRACE(::testing::Message() << row.name << " width=" << width << " off=" << offset);
        const uint32_t case_seed = seed + static_cast<uint32_t>(width * 4 + offset);
        const std::vector<uint8_t> before = RandomBytes(width, case_seed);
        PageEndBuffer src(width);
        FillRandom(src.data(), width, case_seed ^ 0xFFFF);
        GuardedBuffer expected(width, offset), actual(width, offset);
        std::memcpy(expected.data(), before.data(), width);
        std::memcpy(actual.data(), before.data(), width);
        row.ref(expected.data(), src.data(), width);
        row.fn(actual.data(), src.data(), width);
        ASSERT_EQ(MismatchMap(expected.data(), actual.data(), width, 1), "");
        ASSERT_TRUE(actual.GuardsIntact());
      }
    }
  }
}

TEST(MaskRows, PairRowsMatchTheReferenceOnEveryBytePair) {
  std::vector<uint8_t> dst(65536), src(65536);
  for (int i = 0; i < 65536; ++i) {
    dst[i] = static_cast<uint8_t>(i >> 8);
    src[i] = static_cast<uint8_t>(i);
  }
  for (const PairRow& row : kPairRows) {
    if (row.level > MachineKernelLevel()) continue;
    SCOPED_TRACE(row.name);
    std::vector<uint8_t> expected = dst, actual = dst;
    row.ref(expected.data(), src.data(), src.size());
    row.fn(actual.data(), src.data(), src.size());
    ASSERT_EQ(MismatchMap(expected.data(), actual.data(), 256, 256), "");
  }
}

TEST(MaskRows, FillMaskColorRowsMatchTheReference) {
  struct Row {
    const char* name;
    FillMaskColorRowFn fn;
    KernelLevel level;
    std::size_t multiple;
  };
  const Row rows[] = {{"SSE2", FillMaskColorRow_SSE2, KernelLevel::kSse2, 4},
                      {"Any_SSE2", FillMaskColorRow_Any_SSE2, KernelLevel::kSse2, 1},
                      {"AVX2", FillMaskColorRow_AVX2, KernelLevel::kAvx2, 8},
                      {"Any_AVX2", FillMaskColorRow_Any_AVX2, KernelLevel::kAvx2, 1}};
  const uint32_t seed = 0x5EED02;
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  for (const Row& row : rows) {
    if (row.level > MachineKernelLevel()) continue;
    for (std::size_t width : SweptWidths()) {
      if (width % row.multiple) continue;
      for (std::size_t offset = 0; offset < 4; ++offset) {
        SCOPED_TRACE(::testing::Message() << row.name << " width=" << width << " off=" << offset);
        const uint32_t case_seed = seed + static_cast<uint32_t>(width * 4 + offset);
        const std::vector<uint8_t> before = RandomBytes(4 * width, case_seed);
        PageEndBuffer mask(width);
        FillRandom(mask.data(), width, case_seed ^ 0xFFFF);
        GuardedBuffer expected(4 * width, offset), actual(4 * width, offset);
        std::memcpy(expected.data(), before.data(), 4 * width);
        std::memcpy(actual.data(), before.data(), 4 * width);
        FillMaskColorRow_C(expected.data(), mask.data(), g_tables.inv_byte, width);
        row.fn(actual.data(), mask.data(), g_tables.inv_byte, width);
        ASSERT_EQ(MismatchMap(expected.data(), actual.data(), 4 * width, 1, 4), "");
        ASSERT_TRUE(actual.GuardsIntact());
      }
    }
  }
}

TEST(MaskRows, FillMaskColorRowsMatchOnEveryAlphaAndMask) {
  std::vector<uint8_t> pixels(4 * 65536), mask(65536);
  for (int i = 0; i < 65536; ++i) {
    pixels[4 * i + 3] = static_cast<uint8_t>(i >> 8);
    mask[i] = static_cast<uint8_t>(i);
  }
  std::vector<uint8_t> expected = pixels;
  FillMaskColorRow_C(expected.data(), mask.data(), g_tables.inv_byte, mask.size());
  ForEachLevel([&](KernelLevel) {
    std::vector<uint8_t> actual = pixels;
    Kernels().mask.fill_mask_color(actual.data(), mask.data(), g_tables.inv_byte, mask.size());
    ASSERT_EQ(MismatchMap(expected.data(), actual.data(), 4 * 256, 256, 4), "");
  });
}

}  // namespace
}  // namespace qbo::test
