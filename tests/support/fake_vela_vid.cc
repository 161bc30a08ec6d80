#include "tests/support/fake_vela_vid.h"

#include <gtest/gtest.h>

#include "frame/accel.h"
#include "frame/platform.h"

namespace qbo::test {
namespace {

template <typename Fn>
Fn Symbol(void* module, const char* name) {
  void* p = NativePlatform().FindSymbol(module, name);
  if (!p) ADD_FAILURE() << "fake VelaVid lacks " << name;
  return reinterpret_cast<Fn>(p);
}

PathString FakeVelaVidPath() {
  const char* path = QBO_FAKE_VELA_VID_PATH;
  return PathString(path, path + std::char_traits<char>::length(path));
}

}  // namespace

FakeVelaVid::FakeVelaVid()
    : module_(NativePlatform().LoadModule(FakeVelaVidPath())),
      saved_api_(g_accel.vela_vid_api) {
  if (!module_) {
    ADD_FAILURE() << "cannot load " << QBO_FAKE_VELA_VID_PATH;
    return;
  }
  Symbol<void (*)()>(module_, "FakeVelaVid_Reset")();
  auto get_api = Symbol<void* (*)()>(module_, "VLV_GetAPIStuPtr");
  g_accel.vela_vid_api = static_cast<VelaVidApi*>(get_api());
}

FakeVelaVid::~FakeVelaVid() {
  g_accel.vela_vid_api = static_cast<VelaVidApi*>(saved_api_);
  if (module_) NativePlatform().UnloadModule(module_);
}

int FakeVelaVid::call_count() const {
  return Symbol<int (*)()>(module_, "FakeVelaVid_CallCount")();
}

const FakeVelaCall& FakeVelaVid::last_call() const {
  return *Symbol<const FakeVelaCall* (*)()>(module_, "FakeVelaVid_LastCall")();
}

void FakeVelaVid::SetResult(intptr_t result) {
  Symbol<void (*)(intptr_t)>(module_, "FakeVelaVid_SetResult")(result);
}

void FakeVelaVid::SetEntryPresent(int array, int index, bool present) {
  Symbol<void (*)(int, int, int)>(module_, "FakeVelaVid_SetEntry")(array, index, present);
}

void FakeVelaVid::SetArrayNull(int array, bool is_null) {
  Symbol<void (*)(int, int)>(module_, "FakeVelaVid_SetArrayNull")(array, is_null);
}

void FakeVelaVid::RemoveTable() { g_accel.vela_vid_api = nullptr; }

}  // namespace qbo::test
