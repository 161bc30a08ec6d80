// Row kernels of the planar YUV to 32-bit conversions.
#ifndef QBO_COLORSPACE_PLANAR_TO_RGBA_KERNELS_H_
#define QBO_COLORSPACE_PLANAR_TO_RGBA_KERNELS_H_

#include "colorspace/planar_to_rgba_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct PlanarToRgbaKernels {
  PlanarToPixelsRowFn to_rgba = nullptr;
  PlanarToPixelsRowFn to_bgra = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillPlanarToRgbaKernels(PlanarToRgbaKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_COLORSPACE_PLANAR_TO_RGBA_KERNELS_H_
