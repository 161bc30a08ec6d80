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

constexpr int32_t w = 61, h = 27;

// A job on a destination and a source of `bytes` seeded bytes each.
Job OnPlanes(std::function<void(uint8_t* dst, const uint8_t* src)> call,
             std::size_t bytes = std::size_t{w} * h * 4) {
  return [call, bytes](uint32_t seed) {
    std::vector<uint8_t> dst = RandomBytes(bytes, seed);
    const std::vector<uint8_t> src = RandomBytes(bytes, seed + 1);
    call(dst.data(), src.data());
    return dst;
  };
}

std::vector<Job> Jobs() {
  using D = uint8_t*;
  using S = const uint8_t*;
  return {
      OnPlanes([](D d, S s) { QN_StretchBlt(d, -3, 2, 70, 20, w, h, s, 1, 1, 33, 17, w, h, 0, 0); }),
      OnPlanes([](D d, S s) { QN_BitBlt(d, 5, 3, 40, 19, w, h, s, 2, 1, 40, 19, w, h, 2, 1); }),
      OnPlanes([](D d, S s) { QN_StretchBlt_Mean(d, 0, 0, 17, 9, w, h, s, 0, 0, w, h, w, h, 1, 0); }),
      OnPlanes([](D d, S s) { QN_Re4SamplingEx(d, 1, 1, 50, 20, w, h, s, 0, 2, 30, 25, w, h); }),
      OnPlanes([](D d, S s) { QN_Re8Sampling(d, w, h, s, 20, 40); }),
      OnPlanes([](D d, S s) { QN_DwordBufferZoom(d, 2, 2, 50, 20, w, h, s, 0, 0, 20, 10, w, h); }),
      OnPlanes([](D d, S s) {
        QN_CS_YUYV2RGBA_MeanStretch(d, w * 4, 0, 0, w, h, w, h, s, w * 2, 0, 0, 40, 20, w, h, 1, 1);
      }),
      OnPlanes([](D d, S s) { QN_CS_YUYV2BGRA_Frame(d, w * 4, s, w * 2, w - 1, h, 0, 1); }),
      OnPlanes([](D d, S s) { QN_CS_RGBA2YUYV_Frame(d, w * 2 + 2, s, w * 4, w, h - 1, 1, 0); }),
      OnPlanes([](D d, S mask) {
        QN_FillMaskColor(d, -2, 3, w, h, mask, 1, 0, 40, 20);
        QN_MixMask(d, 1, 1, 30, 10, w * 4, h, mask, 0, 0, 0, 0, w, h);
      }),
      OnPlanes([](D d, S) {
        const int32_t weights[3] = {1, 6, 1};
        QN_VerticalBlur(d, w, h, weights);
        QN_OverTurnSelf(d, w * 4, h);
      }),
      OnPlanes(
          [](D d, S s) {
            QN_CS_420_422_YUVFrame_XDCAM(d, 128, s, 64, s + 2560, 32, s + 3200, 32, 64, 40);
          },
          std::size_t{64} * 2 * 40),
      OnPlanes([](D d, S s) {
        QN_Yuyv_Alpha_Mixin(d, w * 2, d + w * h * 2, w, w, h, s, w * 2, s + w * h * 2, w, 0, 0, 3,
                            4, 40, 20);
      }),
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
