#include "tests/support/test_support.h"

#include <cstring>
#include <sstream>

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace qbo::test {

void ForEachLevel(const std::function<void(KernelLevel)>& body) {
  for (KernelLevel level : AvailableKernelLevels()) {
    ScopedKernelLevel scoped(level);
    SCOPED_TRACE(std::string("kernel level ") + KernelLevelName(level));
    body(level);
  }
}

ScopedKernelLevel::ScopedKernelLevel(KernelLevel level) : saved_(CurrentKernelLevel()) {
  SetKernelLevelForTesting(level);
}

ScopedKernelLevel::~ScopedKernelLevel() { SetKernelLevelForTesting(saved_); }

GuardedBuffer::GuardedBuffer(std::size_t size, std::size_t offset)
    : storage_(size + offset + 2 * kGuard + 64, kSentinel), size_(size) {
  uintptr_t base = reinterpret_cast<uintptr_t>(storage_.data()) + kGuard;
  base = (base + 63) & ~uintptr_t{63};
  data_ = reinterpret_cast<uint8_t*>(base) + offset;
}

bool GuardedBuffer::GuardsIntact() const {
  const uint8_t* begin = storage_.data();
  const uint8_t* end = begin + storage_.size();
  for (const uint8_t* p = begin; p < data_; ++p) {
    if (*p != kSentinel) return false;
  }
  for (const uint8_t* p = data_ + size_; p < end; ++p) {
    if (*p != kSentinel) return false;
  }
  return true;
}

namespace {

std::size_t PageSize() {
#if defined(_WIN32)
  SYSTEM_INFO info;
  GetSystemInfo(&info);
  return info.dwPageSize;
#else
  return static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#endif
}

}  // namespace

PageEndBuffer::PageEndBuffer(std::size_t size) : size_(size) {
  const std::size_t page = PageSize();
  const std::size_t data_pages = (size + page - 1) / page;
  mapping_size_ = (data_pages + 1) * page;
#if defined(_WIN32)
  mapping_ = VirtualAlloc(nullptr, mapping_size_, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
  DWORD old;
  VirtualProtect(static_cast<uint8_t*>(mapping_) + data_pages * page, page, PAGE_NOACCESS, &old);
#else
  mapping_ = mmap(nullptr, mapping_size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS,
                  -1, 0);
  mprotect(static_cast<uint8_t*>(mapping_) + data_pages * page, page, PROT_NONE);
#endif
  data_ = static_cast<uint8_t*>(mapping_) + data_pages * page - size;
}

PageEndBuffer::~PageEndBuffer() {
#if defined(_WIN32)
  VirtualFree(mapping_, 0, MEM_RELEASE);
#else
  munmap(mapping_, mapping_size_);
#endif
}

void FillRandom(uint8_t* data, std::size_t size, uint32_t seed) {
  std::mt19937 rng(seed);
  for (std::size_t i = 0; i < size; ++i) data[i] = static_cast<uint8_t>(rng() >> 24);
}

std::vector<uint8_t> RandomBytes(std::size_t size, uint32_t seed) {
  std::vector<uint8_t> v(size);
  FillRandom(v.data(), size, seed);
  return v;
}

std::string MismatchMap(const uint8_t* expected, const uint8_t* actual, std::size_t row_bytes,
                        std::size_t rows, std::size_t bytes_per_pixel) {
  std::ostringstream map;
  bool any = false;
  std::size_t first_row = 0, first_col = 0;
  for (std::size_t r = 0; r < rows; ++r) {
    for (std::size_t c = 0; c < row_bytes; c += bytes_per_pixel) {
      const bool same = std::memcmp(expected + r * row_bytes + c, actual + r * row_bytes + c,
                                    std::min(bytes_per_pixel, row_bytes - c)) == 0;
      if (!same && !any) {
        any = true;
        first_row = r;
        first_col = c / bytes_per_pixel;
      }
      if (c / bytes_per_pixel < 120) map << (same ? '.' : 'x');
    }
    map << '\n';
  }
  if (!any) return {};
  std::ostringstream out;
  out << "first mismatch at row " << first_row << ", pixel " << first_col << "\n" << map.str();
  return out.str();
}

}  // namespace qbo::test
