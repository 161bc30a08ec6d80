#include "yuvlayout/yuvlayout_kernels.h"

namespace qbo {

void FillYuvLayoutKernels(YuvLayoutKernels* k, KernelLevel level) {
  *k = YuvLayoutKernels{InterleaveYuyvRow_C, BlendChromaRow_C, Yuv420ToYuyvRow_C, YuyvToLumaRow_C,
                        YuyvToChromaRow_C};
  if (level >= KernelLevel::kSse2) {
    *k = YuvLayoutKernels{InterleaveYuyvRow_Any_SSE2, BlendChromaRow_Any_SSE2,
                          Yuv420ToYuyvRow_Any_SSE2, YuyvToLumaRow_Any_SSE2, YuyvToChromaRow_Any_SSE2};
  }
  if (level >= KernelLevel::kAvx2) {
    *k = YuvLayoutKernels{InterleaveYuyvRow_Any_AVX2, BlendChromaRow_Any_AVX2,
                          Yuv420ToYuyvRow_Any_AVX2, YuyvToLumaRow_Any_AVX2, YuyvToChromaRow_Any_AVX2};
  }
  if (level >= KernelLevel::kAvx512) k->yuv420_to_yuyv = Yuv420ToYuyvRow_Any_AVX512;
}

}  // namespace qbo
