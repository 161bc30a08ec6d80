#include "blit/blit_kernels.h"

namespace qbo {

void FillBlitKernels(BlitKernels* k, KernelLevel level) {
  k->blend_over = BlendOverRow_C;
  k->blend_over_inverted = BlendOverInvertedRow_C;
  k->bilinear_vert = BilinearVertRow_C;
  k->bilinear_horiz = BilinearHorizRow_C;
  k->bilinear_horiz_stream = BilinearHorizRow_C;
  k->mean_vert = MeanVertRow_C;
  k->mean_horiz = MeanHorizRow_C;
  k->yuyv_expand = YuyvExpandRow_C;
  k->yuyv_mean_horiz = YuyvMeanHorizRow_C;
  if (level >= KernelLevel::kSse2) {
    k->blend_over = BlendOverRow_Any_SSE2;
    k->blend_over_inverted = BlendOverInvertedRow_Any_SSE2;
    k->bilinear_vert = BilinearVertRow_Any_SSE2;
    k->bilinear_horiz = BilinearHorizRow_Any_SSE2;
    k->bilinear_horiz_stream = BilinearHorizRow_Any_SSE2;
    k->mean_vert = MeanVertRow_Any_SSE2;
    k->mean_horiz = MeanHorizRow_SSE2;
    k->yuyv_expand = YuyvExpandRow_SSE2;
    k->yuyv_mean_horiz = YuyvMeanHorizRow_SSE2;
  }
  if (level >= KernelLevel::kAvx2) {
    k->blend_over = BlendOverRow_Any_AVX2;
    k->blend_over_inverted = BlendOverInvertedRow_Any_AVX2;
    k->bilinear_vert = BilinearVertRow_Any_AVX2;
    k->bilinear_horiz = BilinearHorizRow_Any_AVX2;
    k->bilinear_horiz_stream = BilinearHorizRowStream_Any_AVX2;
    k->mean_vert = MeanVertRow_Any_AVX2;
  }
  if (level >= KernelLevel::kAvx512) {
    k->blend_over = BlendOverRow_Any_AVX512;
    k->blend_over_inverted = BlendOverInvertedRow_Any_AVX512;
    k->bilinear_vert = BilinearVertRow_Any_AVX512;
  }
}

}  // namespace qbo
