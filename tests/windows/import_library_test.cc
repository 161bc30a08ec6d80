// A host that links the import library and calls the exports through the
// header's own prototypes: on 32-bit x86 the calls reference the decorated
// stdcall names, which the import library maps onto the DLL's plain ones.
#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "QuillonBufferOperaU.h"
#include "tests/windows/fixture_exports.h"

namespace qbo::test {
namespace {

TEST(ImportLibrary, FillsThroughDirectCalls) {
  struct Case {
    int32_t count;
    uint32_t value;
  };
  // Counts on both sides of the SIMD block sizes, and zero.
  const Case cases[] = {{0, 1u}, {1, 0xDEADBEEFu}, {3, 7u}, {17, 0x01020304u}, {1031, ~0u}};
  for (const Case& c : cases) {
    std::vector<uint32_t> words(c.count + 1, 0x5A5A5A5Au);
    EXPECT_EQ(QN_MemsetDWORD(words.data(), c.value, c.count), 1) << c.count;
    for (int32_t i = 0; i < c.count; ++i) ASSERT_EQ(words[i], c.value) << c.count << " @" << i;
    EXPECT_EQ(words[c.count], 0x5A5A5A5Au) << "word past the end written, count " << c.count;
  }
}

TEST(ImportLibrary, SecondNamesAndBothConventionsLink) {
  // On x86 these reference _FxStdWeigh3Again@12 and _FxCdeclDiff2Again:
  // second names must be in the import library under their own names.
  EXPECT_EQ(FxStdWeigh3(1, 2, 3), 321);
  EXPECT_EQ(FxStdWeigh3Again(4, 0, 7), 704);
  EXPECT_EQ(FxStdNone(), 42);
  EXPECT_EQ(FxCdeclDiff2(5, 3), 2);
  EXPECT_EQ(FxCdeclDiff2Again(-1, 9), -10);
  uint8_t bytes[8];
  const uint32_t base = 1000;
  EXPECT_EQ(FxStdPointers(nullptr, bytes, bytes + 5, &base), 1005u);
}


}  // namespace
}  // namespace qbo::test
