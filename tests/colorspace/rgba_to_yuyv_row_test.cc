// RGB to YUYV rows: hand-worked vectors for the reference rows, then every
// SIMD row against the reference over swept widths, offsets, byte orders
// and standards, on random data from printed seeds.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "colorspace/rgba_to_yuyv_row.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr bool kRgba = false, kBgra = true;
constexpr bool k601 = false, k709 = true;

struct RowVector {
  const char* what;
  bool bgra, bt709;
  int width;
  Bytes src;       // width pixels of 4 bytes
  Bytes expected;  // YUYV bytes
};

// Worked sums, BT.601 (weights R 4898, G 9618, B 1868; U -2764, -5428,
// 8192; V 8192, -6860, -1332), term = floor(w * b / 512):
//   255: R 2439, G 4790, B 930; U -1377, -2704, 4080; V 4080, -3417, -664.
//   white  Y (2439 + 4790 + 930 + 16) >> 5 = 255, U (-1 + 4112) >> 5 = 128,
//          V (-1 + 4112) >> 5 = 128
//   blue   Y (930 + 16) >> 5 = 29, U (4080 + 4112) >> 5 = 256 -> 255,
//          V (-664 + 4112) >> 5 = 107
//   red    Y (2439 + 16) >> 5 = 76, U (-1377 + 4112) >> 5 = 85, V 255
// BT.709 (R 3484, G 11717, B 1183; U -1877, -6315, 8192; V 8192, -7441,
// -751): blue Y (589 + 16) >> 5 = 18, V (-375 + 4112) >> 5 = 116; red
// Y (1735 + 16) >> 5 = 54, U (-935 + 4112) >> 5 = 99; white 255/128/128.
const RowVector kRowVectors[] = {
    {"white then black, a trailing pair", kRgba, k601, 2,
     {255, 255, 255, 255, 0, 0, 0, 255}, {255, 128, 0, 128}},
    {"chroma from the even pixel of each pair", kRgba, k601, 4,
     {0, 0, 255, 9, 255, 0, 0, 9, 255, 0, 0, 9, 0, 0, 255, 9},
     {29, 255, 76, 107, 76, 85, 29, 255}},
    // Each term truncated by itself. (1,1,0): U -6 - 11 + 0 = -17,
    // (-17 + 4112) >> 5 = 127 where the truncated whole sum gives 128;
    // V 16 - 14 = 2 -> 128; Y 9 + 18 + 0 -> (27 + 16) >> 5 = 1.
    // (0,1,52): Y 18 + 189 = 207 -> 6 where the whole sum gives 7.
    // (0,1,1): Y 18 + 3 -> 1; U -11 + 16 -> 128; V -14 - 3 = -17 -> 127.
    {"per-term truncation", kRgba, k601, 4,
     {1, 1, 0, 0, 0, 1, 52, 0, 0, 1, 1, 0, 255, 255, 255, 0},
     {1, 127, 6, 128, 1, 128, 255, 127}},
    {"BGRA BT.601 row tail takes U 128", kBgra, k601, 6,
     Bytes{255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 255, 255, 0, 0, 255,  //
           255, 0, 0, 255, 255, 0, 0, 255},
     {29, 255, 29, 107, 29, 255, 29, 107, 29, 128, 29, 107}},
    {"BGRA BT.709 row tail keeps its U", kBgra, k709, 6,
     Bytes{255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0},
     {18, 255, 18, 116, 18, 255, 18, 116, 18, 255, 18, 116}},
    {"odd width repeats the last luma", kRgba, k709, 5,
     Bytes{255, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 0, 255, 255, 255, 0,  //
           255, 0, 0, 0},
     {255, 128, 255, 128, 255, 128, 255, 128, 54, 99, 54, 255}},
};

TEST(RgbaToYuyvRowC, HandWorkedVectors) {
  for (const RowVector& v : kRowVectors) {
    SCOPED_TRACE(v.what);
    const RgbToYuyvParams params = SelectRgbToYuyvParams(v.bgra, v.bt709);
    GuardedBuffer dst(v.expected.size());
    RgbaToYuyvRow_C(v.src.data(), dst.data(), v.width, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + dst.size()), v.expected);
    EXPECT_TRUE(dst.GuardsIntact());
  }
}

