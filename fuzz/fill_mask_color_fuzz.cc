// QN_FillMaskColor scales the alpha byte of the placed pixels and keeps
// their colour bytes: only byte 3 of each covered pixel may change.
#include "QuillonBufferOperaU.h"
#include "fuzz/mask_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace qbo::fuzz;
  Input in(data, size);
  SelectKernelLevel(in);
  const MaskCall c = ReadMaskCall(in, true);
  const int64_t dst_bytes = PlaneBytes(c.dst_width, c.dst_height, 4);
  const int64_t src_bytes = PlaneBytes(c.src_width, c.src_height, 1);
  if (dst_bytes < 0 || src_bytes < 0) return 0;
  Block dst(dst_bytes, in), mask(src_bytes, in);
  const bool null_dst = in.Null(), null_mask = in.Null();
  const char* name = "QN_FillMaskColor";
  const int32_t result =
      QN_FillMaskColor(null_dst ? nullptr : dst.data(), c.x, c.y, c.dst_width, c.dst_height,
                       null_mask ? nullptr : mask.data(), c.src_x, c.src_y, c.src_width,
                       c.src_height);
  Expect(result == 1, name, "the result is not 1");
  mask.CheckUnchanged(name);
  const Placement p = Place(c);
  if (!p.drawn || null_dst || null_mask) {
    dst.CheckUnchanged(name);
    return 0;
  }
  for (int64_t r = p.rows.lo; r < p.rows.hi; ++r) {
    for (int64_t col = p.cols.lo; col < p.cols.hi; ++col) {
      dst.Allow((r * c.dst_width + col) * 4 + 3, 1);
    }
  }
  dst.CheckOutsideAllowed(name);
  return 0;
}
