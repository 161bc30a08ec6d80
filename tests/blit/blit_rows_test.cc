// The blit rows: hand-worked values of the reference rows, and every SIMD
// row byte-for-byte against the reference over swept widths, misaligned
// pointers and seeded random data.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "blit/bilinear_row.h"
#include "blit/blend_row.h"
#include "blit/mean_row.h"
#include "frame/lookup_tables.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

constexpr uint32_t kSeed = 20261122;

std::vector<std::size_t> SweptWidths(std::size_t widest_block) {
  std::vector<std::size_t> widths;
  for (std::size_t w = 1; w <= 2 * widest_block + 15; ++w) widths.push_back(w);
  widths.push_back(719);
  widths.push_back(1920);
  return widths;
}

// Random pixels whose alphas come in runs of 0, runs of 255 and random
// values, so the SIMD rows' all-clear and all-opaque shortcuts are taken.
std::vector<uint8_t> BlendPixels(std::size_t pixels, uint32_t seed) {
  std::vector<uint8_t> p = RandomBytes(pixels * 4, seed);
  for (std::size_t i = 0; i < pixels; ++i) {
    const std::size_t run = (i / 9 + seed) % 3;
    if (run == 0) p[4 * i + 3] = 0;
    if (run == 1) p[4 * i + 3] = 255;
  }
  return p;
}

const int32_t* Share() { return g_tables.over_share; }

struct BlendCase {
  const char* name;
  uint8_t s[4];
  uint8_t d[4];
  bool inverted;
  uint8_t expected[4];
};

TEST(BlendRowC, HandWorkedPixels) {
  const BlendCase cases[] = {
      // As = 128 over Ad = 255: w = OverShare[128][255] = 16447. Channel 0:
      // diff = 200 - 100 + 1 = 101, 2 x 101 x 16447 >> 16 = 50 -> 150.
      // Channel 1: diff = 0 - 100 = -100, -200 x 16447 >> 16 = -51 (floor)
      // -> 49. Channel 2 equal stays 7. Alpha 128 + 255 - (32640 + 255 >> 8)
      // = 383 - 128 = 255.
      {"half over opaque", {200, 0, 7, 128}, {100, 100, 7, 255}, false, {150, 49, 7, 255}},
      // As = 255: w = 32767 gives the source channel; alpha 255.
      {"opaque source", {1, 254, 128, 255}, {200, 3, 0, 17}, false, {1, 254, 128, 255}},
      // As = 0 over Ad = 0: w = 0, alpha 0 + 0 - (255 >> 8) = 0.
      {"clear over clear", {9, 9, 9, 0}, {50, 60, 70, 0}, false, {50, 60, 70, 0}},
      // Any upper alpha over Ad = 0 takes the whole upper colour:
      // OverShare[1][0] = 32767; alpha 1 + 0 - (255 >> 8) = 1.
      {"faint over clear", {30, 40, 50, 1}, {0, 255, 90, 0}, false, {30, 40, 50, 1}},
      // Inverted, As = 0 reads as opaque: w = OverShare[255][Ad] = 32767,
      // alpha (255 - 0) + (0 + 255 >> 8) = 255.
      {"inverted clear source", {11, 22, 33, 0}, {99, 99, 99, 40}, true, {11, 22, 33, 255}},
      // Inverted, As = 255 reads as clear: w = 0, alpha 0 + (255 x 40 + 255
      // >> 8) = 10455 >> 8 = 40: dst unchanged.
      {"inverted opaque source", {11, 22, 33, 255}, {99, 98, 97, 40}, true, {99, 98, 97, 40}},
      // Inverted As = 127 -> upper 128 over Ad = 255: w = 16447 as above;
      // alpha 128 + (127 x 255 + 255 >> 8) = 128 + 127 = 255.
      {"inverted half", {200, 0, 7, 127}, {100, 100, 7, 255}, true, {150, 49, 7, 255}},
  };
  for (const BlendCase& c : cases) {
    SCOPED_TRACE(c.name);
    uint8_t d[4];
    std::memcpy(d, c.d, 4);
    (c.inverted ? BlendOverInvertedRow_C : BlendOverRow_C)(d, c.s, Share(), 1);
    EXPECT_EQ(std::vector<uint8_t>(d, d + 4), std::vector<uint8_t>(c.expected, c.expected + 4));
  }
}

