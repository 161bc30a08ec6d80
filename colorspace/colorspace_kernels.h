// Row kernels of the RGB <-> YUV conversion rows.
#ifndef QBO_COLORSPACE_COLORSPACE_KERNELS_H_
#define QBO_COLORSPACE_COLORSPACE_KERNELS_H_

#include "colorspace/rgb24_to_rgba_row.h"
#include "colorspace/yuyv_to_rgba_row.h"
#include "colorspace/rgba_to_yuyv_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct ColorspaceKernels {
  // YUV to RGB: YUYV to 32-bit and 24-bit pixels; 24-bit to 32-bit.
  YuyvToPixelsRowFn yuyv_to_rgba_row = nullptr;
  YuyvToPixelsRowFn yuyv_to_bgra_row = nullptr;
  YuyvToPixelsRowFn yuyv_to_rgb24_row = nullptr;
  Rgb24ToRgbaRowFn rgb24_to_rgba_row = nullptr;
  Rgb24ToRgbaRowFn rgb24_alpha_to_rgba_row = nullptr;
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
