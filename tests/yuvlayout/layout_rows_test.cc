// The layout rows: hand-worked values for the reference rows, and every
// SIMD row against the reference over swept widths, misaligned pointers and
// sources that end at an inaccessible page.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "tests/support/test_support.h"
#include "yuvlayout/yuvlayout_row.h"

namespace qbo::test {
namespace {

// Widths 1 .. two AVX2 blocks + 15, and two long rows.
std::vector<int> SweptWidths() {
  std::vector<int> widths;
  for (int w = 1; w <= 2 * 32 + 15; ++w) widths.push_back(w);
  widths.push_back(719);
  widths.push_back(1920);
  return widths;
}

struct Level {
  const char* name;
  KernelLevel level;
  int multiple;  // widths the row accepts: a multiple of this
};

// Random bytes at `offset` into a block that ends at an inaccessible page,
// so a row that reads past `size` bytes faults.
class Source {
 public:
  Source(std::size_t size, std::size_t offset, uint32_t seed) : page_(size + offset) {
    FillRandom(page_.data(), page_.size(), seed);
    data_ = page_.data() + offset;
  }
  const uint8_t* data() const { return data_; }

 private:
  PageEndBuffer page_;
  const uint8_t* data_;
};

TEST(LayoutRowsReference, HandWorkedValues) {
  {  // Width 5: two pairs; the fifth pixel's bytes stay as they were.
    const uint8_t y[] = {1, 2, 3, 4, 5}, u[] = {10, 20}, v[] = {30, 40};
    uint8_t out[10];
    std::memset(out, 0xEE, sizeof out);
    InterleaveYuyvRow_C(out, y, u, v, 5);
    const uint8_t want[] = {1, 10, 2, 30, 3, 20, 4, 40, 0xEE, 0xEE};
    EXPECT_EQ(std::memcmp(out, want, sizeof want), 0);
  }
  {
    const uint8_t a[] = {10, 0, 255, 7}, b[] = {20, 255, 255, 9};
    uint8_t out[4];
    const ChromaBlend quarter = {2, 6};  // (P + 3C + 2) >> 2 in eighths
    BlendChromaRow_C(out, a, b, 4, &quarter);
    // (10 + 60 + 2) >> 2 = 18; (0 + 765 + 2) >> 2 = 191; 255; (7 + 27 + 2) >> 2 = 9
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{18, 191, 255, 9}));
    const ChromaBlend xdcam = {1, 7};  // (P + 7C + 4) >> 3
    BlendChromaRow_C(out, a, b, 4, &xdcam);
    // (10 + 140 + 4) >> 3 = 19; (1785 + 4) >> 3 = 223; 255; (7 + 63 + 4) >> 3 = 9
    EXPECT_EQ(std::vector<uint8_t>(out, out + 4), (std::vector<uint8_t>{19, 223, 255, 9}));
  }
  {  // Pair row, weights (2, 6) then (6, 2):
     // row 0 U (2 x 10 + 6 x 20 + 4) >> 3 = 144 >> 3 = 18,
     //       V (2 x 100 + 6 x 200 + 4) >> 3 = 1404 >> 3 = 175;
     // row 1 U (6 x 10 + 2 x 20 + 4) >> 3 = 104 >> 3 = 13,
     //       V (6 x 100 + 2 x 200 + 4) >> 3 = 1004 >> 3 = 125.
    const uint8_t y0[] = {1, 2}, y1[] = {3, 4}, ua[] = {10}, ub[] = {20}, va[] = {100},
                  vb[] = {200};
    uint8_t out0[4], out1[4];
    const ChromaBlend w[2] = {{2, 6}, {6, 2}};
    Yuv420ToYuyvRowPair_C(out0, out1, y0, y1, ua, ub, va, vb, 2, w);
    EXPECT_EQ(std::vector<uint8_t>(out0, out0 + 4), (std::vector<uint8_t>{1, 18, 2, 175}));
    EXPECT_EQ(std::vector<uint8_t>(out1, out1 + 4), (std::vector<uint8_t>{3, 13, 4, 125}));
  }
  {  // Luma: bytes 0 and 2 of each pair; width 3 writes two.
    const uint8_t src[] = {16, 128, 235, 128, 99, 1, 98, 2};
    uint8_t y[3] = {0xEE, 0xEE, 0xEE};
    YuyvToLumaRow_C(y, src, 3);
    EXPECT_EQ(std::vector<uint8_t>(y, y + 3), (std::vector<uint8_t>{16, 235, 0xEE}));
  }
}

