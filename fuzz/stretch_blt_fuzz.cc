#include "fuzz/transfer_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  return qbo::fuzz::RunTransfer(QN_StretchBlt, "QN_StretchBlt", data, size);
}
