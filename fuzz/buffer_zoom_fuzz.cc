// QN_BufferZoom resizes whole 8-bit planes: it may write anywhere in the
// destination plane, nowhere else, and nothing when it rejects the call.
#include "QuillonBufferOperaU.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace qbo::fuzz;
  Input in(data, size);
  SelectKernelLevel(in);
  const int32_t dst_width = in.Dimension(160), dst_height = in.Dimension(96);
  const int32_t src_width = in.Dimension(160), src_height = in.Dimension(96);
  const int64_t dst_bytes = PlaneBytes(dst_width, dst_height, 1);
  const int64_t src_bytes = PlaneBytes(src_width, src_height, 1);
  if (dst_bytes < 0 || src_bytes < 0) return 0;
  Block dst(dst_bytes, in), src(src_bytes, in);
  const bool null_dst = in.Null(), null_src = in.Null();
  const int32_t result = QN_BufferZoom(null_dst ? nullptr : dst.data(), dst_width, dst_height,
                                       null_src ? nullptr : src.data(), src_width, src_height);
  src.CheckUnchanged("QN_BufferZoom");
  const bool rejected = null_dst || null_src || dst_width < 1 || src_width < 1 ||
                        src_height < 1 || dst_height == 0;
  Expect(result == (rejected ? QBO_E_FAIL : 0), "QN_BufferZoom", "wrong result code");
  if (rejected || dst_height < 0) dst.CheckUnchanged("QN_BufferZoom");
  return 0;
}
