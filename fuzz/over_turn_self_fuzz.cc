// QN_OverTurnSelf reverses the rows of pitch x height bytes in place, or
// rejects the call and leaves them alone.
#include <cstring>

#include "QuillonBufferOperaU.h"
#include "fuzz/fuzz_support.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace qbo::fuzz;
  Input in(data, size);
  SelectKernelLevel(in);
  const int32_t pitch = in.Dimension(256), height = in.Dimension(64);
  const int64_t bytes = PlaneBytes(pitch, height, 1);
  // Row-by-row swaps of a one-byte pitch are slow under the sanitizers;
  // smaller images find the same faults.
  if (bytes < 0 || bytes > kMaxBytes / 8) return 0;
  Block image(bytes, in);
  const bool null_image = in.Null();
  const char* name = "QN_OverTurnSelf";
  const int32_t result = QN_OverTurnSelf(null_image ? nullptr : image.data(), pitch, height);
  const bool rejected = null_image || pitch < 0 || height < 0;
  Expect(result == (rejected ? 0 : 1), name, "wrong result code");
  if (rejected) {
    image.CheckUnchanged(name);
    return 0;
  }
  const int64_t rows = pitch > 0 ? bytes / pitch : 0;
  for (int64_t r = 0; r < rows; ++r) {
    const uint8_t* was = image.before().data() + (rows - 1 - r) * pitch;
    Expect(std::memcmp(image.data() + r * pitch, was, static_cast<std::size_t>(pitch)) == 0,
           name, "a row is not where the turn puts it");
  }
  return 0;
}
