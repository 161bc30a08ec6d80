#include "colorspace/colorspace_kernels.h"

namespace qbo {
namespace {

void FillYuvToRgbKernels(ColorspaceKernels* k, KernelLevel level) {
  k->yuyv_to_rgba_row = YuyvToRgbaRow_C;
  k->yuyv_to_bgra_row = YuyvToBgraRow_C;
  k->yuyv_to_rgb24_row = YuyvToRgb24Row_C;
  k->rgb24_to_rgba_row = Rgb24ToRgbaRow_C;
  k->rgb24_alpha_to_rgba_row = Rgb24AlphaToRgbaRow_C;
  if (level >= KernelLevel::kSse2) {
    k->yuyv_to_rgba_row = YuyvToRgbaRow_Any_SSE2;
    k->yuyv_to_bgra_row = YuyvToBgraRow_Any_SSE2;
    k->yuyv_to_rgb24_row = YuyvToRgb24Row_Any_SSE2;
    k->rgb24_to_rgba_row = Rgb24ToRgbaRow_Any_SSE2;
    k->rgb24_alpha_to_rgba_row = Rgb24AlphaToRgbaRow_Any_SSE2;
  }
  if (level >= KernelLevel::kAvx2) {
    k->yuyv_to_rgba_row = YuyvToRgbaRow_Any_AVX2;
    k->yuyv_to_bgra_row = YuyvToBgraRow_Any_AVX2;
    k->yuyv_to_rgb24_row = YuyvToRgb24Row_Any_AVX2;
    k->rgb24_to_rgba_row = Rgb24ToRgbaRow_Any_AVX2;
    k->rgb24_alpha_to_rgba_row = Rgb24AlphaToRgbaRow_Any_AVX2;
  }
  if (level >= KernelLevel::kAvx512) {
    k->yuyv_to_rgba_row = YuyvToRgbaRow_Any_AVX512;
    k->yuyv_to_bgra_row = YuyvToBgraRow_Any_AVX512;
  }
  if (level >= KernelLevel::kAvx512Vbmi) {
    k->yuyv_to_rgba_row = YuyvToRgbaRow_Any_AVX512VBMI;
    k->yuyv_to_bgra_row = YuyvToBgraRow_Any_AVX512VBMI;
  }
}

}  // namespace

void FillColorspaceKernels(ColorspaceKernels* k, KernelLevel level) {
  FillYuvToRgbKernels(k, level);
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