TEST(RgbaToYuyvAlphaRowC, OddWidthMergesTheLastAlphaAndClearsOneByteMore) {
  struct AlphaVector {
    bool bgra;
    int width;
    Bytes src;
    Bytes alpha;
  };
  const AlphaVector vectors[] = {
      // 0x0F | 0x30 (byte 2, B of RGBA) = 0x3F, then the cleared byte.
      {kRgba, 1, {10, 20, 0x30, 0x0F}, {0x3F, 0}},
      // Pair, then a single pixel: 0x40 | 0x05 (byte 2, R of BGRA) = 0x45.
      {kBgra, 3, {0, 0, 0x77, 1, 0, 0, 0x77, 2, 0, 0, 0x05, 0x40}, {1, 2, 0x45, 0}},
      {kRgba, 4, {0, 0, 0xFF, 4, 0, 0, 0xFF, 3, 0, 0, 0xFF, 2, 0, 0, 0xFF, 1}, {4, 3, 2, 1}},
  };
  for (const AlphaVector& v : vectors) {
    SCOPED_TRACE(::testing::Message() << "width " << v.width);
    const RgbToYuyvParams params = SelectRgbToYuyvParams(v.bgra, k601);
    const std::size_t yuyv_bytes = static_cast<std::size_t>((v.width + 1) / 2 * 4);
    GuardedBuffer dst(yuyv_bytes), expected(yuyv_bytes), alpha(v.alpha.size());
    RgbaToYuyvAlphaRow_C(v.src.data(), dst.data(), alpha.data(), v.width, &params);
    RgbaToYuyvRow_C(v.src.data(), expected.data(), v.width, &params);
    EXPECT_EQ(Bytes(alpha.data(), alpha.data() + alpha.size()), v.alpha);
    EXPECT_EQ(std::memcmp(dst.data(), expected.data(), yuyv_bytes), 0);
    EXPECT_TRUE(alpha.GuardsIntact());
    EXPECT_TRUE(dst.GuardsIntact());
  }
}

TEST(Rgb24ToYuyvRowC, HandWorkedVectors) {
  // BGR blue in a whole group: Y 29, U 255, V 107 as for 32-bit pixels.
  {
    const RgbToYuyvParams params = SelectRgbToYuyvParams(kBgra, k601);
    const Bytes src = {255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0};
    GuardedBuffer dst(8);
    Rgb24ToYuyvRow_C(src.data(), dst.data(), 4, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 8), (Bytes{29, 255, 29, 107, 29, 255, 29, 107}));
  }
  // Width 3 converts a whole group: the fourth pixel (white, past the
  // row) gives Y3 = 255. Red: Y 76, U 85, V 255.
  {
    const RgbToYuyvParams params = SelectRgbToYuyvParams(kRgba, k601);
    const Bytes src = {255, 0, 0, 255, 0, 0, 255, 0, 0, 255, 255, 255};
    GuardedBuffer dst(8);
    Rgb24ToYuyvRow_C(src.data(), dst.data(), 3, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 8), (Bytes{76, 85, 76, 255, 76, 85, 255, 255}));
    EXPECT_TRUE(dst.GuardsIntact());
  }
  // A BGR BT.601 single pixel takes U through the zero quadruple: 128.
  {
    const RgbToYuyvParams params = SelectRgbToYuyvParams(kBgra, k601);
    const Bytes src = {255, 0, 0};
    GuardedBuffer dst(4);
    Rgb24ToYuyvRow_C(src.data(), dst.data(), 1, &params);
    EXPECT_EQ(Bytes(dst.data(), dst.data() + 4), (Bytes{29, 128, 29, 107}));
  }
}

TEST(Rgb24ToYuyvRowC, AgreesWithThe32BitRowOnTheSamePixels) {
  for (bool bgr : {kRgba, kBgra}) {
    for (bool bt709 : {k601, k709}) {
      const RgbToYuyvParams params = SelectRgbToYuyvParams(bgr, bt709);
      for (int width : {1, 2, 4, 5, 6, 8, 9, 10, 33, 64}) {
        const uint32_t seed = 100u + static_cast<uint32_t>(width);
        SCOPED_TRACE(::testing::Message() << "bgr " << bgr << " bt709 " << bt709 << " width "
                                          << width << " seed " << seed);
        const Bytes rgb = RandomBytes(static_cast<std::size_t>(3 * width), seed);
        Bytes rgba(static_cast<std::size_t>(4 * width), 0xEE);
        for (int i = 0; i < width; ++i) std::memcpy(&rgba[4 * i], &rgb[3 * i], 3);
        const std::size_t out = static_cast<std::size_t>((width + 1) / 2 * 4);
        Bytes from24(out), from32(out);
        Rgb24ToYuyvRow_C(rgb.data(), from24.data(), width, &params);
        RgbaToYuyvRow_C(rgba.data(), from32.data(), width, &params);
        EXPECT_EQ(from24, from32);
      }
    }
  }
}

