// Definitions of the fixture DLL's exports; second names have no
// definition of their own, the module-definition file maps them.
#include "tests/windows/fixture_exports.h"

int32_t QBO_CALLEE FxStdWeigh3(int32_t a, int32_t b, int32_t c) { return a + 10 * b + 100 * c; }

int32_t QBO_CALLEE FxStdNone(void) { return 42; }

int32_t QBO_CALLER FxCdeclDiff2(int32_t a, int32_t b) { return a - b; }

uint32_t QBO_CALLEE FxStdPointers(const void*, uint8_t* b, uint8_t* c, const uint32_t* d) {
  return d[0] + static_cast<uint32_t>(c - b);
}
