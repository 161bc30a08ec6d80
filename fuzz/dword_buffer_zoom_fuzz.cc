// QN_DwordBufferZoom clips both rectangles keeping the scale. Overhanging
// the source's left edge widens the destination to the right, so columns
// from the rectangle's left edge to the buffer's right edge may change;
// rows stay inside the rectangle.
#include "QuillonBufferOperaU.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace qbo::fuzz;
  Input in(data, size);
  SelectKernelLevel(in);
  const int32_t dst_width = in.Dimension(64), dst_height = in.Dimension(64);
  const int32_t src_width = in.Dimension(64), src_height = in.Dimension(64);
  const int32_t dst_x = in.Value(), dst_y = in.Value(), width = in.Value(), height = in.Value();
  const int32_t src_x = in.Value(), src_y = in.Value();
  const int32_t src_rect_width = in.Value(), src_rect_height = in.Value();
  const int64_t dst_bytes = PlaneBytes(dst_width, dst_height, 4);
  const int64_t src_bytes = PlaneBytes(src_width, src_height, 4);
  if (dst_bytes < 0 || src_bytes < 0) return 0;
  Block dst(dst_bytes, in), src(src_bytes, in);
  const bool null_dst = in.Null(), null_src = in.Null();
  const int32_t result = QN_DwordBufferZoom(
      null_dst ? nullptr : dst.data(), dst_x, dst_y, width, height, dst_width, dst_height,
      null_src ? nullptr : src.data(), src_x, src_y, src_rect_width, src_rect_height, src_width,
      src_height);
  const char* name = "QN_DwordBufferZoom";
  src.CheckUnchanged(name);
  Expect(result == 0 || result == QBO_E_FAIL, name, "unknown result code");
  if (result != 0) {
    dst.CheckUnchanged(name);
    return 0;
  }
  Expect(!null_dst && !null_src, name, "a NULL buffer was reported as drawn");
  const Span cols = Intersect({dst_x, dst_width}, {0, dst_width});
  const Span rows = Intersect({dst_y, int64_t{dst_y} + height}, {0, dst_height});
  dst.AllowRows((rows.lo * dst_width + cols.lo) * 4, int64_t{dst_width} * 4, rows.size(),
                cols.size() * 4);
  dst.CheckOutsideAllowed(name);
  return 0;
}