// ---- SIMD rows against the reference ----------------------------------

struct SimdRows {
  const char* name;
  KernelLevel level;
  int block;  // pixels per SIMD step
  RgbaToYuyvRowFn yuyv;
  RgbaToYuyvAlphaRowFn yuyva;
  Rgb24ToYuyvRowFn rgb24;
};

const SimdRows kSimdRows[] = {
    {"SSE2", KernelLevel::kSse2, 8, RgbaToYuyvRow_Any_SSE2, RgbaToYuyvAlphaRow_Any_SSE2,
     Rgb24ToYuyvRow_Any_SSE2},
    {"AVX2", KernelLevel::kAvx2, 16, RgbaToYuyvRow_Any_AVX2, RgbaToYuyvAlphaRow_Any_AVX2,
     Rgb24ToYuyvRow_Any_AVX2},
};

std::vector<int> SweptWidths(int block) {
  std::vector<int> widths;
  for (int w = 1; w <= 2 * block + 15; ++w) widths.push_back(w);
  widths.push_back(719);
  widths.push_back(1920);
  return widths;
}

// Runs `check(rows, bgra, bt709, width, offset, seed)` over every case.
template <class Check>
void SweepSimdRows(Check check) {
  uint32_t seed = 1;
  for (const SimdRows& rows : kSimdRows) {
    if (rows.level > MachineKernelLevel()) continue;
    for (int width : SweptWidths(rows.block)) {
      for (std::size_t offset = 0; offset < 4; ++offset) {
        for (bool bgra : {kRgba, kBgra}) {
          for (bool bt709 : {k601, k709}) {
            SCOPED_TRACE(::testing::Message() << rows.name << " width " << width << " offset "
                                              << offset << (bgra ? " BGRA" : " RGBA")
                                              << (bt709 ? " 709" : " 601") << " seed " << seed);
            check(rows, bgra, bt709, width, offset, seed++);
            if (::testing::Test::HasFatalFailure()) return;
          }
        }
      }
    }
  }
}

std::size_t YuyvBytes(int width) { return static_cast<std::size_t>((width + 1) / 2 * 4); }

// `simd` against `reference` on one row. The source starts `offset` bytes
// off its page-end alignment: at offset 0 it ends at an inaccessible page,
// so any over-read faults; other offsets misalign it.
void ExpectRowMatches(RgbaToYuyvRowFn reference, RgbaToYuyvRowFn simd, std::size_t src_bytes,
                      bool bgra, bool bt709, int width, std::size_t offset, uint32_t seed) {
  const RgbToYuyvParams params = SelectRgbToYuyvParams(bgra, bt709);
  PageEndBuffer src(src_bytes + offset);
  FillRandom(src.data(), src.size(), seed);
  GuardedBuffer expected(YuyvBytes(width), offset), actual(YuyvBytes(width), offset);
  reference(src.data(), expected.data(), width, &params);
  simd(src.data(), actual.data(), width, &params);
  ASSERT_EQ(MismatchMap(expected.data(), actual.data(), YuyvBytes(width), 1, 4), "");
  ASSERT_TRUE(actual.GuardsIntact());
}

TEST(RgbaToYuyvRowSimd, MatchesTheReference) {
  SweepSimdRows([](const SimdRows& rows, bool bgra, bool bt709, int width, std::size_t offset,
                   uint32_t seed) {
    ExpectRowMatches(RgbaToYuyvRow_C, rows.yuyv, static_cast<std::size_t>(4 * width), bgra,
                     bt709, width, offset, seed);
  });
}

TEST(RgbaToYuyvAlphaRowSimd, MatchesTheReference) {
  SweepSimdRows([](const SimdRows& rows, bool bgra, bool bt709, int width, std::size_t offset,
                   uint32_t seed) {
    const RgbToYuyvParams params = SelectRgbToYuyvParams(bgra, bt709);
    const std::size_t src_bytes = static_cast<std::size_t>(4 * width);
    PageEndBuffer src(src_bytes + offset);
    FillRandom(src.data(), src.size(), seed);
    const std::size_t alpha_bytes = static_cast<std::size_t>(width + (width & 1));
    GuardedBuffer expected(YuyvBytes(width), offset), actual(YuyvBytes(width), offset);
    GuardedBuffer expected_alpha(alpha_bytes, offset + 1), actual_alpha(alpha_bytes, offset + 1);
    RgbaToYuyvAlphaRow_C(src.data(), expected.data(), expected_alpha.data(), width, &params);
    rows.yuyva(src.data(), actual.data(), actual_alpha.data(), width, &params);
    ASSERT_EQ(MismatchMap(expected.data(), actual.data(), YuyvBytes(width), 1, 4), "");
    ASSERT_EQ(MismatchMap(expected_alpha.data(), actual_alpha.data(), alpha_bytes, 1), "");
    ASSERT_TRUE(actual.GuardsIntact());
    ASSERT_TRUE(actual_alpha.GuardsIntact());
  });
}

