// The block transfer and the two stretches share their 16 arguments. The
// target places random rectangles on exactly sized 32-bit buffers and
// checks that only the destination rectangle, cut to its buffer, changed;
// a selected field may also write the row just below it, which is why both
// buffers then carry one spare row.
#ifndef QBO_FUZZ_TRANSFER_TARGET_H_
#define QBO_FUZZ_TRANSFER_TARGET_H_

#include "QuillonBufferOperaU.h"
#include "fuzz/fuzz_support.h"

namespace qbo::fuzz {

using TransferFn = int32_t(QBO_CALLEE*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t,
                                        int32_t, const void*, int32_t, int32_t, int32_t,
                                        int32_t, int32_t, int32_t, int32_t, int32_t);

inline int RunTransfer(TransferFn fn, const char* name, const uint8_t* data, std::size_t size) {
  Input in(data, size);
  SelectKernelLevel(in);
  const int32_t dst_width = in.Dimension(48), dst_height = in.Dimension(48);
  const int32_t src_width = in.Dimension(48), src_height = in.Dimension(48);
  const int32_t dst_x = in.Value(), dst_y = in.Value(), width = in.Value(), height = in.Value();
  const int32_t src_x = in.Value(), src_y = in.Value();
  // Equal rectangles most of the time, so the block transfer's own path runs.
  const bool same = in.Byte() < 128;
  const int32_t src_rect_width = same ? width : in.Value();
  const int32_t src_rect_height = same ? height : in.Value();
  const int32_t mode = in.Choice(3), field = in.Choice(3);
  const int64_t spare = field != 0 ? 1 : 0;
  const int64_t dst_bytes = PlaneBytes(dst_width, int64_t{dst_height} + spare, 4);
  const int64_t src_bytes = PlaneBytes(src_width, int64_t{src_height} + spare, 4);
  if (dst_bytes < 0 || src_bytes < 0) return 0;
  Block dst(dst_bytes, in), src(src_bytes, in);
  const bool null_dst = in.Null(), null_src = in.Null();

  const int32_t result =
      fn(null_dst ? nullptr : dst.data(), dst_x, dst_y, width, height, dst_width, dst_height,
         null_src ? nullptr : src.data(), src_x, src_y, src_rect_width, src_rect_height,
         src_width, src_height, mode, field);
  Expect(result == 0 || result == 1 || result == QBO_E_FAIL, name, "unknown result code");
  src.CheckUnchanged(name);
  if (result != 1) {
    dst.CheckUnchanged(name);
    return 0;
  }
  Expect(!null_dst && !null_src, name, "a NULL buffer was reported as drawn");
  const Span cols = Intersect({dst_x, int64_t{dst_x} + width}, {0, dst_width});
  Span rows = Intersect({dst_y, int64_t{dst_y} + height}, {0, dst_height});
  rows.hi += spare;
  Expect(cols.size() > 0 && rows.size() > 0, name, "drawn with nothing inside the buffer");
  dst.AllowRows((rows.lo * dst_width + cols.lo) * 4, int64_t{dst_width} * 4, rows.size(),
                cols.size() * 4);
  dst.CheckOutsideAllowed(name);
  return 0;
}

}  // namespace qbo::fuzz

#endif  // QBO_FUZZ_TRANSFER_TARGET_H_
