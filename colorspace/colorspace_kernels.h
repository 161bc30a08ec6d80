// Row kernels of the RGB <-> YUV conversion rows.
#ifndef QBO_COLORSPACE_COLORSPACE_KERNELS_H_
#define QBO_COLORSPACE_COLORSPACE_KERNELS_H_

#include "colorspace/rgba_to_yuyv_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct ColorspaceKernels {
  // RGB to YUYV: rows that take any width.
  RgbaToYuyvRowFn rgba_to_yuyv = nullptr;
  RgbaToYuyvAlphaRowFn rgba_to_yuyva = nullptr;
  Rgb24ToYuyvRowFn rgb24_to_yuyv = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillColorspaceKernels(ColorspaceKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_COLORSPACE_COLORSPACE_KERNELS_H_
