#include "fuzz/fuzz_support.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/attach.h"
#include "frame/kernel_table.h"

namespace qbo::fuzz {
namespace {

// The level every call runs at instead of the one the input picks: set by
// QBO_FUZZ_LEVEL (c, sse2, avx2, avx512) to replay a corpus at one level,
// and during each half of a differential run.
const KernelLevel* g_forced_level = nullptr;
KernelLevel g_replay_level = KernelLevel::kC;
bool g_replaying = false;
// Set while a differential run records every block's bytes as it is freed.
std::vector<uint8_t>* g_block_trace = nullptr;

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
  const KernelLevel chosen = g_forced_level ? *g_forced_level : level;
  if (chosen != CurrentKernelLevel()) SetKernelLevelForTesting(chosen);
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
      allowed_(static_cast<std::size_t>(bytes), 0) {
  if (!data_ && bytes == 0) data_ = static_cast<uint8_t*>(std::malloc(1));
  if (!data_) Fail("Block", "out of memory");
  // A cheap generator seeded from the input, four bytes a step: varied
  // bytes, with runs of 0 and 255 as often as the seed asks for them.
  uint32_t state = 0x9E3779B9u ^ in.Byte() ^ (static_cast<uint32_t>(in.Byte()) << 8);
  const uint8_t flavour = in.Byte() % 4;
  for (int64_t i = 0; i < bytes; i += 4) {
    state ^= state << 13;
    state ^= state >> 17;
    state ^= state << 5;
    uint32_t word = state;
    if (flavour == 1) word = (word & 0x01010101u) * 255;
    if (flavour == 2) word |= 0x80808080u;
    if (bytes - i >= 4) {
      std::memcpy(data_ + i, &word, 4);
    } else {
      for (int64_t k = i; k < bytes; ++k, word >>= 8) data_[k] = static_cast<uint8_t>(word);
    }
  }
  before_.assign(data_, data_ + bytes);
}

Block::~Block() {
  if (g_block_trace) g_block_trace->insert(g_block_trace->end(), data_, data_ + size_);
  std::free(data_);
}

void Block::Allow(int64_t offset, int64_t length) {
  const int64_t lo = offset < 0 ? 0 : offset;
  const int64_t hi = offset + length > size_ ? size_ : offset + length;
  for (int64_t i = lo; i < hi; ++i) allowed_[static_cast<std::size_t>(i)] = 1;
}

void Block::AllowRows(int64_t offset, int64_t pitch, int64_t rows, int64_t length) {
  if (length < 1) return;
  // A size can be far larger than the block (an empty plane many rows
  // high): rows past the block's end in the walking direction add nothing.
  for (int64_t r = 0; r < rows; ++r) {
    const int64_t at = offset + r * pitch;
    if ((pitch >= 0 && at >= size_) || (pitch < 0 && at + length <= 0)) break;
    Allow(at, length);
    if (pitch == 0) break;
  }
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
  using namespace qbo::fuzz;
  if (!qbo::LibraryAttach(qbo::NativePlatform(), qbo::DefaultFramework(), nullptr)) {
    Fail("LLVMFuzzerInitialize", "the library did not attach");
  }
  if (const char* v = std::getenv("QBO_FUZZ_LEVEL")) {
    const char* const names[] = {"c", "sse2", "avx2", "avx512", "avx512vbmi"};
    const std::vector<qbo::KernelLevel> levels = qbo::AvailableKernelLevels();
    for (std::size_t i = 0; i < levels.size(); ++i) {
      if (std::strcmp(v, names[i]) == 0) {
        g_replay_level = levels[i];
        g_replaying = true;
      }
    }
    if (!g_replaying) Fail("QBO_FUZZ_LEVEL", "not a level this machine has");
    g_forced_level = &g_replay_level;
  }
  return 0;
}

// Every target's body is compiled as QboFuzzBody (see CMakeLists.txt). An
// input whose first byte is 0xC0 or more runs differentially: the rest of
// it at the reference level and again at a SIMD level the byte picks, and
// every block must end with the same bytes, so the fuzzer hunts mismatches
// between levels as well as faults. Under QBO_FUZZ_LEVEL that level is the
// one compared.
extern "C" int QboFuzzBody(const uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using qbo::KernelLevel;
  using namespace qbo::fuzz;
  static const std::vector<KernelLevel> levels = qbo::AvailableKernelLevels();
  if (size == 0 || data[0] < 0xC0 || levels.size() < 2) return QboFuzzBody(data, size);
  const KernelLevel simd =
      g_replaying ? g_replay_level : levels[1 + data[0] % (levels.size() - 1)];
  std::vector<uint8_t> reference, other;
  g_block_trace = &reference;
  g_forced_level = &levels[0];
  QboFuzzBody(data + 1, size - 1);
  g_block_trace = &other;
  g_forced_level = &simd;
  QboFuzzBody(data + 1, size - 1);
  g_block_trace = nullptr;
  g_forced_level = g_replaying ? &g_replay_level : nullptr;
  if (reference != other) {
    char detail[64];
    std::snprintf(detail, sizeof detail, "bytes differ from the reference at level %s",
                  qbo::KernelLevelName(simd));
    Fail("differential", detail);
  }
  return 0;
}
