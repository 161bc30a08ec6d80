// Row kernels of the block transfers, bilinear and mean stretches, YUYV mean stretch.
#ifndef QBO_BLIT_BLIT_KERNELS_H_
#define QBO_BLIT_BLIT_KERNELS_H_

#include "blit/bilinear_row.h"
#include "blit/blend_row.h"
#include "blit/mean_row.h"
#include "frame/kernel_level.h"

namespace qbo {

struct BlitKernels {
  BlendRowFn blend_over = nullptr;
  BlendRowFn blend_over_inverted = nullptr;
  BilinearVertRowFn bilinear_vert = nullptr;
  BilinearHorizRowFn bilinear_horiz = nullptr;
  // The same bytes with stores past the cache (where the level has them),
  // for a frame past the cache budget (StreamFrameStores).
  BilinearHorizRowFn bilinear_horiz_stream = nullptr;
  MeanVertRowFn mean_vert = nullptr;
  MeanHorizRowFn mean_horiz = nullptr;
  YuyvExpandRowFn yuyv_expand = nullptr;
  YuyvMeanHorizRowFn yuyv_mean_horiz = nullptr;
};

// Fills `k` with the rows of `level`: the reference rows first, then each
// higher level up to `level` overwriting what it implements.
void FillBlitKernels(BlitKernels* k, KernelLevel level);

}  // namespace qbo

#endif  // QBO_BLIT_BLIT_KERNELS_H_
