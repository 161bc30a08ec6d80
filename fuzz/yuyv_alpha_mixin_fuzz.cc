// QN_Yuyv_Alpha_Mixin clips position and size as unsigned values against
// the destination, so the clipped rectangle and the result (its width) are
// worked out here from the unsigned reading. The source has no size of its
// own: it is allocated exactly as large as the clipped rectangle.
#include <algorithm>

#include "QuillonBufferOperaU.h"
#include "fuzz/yuyv_mean_stretch_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace qbo::fuzz;
  Input in(data, size);
  SelectKernelLevel(in);
  // A negative destination size reads as a huge unsigned one: it describes
  // memory no caller has, so only sizes from 0 up are fuzzed.
  const int32_t dst_width = std::max(0, in.Dimension(64));
  const int32_t dst_height = std::max(0, in.Dimension(48));
  const int32_t x = in.Value(), y = in.Value(), width = in.Value(), height = in.Value();
  const uint32_t ux = std::min<uint32_t>(x, dst_width);
  const uint32_t uw = std::min<uint32_t>(width, dst_width - ux);
  const uint32_t uy = std::min<uint32_t>(y, dst_height);
  const uint32_t uh = std::min<uint32_t>(height, dst_height - uy);

  const bool with_dst_alpha = in.Byte() & 1, with_src_alpha = in.Byte() & 1;
  const PitchedPlane d = Pitched(int64_t{dst_width} * 2, dst_height, in.Byte() % 9,
                                 in.Byte() % 4 == 0);
  const PitchedPlane da = Pitched(dst_width, dst_height, in.Byte() % 9, in.Byte() % 4 == 0);
  const PitchedPlane s = Pitched(int64_t{uw} * 2, uh, in.Byte() % 9, in.Byte() % 4 == 0);
  const PitchedPlane sa = Pitched(uw, uh, in.Byte() % 9, in.Byte() % 4 == 0);
  if (d.bytes < 0 || da.bytes < 0 || s.bytes < 0 || sa.bytes < 0) return 0;
  Block dst(d.bytes, in), dst_alpha(with_dst_alpha ? da.bytes : 0, in);
  Block src(s.bytes, in), src_alpha(with_src_alpha ? sa.bytes : 0, in);
  const bool null_dst = in.Null(), null_src = in.Null();
  const char* name = "QN_Yuyv_Alpha_Mixin";
  const int32_t result = QN_Yuyv_Alpha_Mixin(
      null_dst ? nullptr : dst.data() + d.first, static_cast<int32_t>(d.pitch),
      with_dst_alpha ? dst_alpha.data() + da.first : nullptr, static_cast<int32_t>(da.pitch),
      dst_width, dst_height, null_src ? nullptr : src.data() + s.first,
      static_cast<int32_t>(s.pitch), with_src_alpha ? src_alpha.data() + sa.first : nullptr,
      static_cast<int32_t>(sa.pitch), in.Value(), in.Value(), x, y, width, height);
  Expect(result == static_cast<int32_t>(uw), name, "the result is not the clipped width");
  src.CheckUnchanged(name);
  src_alpha.CheckUnchanged(name);
  if (null_dst || null_src) {
    dst.CheckUnchanged(name);
    dst_alpha.CheckUnchanged(name);
    return 0;
  }
  dst.AllowRows(d.first + int64_t{uy} * d.pitch + 2 * int64_t{ux}, d.pitch, uh, 2 * int64_t{uw});
  dst_alpha.AllowRows(da.first + int64_t{uy} * da.pitch + ux, da.pitch, uh, uw);
  dst.CheckOutsideAllowed(name);
  dst_alpha.CheckOutsideAllowed(name);
  return 0;
}
