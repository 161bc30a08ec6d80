#include "fuzz/yuyv_mean_stretch_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  return qbo::fuzz::RunYuyvMeanStretch(QN_CS_YUYV2RGBA_MeanStretch,
                                       "QN_CS_YUYV2RGBA_MeanStretch", data, size);
}