TEST(BlendRowC, TableBordersGiveExactSourceOrDestination) {
  // Every channel pair and destination alpha: As = 255 copies the source,
  // As = 0 keeps the destination, and the inverted blend with As = 0 equals
  // the plain blend with As = 255.
  for (unsigned cs = 0; cs < 256; cs += 3) {
    for (unsigned cd = 0; cd < 256; ++cd) {
      const unsigned ad = (cs * 7 + cd) & 255;
      const uint8_t opaque[4] = {uint8_t(cs), uint8_t(cd), uint8_t(255 - cs), 255};
      const uint8_t clear[4] = {uint8_t(cs), uint8_t(cd), uint8_t(255 - cs), 0};
      const uint8_t dst[4] = {uint8_t(cd), uint8_t(cs), uint8_t(cd ^ 0x5A), uint8_t(ad)};
      uint8_t a[4], b[4], c[4];
      std::memcpy(a, dst, 4);
      std::memcpy(b, dst, 4);
      std::memcpy(c, dst, 4);
      BlendOverRow_C(a, opaque, Share(), 1);
      BlendOverRow_C(b, clear, Share(), 1);
      BlendOverInvertedRow_C(c, clear, Share(), 1);
      ASSERT_EQ(std::memcmp(a, opaque, 4), 0) << cs << " " << cd << " " << ad;
      ASSERT_EQ(std::memcmp(b, dst, 4), 0) << cs << " " << cd << " " << ad;
      ASSERT_EQ(std::memcmp(c, a, 4), 0) << cs << " " << cd << " " << ad;
    }
  }
}

TEST(BlendRowC, ChannelStaysBetweenSourceAndDestination) {
  for (unsigned as = 0; as < 256; ++as) {
    for (unsigned ad = 0; ad < 256; ad += 5) {
      const uint8_t s[4] = {255, 0, uint8_t(as), uint8_t(as)};
      uint8_t d[4] = {0, 255, uint8_t(ad), uint8_t(ad)};
      BlendOverRow_C(d, s, Share(), 1);
      ASSERT_LE(d[1], 255);
      ASSERT_GE(d[3], std::max(as, ad)) << "over never lowers alpha: " << as << " " << ad;
      ASSERT_GE(d[2], std::min<unsigned>(as, ad));
      ASSERT_LE(d[2], std::max<unsigned>(as, ad));
    }
  }
}

struct BlendRow {
  const char* name;
  BlendRowFn ref;
  BlendRowFn fn;
  KernelLevel level;
};

const BlendRow kBlendRows[] = {
    {"Over_Any_SSE2", BlendOverRow_C, BlendOverRow_Any_SSE2, KernelLevel::kSse2},
    {"Inverted_Any_SSE2", BlendOverInvertedRow_C, BlendOverInvertedRow_Any_SSE2, KernelLevel::kSse2},
    {"Over_Any_AVX2", BlendOverRow_C, BlendOverRow_Any_AVX2, KernelLevel::kAvx2},
    {"Inverted_Any_AVX2", BlendOverInvertedRow_C, BlendOverInvertedRow_Any_AVX2, KernelLevel::kAvx2},
};

TEST(BlendRow, EverySimdRowMatchesTheReference) {
  for (const BlendRow& row : kBlendRows) {
    if (row.level > MachineKernelLevel()) continue;
    for (std::size_t width : SweptWidths(8)) {
      for (std::size_t offset = 0; offset < 4; ++offset) {
        const uint32_t seed = kSeed + static_cast<uint32_t>(width * 4 + offset);
        SCOPED_TRACE(::testing::Message() << row.name << " width=" << width << " offset=" << offset
                                          << " seed=" << seed);
        const std::vector<uint8_t> src = BlendPixels(width + 1, seed);
        const std::vector<uint8_t> dst = BlendPixels(width, seed ^ 0x55);
        GuardedBuffer expected(width * 4, offset), actual(width * 4, offset);
        std::memcpy(expected.data(), dst.data(), width * 4);
        std::memcpy(actual.data(), dst.data(), width * 4);
        row.ref(expected.data(), src.data() + offset, Share(), width);
        row.fn(actual.data(), src.data() + offset, Share(), width);
        ASSERT_EQ(MismatchMap(expected.data(), actual.data(), width * 4, 1, 4), "");
        ASSERT_TRUE(actual.GuardsIntact());
      }
    }
  }
}

