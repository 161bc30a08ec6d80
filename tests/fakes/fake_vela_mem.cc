// A stand-in VelaMem module: hands back a table nobody calls through.
#include <cstdlib>
#include <cstring>

#include "tests/fakes/fake_vela.h"

namespace {
void* g_table[4];
int g_api_calls = 0;
}  // namespace

extern "C" {

FAKE_VELA_EXPORT void* VLM_GetAPIStuPtr() {
  ++g_api_calls;
  const char* null_table = std::getenv("FAKE_VELA_NULL_TABLE");
  if (null_table && std::strcmp(null_table, "VelaMem") == 0) return nullptr;
  return g_table;
}

FAKE_VELA_EXPORT int FakeVela_ApiCalls() { return g_api_calls; }

}  // extern "C"
