#include "colorspace/colorspace_kernels.h"

namespace qbo {

void FillColorspaceKernels(ColorspaceKernels* k, KernelLevel level) {
  (void)k;
  (void)level;
}

}  // namespace qbo
