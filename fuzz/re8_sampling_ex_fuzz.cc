// QN_Re8SamplingEx against its destination rectangle.
#include "fuzz/resampling_ex_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  return qbo::fuzz::FuzzResamplingEx(data, size, QN_Re8SamplingEx, "QN_Re8SamplingEx");
}
