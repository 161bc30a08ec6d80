// YUYV alpha mixing: hand-worked bytes for both mixes, every level against
// the reference rows, and the export's clipping, offsets and row modes.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "filter/yuyv_mix_row.h"
#include "frame/lookup_tables.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

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

TEST(YuyvMixOpaqueRow, SkippedTransparentGroupsMatchTheFormula) {
  // Group 0 (pixels 0-3) is transparent and skipped; group 1 has one pixel
  // of alpha 255 whose bytes become 254 - (x * 255 >> 8); the last pair
  // (width bit 1) is mixed without the skip test.
  const uint8_t alpha[10] = {0, 0, 0, 0, 0, 0, 255, 0, 0, 0};
  const uint8_t src[20] = {255, 255, 255, 255, 255, 255, 255, 255, 255, 255,
                           255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
  uint8_t dst[20];
  for (int i = 0; i < 20; ++i) dst[i] = static_cast<uint8_t>(10 * i);
  ForEachLevel([&](KernelLevel) {
    uint8_t out[20];
    std::memcpy(out, dst, 20);
    Kernels().filter.yuyv_mix_opaque(out, nullptr, src, alpha, 5, nullptr);
    for (int i = 0; i < 20; ++i) {
      // Byte i belongs to pixel 2 * (i / 4) + (i % 4 >= 2).
      const int pixel = 2 * (i / 4) + (i % 4 >= 2 ? 1 : 0);
      const int expected = pixel == 6 ? dst[i] + 254 - (dst[i] * 255 >> 8) : dst[i];
      ASSERT_EQ(out[i], expected) << "byte " << i;
    }
  });
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

// Alpha with long transparent and opaque runs, so the skip paths are taken.
std::vector<uint8_t> RunnyAlpha(std::size_t n, uint32_t seed) {
  std::vector<uint8_t> a = RandomBytes(n, seed);
  for (std::size_t i = 0; i < n; ++i) {
    const std::size_t run = (i / 8) % 4;
    if (run == 0) a[i] = 0;
    if (run == 1) a[i] = 255;
  }
  return a;
}

TEST(YuyvMixRows, EveryLevelMatchesTheReference) {
  const uint32_t seed = 8086;
  std::vector<int32_t> widths;
  for (int32_t i = 1; i <= 2 * 8 + 15; ++i) widths.push_back(i);
  widths.push_back(719);
  widths.push_back(1920);
  ForEachLevel([&](KernelLevel level) {
    for (int mode = 0; mode < 2; ++mode) {
      const YuyvMixRowFn ref = mode == 0 ? YuyvMixOpaqueRow_C : YuyvMixAlphaRow_C;
      const YuyvMixRowFn row = mode == 0 ? Kernels().filter.yuyv_mix_opaque : Kernels().filter.yuyv_mix_alpha;
      for (int32_t pairs : widths) {
        SCOPED_TRACE(::testing::Message() << KernelLevelName(level) << " mode=" << mode
                                          << " pairs=" << pairs << " seed=" << seed);
        const std::size_t n = static_cast<std::size_t>(pairs);
        PageEndBuffer src(4 * n + 1), src_alpha(2 * n + 3);
        FillRandom(src.data(), src.size(), seed + pairs);
        const std::vector<uint8_t> sa = RunnyAlpha(2 * n, seed * 5 + pairs);
        std::memcpy(src_alpha.data() + 3, sa.data(), 2 * n);
        const std::vector<uint8_t> d0 = RandomBytes(4 * n, seed * 7 + pairs);
        const std::vector<uint8_t> da0 = RunnyAlpha(2 * n, seed * 11 + pairs + 3);
        GuardedBuffer want(4 * n), want_a(2 * n), got(4 * n, 2), got_a(2 * n, 1);
        std::memcpy(want.data(), d0.data(), 4 * n);
        std::memcpy(got.data(), d0.data(), 4 * n);
        std::memcpy(want_a.data(), da0.data(), 2 * n);
        std::memcpy(got_a.data(), da0.data(), 2 * n);
        ref(want.data(), want_a.data(), src.data() + 1, src_alpha.data() + 3, pairs, g_tables.over_share);
        row(got.data(), got_a.data(), src.data() + 1, src_alpha.data() + 3, pairs, g_tables.over_share);
        ASSERT_EQ(MismatchMap(want.data(), got.data(), 4 * n, 1, 2), "");
        ASSERT_EQ(MismatchMap(want_a.data(), got_a.data(), 2 * n, 1), "");
        ASSERT_TRUE(got.GuardsIntact() && got_a.GuardsIntact());
      }
    }
  });
}

// A destination of 10 x 6 YUYV pixels with padded pitches, and a source of
// 8 x 6 with its own padding.
struct Planes {
  static constexpr int32_t kDstPitch = 24, kDstAlphaPitch = 13, kSrcPitch = 20, kSrcAlphaPitch = 11;
  std::vector<uint8_t> dst = RandomBytes(kDstPitch * 6, 1), dst_alpha = RandomBytes(kDstAlphaPitch * 6, 2);
  std::vector<uint8_t> src = RandomBytes(kSrcPitch * 6, 3), src_alpha = RunnyAlpha(kSrcAlphaPitch * 6, 4);
};

TEST(YuyvAlphaMixin, EachModeMixesTheClippedRectangleFromTheSourceOrigin) {
  struct Case {
    int32_t x, y, width, height;
    int32_t cx, cy, cw, ch;  // clipped
  };
  const Case cases[] = {
      {2, 1, 6, 3, 2, 1, 6, 3},
      {3, 2, 5, 4, 3, 2, 5, 4},    // odd width: the last pixel stays
      {6, 4, 8, 8, 6, 4, 4, 2},    // cut at the right and bottom edges
      {4, 0, -1, -1, 4, 0, 6, 6},  // negative sizes reach the edges
  };
  ForEachLevel([&](KernelLevel) {
    for (int mode = 0; mode < 3; ++mode) {
      for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << "mode=" << mode << " at " << c.x << "," << c.y);
        Planes p, want;
        const bool src_alpha = mode != 0, dst_alpha = mode != 1;
        for (int32_t r = 0; r < c.ch; ++r) {
          uint8_t* d = want.dst.data() + (c.cy + r) * Planes::kDstPitch + 2 * c.cx;
          uint8_t* da = want.dst_alpha.data() + (c.cy + r) * Planes::kDstAlphaPitch + c.cx;
          const uint8_t* s = want.src.data() + r * Planes::kSrcPitch;
          const uint8_t* sa = want.src_alpha.data() + r * Planes::kSrcAlphaPitch;
          if (mode == 0) {
            std::memcpy(d, s, 2 * static_cast<std::size_t>(c.cw));
            std::memset(da, 1, static_cast<std::size_t>(c.cw));
          } else if (mode == 1) {
            YuyvMixOpaqueRow_C(d, nullptr, s, sa, c.cw / 2, nullptr);
          } else {
            YuyvMixAlphaRow_C(d, da, s, sa, c.cw / 2, g_tables.over_share);
          }
        }
        EXPECT_EQ(QN_Yuyv_Alpha_Mixin(p.dst.data(), Planes::kDstPitch,
                                      dst_alpha ? p.dst_alpha.data() : nullptr,
                                      Planes::kDstAlphaPitch, 10, 6, p.src.data(), Planes::kSrcPitch,
                                      src_alpha ? p.src_alpha.data() : nullptr,
                                      Planes::kSrcAlphaPitch, 0x1234, -1, c.x, c.y, c.width, c.height),
                  c.cw);
        EXPECT_EQ(MismatchMap(want.dst.data(), p.dst.data(), Planes::kDstPitch, 6, 2), "");
        EXPECT_EQ(MismatchMap(want.dst_alpha.data(), p.dst_alpha.data(), Planes::kDstAlphaPitch, 6), "");
      }
    }
  });
}

TEST(YuyvAlphaMixin, PositionsOutsideDrawNothing) {
  // The result is the clipped width even when the height clips to 0.
  struct Case {
    int32_t x, y, result;
  };
  const Case cases[] = {{10, 0, 0}, {11, 0, 0}, {-1, 0, 0}, {0, 6, 4}, {0, -3, 4}};
  for (const Case& c : cases) {
    Planes p;
    const Planes before = p;
    EXPECT_EQ(QN_Yuyv_Alpha_Mixin(p.dst.data(), Planes::kDstPitch, p.dst_alpha.data(),
                                  Planes::kDstAlphaPitch, 10, 6, p.src.data(), Planes::kSrcPitch,
                                  p.src_alpha.data(), Planes::kSrcAlphaPitch, 0, 0, c.x, c.y, 4, 4),
              c.result);
    EXPECT_EQ(p.dst, before.dst);
    EXPECT_EQ(p.dst_alpha, before.dst_alpha);
  }
}

}  // namespace
}  // namespace qbo::test
