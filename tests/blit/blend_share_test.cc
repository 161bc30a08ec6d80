// The shortcuts the SIMD blend rows take for the over-share entry, proven
// over every input: the closed form for an opaque lower layer, the biased
// float quotient with its one-step correction, and the whole row over an
// opaque lower layer for every source alpha and channel pair.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "blit/blend_row.h"
#include "frame/lookup_tables.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

TEST(BlendShare, OpaqueLowerLayerClosedForm) {
  // OverShare[a][255] = floor(32767a / 255) = max(257a - 1, 0) >> 1.
  for (int a = 0; a < 256; ++a) {
    const int x = 257 * a;
    EXPECT_EQ((x > 0 ? x - 1 : 0) >> 1, OverShare(a, 255)) << "a=" << a;
  }
}

TEST(BlendShare, BiasedFloatQuotientCorrectsToTheTable) {
  // The AVX2 row's steps in scalar IEEE single precision: the truncated
  // quotient is the entry or one more, and the remainder's sign decides.
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) {
      const float af = static_cast<float>(a), bf = static_cast<float>(b);
      float d = (af + bf) * 255.0f - af * bf;
      if (d < 1.0f) d = 1.0f;
      const int32_t q = static_cast<int32_t>((af * 8355617.0f) / d);
      const int32_t r = a * 8355585 - q * static_cast<int32_t>(d);
      ASSERT_GE(r, -static_cast<int32_t>(d)) << "a=" << a << " b=" << b;
      ASSERT_EQ(q - (r < 0 ? 1 : 0), OverShare(a, b)) << "a=" << a << " b=" << b;
    }
  }
}

struct Row {
  const char* name;
  BlendRowFn ref;
  BlendRowFn fn;
  KernelLevel level;
};

TEST(BlendShare, OpaqueLowerLayerEveryAlphaAndChannelPair) {
  // One row per source alpha, its 65536 pixels every (source, destination)
  // value of channel 0; channels 1 and 2 take the pair swapped and mixed.
  const Row rows[] = {
      {"Over_Any_SSE2", BlendOverRow_C, BlendOverRow_Any_SSE2, KernelLevel::kSse2},
      {"Inverted_Any_SSE2", BlendOverInvertedRow_C, BlendOverInvertedRow_Any_SSE2, KernelLevel::kSse2},
      {"Over_Any_AVX2", BlendOverRow_C, BlendOverRow_Any_AVX2, KernelLevel::kAvx2},
      {"Inverted_Any_AVX2", BlendOverInvertedRow_C, BlendOverInvertedRow_Any_AVX2, KernelLevel::kAvx2},
  };
  std::vector<uint8_t> src(65536 * 4), dst(65536 * 4);
  for (uint32_t i = 0; i < 65536; ++i) {
    const uint8_t cs = uint8_t(i >> 8), cd = uint8_t(i);
    const uint8_t s[4] = {cs, cd, uint8_t(cs ^ cd), 0};
    const uint8_t d[4] = {cd, cs, uint8_t(cs + cd), 255};
    std::memcpy(&src[4 * i], s, 4);
    std::memcpy(&dst[4 * i], d, 4);
  }
  for (const Row& row : rows) {
    if (row.level > MachineKernelLevel()) continue;
    for (int as = 0; as < 256; ++as) {
      SCOPED_TRACE(::testing::Message() << row.name << " As=" << as);
      for (uint32_t i = 0; i < 65536; ++i) src[4 * i + 3] = uint8_t(as);
      std::vector<uint8_t> expected = dst, actual = dst;
      row.ref(expected.data(), src.data(), g_tables.over_share, 65536);
      row.fn(actual.data(), src.data(), g_tables.over_share, 65536);
      ASSERT_EQ(MismatchMap(expected.data(), actual.data(), 1024, 256, 4), "");
    }
  }
}

}  // namespace
}  // namespace qbo::test