// One YUYV pair per row with the given U and V, width 2.
std::vector<uint8_t> Pair(uint8_t u, uint8_t v) { return {0, u, 0, v}; }

TEST(LayoutRowsReference, ChromaTapsSaturateAndShift) {
  struct Case {
    const char* what;
    ChromaTaps taps;
    uint8_t a, b, c, d;
    int width;
    uint8_t want;
  };
  const ChromaTaps four = {-1, 3, 3, -1, 2, 2, 2};
  const ChromaTaps xdcam = {0, 3, 1, 0, 2, 2, 1};
  const Case cases[] = {
      // (-0 + 300 + 300 - 0 + 2) >> 2 = 150
      {"4-tap smooth", four, 0, 100, 100, 0, 2, 150},
      // -200 + 0 + 0 - 200 + 2 = -398 wraps to 65138; >> 2 = 16284 -> 255
      {"4-tap negative saturates high", four, 200, 0, 0, 200, 4, 255},
      // 765 + 765 + 2 = 1532 >> 2 = 383 -> 255
      {"4-tap overshoot", four, 0, 255, 255, 0, 4, 255},
      // (3 x 10 - 200 + 1) = -169 wraps to 65367; >> 1 = 32683 -> 255
      {"odd end negative", {-1, 3, 0, 0, 1, 1, 1}, 200, 10, 10, 10, 4, 255},
      // (3 x 100 + 60 + 2) >> 2 = 90 in a pair that is not trailing (width 4)
      {"xdcam plain pair", xdcam, 0, 100, 60, 0, 4, 90},
      // trailing pair of width 2: (300 + 60 + 2) >> 1 = 181
      {"xdcam trailing pair", xdcam, 0, 100, 60, 0, 2, 181},
      // trailing pair: (600 + 200 + 2) >> 1 = 401 -> 255
      {"xdcam trailing pair saturates", xdcam, 0, 200, 200, 0, 2, 255},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::vector<uint8_t> rows[4];
    const uint8_t vals[4] = {c.a, c.b, c.c, c.d};
    for (int i = 0; i < 4; ++i) {
      for (int p = 0; p < c.width / 2; ++p) {
        const std::vector<uint8_t> pair = Pair(vals[i], vals[i]);
        rows[i].insert(rows[i].end(), pair.begin(), pair.end());
      }
    }
    uint8_t u[2] = {}, v[2] = {};
    YuyvToChromaRow_C(u, v, rows[0].data(), rows[1].data(), rows[2].data(), rows[3].data(),
                      c.width, &c.taps);
    EXPECT_EQ(u[0], c.want);
    EXPECT_EQ(v[0], c.want);
  }
}

TEST(LayoutRowsReference, ChromaIntoLumaGroups) {
  uint8_t a[32];
  for (int i = 0; i < 32; ++i) a[i] = static_cast<uint8_t>(100 + i);
  uint8_t y[15];
  std::memset(y, 0xEE, sizeof y);
  YuyvChromaIntoLumaRow_C(y, a, 15);
  // Group of 8 at 0: a[1], 0, a[3], 0, a[5], 0, a[7], 0; group of 4 at 8:
  // a[17], 0, a[19], 0; group of 2 at 12: a[25], 0; pixel 14 untouched.
  const uint8_t want[15] = {101, 0, 103, 0, 105, 0, 107, 0, 117, 0, 119, 0, 125, 0, 0xEE};
  EXPECT_EQ(std::memcmp(y, want, sizeof want), 0);
}

const Level kLevels[] = {{"SSE2", KernelLevel::kSse2, 16},     {"Any_SSE2", KernelLevel::kSse2, 1},
                         {"AVX2", KernelLevel::kAvx2, 32},     {"Any_AVX2", KernelLevel::kAvx2, 1}};

template <typename Fn>
Fn Pick(int index, Fn sse2, Fn any_sse2, Fn avx2, Fn any_avx2) {
  const Fn fns[] = {sse2, any_sse2, avx2, any_avx2};
  return fns[index];
}

