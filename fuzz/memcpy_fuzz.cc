// QN_Memcpy copies exactly `size` bytes between blocks of exactly that
// size, and touches nothing when the size is not positive or a pointer is
// NULL.
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace qbo::fuzz;
  Input in(data, size);
  SelectKernelLevel(in);
  const int32_t count = in.Byte() < 224 ? in.Value() % 5000 : in.Value();
  const int64_t bytes = count > 0 ? count : 0;
  if (bytes > kMaxBytes) return 0;
  // A source offset inside a larger block misaligns it like a real row.
  const int64_t skew = in.Byte() % 64;
  Block dst(bytes, in), src(bytes + skew, in);
  const bool null_dst = in.Null(), null_src = in.Null();
  void* const d = null_dst ? nullptr : dst.data();
  const char* name = "QN_Memcpy";
  void* const result = QN_Memcpy(d, null_src ? nullptr : src.data() + skew, count);
  src.CheckUnchanged(name);
  if (count <= 0 || null_dst || null_src) {
    Expect(result == nullptr, name, "a rejected copy did not return NULL");
    dst.CheckUnchanged(name);
    return 0;
  }
  Expect(result == d, name, "the result is not dst");
  Expect(std::memcmp(dst.data(), src.data() + skew, static_cast<std::size_t>(bytes)) == 0, name,
         "the copy differs from the source");
  return 0;
}
