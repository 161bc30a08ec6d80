#include "colorspace/planar_to_rgba_kernels.h"

namespace qbo {

void FillPlanarToRgbaKernels(PlanarToRgbaKernels* k, KernelLevel level) {
  *k = PlanarToRgbaKernels{PlanarToRgbaRow_C, PlanarToBgraRow_C};
  if (level >= KernelLevel::kSse2) {
    *k = PlanarToRgbaKernels{PlanarToRgbaRow_Any_SSE2, PlanarToBgraRow_Any_SSE2};
  }
  if (level >= KernelLevel::kAvx2) {
    *k = PlanarToRgbaKernels{PlanarToRgbaRow_Any_AVX2, PlanarToBgraRow_Any_AVX2};
  }
  if (level >= KernelLevel::kAvx512) {
    *k = PlanarToRgbaKernels{PlanarToRgbaRow_Any_AVX512, PlanarToBgraRow_Any_AVX512};
  }
  if (level >= KernelLevel::kAvx512Vbmi) {
    *k = PlanarToRgbaKernels{PlanarToRgbaRow_Any_AVX512VBMI, PlanarToBgraRow_Any_AVX512VBMI};
  }
}

}  // namespace qbo
