// Shared test helpers: running a body at every kernel level, guarded
// buffers that catch stray writes and over-reads, seeded random data and
// mismatch maps.
#ifndef QBO_TESTS_SUPPORT_TEST_SUPPORT_H_
#define QBO_TESTS_SUPPORT_TEST_SUPPORT_H_

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "frame/kernel_table.h"

namespace qbo::test {

// Runs `body` once per kernel level this machine has (C, SSE2, AVX2), with
// the table refilled at that level, and restores the table afterwards.
// Failures inside carry the level in their trace.
void ForEachLevel(const std::function<void(KernelLevel)>& body);

// Refills the table at `level` for the scope.
class ScopedKernelLevel {
 public:
  explicit ScopedKernelLevel(KernelLevel level);
  ~ScopedKernelLevel();

 private:
  KernelLevel saved_;
};

// A byte buffer of `size` bytes starting `offset` bytes past a 64-byte
// boundary, with sentinel bytes before and after. GuardsIntact() tells
// whether anything outside [data(), data() + size) was written.
class GuardedBuffer {
 public:
  static constexpr std::size_t kGuard = 64;
  static constexpr uint8_t kSentinel = 0xA5;

  explicit GuardedBuffer(std::size_t size, std::size_t offset = 0);
  uint8_t* data() { return data_; }
  const uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }
  bool GuardsIntact() const;

 private:
  std::vector<uint8_t> storage_;
  uint8_t* data_;
  std::size_t size_;
};

// `size` bytes that end exactly at a page boundary followed by an
// inaccessible page, so any read or write past the end faults.
class PageEndBuffer {
 public:
  explicit PageEndBuffer(std::size_t size);
  ~PageEndBuffer();
  PageEndBuffer(const PageEndBuffer&) = delete;
  PageEndBuffer& operator=(const PageEndBuffer&) = delete;
  uint8_t* data() { return data_; }
  std::size_t size() const { return size_; }

 private:
  void* mapping_;
  std::size_t mapping_size_;
  uint8_t* data_;
  std::size_t size_;
};

// Deterministic random bytes; the seed is printed on failure by the caller
// through SCOPED_TRACE.
void FillRandom(uint8_t* data, std::size_t size, uint32_t seed);
std::vector<uint8_t> RandomBytes(std::size_t size, uint32_t seed);

// A '.'/'x' map of equal and differing bytes of two images (rows of
// `row_bytes`), with the first differing row and column, or "" when equal.
std::string MismatchMap(const uint8_t* expected, const uint8_t* actual, std::size_t row_bytes,
                        std::size_t rows, std::size_t bytes_per_pixel = 1);

}  // namespace qbo::test

#endif  // QBO_TESTS_SUPPORT_TEST_SUPPORT_H_
