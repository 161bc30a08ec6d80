// YUYV to 32-bit RGBA / BGRA and to 24-bit RGB: frames, and two fields
// composed into one frame.
#include <cstddef>
#include <cstdint>

#include "QuillonBufferOperaU.h"
#include "frame/accel.h"
#include "frame/accel_paths.h"
#include "frame/cpu.h"
#include "frame/kernel_table.h"
#include "frame/stream_fence.h"

namespace qbo {
namespace {

// Destination row j comes from row j / 2 of field (j % 2). A frame is the
// special case field1 = field0 + pitch with both pitches doubled, which
// yields source row j for every j. Only rows [begin, end) are converted.
void ConvertYuyvRows(YuyvToPixelsRowFn row, int bytes_per_pixel, void* dst, int32_t dst_pitch,
                     const void* field0, std::ptrdiff_t pitch0, const void* field1,
                     std::ptrdiff_t pitch1, int32_t width, int32_t height, int32_t bt709,
                     int32_t flip, int32_t begin = 0, int32_t end = INT32_MAX) {
  // A row is at least one pixel; nothing is written for width or height
  // below 1.
  if (width <= 0 || height <= 0) return;
  if (end > height) end = height;
  // An odd width converts the whole last pair: one pixel more than `width`.
  const int even_width = width + (width & 1);
  YuvToRgbVectors vectors = YuvToRgbVectorsFor(bt709 != 0);
  // The whole frame decides, so every band of a frame split among threads
  // writes alike; it reads 2 bytes a pixel.
  vectors.stream = StreamFrameStores(uint64_t{static_cast<uint32_t>(even_width)} *
                                     static_cast<uint32_t>(height) * (2 + bytes_per_pixel));
  const StreamFence fence(vectors.stream);
  auto* out = static_cast<uint8_t*>(dst);
  std::ptrdiff_t step = dst_pitch;
  if (flip) {
    out += static_cast<std::ptrdiff_t>(height - 1) * step;
    step = -step;
  }
  const auto* f0 = static_cast<const uint8_t*>(field0);
  const auto* f1 = static_cast<const uint8_t*>(field1);
  out += begin * step;
  for (int32_t j = begin; j < end; ++j, out += step) {
    const std::ptrdiff_t k = j / 2;
    row((j & 1) ? f1 + k * pitch1 : f0 + k * pitch0, out, even_width, &vectors);
  }
}

void ConvertYuyvFrame(YuyvToPixelsRowFn row, int bytes_per_pixel, void* dst, int32_t dst_pitch,
                      const void* src, int32_t src_pitch, int32_t width, int32_t height,
                      int32_t bt709, int32_t flip, int32_t begin = 0, int32_t end = INT32_MAX) {
  const std::ptrdiff_t pitch = src_pitch;
  ConvertYuyvRows(row, bytes_per_pixel, dst, dst_pitch, src, 2 * pitch,
                  static_cast<const uint8_t*>(src) + pitch, 2 * pitch, width, height, bt709, flip,
                  begin, end);
}

// VelaVid's ConvertYUYVToBGRAFrame: eleven word-sized arguments.
using ConvertYuyvToBgraFrameEntry = intptr_t (*)(intptr_t dst, intptr_t dst_pitch, intptr_t src,
                                                 intptr_t src_pitch, intptr_t width,
                                                 intptr_t height, intptr_t bt601, intptr_t one,
                                                 intptr_t zero, intptr_t alpha, intptr_t flip);

}  // namespace

void YuyvToBgraFrameRows(void* dst, int32_t dst_pitch, const void* src, int32_t src_pitch,
                         int32_t width, int32_t height, int32_t bt709, int32_t flip,
                         int32_t row_begin, int32_t row_end) {
  ConvertYuyvFrame(Kernels().colorspace.yuyv_to_bgra_row, 4, dst, dst_pitch, src, src_pitch, width,
                   height, bt709, flip, row_begin, row_end);
}

}  // namespace qbo

using qbo::Kernels;

extern "C" {

QBO_API int32_t QBO_CALLEE QN_CS_YUYV2RGBA_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                 int32_t src_pitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip) {
  qbo::ConvertYuyvFrame(Kernels().colorspace.yuyv_to_rgba_row, 4, dst, dst_pitch, src, src_pitch,
                        width, height, bt709, flip);
  return 1;
}

QBO_API int32_t QBO_CALLEE QN_CS_YUYV2BGRA_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                 int32_t src_pitch, int32_t width, int32_t height,
                                                 int32_t bt709, int32_t flip) {
  if (auto entry = qbo::VelaVidConvertEntry<qbo::ConvertYuyvToBgraFrameEntry>(
          qbo::kConvertYuyvToBgraFrameEntry)) {
    return static_cast<int32_t>(entry(reinterpret_cast<intptr_t>(dst), dst_pitch,
                                      reinterpret_cast<intptr_t>(src), src_pitch, width, height,
                                      bt709 == 0 ? 1 : 0, 1, 0, 255, flip != 0 ? 1 : 0));
  }
  qbo::ConvertYuyvFrame(Kernels().colorspace.yuyv_to_bgra_row, 4, dst, dst_pitch, src, src_pitch,
                        width, height, bt709, flip);
  return 1;
}

QBO_API void QBO_CALLEE QN_CS_YUYV2RGBA_Compose(void* dst, int32_t dst_pitch, const void* field0,
                                                int32_t field0_pitch, const void* field1,
                                                int32_t field1_pitch, int32_t width, int32_t height,
                                                int32_t bt709, int32_t flip) {
  qbo::ConvertYuyvRows(Kernels().colorspace.yuyv_to_rgba_row, 4, dst, dst_pitch, field0,
                       field0_pitch, field1, field1_pitch, width, height, bt709, flip);
}

QBO_API void QBO_CALLEE QN_CS_YUYV2BGRA_Compose(void* dst, int32_t dst_pitch, const void* field0,
                                                int32_t field0_pitch, const void* field1,
                                                int32_t field1_pitch, int32_t width, int32_t height,
                                                int32_t bt709, int32_t flip) {
  qbo::ConvertYuyvRows(Kernels().colorspace.yuyv_to_bgra_row, 4, dst, dst_pitch, field0,
                       field0_pitch, field1, field1_pitch, width, height, bt709, flip);
}

QBO_API int32_t QBO_CALLEE QN_CS_YUYV2RGB_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                int32_t src_pitch, int32_t width, int32_t height,
                                                int32_t bt709, int32_t flip) {
  qbo::ConvertYuyvFrame(Kernels().colorspace.yuyv_to_rgb24_row, 3, dst, dst_pitch, src, src_pitch,
                        width, height, bt709, flip);
  return 1;
}

// Writes R, G, B like QN_CS_YUYV2RGB_Frame: the byte order is not swapped,
// and callers that depend on this keep working.
QBO_API int32_t QBO_CALLEE QN_CS_YUYV2BGR_Frame(void* dst, int32_t dst_pitch, const void* src,
                                                int32_t src_pitch, int32_t width, int32_t height,
                                                int32_t bt709, int32_t flip) {
  qbo::ConvertYuyvFrame(Kernels().colorspace.yuyv_to_rgb24_row, 3, dst, dst_pitch, src, src_pitch,
                        width, height, bt709, flip);
  return 1;
}

}  // extern "C"
