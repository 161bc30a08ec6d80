// Exports keep no state between calls, so eight threads running a mix of
// them at once on their own buffers must give exactly what one thread
// gives. Run under the thread sanitizer configuration, any shared write
// inside the library shows up as a race.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/support/test_support.h"

namespace qbo::test {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 3;

// One export on buffers made from `seed`; returns every byte it wrote to.
using Job = std::function<std::vector<uint8_t>(uint32_t seed)>;

std::vector<Job> Jobs() {
  constexpr int32_t w = 61, h = 27;
  const std::size_t plane = std::size_t{w} * h * 4;
  return {
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_StretchBlt(dst.data(), -3, 2, 70, 20, w, h, src.data(), 1, 1, 33, 17, w, h, 0, 0);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_BitBlt(dst.data(), 5, 3, 40, 19, w, h, src.data(), 2, 1, 40, 19, w, h, 2, 1);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_StretchBlt_Mean(dst.data(), 0, 0, 17, 9, w, h, src.data(), 0, 0, w, h, w, h, 1, 0);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_Re4SamplingEx(dst.data(), 1, 1, 50, 20, w, h, src.data(), 0, 2, 30, 25, w, h);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_Re8Sampling(dst.data(), w, h, src.data(), 20, 40);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_DwordBufferZoom(dst.data(), 2, 2, 50, 20, w, h, src.data(), 0, 0, 20, 10, w, h);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_CS_YUYV2RGBA_MeanStretch(dst.data(), w * 4, 0, 0, w, h, w, h, src.data(), w * 2, 0,
                                    0, 40, 20, w, h, 1, 1);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_CS_YUYV2BGRA_Frame(dst.data(), w * 4, src.data(), w * 2, w - 1, h, 0, 1);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_CS_RGBA2YUYV_Frame(dst.data(), w * 2 + 2, src.data(), w * 4, w, h - 1, 1, 0);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), mask = RandomBytes(plane, seed + 1);
        QN_FillMaskColor(dst.data(), -2, 3, w, h, mask.data(), 1, 0, 40, 20);
        QN_MixMask(dst.data(), 1, 1, 30, 10, w * 4, h, mask.data(), 0, 0, 0, 0, w, h);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed);
        const int32_t weights[3] = {1, 6, 1};
        QN_VerticalBlur(dst.data(), w, h, weights);
        QN_OverTurnSelf(dst.data(), w * 4, h);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(std::size_t{64} * 2 * 40, seed);
        const std::vector<uint8_t> src = RandomBytes(std::size_t{64} * 40 * 2, seed + 1);
        QN_CS_420_422_YUVFrame_XDCAM(dst.data(), 128, src.data(), 64, src.data() + 2560, 32,
                                     src.data() + 3200, 32, 64, 40);
        return dst;
      },
      [=](uint32_t seed) {
        std::vector<uint8_t> dst = RandomBytes(plane, seed), src = RandomBytes(plane, seed + 1);
        QN_Yuyv_Alpha_Mixin(dst.data(), w * 2, dst.data() + w * h * 2, w, w, h, src.data(), w * 2,
                            src.data() + w * h * 2, w, 0, 0, 3, 4, 40, 20);
        return dst;
      },
  };
}

TEST(Threads, EightThreadsGiveTheSingleThreadedBytes) {
  const std::vector<Job> jobs = Jobs();
  // Thread t runs every job with seeds of its own, starting at job t, so
  // different exports overlap in time.
  auto seed_of = [](int thread, std::size_t job) {
    return static_cast<uint32_t>(1000 * thread + 10 * job + 1);
  };
  std::vector<std::vector<std::vector<uint8_t>>> expected(kThreads);
  for (int t = 0; t < kThreads; ++t) {
    for (std::size_t j = 0; j < jobs.size(); ++j) expected[t].push_back(jobs[j](seed_of(t, j)));
  }

  std::vector<std::string> failures(kThreads);
  std::atomic<int> waiting{kThreads};
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      waiting.fetch_sub(1);
      while (waiting.load() > 0) std::this_thread::yield();
      for (int round = 0; round < kRounds; ++round) {
        for (std::size_t i = 0; i < jobs.size(); ++i) {
          const std::size_t j = (i + static_cast<std::size_t>(t)) % jobs.size();
          if (jobs[j](seed_of(t, j)) != expected[t][j] && failures[t].empty()) {
            failures[t] = "job " + std::to_string(j) + " round " + std::to_string(round);
          }
        }
      }
    });
  }
  for (std::thread& th : threads) th.join();
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(failures[t], "") << "thread " << t;
}

}  // namespace
}  // namespace qbo::test
