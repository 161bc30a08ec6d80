// What every fuzz target shares: turning the input into arguments, exactly
// sized heap blocks (so the address sanitizer sees any access past what the
// arguments describe), and the check that a call changed nothing outside
// the bytes it may write.
#ifndef QBO_FUZZ_FUZZ_SUPPORT_H_
#define QBO_FUZZ_FUZZ_SUPPORT_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qbo::fuzz {

// Largest block a target allocates; inputs describing more are skipped.
constexpr int64_t kMaxBytes = int64_t{2} << 20;

// Reads arguments from the fuzzer's bytes; past the end every read is 0.
class Input {
 public:
  Input(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  uint8_t Byte();
  // Any int32: a small value, a 16-bit one, 32 raw bits or an extreme.
  int32_t Value();
  // A buffer dimension: usually 1..typical, sometimes any Value().
  int32_t Dimension(int32_t typical);
  // A selector (mode, field, flag): usually 0..count-1, sometimes any Value().
  int32_t Choice(int32_t count);
  // True with probability about 1/16: the pointer passed is NULL.
  bool Null() { return Byte() % 16 == 15; }

 private:
  const uint8_t* data_;
  std::size_t size_;
  std::size_t pos_ = 0;
};

// Picks the kernel level from the input, so every level is fuzzed.
void SelectKernelLevel(Input& in);

// Bytes of a `columns` x `rows` plane of `unit`-byte elements (0 when either
// is below 1), or -1 when that is more than kMaxBytes.
int64_t PlaneBytes(int64_t columns, int64_t rows, int64_t unit);

// A heap block of exactly `bytes` bytes (a zero-size block is still a
// distinct pointer with no accessible byte), filled with a pattern taken
// from the input, plus a copy to compare with after the call and a map of
// the bytes the call may change.
class Block {
 public:
  Block(int64_t bytes, Input& in);
  ~Block();
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;

  uint8_t* data() { return data_; }
  int64_t size() const { return size_; }

  // Lets the call change `length` bytes from `offset`, clipped to the block.
  void Allow(int64_t offset, int64_t length);
  // Lets it change `rows` runs of `length` bytes, `pitch` apart, the first
  // at `offset`.
  void AllowRows(int64_t offset, int64_t pitch, int64_t rows, int64_t length);

  // Aborts, naming `what`, when a byte the call may not change changed.
  void CheckOutsideAllowed(const char* what) const;
  // Aborts when any byte changed.
  void CheckUnchanged(const char* what) const;
  const std::vector<uint8_t>& before() const { return before_; }

 private:
  uint8_t* data_;
  int64_t size_;
  std::vector<uint8_t> before_;
  std::vector<uint8_t> allowed_;
};

// Reports a broken expectation and aborts so the fuzzer keeps the input.
[[noreturn]] void Fail(const char* what, const char* detail);
inline void Expect(bool ok, const char* what, const char* detail) {
  if (!ok) Fail(what, detail);
}

// A half-open interval [lo, hi) of 64-bit coordinates.
struct Span {
  int64_t lo, hi;
  int64_t size() const { return hi > lo ? hi - lo : 0; }
};
inline Span Intersect(Span a, Span b) {
  return Span{a.lo > b.lo ? a.lo : b.lo, a.hi < b.hi ? a.hi : b.hi};
}

}  // namespace qbo::fuzz

#endif  // QBO_FUZZ_FUZZ_SUPPORT_H_
