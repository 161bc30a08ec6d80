#include "fuzz/fuzz_support.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/attach.h"
#include "frame/kernel_table.h"

namespace qbo::fuzz {
namespace {

constexpr int32_t kExtremes[] = {INT32_MIN, INT32_MIN + 1, INT32_MIN / 2, -65536, -2, -1, 0, 1,
                                 2, 3, 65535, 65536, INT32_MAX / 2, INT32_MAX - 1, INT32_MAX};

}  // namespace

uint8_t Input::Byte() { return pos_ < size_ ? data_[pos_++] : 0; }

int32_t Input::Value() {
  switch (Byte() % 4) {
    case 0:
      return static_cast<int8_t>(Byte());
    case 1: {
      const uint32_t lo = Byte();
      return static_cast<int16_t>(lo | static_cast<uint32_t>(Byte()) << 8);
    }
    case 2: {
      uint32_t v = 0;
      for (int i = 0; i < 4; ++i) v |= static_cast<uint32_t>(Byte()) << (8 * i);
      return static_cast<int32_t>(v);
    }
    default:
      return kExtremes[Byte() % (sizeof kExtremes / sizeof kExtremes[0])];
  }
}

int32_t Input::Dimension(int32_t typical) {
  if (Byte() < 224) return 1 + Byte() % typical;
  return Value();
}

int32_t Input::Choice(int32_t count) {
  if (Byte() < 240) return Byte() % count;
  return Value();
}

void SelectKernelLevel(Input& in) {
  static const std::vector<KernelLevel> levels = AvailableKernelLevels();
  const KernelLevel level = levels[in.Byte() % levels.size()];
  if (level != CurrentKernelLevel()) SetKernelLevelForTesting(level);
}

int64_t PlaneBytes(int64_t columns, int64_t rows, int64_t unit) {
  if (columns < 1 || rows < 1) return 0;
  if (columns > kMaxBytes || rows > kMaxBytes) return -1;
  const int64_t bytes = columns * rows * unit;
  return bytes > kMaxBytes ? -1 : bytes;
}

Block::Block(int64_t bytes, Input& in)
    : data_(static_cast<uint8_t*>(std::malloc(static_cast<std::size_t>(bytes)))),
      size_(bytes),
      before_(static_cast<std::size_t>(bytes)),
      allowed_(static_cast<std::size_t>(bytes), 0) {
  if (!data_ && bytes == 0) data_ = static_cast<uint8_t*>(std::malloc(1));
  if (!data_) Fail("Block", "out of memory");
  // A cheap generator seeded from the input: varied bytes, with runs of 0
  // and 255 as often as the seed asks for them.
  uint32_t state = 0x9E3779B9u ^ in.Byte() ^ (static_cast<uint32_t>(in.Byte()) << 8);
  const uint8_t flavour = in.Byte() % 4;
  for (int64_t i = 0; i < bytes; ++i) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    uint8_t b = static_cast<uint8_t>(state >> 24);
    if (flavour == 1) b = (b & 1) ? 255 : 0;
    if (flavour == 2) b = static_cast<uint8_t>(b | 0x80);
    data_[i] = b;
  }
  if (bytes > 0) std::memcpy(before_.data(), data_, static_cast<std::size_t>(bytes));
}

Block::~Block() { std::free(data_); }

void Block::Allow(int64_t offset, int64_t length) {
  const int64_t lo = offset < 0 ? 0 : offset;
  const int64_t hi = offset + length > size_ ? size_ : offset + length;
  for (int64_t i = lo; i < hi; ++i) allowed_[static_cast<std::size_t>(i)] = 1;
}

void Block::AllowRows(int64_t offset, int64_t pitch, int64_t rows, int64_t length) {
  for (int64_t r = 0; r < rows; ++r) Allow(offset + r * pitch, length);
}

void Block::CheckOutsideAllowed(const char* what) const {
  for (int64_t i = 0; i < size_; ++i) {
    const auto k = static_cast<std::size_t>(i);
    if (!allowed_[k] && data_[i] != before_[k]) {
      char detail[64];
      std::snprintf(detail, sizeof detail, "byte %lld changed outside the allowed area",
                    static_cast<long long>(i));
      Fail(what, detail);
    }
  }
}

void Block::CheckUnchanged(const char* what) const {
  if (size_ > 0 && std::memcmp(data_, before_.data(), static_cast<std::size_t>(size_)) != 0) {
    Fail(what, "a rejected call or a source changed bytes");
  }
}

void Fail(const char* what, const char* detail) {
  std::fprintf(stderr, "fuzz check failed: %s: %s\n", what, detail);
  std::abort();
}

}  // namespace qbo::fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  if (!qbo::LibraryAttach(qbo::NativePlatform(), qbo::DefaultFramework(), nullptr)) {
    qbo::fuzz::Fail("LLVMFuzzerInitialize", "the library did not attach");
  }
  return 0;
}
