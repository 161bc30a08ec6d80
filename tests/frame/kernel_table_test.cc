// CPU levels and the QBO_CPU cap.
#include <gtest/gtest.h>

#include <cstdlib>

#include "frame/kernel_table.h"

namespace qbo::test {
namespace {

void SetCpuVariable(const char* value) {
#if defined(_WIN32)
  _putenv_s("QBO_CPU", value ? value : "");
#else
  if (value) {
    setenv("QBO_CPU", value, 1);
  } else {
    unsetenv("QBO_CPU");
  }
#endif
}

TEST(KernelTable, CpuVariableCapsTheLevel) {
  const char* saved = std::getenv("QBO_CPU");
  const std::string saved_value = saved ? saved : "";
  struct Case {
    const char* value;
    KernelLevel cap;
  };
  const Case cases[] = {{"c", KernelLevel::kC},
                        {"sse2", KernelLevel::kSse2},
                        {"avx2", KernelLevel::kAvx2},
                        {"avx512", KernelLevel::kAvx512},
                        {"avx512vbmi", KernelLevel::kAvx512Vbmi},
                        {"bogus", KernelLevel::kAvx512Vbmi},
                        {nullptr, KernelLevel::kAvx512Vbmi}};
  for (const Case& c : cases) {
    SetCpuVariable(c.value);
    InitKernelTableFromEnvironment();
    const KernelLevel expected = std::min(c.cap, MachineKernelLevel());
    EXPECT_EQ(CurrentKernelLevel(), expected) << (c.value ? c.value : "(unset)");
    EXPECT_EQ(Kernels().buffer.copy_row_bytes != nullptr, true);
  }
  SetCpuVariable(saved ? saved_value.c_str() : nullptr);
  InitKernelTableFromEnvironment();
}


}  // namespace
}  // namespace qbo::test