TEST(BilinearRowC, HandWorkedValues) {
  // Vertical, wt = 65535: ((200 + 1) x 65535 >> 16) + 1 + ((50 + 1) x 0 >>
  // 16) = 200 + 1 = 201. wt = 32768: (201 x 32768 >> 16) = 100, + 1, + (51
  // x 32767 >> 16) = 25 -> 126. A flat 255 at wt = 0: 0 + 1 + (256 x 65535
  // >> 16) = 255 + 1 = 256.
  const uint8_t top[3] = {200, 200, 255};
  const uint8_t bottom[3] = {50, 50, 255};
  uint16_t v[3];
  BilinearVertRow_C(v, top, bottom, 65535, 1);
  BilinearVertRow_C(v + 1, top + 1, bottom + 1, 32768, 1);
  BilinearVertRow_C(v + 2, top + 2, bottom + 2, 0, 1);
  EXPECT_EQ(v[0], 201);
  EXPECT_EQ(v[1], 126);
  EXPECT_EQ(v[2], 256);

  // Horizontal: left V = 256 (flat 255), right V = 2. wl = 65535: 256 x
  // 65535 >> 16 = 255 + 0 -> 255. wl = 32768, wr = 32767: 128 + (2 x 32767
  // >> 16 = 0) = 128. A lane of 511 clamps: 510 -> 255 and, half
  // weighted, 511 x 32768 >> 16 = 255.
  const uint16_t vbuf[12] = {256, 256, 511, 0, 2, 2, 2, 2, 0, 0, 0, 0};
  const int32_t cols[2] = {0, 0};
  uint16_t weights[16];
  SpreadBilinearWeights(weights, 65535);
  SpreadBilinearWeights(weights + 8, 32768);
  uint8_t out[8];
  BilinearHorizRow_C(out, vbuf, cols, weights, 2);
  EXPECT_EQ(std::vector<uint8_t>(out, out + 8),
            (std::vector<uint8_t>{255, 255, 255, 0, 128, 128, 255, 0}));
}

TEST(BilinearRow, EverySimdRowMatchesTheReference) {
  struct Level {
    const char* name;
    BilinearVertRowFn vert;
    BilinearHorizRowFn horiz;
    KernelLevel level;
  };
  const Level levels[] = {{"SSE2", BilinearVertRow_Any_SSE2, BilinearHorizRow_Any_SSE2, KernelLevel::kSse2},
                          {"AVX2", BilinearVertRow_Any_AVX2, BilinearHorizRow_Any_AVX2, KernelLevel::kAvx2}};
  for (const Level& l : levels) {
    if (l.level > MachineKernelLevel()) continue;
    for (std::size_t width : SweptWidths(32)) {
      for (std::size_t offset = 0; offset < 3; ++offset) {
        const uint32_t seed = kSeed + static_cast<uint32_t>(width * 3 + offset);
        SCOPED_TRACE(::testing::Message() << l.name << " width=" << width << " offset=" << offset
                                          << " seed=" << seed);
        const std::size_t bytes = width * 4;
        const std::vector<uint8_t> rows = RandomBytes(2 * bytes + offset, seed);
        const uint32_t wt = seed % 65536;
        std::vector<uint16_t> v_ref(bytes + 4), v_simd(bytes + 4);
        BilinearVertRow_C(v_ref.data(), rows.data() + offset, rows.data() + offset + bytes, wt, bytes);
        l.vert(v_simd.data(), rows.data() + offset, rows.data() + offset + bytes, wt, bytes);
        ASSERT_EQ(v_ref, v_simd);
        // Horizontal: random columns into the V row (each with a right
        // neighbour) and random weight pairs adding to 65535.
        const std::vector<uint8_t> r = RandomBytes(width * 8, seed ^ 0x1234);
        std::vector<int32_t> cols(width);
        std::vector<uint16_t> weights(8 * width);
        for (std::size_t i = 0; i < width; ++i) {
          const uint32_t wl = (uint32_t(r[8 * i]) << 8 | r[8 * i + 1]) % 65536;
          cols[i] = width > 1 ? static_cast<int32_t>((r[8 * i + 2] << 8 | r[8 * i + 3]) % (width - 1)) : 0;
          SpreadBilinearWeights(weights.data() + 8 * i, wl);
        }
        v_ref[4] = 511;  // the largest value the vertical pass leaves
        GuardedBuffer expected(bytes, offset), actual(bytes, offset);
        BilinearHorizRow_C(expected.data(), v_ref.data(), cols.data(), weights.data(), width);
        l.horiz(actual.data(), v_ref.data(), cols.data(), weights.data(), width);
        ASSERT_EQ(MismatchMap(expected.data(), actual.data(), bytes, 1, 4), "");
        ASSERT_TRUE(actual.GuardsIntact());
      }
    }
  }
}

