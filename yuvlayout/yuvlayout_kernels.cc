#include "yuvlayout/yuvlayout_kernels.h"

namespace qbo {

void FillYuvLayoutKernels(YuvLayoutKernels* k, KernelLevel level) {
  (void)k;
  (void)level;
}

}  // namespace qbo
