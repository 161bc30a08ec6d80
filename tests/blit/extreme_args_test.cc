// Any int32 argument value keeps the transfers inside the buffers their
// sizes describe: each coordinate and size in turn takes extreme values,
// then seeded random mixes of them. Sources are exact-size allocations, so
// the sanitizer build sees any over-read; destinations sit between guard
// bytes. Block transfers keep one spare row below both buffers, the one a
// selected field may reach.
#include <gtest/gtest.h>

#include <climits>
#include <random>

#include "tests/blit/blit_test_util.h"

namespace qbo::test {
namespace {

constexpr int32_t kW = 13, kH = 9;
constexpr int32_t kExtremes[] = {INT32_MIN, INT32_MIN + 1, -65536, -7, -1, 0, 1, 2, 6, 12,
                                 65536, INT32_MAX - 1, INT32_MAX};

// Buffer sizes (dst_width, dst_height, src_width, src_height: slots 4, 5,
// 10, 11) may only shrink: a larger value describes a buffer the test does
// not have.
bool DescribesMissingMemory(int slot, int32_t value) {
  const bool is_size = slot == 4 || slot == 5 || slot == 10 || slot == 11;
  return is_size && value > (slot % 2 == 0 ? kW : kH);
}

void RunBlit(BlitFn fn, const Rects& r) {
  std::vector<uint8_t> src(std::size_t(kW) * (kH + 1) * 4, 0x5A);
  GuardedBuffer dst(std::size_t(kW) * (kH + 1) * 4);
  const int32_t result = Call(fn, dst.data(), src.data(), r);
  EXPECT_TRUE(result == 0 || result == 1 || result == QBO_E_FAIL) << result;
  EXPECT_TRUE(dst.GuardsIntact());
}

std::string Describe(const Rects& r) {
  std::string s;
  for (int32_t v : r.AsArray()) s += std::to_string(v) + " ";
  return s;
}

TEST(ExtremeArguments, TransfersStayInsideTheirBuffers) {
  const Rects base{1, 2, 7, 5, kW, kH, 2, 1, 6, 4, kW, kH, 0, 0};
  for (BlitFn fn : {QN_BitBlt, QN_StretchBlt, QN_StretchBlt_Mean}) {
    for (int32_t mode : {0, 1, 2}) {
      for (int slot = 0; slot < 14; ++slot) {
        for (int32_t value : kExtremes) {
          if (DescribesMissingMemory(slot, value)) continue;
          std::array<int32_t, 14> v = base.AsArray();
          v[12] = mode;
          v[slot] = value;
          const Rects r = Rects::FromArray(v);
          SCOPED_TRACE(Describe(r));
          RunBlit(fn, r);
        }
      }
    }
  }
}

TEST(ExtremeArguments, RandomMixes) {
  const uint32_t seed = 4242;
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  std::mt19937 rng(seed);
  auto pick = [&](int slot) {
    for (;;) {
      const int32_t v = kExtremes[rng() % std::size(kExtremes)];
      if (!DescribesMissingMemory(slot, v)) return v;
    }
  };
  for (int i = 0; i < 3000; ++i) {
    std::array<int32_t, 14> v;
    for (int slot = 0; slot < 12; ++slot) v[slot] = pick(slot);
    v[12] = int32_t(rng() % 3);
    v[13] = int32_t(rng() % 3);
    const Rects r = Rects::FromArray(v);
    SCOPED_TRACE(Describe(r));
    for (BlitFn fn : {QN_BitBlt, QN_StretchBlt, QN_StretchBlt_Mean}) RunBlit(fn, r);
  }
}

TEST(ExtremeArguments, YuyvMeanStretchStaysInside) {
  // Slots: dstX, dstY, width, height, dstWidth, dstHeight, srcX, srcY,
  // srcRectWidth, srcRectHeight, srcWidth, srcHeight (pitches fixed).
  const std::array<int32_t, 12> base{0, 1, 7, 5, kW, kH, 2, 1, 6, 4, kW, kH};
  std::mt19937 rng(99);
  auto run = [](const std::array<int32_t, 12>& v, int32_t flip) {
    // Rows of ceil(kW / 2) groups; the destination pitch allows for the
    // byte displacement of dstX (at most kW - 1 bytes).
    const int32_t src_pitch = (kW + 1) / 2 * 4;
    const int32_t dst_pitch = kW * 4;
    std::vector<uint8_t> src(std::size_t(src_pitch) * kH, 0x80);
    GuardedBuffer dst(std::size_t(dst_pitch) * kH);
    for (auto fn : {QN_CS_YUYV2BGRA_MeanStretch, QN_CS_YUYV2RGBA_MeanStretch}) {
      const int32_t result = fn(dst.data(), dst_pitch, v[0], v[1], v[2], v[3], v[4], v[5], src.data(),
                                src_pitch, v[6], v[7], v[8], v[9], v[10], v[11], 0, flip);
      EXPECT_TRUE(result == 0 || result == 1);
    }
    EXPECT_TRUE(dst.GuardsIntact());
  };
  for (int slot = 0; slot < 12; ++slot) {
    for (int32_t value : kExtremes) {
      if (DescribesMissingMemory(slot, value)) continue;
      std::array<int32_t, 12> v = base;
      v[slot] = value;
      SCOPED_TRACE(::testing::Message() << "slot " << slot << " value " << value);
      run(v, 0);
      run(v, 1);
    }
  }
  for (int i = 0; i < 1500; ++i) {
    std::array<int32_t, 12> v;
    for (int slot = 0; slot < 12; ++slot) {
      do {
        v[slot] = kExtremes[rng() % std::size(kExtremes)];
      } while (DescribesMissingMemory(slot, v[slot]));
    }
    SCOPED_TRACE(::testing::Message() << "mix " << i << " seed 99");
    run(v, int32_t(rng() % 2));
  }
}

}  // namespace
}  // namespace qbo::test
