#include "colorspace/colorspace_kernels.h"

namespace qbo {

void FillColorspaceKernels(ColorspaceKernels* k, KernelLevel level) {
  // RGB to YUYV
  k->rgba_to_yuyv = RgbaToYuyvRow_C;
  k->rgba_to_yuyva = RgbaToYuyvAlphaRow_C;
  k->rgb24_to_yuyv = Rgb24ToYuyvRow_C;
  if (level >= KernelLevel::kSse2) {
    k->rgba_to_yuyv = RgbaToYuyvRow_Any_SSE2;
    k->rgba_to_yuyva = RgbaToYuyvAlphaRow_Any_SSE2;
    k->rgb24_to_yuyv = Rgb24ToYuyvRow_Any_SSE2;
  }
  if (level >= KernelLevel::kAvx2) {
    k->rgba_to_yuyv = RgbaToYuyvRow_Any_AVX2;
    k->rgba_to_yuyva = RgbaToYuyvAlphaRow_Any_AVX2;
    k->rgb24_to_yuyv = Rgb24ToYuyvRow_Any_AVX2;
  }
}

}  // namespace qbo