TEST(MeanRowC, HandWorkedValues) {
  // One column of five rows 10, 20, 30, 40, 50 with w0 = 0.5, w1 = 0.25:
  // (0.5 x 10 + (20 + 30 + 40)) + 0.25 x 50 = 107.5, x norm 0.5 = 53.75.
  const uint8_t r0[1] = {10}, r1[1] = {20}, r2[1] = {30}, r3[1] = {40}, r4[1] = {50};
  const uint8_t* rows[5] = {r0, r1, r2, r3, r4};
  float acc[1];
  MeanVertRow_C(acc, rows, 5, 0.5f, 0.25f, 0.5f, 0, 1);
  EXPECT_EQ(acc[0], 53.75f);
  // n = 1 and n = 0 read the first row alone: 0.25 x 10 x 4 = 10.
  MeanVertRow_C(acc, rows, 1, 0.25f, 9.0f, 4.0f, 0, 1);
  EXPECT_EQ(acc[0], 10.0f);
  MeanVertRow_C(acc, rows, 0, 0.25f, 9.0f, 4.0f, 0, 1);
  EXPECT_EQ(acc[0], 10.0f);
  // 300 middle rows of 255 saturate at 65535: (0 + 65535) + 0 = 65535.
  std::vector<uint8_t> full(1, 255), none(1, 0);
  std::vector<const uint8_t*> many(302, full.data());
  many[0] = many[301] = none.data();
  MeanVertRow_C(acc, many.data(), 302, 1.0f, 1.0f, 1.0f, 0, 1);
  EXPECT_EQ(acc[0], 65535.0f);
  // 257 x 255 = 65535, then a middle row of 1 reaches 65536: held at 65535.
  std::vector<uint8_t> one(1, 1);
  many[258] = one.data();
  many[259] = none.data();
  MeanVertRow_C(acc, many.data(), 260, 1.0f, 1.0f, 1.0f, 0, 1);
  EXPECT_EQ(acc[0], 65535.0f);

  // Horizontal: pixel 0 folds columns 0..2 with w0 0.5, w1 0.5 and norm
  // 0.5: (0.5 x 100 + 101) + 0.5 x 2 = 152, x 0.5 = 76. Pixel 1 starts at
  // column 2 alone: 1.0 x 2 x 0.5 = 1. Lane 1 holds 1.5 -> 0.75 -> 1; lane 2
  // 2.5 x 0.5... rounding ties to even: 1.25 x 2 x 0.5 = 1.25 -> 1 and
  // lane 3 of pixel 1: 5 x 0.5 = 2.5 -> 2 (even).
  const float a[12] = {100, 0, 600, 1, 101, 0, 0, 0, 2, 3, 2.5f, 5};
  const int32_t counts[2] = {3, 1};
  const float weights[4] = {0.5f, 0.5f, 1.0f, 0.0f};
  uint8_t out[8];
  MeanHorizRow_C(out, a, counts, weights, 0.5f, 2);
  // Pixel 0 lane 2: 0.5 x 600 + 0 + 0.5 x 2.5 = 301.25 x 0.5 = 150.625 -> 151;
  // lane 3: (0.5 + 0) + 2.5 = 3 x 0.5 = 1.5 -> 2; lane 1: 0 + 0 + 1.5 = 0.75 -> 1.
  EXPECT_EQ(std::vector<uint8_t>(out, out + 8), (std::vector<uint8_t>{76, 1, 151, 2, 1, 2, 1, 2}));
}

