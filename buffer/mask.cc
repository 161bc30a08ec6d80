// Mask colouring, mixing and subtraction: clip, then run one row kernel
// over the placed rectangle.
#include <cstddef>
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "buffer/mask_clip.h"
#include "frame/kernel_table.h"
#include "frame/lookup_tables.h"

namespace {

constexpr int32_t kMixRejected = 1;
constexpr int32_t kMixDone = QBO_E_FAIL;
constexpr int32_t kSubRejected = QBO_E_FAIL;
constexpr int32_t kSubDone = 0;

// Runs `row(dst_row, src_row, count)` over the span. Rows of dst_unit-byte
// elements are dst_width elements apart, source rows src_width bytes. When
// the span covers both planes whole, their rows are contiguous and the
// pointwise kernels take them as one long row.
template <typename Row>
void ForEachSpanRow(uint8_t* dst, std::size_t dst_unit, int32_t dst_width, const uint8_t* src,
                    int32_t src_width, const qbo::MaskSpan& s, Row row) {
  const auto dst_pitch = static_cast<std::size_t>(dst_width) * dst_unit;
  const auto src_pitch = static_cast<std::size_t>(src_width);
  uint8_t* d =
      dst + static_cast<std::size_t>(s.y) * dst_pitch + static_cast<std::size_t>(s.x) * dst_unit;
  const uint8_t* m =
      src + static_cast<std::size_t>(s.src_y) * src_pitch + static_cast<std::size_t>(s.src_x);
  const auto width = static_cast<std::size_t>(s.width);
  if (s.width == dst_width && s.width == src_width) {
    row(d, m, width * static_cast<std::size_t>(s.height));
    return;
  }
  for (int64_t r = 0; r < s.height; ++r, d += dst_pitch, m += src_pitch) row(d, m, width);
}

}  // namespace

extern "C" {

// A null plane counts as the null start address the clipping rejects.
QBO_API int32_t QBO_CALLEE QN_FillMaskColor(void* dst, int32_t x, int32_t y, int32_t dstWidth,
                                            int32_t dstHeight, const void* mask, int32_t maskX,
                                            int32_t maskY, int32_t maskWidth, int32_t maskHeight) {
  const qbo::MaskRect rect{x,         y,     maskWidth, maskHeight, dstWidth,
                           dstHeight, maskX, maskY,     maskWidth,  maskHeight};
  qbo::MaskSpan span;
  if (!dst || !mask || !qbo::ClipMaskRect(rect, &span)) return 1;
  const qbo::FillMaskColorRowFn fill = qbo::Kernels().mask.fill_mask_color;
  const float* inv_byte = qbo::g_tables.inv_byte;
  ForEachSpanRow(static_cast<uint8_t*>(dst), 4, dstWidth, static_cast<const uint8_t*>(mask),
                 maskWidth, span,
                 [&](uint8_t* d, const uint8_t* m, std::size_t n) { fill(d, m, inv_byte, n); });
  return 1;
}

QBO_API int32_t QBO_CALLEE QN_MixMask(void* dst, int32_t x, int32_t y, int32_t width,
                                      int32_t height, int32_t dstWidth, int32_t dstHeight,
                                      const void* src, int32_t srcX, int32_t srcY, int32_t, int32_t,
                                      int32_t srcWidth, int32_t srcHeight) {
  const qbo::MaskRect rect{x,         y,    width, height,   dstWidth,
                           dstHeight, srcX, srcY,  srcWidth, srcHeight};
  qbo::MaskSpan span;
  if (!dst || !src || !qbo::ClipMaskRect(rect, &span)) return kMixRejected;
  ForEachSpanRow(static_cast<uint8_t*>(dst), 1, dstWidth, static_cast<const uint8_t*>(src),
                 srcWidth, span, qbo::Kernels().mask.mix_mask);
  return kMixDone;
}

QBO_API int32_t QBO_CALLEE QN_SubMask(void* dst, int32_t x, int32_t y, int32_t dstWidth,
                                      int32_t dstHeight, const void* src, int32_t srcX,
                                      int32_t srcY, int32_t srcWidth, int32_t srcHeight,
                                      int32_t width, int32_t height, int32_t) {
  const qbo::MaskRect rect{x,         y,    width, height,   dstWidth,
                           dstHeight, srcX, srcY,  srcWidth, srcHeight};
  qbo::MaskSpan span;
  if (!dst || !src || !qbo::ClipMaskRect(rect, &span)) return kSubRejected;
  ForEachSpanRow(static_cast<uint8_t*>(dst), 1, dstWidth, static_cast<const uint8_t*>(src),
                 srcWidth, span, qbo::Kernels().mask.sub_mask);
  return kSubDone;
}

}  // extern "C"
