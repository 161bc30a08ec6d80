// Every export that takes scratch memory, with the n-th allocation of the
// call failing for each n it makes: the call reports failure (or, for the
// exports without a result, simply stops), leaves the destination as it
// was and gives back every block it took. The sanitizer build adds the
// leak check.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "frame/platform.h"
#include "tests/support/fake_platform.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

constexpr int32_t kW = 37, kH = 23;

// One export on fixed buffers: `dst` is what it may write, `run` calls it
// and returns its result.
struct Case {
  const char* name;
  std::size_t dst_bytes;
  std::function<int64_t(uint8_t* dst, const uint8_t* src)> run;
  int64_t failure;  // the result a failed allocation must give
};

std::vector<Case> Cases() {
  const std::size_t plane = std::size_t{kW} * kH * 4;
  auto blit = [](int32_t(QBO_CALLEE* fn)(void*, int32_t, int32_t, int32_t, int32_t, int32_t, int32_t,
                               const void*, int32_t, int32_t, int32_t, int32_t, int32_t,
                               int32_t, int32_t, int32_t),
                 int32_t mode, int32_t field) {
    return [=](uint8_t* d, const uint8_t* s) -> int64_t {
      return fn(d, 2, 1, 30, 19, kW, kH, s, 1, 2, 17, 11, kW, kH, mode, field);
    };
  };
  const int32_t weights[3] = {1, 2, 1};
  return {
      {"OverTurnSelf", plane,
       [](uint8_t* d, const uint8_t*) -> int64_t { return QN_OverTurnSelf(d, kW * 4, kH); }, 0},
      {"BitBlt stretching, over", plane, blit(QN_BitBlt, 0, 0), 0},
      {"StretchBlt copy", plane, blit(QN_StretchBlt, 1, 0), 0},
      {"StretchBlt inverted, odd field", plane, blit(QN_StretchBlt, 2, 2), 0},
      {"StretchBlt_Mean over", plane, blit(QN_StretchBlt_Mean, 0, 1), 0},
      {"StretchBlt_Mean copy", plane, blit(QN_StretchBlt_Mean, 1, 0), 0},
      {"YUYV2BGRA_MeanStretch", plane,
       [](uint8_t* d, const uint8_t* s) -> int64_t {
         return QN_CS_YUYV2BGRA_MeanStretch(d, kW * 4, 4, 1, 30, 19, kW, kH, s, kW * 2, 3, 2,
                                            17, 11, kW, kH, 0, 0);
       },
       0},
      {"YUYV2RGBA_MeanStretch flipped", plane,
       [](uint8_t* d, const uint8_t* s) -> int64_t {
         return QN_CS_YUYV2RGBA_MeanStretch(d, kW * 4, 0, 0, 11, 9, kW, kH, s, kW * 2, 0, 0,
                                            30, 20, kW, kH, 1, 1);
       },
       0},
      {"VerticalBlur", plane,
       [weights](uint8_t* d, const uint8_t*) -> int64_t {
         return QN_VerticalBlur(d, kW, kH, weights) == d ? 1 : 0;
       },
       1},
      {"YUV420_BGRA_Split", std::size_t{16} * 4 * 10,
       [](uint8_t* d, const uint8_t* s) -> int64_t {
         QN_CS_YUV420_BGRA_Split(d, 64, d + 320, 64, s, 16, s + 160, 8, s + 200, 8, 16, 10, 1,
                                 1);
         return 0;
       },
       0},
  };
}

// A failed allocation leaves two acceptable outcomes: the failure result
// with the destination untouched, or, for a block the call could do
// without, exactly the result and bytes of a call whose allocations all
// succeed. Anything in between is a partial write.
TEST(AllocationFailure, EveryScratchAllocationFailingLeavesTheDestinationAndLeaksNothing) {
  const std::vector<uint8_t> src = RandomBytes(std::size_t{kW} * kH * 4, 77);
  for (const Case& c : Cases()) {
    SCOPED_TRACE(c.name);
    const std::vector<uint8_t> original = RandomBytes(c.dst_bytes, 78);
    FakePlatform counting;
    std::vector<uint8_t> full = original;
    SetPlatformForTesting(&counting);
    const int64_t ok = c.run(full.data(), src.data());
    SetPlatformForTesting(nullptr);
    ASSERT_GT(counting.aligned_allocs, 0) << "the export took no scratch memory";
    EXPECT_NE(full, original) << "the unfailed call wrote nothing";
    EXPECT_EQ(counting.live_aligned, 0);

    int failed_cleanly = 0;
    for (int n = 1; n <= counting.aligned_allocs; ++n) {
      SCOPED_TRACE("allocation " + std::to_string(n) + " of " +
                   std::to_string(counting.aligned_allocs) + " fails");
      FakePlatform failing;
      failing.fail_aligned_alloc_at = n;
      std::vector<uint8_t> dst = original;
      SetPlatformForTesting(&failing);
      const int64_t result = c.run(dst.data(), src.data());
      SetPlatformForTesting(nullptr);
      const bool clean = result == c.failure && dst == original;
      EXPECT_TRUE(clean || (result == ok && dst == full))
          << "result " << result << "\n"
          << MismatchMap(original.data(), dst.data(), 64, c.dst_bytes / 64);
      failed_cleanly += clean ? 1 : 0;
      EXPECT_EQ(failing.live_aligned, 0) << "scratch blocks were not given back";
    }
    EXPECT_GT(failed_cleanly, 0) << "no failed allocation stopped the call";
  }
}

// The resampling exports take their intermediate image as page memory.
TEST(AllocationFailure, ResamplingWithoutPagesDrawsNothing) {
  const std::vector<uint8_t> src = RandomBytes(std::size_t{kW} * kH * 4, 79);
  const std::vector<uint8_t> original = RandomBytes(std::size_t{kW} * kH * 4, 80);
  using Run = std::function<int32_t(uint8_t*)>;
  const std::pair<const char*, Run> runs[] = {
      {"Re4Sampling", [&](uint8_t* d) { return QN_Re4Sampling(d, kW, kH, src.data(), 20, 9); }},
      {"Re8Sampling", [&](uint8_t* d) { return QN_Re8Sampling(d, kW, kH, src.data(), 9, 20); }},
      {"Re4SamplingEx",
       [&](uint8_t* d) {
         return QN_Re4SamplingEx(d, 3, 2, 25, 17, kW, kH, src.data(), 1, 1, 30, 9, kW, kH);
       }},
      {"Re8SamplingEx",
       [&](uint8_t* d) {
         return QN_Re8SamplingEx(d, 0, 0, 9, 21, kW, kH, src.data(), 2, 3, 30, 15, kW, kH);
       }},
  };
  for (const auto& [name, run] : runs) {
    SCOPED_TRACE(name);
    FakePlatform failing;
    failing.fail_pages = true;
    std::vector<uint8_t> dst = original;
    SetPlatformForTesting(&failing);
    EXPECT_EQ(run(dst.data()), 0);
    SetPlatformForTesting(nullptr);
    EXPECT_TRUE(dst == original);
    std::vector<uint8_t> drawn = original;
    EXPECT_EQ(run(drawn.data()), 1);
    EXPECT_NE(drawn, original);
  }
}

}  // namespace
}  // namespace qbo::test