// Runs `check(level_index, width, offset, seed)` for every level the
// machine has, every width the row accepts and offsets 0..3.
template <typename Check>
void Sweep(Check check) {
  for (int li = 0; li < 4; ++li) {
    const Level& l = kLevels[li];
    if (l.level > MachineKernelLevel()) continue;
    for (int width : SweptWidths()) {
      if (width % l.multiple) continue;
      for (std::size_t offset = 0; offset < 4; ++offset) {
        const uint32_t seed = 1000u * static_cast<uint32_t>(width) + static_cast<uint32_t>(offset);
        SCOPED_TRACE(::testing::Message() << l.name << " width=" << width << " offset=" << offset
                                          << " seed=" << seed);
        check(li, width, offset, seed);
        if (::testing::Test::HasFatalFailure()) return;
      }
    }
  }
}

TEST(LayoutRowsSimd, InterleaveMatchesReference) {
  Sweep([](int li, int width, std::size_t offset, uint32_t seed) {
    const auto fn = Pick(li, InterleaveYuyvRow_SSE2, InterleaveYuyvRow_Any_SSE2,
                         InterleaveYuyvRow_AVX2, InterleaveYuyvRow_Any_AVX2);
    const std::size_t half = static_cast<std::size_t>(width / 2);
    Source y(static_cast<std::size_t>(width & ~1), offset, seed), u(half, offset, seed + 1),
        v(half, offset, seed + 2);
    const std::size_t bytes = 2 * static_cast<std::size_t>(width);
    GuardedBuffer want(bytes, offset), got(bytes, offset);
    InterleaveYuyvRow_C(want.data(), y.data(), u.data(), v.data(), width);
    fn(got.data(), y.data(), u.data(), v.data(), width);
    ASSERT_EQ(MismatchMap(want.data(), got.data(), bytes, 1), "");
    ASSERT_TRUE(got.GuardsIntact());
  });
}

TEST(LayoutRowsSimd, QuarterBlendIsExactForEveryBytePair) {
  // Every (p, c) pair through both quarter weightings at every SIMD level:
  // 256 rows of 256 bytes, row p against the ramp 0..255.
  std::vector<uint8_t> ramp(256), flat(256), want(256), got(256);
  for (int i = 0; i < 256; ++i) ramp[i] = static_cast<uint8_t>(i);
  const BlendChromaRowFn rows[] = {BlendChromaRow_SSE2, BlendChromaRow_AVX2};
  const KernelLevel levels[] = {KernelLevel::kSse2, KernelLevel::kAvx2};
  for (int r = 0; r < 2; ++r) {
    if (levels[r] > MachineKernelLevel()) continue;
    for (const ChromaBlend w : {ChromaBlend{2, 6}, ChromaBlend{6, 2}}) {
      for (int p = 0; p < 256; ++p) {
        std::fill(flat.begin(), flat.end(), static_cast<uint8_t>(p));
        BlendChromaRow_C(want.data(), flat.data(), ramp.data(), 256, &w);
        rows[r](got.data(), flat.data(), ramp.data(), 256, &w);
        ASSERT_EQ(want, got) << "level " << r << " p=" << p << " wa=" << w.wa;
      }
    }
  }
}

TEST(LayoutRowsSimd, BlendMatchesReferenceForEveryWeight) {
  Sweep([](int li, int count, std::size_t offset, uint32_t seed) {
    const auto fn = Pick(li, BlendChromaRow_SSE2, BlendChromaRow_Any_SSE2, BlendChromaRow_AVX2,
                         BlendChromaRow_Any_AVX2);
    const std::size_t n = static_cast<std::size_t>(count);
    Source a(n, offset, seed), b(n, offset, seed + 1);
    for (uint16_t wa = 0; wa <= 8; ++wa) {
      const ChromaBlend w = {wa, static_cast<uint16_t>(8 - wa)};
      GuardedBuffer want(n, offset), got(n, offset);
      BlendChromaRow_C(want.data(), a.data(), b.data(), count, &w);
      fn(got.data(), a.data(), b.data(), count, &w);
      ASSERT_EQ(MismatchMap(want.data(), got.data(), n, 1), "") << "wa=" << wa;
      ASSERT_TRUE(got.GuardsIntact());
    }
  });
}

