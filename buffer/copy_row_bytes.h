// CopyRowBytes: the row copy that the flip, the block transfer and the split
// conversions share, through the kernel table.
#ifndef QBO_BUFFER_COPY_ROW_BYTES_H_
#define QBO_BUFFER_COPY_ROW_BYTES_H_

#include "frame/kernel_table.h"

namespace qbo {

// Copies blocks x 16 bytes, then 8/4/2/1 bytes for bits 3..0 of `tail`.
inline void CopyRowBytes(void* dst, const void* src, std::size_t blocks, unsigned tail) {
  Kernels().buffer.copy_row_bytes(static_cast<uint8_t*>(dst), static_cast<const uint8_t*>(src),
                                  blocks, tail);
}

// Copies `bytes` bytes as CopyRowBytes(bytes / 16, bytes % 16).
inline void CopyBytes(void* dst, const void* src, std::size_t bytes) {
  CopyRowBytes(dst, src, bytes / 16, static_cast<unsigned>(bytes % 16));
}

}  // namespace qbo

#endif  // QBO_BUFFER_COPY_ROW_BYTES_H_