TEST(Rgb24ToYuyvRowSimd, MatchesTheReference) {
  SweepSimdRows([](const SimdRows& rows, bool bgr, bool bt709, int width, std::size_t offset,
                   uint32_t seed) {
    // A width of 4m + 3 reads a whole last group.
    const int read = (width & 3) == 3 ? width + 1 : width;
    ExpectRowMatches(Rgb24ToYuyvRow_C, rows.rgb24, static_cast<std::size_t>(3 * read), bgr,
                     bt709, width, offset, seed);
  });
}

// Extremes that random bytes rarely hit: saturated primaries, black, white
// and alpha 0/255, in every position of a SIMD block, through every row.
TEST(RgbaToYuyvRowSimd, MatchesTheReferenceOnExtremes) {
  const uint8_t levels[] = {0, 1, 127, 128, 254, 255};
  Bytes src, src24;
  for (uint8_t r : levels) {
    for (uint8_t g : levels) {
      for (uint8_t b : levels) {
        src.insert(src.end(), {r, g, b, static_cast<uint8_t>(r ^ b)});
        src24.insert(src24.end(), {r, g, b});
      }
    }
  }
  const int width = static_cast<int>(src.size() / 4);  // 216, a multiple of 4
  for (const SimdRows& rows : kSimdRows) {
    if (rows.level > MachineKernelLevel()) continue;
    for (bool bgra : {kRgba, kBgra}) {
      for (bool bt709 : {k601, k709}) {
        SCOPED_TRACE(::testing::Message() << rows.name << " bgra " << bgra << " bt709 " << bt709);
        const RgbToYuyvParams params = SelectRgbToYuyvParams(bgra, bt709);
        Bytes expected(YuyvBytes(width)), actual(YuyvBytes(width));
        Bytes expected_alpha(static_cast<std::size_t>(width)), actual_alpha(expected_alpha.size());
        RgbaToYuyvAlphaRow_C(src.data(), expected.data(), expected_alpha.data(), width, &params);
        rows.yuyv(src.data(), actual.data(), width, &params);
        EXPECT_EQ(MismatchMap(expected.data(), actual.data(), expected.size(), 1, 4), "");
        rows.yuyva(src.data(), actual.data(), actual_alpha.data(), width, &params);
        EXPECT_EQ(MismatchMap(expected.data(), actual.data(), expected.size(), 1, 4), "");
        EXPECT_EQ(expected_alpha, actual_alpha);
        rows.rgb24(src24.data(), actual.data(), width, &params);
        EXPECT_EQ(MismatchMap(expected.data(), actual.data(), expected.size(), 1, 4), "");
      }
    }
  }
}

// The exports must run the rows of the level the table was filled at: the
// entry tests cannot tell a reference row from a SIMD one by the bytes.
TEST(ColorspaceKernels, RgbToYuyvRowsFollowTheLevel) {
  ForEachLevel([](KernelLevel level) {
    const ColorspaceKernels& k = Kernels().colorspace;
    switch (level) {
      case KernelLevel::kC:
        EXPECT_EQ(k.rgba_to_yuyv, &RgbaToYuyvRow_C);
        EXPECT_EQ(k.rgba_to_yuyva, &RgbaToYuyvAlphaRow_C);
        EXPECT_EQ(k.rgb24_to_yuyv, &Rgb24ToYuyvRow_C);
        break;
      case KernelLevel::kSse2:
        EXPECT_EQ(k.rgba_to_yuyv, &RgbaToYuyvRow_Any_SSE2);
        EXPECT_EQ(k.rgba_to_yuyva, &RgbaToYuyvAlphaRow_Any_SSE2);
        EXPECT_EQ(k.rgb24_to_yuyv, &Rgb24ToYuyvRow_Any_SSE2);
        break;
      case KernelLevel::kAvx2:
        EXPECT_EQ(k.rgba_to_yuyv, &RgbaToYuyvRow_Any_AVX2);
        EXPECT_EQ(k.rgba_to_yuyva, &RgbaToYuyvAlphaRow_Any_AVX2);
        EXPECT_EQ(k.rgb24_to_yuyv, &Rgb24ToYuyvRow_Any_AVX2);
        break;
    }
  });
}

}  // namespace
}  // namespace qbo::test
