// Shared body of the rectangle resampling targets: the export draws into
// the destination rectangle cut to its image and nowhere else; a call that
// draws nothing changes nothing.
#ifndef QBO_FUZZ_RESAMPLING_EX_TARGET_H_
#define QBO_FUZZ_RESAMPLING_EX_TARGET_H_

#include "QuillonBufferOperaU.h"
#include "fuzz/fuzz_support.h"

namespace qbo::fuzz {

using ResamplingExFn = int32_t(QBO_CALLER*)(void*, int32_t, int32_t, int32_t, int32_t, int32_t,
                                            int32_t, const void*, int32_t, int32_t, int32_t,
                                            int32_t, int32_t, int32_t);

inline int FuzzResamplingEx(const uint8_t* data, std::size_t size, ResamplingExFn fn,
                            const char* name) {
  Input in(data, size);
  SelectKernelLevel(in);
  const int32_t dst_width = in.Dimension(48), dst_height = in.Dimension(48);
  const int32_t src_width = in.Dimension(48), src_height = in.Dimension(48);
  const int32_t x = in.Value(), y = in.Value(), width = in.Value(), height = in.Value();
  const int32_t src_x = in.Value(), src_y = in.Value();
  const int32_t src_rect_width = in.Value(), src_rect_height = in.Value();
  const int64_t dst_bytes = PlaneBytes(dst_width, dst_height, 4);
  const int64_t src_bytes = PlaneBytes(src_width, src_height, 4);
  if (dst_bytes < 0 || src_bytes < 0) return 0;
  Block dst(dst_bytes, in), src(src_bytes, in);
  const bool null_dst = in.Null(), null_src = in.Null();
  const int32_t result = fn(
      null_dst ? nullptr : dst.data(), x, y, width, height, dst_width, dst_height,
      null_src ? nullptr : src.data(), src_x, src_y, src_rect_width, src_rect_height, src_width,
      src_height);
  src.CheckUnchanged(name);
  Expect(result == 0 || result == 1, name, "unknown result code");
  if (result == 0) {
    dst.CheckUnchanged(name);
    return 0;
  }
  const Span cols = Intersect({x, int64_t{x} + width}, {0, dst_width});
  const Span rows = Intersect({y, int64_t{y} + height}, {0, dst_height});
  Expect(!null_dst && !null_src && cols.size() >= 2 && rows.size() >= 2, name,
         "drawn although fewer than 2 pixels a side were left");
  dst.AllowRows((rows.lo * dst_width + cols.lo) * 4, int64_t{dst_width} * 4, rows.size(),
                cols.size() * 4);
  dst.CheckOutsideAllowed(name);
  return 0;
}

}  // namespace qbo::fuzz

#endif  // QBO_FUZZ_RESAMPLING_EX_TARGET_H_
