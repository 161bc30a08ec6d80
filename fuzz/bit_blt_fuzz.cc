#include "fuzz/transfer_target.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  return qbo::fuzz::RunTransfer(QN_BitBlt, "QN_BitBlt", data, size);
}
