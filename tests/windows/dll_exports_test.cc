// The DLL as a host finds it: every export the header declares resolves by
// GetProcAddress under its exact, undecorated name, a second name resolves
// to the very entry of its first, and no decorated name is exported.
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "tests/windows/export_list.h"

namespace qbo::test {
namespace {

HMODULE Dll() {
  HMODULE h = GetModuleHandleW(L"QuillonBufferOperaU.dll");
  EXPECT_NE(h, nullptr) << "the DLL is linked into this program and must be loaded";
  return h;
}

void* Proc(HMODULE module, const std::string& name) {
  return reinterpret_cast<void*>(GetProcAddress(module, name.c_str()));
}

TEST(DllExports, HeaderListIsNotEmpty) {
  // Guards the generator: a header it failed to read would pass every
  // test below vacuously.
  EXPECT_GE(ExportList().size(), 7u);
}

TEST(DllExports, EveryDeclaredNameResolves) {
  HMODULE dll = Dll();
  for (const ExportInfo& e : ExportList()) {
    EXPECT_NE(Proc(dll, e.name), nullptr) << e.name;
  }
}

TEST(DllExports, NoDecoratedNameIsExported) {
  HMODULE dll = Dll();
  for (const ExportInfo& e : ExportList()) {
    const std::string decorated = e.name + "@" + std::to_string(4 * e.arg_count);
    EXPECT_EQ(Proc(dll, decorated), nullptr) << decorated;
    EXPECT_EQ(Proc(dll, "_" + e.name), nullptr) << "_" << e.name;
  }
}

TEST(DllExports, SecondNamesShareTheEntry) {
  HMODULE dll = Dll();
  for (const ExportInfo& e : ExportList()) {
    if (e.alias_of.empty()) continue;
    EXPECT_EQ(Proc(dll, e.name), Proc(dll, e.alias_of)) << e.name << " -> " << e.alias_of;
  }
}

TEST(DllExports, DistinctEntriesHaveDistinctAddresses) {
  // Guards against a table that maps names onto the wrong symbol.
  HMODULE dll = Dll();
  std::map<void*, std::string> seen;
  for (const ExportInfo& e : ExportList()) {
    if (!e.alias_of.empty()) continue;
    void* p = Proc(dll, e.name);
    auto [it, inserted] = seen.emplace(p, e.name);
    EXPECT_TRUE(inserted) << e.name << " and " << it->second << " share " << p;
  }
}

TEST(DllExports, LoadingByNameAgainGivesTheSameModule) {
  HMODULE again = LoadLibraryW(L"QuillonBufferOperaU.dll");
  EXPECT_EQ(again, Dll());
  if (again) FreeLibrary(again);
  EXPECT_NE(GetModuleHandleW(L"QuillonBufferOperaU.dll"), nullptr);
}

}  // namespace
}  // namespace qbo::test
