// Row kernels of the field/frame interleaving and 4:2:0 <-> 4:2:2 chroma.
#ifndef QBO_YUVLAYOUT_YUVLAYOUT_KERNELS_H_
#define QBO_YUVLAYOUT_YUVLAYOUT_KERNELS_H_

#include "frame/kernel_level.h"
#include "yuvlayout/yuvlayout_row.h"

namespace qbo {

struct YuvLayoutKernels {
  InterleaveYuyvRowFn interleave_yuyv = nullptr;
  BlendChromaRowFn blend_chroma = nullptr;
  Yuv420ToYuyvRowFn yuv420_to_yuyv = nullptr;
  YuyvToLumaRowFn yuyv_to_luma = nullptr;
  YuyvToChromaRowFn yuyv_to_chroma = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillYuvLayoutKernels(YuvLayoutKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_YUVLAYOUT_YUVLAYOUT_KERNELS_H_