TEST(MeanRowC, YuyvConversionOfGreyAndFoot) {
  // Y = U = V = 128 gives 128 grey; Y = 235 with neutral chroma stays 235.
  for (const float y : {128.0f, 235.0f}) {
    const float quad[4] = {y, 128.0f, 128.0f, y};
    const int32_t count = 1;
    const float weights[2] = {1.0f, 0.0f};
    const YuyvMeanParams bgra{{1.0f, -0.344116f, -0.714111f, 0.0f},
                              {1.0f, 1.771973f, 1.401978f, 1.0f}, 2, 0};
    uint8_t out[4];
    YuyvMeanHorizRow_C(out, quad, &count, weights, 1.0f, &bgra, 1);
    const uint8_t e = static_cast<uint8_t>(y);
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{e, e, e, 255}));
  }
  // Pure red-ish chroma: Y 100, V 200 (v' = 72): R = 72 x 1.401978 + 100 =
  // 200.94 -> 201; G = -0.344116 x 0 + (-0.714111 x 72 + 100) = 48.58 -> 49;
  // B = 100 + 0 = 100. RGBA order puts R first.
  const float quad[4] = {100.0f, 128.0f, 200.0f, 100.0f};
  const int32_t count = 1;
  const float weights[2] = {1.0f, 0.0f};
  const YuyvMeanParams rgba{{1.0f, -0.344116f, -0.714111f, 0.0f},
                            {1.0f, 1.771973f, 1.401978f, 1.0f}, 0, 2};
  uint8_t out[4];
  YuyvMeanHorizRow_C(out, quad, &count, weights, 1.0f, &rgba, 1);
  EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{201, 49, 100, 255}));
}

TEST(MeanRowC, YuyvExpandSpreadsChroma) {
  // Groups (Y0 U Y1 V) = (1 10 2 20), (3 30 4 41): quads (1 10 20 1),
  // (2, (10 + 30) x 0.5 = 20, (20 + 41) x 0.5 = 30.5, 2), (3 30 41 3), and
  // the last group's own chroma (4 30 41 4).
  const float acc[8] = {1, 10, 2, 20, 3, 30, 4, 41};
  float quads[16];
  YuyvExpandRow_C(quads, acc, 2);
  EXPECT_EQ(std::vector<float>(quads, quads + 16),
            (std::vector<float>{1, 10, 20, 1, 2, 20, 30.5f, 2, 3, 30, 41, 3, 4, 30, 41, 4}));
  if (MachineKernelLevel() < KernelLevel::kSse2) return;
  for (std::size_t groups : {1, 2, 3, 17, 960}) {
    std::vector<float> in(groups * 4), ref(groups * 8), simd(groups * 8);
    for (std::size_t i = 0; i < in.size(); ++i) in[i] = static_cast<float>((i * 7919 + groups) % 1000) * 0.37f;
    YuyvExpandRow_C(ref.data(), in.data(), groups);
    YuyvExpandRow_SSE2(simd.data(), in.data(), groups);
    ASSERT_EQ(ref, simd) << groups << " groups";
  }
}

