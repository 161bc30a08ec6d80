#include "filter/filter_kernels.h"

namespace qbo {

void FillFilterKernels(FilterKernels* k, KernelLevel level) {
  (void)k;
  (void)level;
}

}  // namespace qbo
