// QN_MixMask changes the placed rectangle of the 8-bit destination only, and
// reports rejection (1) and completion (QBO_E_FAIL) by the codes hosts test.
#include "QuillonBufferOperaU.h"
#include "fuzz/mask_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace qbo::fuzz;
  Input in(data, size);
  SelectKernelLevel(in);
  const MaskCall c = ReadMaskCall(in, false);
  const int64_t dst_bytes = PlaneBytes(c.dst_width, c.dst_height, 1);
  const int64_t src_bytes = PlaneBytes(c.src_width, c.src_height, 1);
  if (dst_bytes < 0 || src_bytes < 0) return 0;
  Block dst(dst_bytes, in), src(src_bytes, in);
  const bool null_dst = in.Null(), null_src = in.Null();
  const char* name = "QN_MixMask";
  const int32_t result = QN_MixMask(null_dst ? nullptr : dst.data(), c.x, c.y, c.width, c.height, c.dst_width,
                 c.dst_height, null_src ? nullptr : src.data(), c.src_x, c.src_y, in.Value(),
                 in.Value(), c.src_width, c.src_height);
  src.CheckUnchanged(name);
  const Placement p = Place(c);
  const bool drawn = p.drawn && !null_dst && !null_src;
  Expect(result == (drawn ? QBO_E_FAIL : 1), name, "wrong result code");
  if (!drawn) {
    dst.CheckUnchanged(name);
    return 0;
  }
  dst.AllowRows(p.rows.lo * c.dst_width + p.cols.lo, c.dst_width, p.rows.size(), p.cols.size());
  dst.CheckOutsideAllowed(name);
  return 0;
}