TEST(MeanRow, EverySimdRowMatchesTheReference) {
  struct Vert {
    const char* name;
    MeanVertRowFn fn;
    KernelLevel level;
  };
  const Vert verts[] = {{"SSE2", MeanVertRow_Any_SSE2, KernelLevel::kSse2},
                        {"AVX2", MeanVertRow_Any_AVX2, KernelLevel::kAvx2}};
  for (const Vert& l : verts) {
    if (l.level > MachineKernelLevel()) continue;
    for (std::size_t width : SweptWidths(32)) {
      for (int32_t n : {0, 1, 2, 3, 7, 300}) {
        const uint32_t seed = kSeed + static_cast<uint32_t>(width * 11 + n);
        SCOPED_TRACE(::testing::Message() << l.name << " width=" << width << " n=" << n << " seed=" << seed);
        const std::size_t bytes = width * 4;
        const int32_t rows_used = n < 1 ? 1 : n;
        std::vector<uint8_t> data = RandomBytes(bytes * rows_used + 1, seed);
        if (n == 300) std::memset(data.data(), 255, data.size());  // saturating sums
        std::vector<const uint8_t*> rows;
        for (int32_t r = 0; r < rows_used; ++r) rows.push_back(data.data() + 1 + r * bytes);
        std::vector<float> ref(bytes + 3), simd(bytes + 3);
        MeanVertRow_C(ref.data(), rows.data(), n, 0.3f, 0.7f, 0.0123f, 3, bytes);
        l.fn(simd.data(), rows.data(), n, 0.3f, 0.7f, 0.0123f, 3, bytes);
        ASSERT_EQ(0, std::memcmp(ref.data() + 3, simd.data() + 3, (bytes - 3 > bytes ? 0 : bytes - 3) * 4));
      }
    }
  }
  if (MachineKernelLevel() < KernelLevel::kSse2) return;
  for (std::size_t width : SweptWidths(8)) {
    const uint32_t seed = kSeed + static_cast<uint32_t>(width);
    SCOPED_TRACE(::testing::Message() << "horizontal width=" << width << " seed=" << seed);
    const std::vector<uint8_t> r = RandomBytes(width * 4, seed);
    std::vector<int32_t> counts(width);
    std::vector<float> weights(2 * width);
    std::size_t k = 0;
    for (std::size_t i = 0; i < width; ++i) {
      counts[i] = r[4 * i] % 5;
      weights[2 * i] = r[4 * i + 1] / 255.0f;
      weights[2 * i + 1] = r[4 * i + 2] / 255.0f;
      k += MeanStep(counts[i]);
    }
    std::vector<float> acc((k + 5) * 4);
    for (std::size_t i = 0; i < acc.size(); ++i) acc[i] = static_cast<float>((i * 7919 + seed) % 600) * 0.5f;
    GuardedBuffer expected(width * 4), actual(width * 4);
    MeanHorizRow_C(expected.data(), acc.data(), counts.data(), weights.data(), 0.61f, width);
    MeanHorizRow_SSE2(actual.data(), acc.data(), counts.data(), weights.data(), 0.61f, width);
    ASSERT_EQ(MismatchMap(expected.data(), actual.data(), width * 4, 1, 4), "");
    const YuyvMeanParams params{{1.0f, -0.187314f, -0.468207f, 0.0f}, {1.0f, 1.855615f, 1.574722f, 1.0f}, 0, 2};
    YuyvMeanHorizRow_C(expected.data(), acc.data(), counts.data(), weights.data(), 0.61f, &params, width);
    YuyvMeanHorizRow_SSE2(actual.data(), acc.data(), counts.data(), weights.data(), 0.61f, &params, width);
    ASSERT_EQ(MismatchMap(expected.data(), actual.data(), width * 4, 1, 4), "");
    ASSERT_TRUE(actual.GuardsIntact());
  }
}

}  // namespace
}  // namespace qbo::test

namespace qbo::test {
namespace {

TEST(BlendRow, EveryAlphaPairMatchesTheReference) {
  // All 65536 (source, destination) alpha pairs, each with its own random
  // colours: the rows that compute the table's entries in-register must
  // agree with it everywhere. Then every source alpha over runs of opaque
  // destinations, the rows' shortcut for a lower layer of alpha 255.
  std::vector<uint8_t> src = RandomBytes(65536 * 4, 5), dst = RandomBytes(65536 * 4, 6);
  for (uint32_t i = 0; i < 65536; ++i) {
    src[4 * i + 3] = uint8_t(i >> 8);
    dst[4 * i + 3] = uint8_t(i);
  }
  for (const BlendRow& row : kBlendRows) {
    if (row.level > MachineKernelLevel()) continue;
    SCOPED_TRACE(row.name);
    std::vector<uint8_t> expected = dst, actual = dst;
    row.ref(expected.data(), src.data(), Share(), 65536);
    row.fn(actual.data(), src.data(), Share(), 65536);
    ASSERT_EQ(MismatchMap(expected.data(), actual.data(), 1024, 256, 4), "");
    std::vector<uint8_t> opaque = dst;
    for (uint32_t i = 0; i < 65536; ++i) opaque[4 * i + 3] = 255;
    expected = opaque;
    actual = opaque;
    row.ref(expected.data(), src.data(), Share(), 65536);
    row.fn(actual.data(), src.data(), Share(), 65536);
    ASSERT_EQ(MismatchMap(expected.data(), actual.data(), 1024, 256, 4), "");
  }
}

}  // namespace
}  // namespace qbo::test
