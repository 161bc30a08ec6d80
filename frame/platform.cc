#include "frame/platform.h"

#include <atomic>

namespace qbo {
namespace {

constexpr std::size_t kScratchAlignment = 16;

std::atomic<Platform*> g_test_platform{nullptr};

}  // namespace

Platform& CurrentPlatform() {
  Platform* p = g_test_platform.load(std::memory_order_acquire);
  return p ? *p : NativePlatform();
}

void SetPlatformForTesting(Platform* platform) {
  g_test_platform.store(platform, std::memory_order_release);
}

void* AllocScratch(std::size_t bytes) {
  // A zero-byte request still gets a distinct block, so callers can treat
  // null as failure only.
  return CurrentPlatform().AlignedAlloc(bytes ? bytes : 1, kScratchAlignment);
}

void FreeScratch(void* block) {
  if (block) CurrentPlatform().AlignedFree(block);
}

}  // namespace qbo
