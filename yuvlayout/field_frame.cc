// Fields to frames and back, and planar 4:2:2 packed into YUYV frames or
// fields: plain row moves, no value changes.
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "buffer/copy_row_bytes.h"
#include "frame/kernel_table.h"
#include "yuvlayout/field_chroma.h"

using qbo::ConstPlane;
using qbo::Kernels;
using qbo::RowAt;

namespace {

// Row length in bytes of a field/frame move; a non-positive product copies
// nothing, though the rows are still walked.
std::size_t RowBytes(int32_t width, int32_t bytes_per_pixel) {
  const int64_t n = int64_t{width} * bytes_per_pixel;
  return n > 0 ? static_cast<std::size_t>(n) : 0;
}

}  // namespace

extern "C" {

QBO_API void QBO_CALLEE QN_CS_ComposeFields(void* dst, int32_t dstPitch, const void* top,
                                            int32_t topPitch, const void* bottom,
                                            int32_t bottomPitch, int32_t width, int32_t height,
                                            int32_t bytesPerPixel) {
  const std::size_t n = RowBytes(width, bytesPerPixel);
  for (int32_t i = 0; i < height / 2; ++i) {
    qbo::CopyBytes(RowAt(dst, dstPitch, 2 * i), RowAt(top, topPitch, i), n);
    qbo::CopyBytes(RowAt(dst, dstPitch, 2 * i + 1), RowAt(bottom, bottomPitch, i), n);
  }
}

QBO_API void QBO_CALLEE QN_CS_SplitFrame(void* top, int32_t topPitch, void* bottom,
                                         int32_t bottomPitch, const void* frame,
                                         int32_t framePitch, int32_t width, int32_t height,
                                         int32_t bytesPerPixel) {
  const std::size_t n = RowBytes(width, bytesPerPixel);
  for (int32_t i = 0; i < height / 2; ++i) {
    qbo::CopyBytes(RowAt(top, topPitch, i), RowAt(frame, framePitch, 2 * i), n);
    qbo::CopyBytes(RowAt(bottom, bottomPitch, i), RowAt(frame, framePitch, 2 * i + 1), n);
  }
}

QBO_API void QBO_CALLEE QN_CS_ComposeYUV422_Frame(void* dst, int32_t dstPitch, const void* srcY,
                                                  int32_t yPitch, const void* srcU,
                                                  int32_t uPitch, const void* srcV,
                                                  int32_t vPitch, int32_t width,
                                                  int32_t height) {
  if (width <= 0) return;
  const auto interleave = Kernels().yuvlayout.interleave_yuyv;
  const ConstPlane y{static_cast<const uint8_t*>(srcY), yPitch};
  const ConstPlane u{static_cast<const uint8_t*>(srcU), uPitch};
  const ConstPlane v{static_cast<const uint8_t*>(srcV), vPitch};
  for (int32_t i = 0; i < height; ++i) {
    interleave(RowAt(static_cast<uint8_t*>(dst), dstPitch, i), y.Row(i), u.Row(i), v.Row(i),
               width);
  }
}

// With an odd height both fields get height / 2 + 1 rows: the last plane
// row becomes the top field's last row, which is then copied whole
// (2 x width bytes, an odd width's unwritten last pixel included) into the
// bottom field.
QBO_API void QBO_CALLEE QN_CS_ComposeYUV422_Split(void* dstTop, int32_t topPitch,
                                                  void* dstBottom, int32_t bottomPitch,
                                                  const void* srcY, int32_t yPitch,
                                                  const void* srcU, int32_t uPitch,
                                                  const void* srcV, int32_t vPitch,
                                                  int32_t width, int32_t height) {
  if (width <= 0 || height <= 0) return;
  const auto interleave = Kernels().yuvlayout.interleave_yuyv;
  const ConstPlane y{static_cast<const uint8_t*>(srcY), yPitch};
  const ConstPlane u{static_cast<const uint8_t*>(srcU), uPitch};
  const ConstPlane v{static_cast<const uint8_t*>(srcV), vPitch};
  auto* top = static_cast<uint8_t*>(dstTop);
  auto* bottom = static_cast<uint8_t*>(dstBottom);
  for (int32_t i = 0; i < height / 2; ++i) {
    interleave(RowAt(top, topPitch, i), y.Row(2 * i), u.Row(2 * i), v.Row(2 * i), width);
    interleave(RowAt(bottom, bottomPitch, i), y.Row(2 * i + 1), u.Row(2 * i + 1),
               v.Row(2 * i + 1), width);
  }
  if (height % 2) {
    const int32_t last = height - 1;
    uint8_t* top_row = RowAt(top, topPitch, height / 2);
    interleave(top_row, y.Row(last), u.Row(last), v.Row(last), width);
    qbo::CopyBytes(RowAt(bottom, bottomPitch, height / 2), top_row,
                   2 * static_cast<std::size_t>(width));
  }
}

}  // extern "C"
