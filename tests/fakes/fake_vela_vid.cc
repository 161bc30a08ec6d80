// A stand-in VelaVid module: a table whose entries 7 (scale), 16, 21 and 73
// (convert) record their arguments and return a settable value.
#include <cstdlib>
#include <cstring>
#include <utility>

#include "tests/fakes/fake_vela.h"

namespace {

struct VelaVidTable {
  void* const* scale_entries;
  void* const* convert_entries;
};

void* g_scale[kFakeEntryCount];
void* g_convert[kFakeEntryCount];
VelaVidTable g_table;
FakeVelaCall g_last;
int g_calls = 0;
int g_api_calls = 0;
intptr_t g_result = 1;

void Record(int array, int index, int argc, const intptr_t* args) {
  g_last = FakeVelaCall{};
  g_last.array = array;
  g_last.index = index;
  g_last.argc = argc;
  std::memcpy(g_last.args, args, sizeof(intptr_t) * static_cast<std::size_t>(argc));
  ++g_calls;
}

// An entry taking exactly sizeof...(I) word-sized arguments.
template <int kArray, int kIndex, std::size_t... I>
void* MakeRecorder(std::index_sequence<I...>) {
  using Fn = intptr_t (*)(decltype(I, intptr_t{})...);
  Fn fn = [](decltype(I, intptr_t{})... args) -> intptr_t {
    const intptr_t values[] = {args...};
    Record(kArray, kIndex, static_cast<int>(sizeof...(I)), values);
    return g_result;
  };
  return reinterpret_cast<void*>(fn);
}

void FillEntries() {
  std::memset(g_scale, 0, sizeof(g_scale));
  std::memset(g_convert, 0, sizeof(g_convert));
  g_scale[7] = MakeRecorder<kFakeScaleArray, 7>(std::make_index_sequence<8>{});
  g_convert[16] = MakeRecorder<kFakeConvertArray, 16>(std::make_index_sequence<11>{});
  g_convert[21] = MakeRecorder<kFakeConvertArray, 21>(std::make_index_sequence<11>{});
  g_convert[73] = MakeRecorder<kFakeConvertArray, 73>(std::make_index_sequence<14>{});
  g_table = VelaVidTable{g_scale, g_convert};
}

void* SavedEntry(int array, int index) {
  static void* saved[2][kFakeEntryCount];
  static bool filled = false;
  if (!filled) {
    FillEntries();
    std::memcpy(saved[0], g_scale, sizeof(g_scale));
    std::memcpy(saved[1], g_convert, sizeof(g_convert));
    filled = true;
  }
  return saved[array][index];
}

}  // namespace

extern "C" {

FAKE_VELA_EXPORT void* VLV_GetAPIStuPtr() {
  ++g_api_calls;
  const char* null_table = std::getenv("FAKE_VELA_NULL_TABLE");
  if (null_table && std::strcmp(null_table, "VelaVid") == 0) return nullptr;
  SavedEntry(0, 0);
  return &g_table;
}

FAKE_VELA_EXPORT int FakeVelaVid_CallCount() { return g_calls; }
FAKE_VELA_EXPORT const FakeVelaCall* FakeVelaVid_LastCall() { return &g_last; }
FAKE_VELA_EXPORT int FakeVela_ApiCalls() { return g_api_calls; }

FAKE_VELA_EXPORT void FakeVelaVid_Reset() {
  SavedEntry(0, 0);
  FillEntries();
  g_last = FakeVelaCall{};
  g_calls = 0;
  g_result = 1;
}

FAKE_VELA_EXPORT void FakeVelaVid_SetResult(intptr_t result) { g_result = result; }

FAKE_VELA_EXPORT void FakeVelaVid_SetEntry(int array, int index, int present) {
  void** entries = array == kFakeScaleArray ? g_scale : g_convert;
  entries[index] = present ? SavedEntry(array, index) : nullptr;
}

FAKE_VELA_EXPORT void FakeVelaVid_SetArrayNull(int array, int is_null) {
  if (array == kFakeScaleArray) {
    g_table.scale_entries = is_null ? nullptr : g_scale;
  } else {
    g_table.convert_entries = is_null ? nullptr : g_convert;
  }
}

}  // extern "C"
