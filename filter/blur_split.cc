// Vertical 3-row blur of 32-bit images and the YUYV row split.
#include <algorithm>

#include "QuillonBufferOperaU.h"
#include "buffer/copy_row_bytes.h"
#include "filter/blur_split_row.h"
#include "frame/kernel_table.h"
#include "frame/platform.h"

extern "C" {

// The rows are blurred in place; only the original of the row being
// written and of the row above it are kept aside, so the temporary is two
// rows instead of a whole image.
QBO_API void* QBO_CALLEE QN_VerticalBlur(void* buffer, int32_t width, int32_t height,
                                         const int32_t* weights) {
  if (!buffer || !weights || width <= 0 || height < 2) return buffer;
  if (static_cast<uint32_t>(weights[0]) + static_cast<uint32_t>(weights[1]) +
          static_cast<uint32_t>(weights[2]) == 0) {
    return buffer;
  }
  const qbo::BlurWeights q = qbo::BlurWeightsOf(weights);
  const std::size_t row_bytes = static_cast<std::size_t>(width) * 4;
  qbo::ScratchBuffer originals(2 * row_bytes);
  if (!originals) return buffer;
  const qbo::BlurRow3Fn blur = qbo::Kernels().filter.blur_row3;
  auto* base = static_cast<uint8_t*>(buffer);
  auto row = [&](int32_t i) { return base + static_cast<std::size_t>(i) * row_bytes; };
  uint8_t* above = static_cast<uint8_t*>(originals.get());
  uint8_t* centre = above + row_bytes;
  for (int32_t i = 0; i < height; ++i) {
    qbo::CopyBytes(centre, row(i), row_bytes);
    // The first and last rows see their inner neighbour on both sides.
    const uint8_t* up = i == 0 ? row(1) : above;
    const uint8_t* down = i == height - 1 ? above : row(i + 1);
    blur(row(i), up, centre, down, width, &q);
    std::swap(above, centre);
  }
  return buffer;
}

QBO_API int32_t QBO_CALLEE QN_CS_YUYVSplit(uint8_t* y, uint8_t* u, uint8_t* v,
                                           const uint8_t* src, int32_t count) {
  if (!y || !u || !v || !src || count < 2) return 0;
  qbo::Kernels().filter.yuyv_split(y, u, v, src, count / 2);
  return count & ~1;
}

}  // extern "C"
