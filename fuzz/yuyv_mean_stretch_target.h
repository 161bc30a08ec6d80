// The YUYV mean stretches take pitches (either sign) and displace the
// starts by bytes. The destination is exactly (rows - 1) x |pitch| + the
// 4 x dstWidth bytes of its last row, the source the same with its
// ceil(srcWidth / 2) four-byte groups a row. Written bytes stay in the
// rectangle's rows cut to the buffer, from the byte displacement dstX up
// to four bytes a pixel of the rectangle's right edge cut to the buffer.
#ifndef QBO_FUZZ_YUYV_MEAN_STRETCH_TARGET_H_
#define QBO_FUZZ_YUYV_MEAN_STRETCH_TARGET_H_

#include "QuillonBufferOperaU.h"
#include "fuzz/fuzz_support.h"

namespace qbo::fuzz {

using YuyvMeanStretchFn = int32_t(QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t,
                                               int32_t, int32_t, int32_t, const void*, int32_t,
                                               int32_t, int32_t, int32_t, int32_t, int32_t,
                                               int32_t, int32_t, int32_t);

// A plane `rows` high whose rows hold `row_bytes`, `pad` more bytes apart
// and walked upwards when `upward`: its byte count and the pitch and
// offset of row 0 inside the block.
struct PitchedPlane {
  int64_t bytes, pitch, first;
};

inline PitchedPlane Pitched(int64_t row_bytes, int64_t rows, int64_t pad, bool upward) {
  const int64_t stride = row_bytes + pad;
  if (rows < 1 || row_bytes < 1) return {0, upward ? -stride : stride, 0};
  if (stride > kMaxBytes || rows > kMaxBytes || stride * rows > kMaxBytes) return {-1, 0, 0};
  const int64_t bytes = (rows - 1) * stride + row_bytes;
  return {bytes, upward ? -stride : stride, upward ? (rows - 1) * stride : 0};
}

inline int RunYuyvMeanStretch(YuyvMeanStretchFn fn, const char* name, const uint8_t* data,
                              std::size_t size) {
  Input in(data, size);
  SelectKernelLevel(in);
  const int32_t dst_width = in.Dimension(48), dst_height = in.Dimension(48);
  const int32_t src_width = in.Dimension(48), src_height = in.Dimension(48);
  const int32_t dst_x = in.Value(), dst_y = in.Value(), width = in.Value(), height = in.Value();
  const int32_t src_x = in.Value(), src_y = in.Value();
  const int32_t src_rect_width = in.Value(), src_rect_height = in.Value();
  const int32_t matrix = in.Choice(2), flip = in.Choice(2);
  const PitchedPlane d = Pitched(int64_t{dst_width} * 4, dst_height, in.Byte() % 9,
                                 in.Byte() % 4 == 0);
  const PitchedPlane s = Pitched((int64_t{src_width} + 1) / 2 * 4, src_height, in.Byte() % 9,
                                 in.Byte() % 4 == 0);
  if (d.bytes < 0 || s.bytes < 0) return 0;
  Block dst(d.bytes, in), src(s.bytes, in);
  const bool null_dst = in.Null(), null_src = in.Null();
  const int32_t result =
      fn(null_dst ? nullptr : dst.data() + d.first, static_cast<int32_t>(d.pitch), dst_x, dst_y,
         width, height, dst_width, dst_height, null_src ? nullptr : src.data() + s.first,
         static_cast<int32_t>(s.pitch), src_x, src_y, src_rect_width, src_rect_height,
         src_width, src_height, matrix, flip);
  src.CheckUnchanged(name);
  Expect(result == 0 || result == 1, name, "unknown result code");
  if (result == 0) {
    dst.CheckUnchanged(name);
    return 0;
  }
  const Span cols = Intersect({dst_x, int64_t{dst_x} + width}, {0, dst_width});
  const Span rows = Intersect({dst_y, int64_t{dst_y} + height}, {0, dst_height});
  Expect(!null_dst && !null_src && cols.size() > 0 && rows.size() > 0, name,
         "drawn with nothing inside the buffer");
  dst.AllowRows(d.first + rows.lo * d.pitch + cols.lo, d.pitch, rows.size(),
                cols.hi * 4 - cols.lo);
  dst.CheckOutsideAllowed(name);
  return 0;
}

}  // namespace qbo::fuzz

#endif  // QBO_FUZZ_YUYV_MEAN_STRETCH_TARGET_H_
