#include "frame/lookup_tables.h"

#include <xmmintrin.h>

#include "frame/platform.h"

namespace qbo {

LookupTables g_tables;

namespace {

constexpr std::size_t kTableAlignment = 16;
constexpr int64_t kFullShareTimes255 = int64_t{255} * 32767;  // 8,355,585
constexpr float kInvByte = 0.003921569f;                       // nearest float to 1/255

template <typename T>
T* AllocTable(Platform& platform, std::size_t count) {
  return static_cast<T*>(platform.AlignedAlloc(count * sizeof(T), kTableAlignment));
}

}  // namespace

int32_t OverShareEntry(int a, int b) {
  const int64_t divisor = int64_t{255} * a + int64_t{255 - a} * b;
  if (divisor == 0) return 0;
  return static_cast<int32_t>(a * kFullShareTimes255 / divisor);
}

bool BuildRcpProductTable(Platform& platform) {
  if (!g_tables.rcp_product) {
    g_tables.rcp_product = AllocTable<float>(platform, 256 * 256);
    if (!g_tables.rcp_product) return false;
  }
  float* rcp = AllocTable<float>(platform, 256);
  if (!rcp) return false;
  // Entries 0 and 1 are both 1/1: a zero lower alpha is read as one.
  for (int i = 0; i < 256; i += 4) {
    const __m128 n = _mm_setr_ps(i < 2 ? 1.0f : static_cast<float>(i),
                                 i + 1 < 2 ? 1.0f : static_cast<float>(i + 1),
                                 static_cast<float>(i + 2), static_cast<float>(i + 3));
    _mm_store_ps(rcp + i, _mm_rcp_ps(n));
  }
  for (int a = 0; a < 256; ++a) {
    const __m128 scale = _mm_set1_ps(static_cast<float>(a));
    for (int b = 0; b < 256; b += 4) {
      _mm_store_ps(g_tables.rcp_product + a * 256 + b, _mm_mul_ps(_mm_load_ps(rcp + b), scale));
    }
  }
  platform.AlignedFree(rcp);
  return true;
}

bool BuildInvByteAndOverShareTables(Platform& platform) {
  if (!g_tables.inv_byte) {
    g_tables.inv_byte = AllocTable<float>(platform, 256);
    if (!g_tables.inv_byte) return false;
  }
  for (int i = 0; i < 256; ++i) g_tables.inv_byte[i] = static_cast<float>(i) * kInvByte;

  // Always a fresh table. Its allocation failing fails the attach: every
  // blend reads it and none could run safely without it.
  int32_t* share = AllocTable<int32_t>(platform, 256 * 256);
  if (!share) return false;
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; ++b) share[a * 256 + b] = OverShareEntry(a, b);
  }
  // A second attach gets a fresh table too; the one it replaces is freed
  // rather than lost.
  if (g_tables.over_share) platform.AlignedFree(g_tables.over_share);
  g_tables.over_share = share;
  return true;
}

void FreeLookupTables(Platform& platform) {
  if (g_tables.rcp_product) {
    platform.AlignedFree(g_tables.rcp_product);
    g_tables.rcp_product = nullptr;
  }
  if (g_tables.inv_byte) {
    platform.AlignedFree(g_tables.inv_byte);
    g_tables.inv_byte = nullptr;
  }
  if (g_tables.over_share) {
    platform.AlignedFree(g_tables.over_share);
    g_tables.over_share = nullptr;
  }
}

}  // namespace qbo
