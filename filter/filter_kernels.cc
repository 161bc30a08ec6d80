#include "filter/filter_kernels.h"

namespace qbo {

void FillFilterKernels(FilterKernels* k, KernelLevel level) {
  *k = FilterKernels{ResampleRowH4_C,  ResampleRowH8_C, ResampleRowV4_C,
                     ResampleRowV8_C,  BlurRow3_C,      YuyvSplitRow_C,
                     YuyvMixOpaqueRow_C, YuyvMixAlphaRow_C};
  if (level >= KernelLevel::kSse2) {
    *k = FilterKernels{ResampleRowH4_SSE2,  ResampleRowH8_SSE2, ResampleRowV4_SSE2,
                       ResampleRowV8_SSE2,  BlurRow3_SSE2,      YuyvSplitRow_SSE2,
                       YuyvMixOpaqueRow_SSE2, YuyvMixAlphaRow_SSE2};
  }
  if (level >= KernelLevel::kAvx2) {
    *k = FilterKernels{ResampleRowH4_AVX2,  ResampleRowH8_AVX2, ResampleRowV4_AVX2,
                       ResampleRowV8_AVX2,  BlurRow3_AVX2,      YuyvSplitRow_AVX2,
                       YuyvMixOpaqueRow_AVX2, YuyvMixAlphaRow_AVX2};
  }
}

}  // namespace qbo
