// Lookup tables shared by several operations, built at attach and read-only
// afterwards.
#ifndef QBO_FRAME_LOOKUP_TABLES_H_
#define QBO_FRAME_LOOKUP_TABLES_H_

#include <cstdint>

namespace qbo {

class Platform;

struct LookupTables {
  // [a][b] ~ a / b (b = 0 read as 1), through the approximate reciprocal.
  // Built and freed with the others; no operation reads it.
  float* rcp_product = nullptr;
  // [i] = i x 0.003921569f: an 8-bit mask or alpha as a factor in [0, 1].
  float* inv_byte = nullptr;
  // [a][b] = a x 255 x 32767 / (255a + (255 - a)b), truncated: the Q15 share
  // of an upper layer of alpha a over a lower layer of alpha b.
  int32_t* over_share = nullptr;
};

extern LookupTables g_tables;

inline int32_t OverShare(unsigned upper_alpha, unsigned lower_alpha) {
  return g_tables.over_share[upper_alpha * 256 + lower_alpha];
}

// The entry value of OverShareTable, exposed for the builder and its tests.
int32_t OverShareEntry(int a, int b);

// Build steps of attach; each returns false when its checked allocation
// fails. Tables already allocated are reused where the frame says so.
bool BuildRcpProductTable(Platform& platform);
bool BuildInvByteAndOverShareTables(Platform& platform);
void FreeLookupTables(Platform& platform);

}  // namespace qbo

#endif  // QBO_FRAME_LOOKUP_TABLES_H_