TEST(LayoutRowsSimd, Yuv420PairRowMatchesReference) {
  Sweep([](int li, int width, std::size_t offset, uint32_t seed) {
    const auto fn = Pick(li, Yuv420ToYuyvRowPair_SSE2, Yuv420ToYuyvRowPair_Any_SSE2,
                         Yuv420ToYuyvRowPair_AVX2, Yuv420ToYuyvRowPair_Any_AVX2);
    const std::size_t n = static_cast<std::size_t>(width & ~1), half = n / 2;
    Source y0(n, offset, seed), y1(n, offset, seed + 5), ua(half, offset, seed + 1),
        ub(half, offset, seed + 2), va(half, offset, seed + 3), vb(half, offset, seed + 4);
    const std::size_t bytes = 2 * static_cast<std::size_t>(width);
    const ChromaBlend weights[][2] = {{{6, 2}, {2, 6}}, {{5, 3}, {1, 7}}, {{7, 1}, {3, 5}},
                                      {{0, 8}, {8, 0}}};
    for (const auto& w : weights) {
      GuardedBuffer want0(bytes, offset), want1(bytes, offset), got0(bytes, offset),
          got1(bytes, offset);
      Yuv420ToYuyvRowPair_C(want0.data(), want1.data(), y0.data(), y1.data(), ua.data(),
                            ub.data(), va.data(), vb.data(), width, w);
      fn(got0.data(), got1.data(), y0.data(), y1.data(), ua.data(), ub.data(), va.data(),
         vb.data(), width, w);
      ASSERT_EQ(MismatchMap(want0.data(), got0.data(), bytes, 1), "") << "wa=" << w[0].wa;
      ASSERT_EQ(MismatchMap(want1.data(), got1.data(), bytes, 1), "") << "wa=" << w[1].wa;
      ASSERT_TRUE(got0.GuardsIntact() && got1.GuardsIntact());
    }
  });
}

TEST(LayoutRowsSimd, LumaMatchesReference) {
  Sweep([](int li, int width, std::size_t offset, uint32_t seed) {
    const auto fn = Pick(li, YuyvToLumaRow_SSE2, YuyvToLumaRow_Any_SSE2, YuyvToLumaRow_AVX2,
                         YuyvToLumaRow_Any_AVX2);
    const std::size_t n = static_cast<std::size_t>(width);
    Source src(2 * (n & ~std::size_t{1}), offset, seed);
    GuardedBuffer want(n, offset), got(n, offset);
    std::memset(want.data(), 0, n);
    std::memset(got.data(), 0, n);
    YuyvToLumaRow_C(want.data(), src.data(), width);
    fn(got.data(), src.data(), width);
    ASSERT_EQ(MismatchMap(want.data(), got.data(), n, 1), "");
    ASSERT_TRUE(got.GuardsIntact());
  });
}

TEST(LayoutRowsSimd, ChromaMatchesReferenceForEveryFilter) {
  const ChromaTaps filters[] = {
      {0, 2, 2, 0, 2, 2, 2},     {0, 4, 0, 0, 2, 2, 2},  {0, 3, 1, 0, 2, 2, 1},
      {0, 1, 3, 0, 2, 2, 1},     {-1, 3, 3, -1, 2, 2, 2}, {-1, 3, 0, 0, 1, 1, 1},
  };
  Sweep([&](int li, int width, std::size_t offset, uint32_t seed) {
    const auto fn = Pick(li, YuyvToChromaRow_SSE2, YuyvToChromaRow_Any_SSE2,
                         YuyvToChromaRow_AVX2, YuyvToChromaRow_Any_AVX2);
    const std::size_t bytes = 2 * (static_cast<std::size_t>(width) & ~std::size_t{1});
    const std::size_t half = static_cast<std::size_t>(width / 2);
    Source a(bytes, offset, seed), b(bytes, offset, seed + 1), c(bytes, offset, seed + 2),
        d(bytes, offset, seed + 3);
    for (const ChromaTaps& t : filters) {
      SCOPED_TRACE(::testing::Message() << "taps " << t.ta << "," << t.tb << "," << t.tc << ","
                                        << t.td << " >> " << t.shift);
      GuardedBuffer want_u(half, offset), want_v(half, offset), got_u(half, offset),
          got_v(half, offset);
      YuyvToChromaRow_C(want_u.data(), want_v.data(), a.data(), b.data(), c.data(), d.data(),
                        width, &t);
      fn(got_u.data(), got_v.data(), a.data(), b.data(), c.data(), d.data(), width, &t);
      ASSERT_EQ(MismatchMap(want_u.data(), got_u.data(), half, 1), "");
      ASSERT_EQ(MismatchMap(want_v.data(), got_v.data(), half, 1), "");
      ASSERT_TRUE(got_u.GuardsIntact() && got_v.GuardsIntact());
    }
  });
}

}  // namespace
}  // namespace qbo::test
