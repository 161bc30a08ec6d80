// The DLLs as a host finds them: every export the declaring header lists
// resolves by GetProcAddress under its exact, undecorated name, a second
// name resolves to the very entry of its first, and no decorated name is
// exported. Run on the library and on the fixture DLL, whose header has
// second names and both conventions.
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "tests/windows/export_list.h"

namespace qbo::test {
namespace {

struct Module {
  const wchar_t* file;
  const std::vector<ExportInfo>& exports;
  std::size_t at_least;  // guards a header the generator failed to read
};

std::vector<Module> Modules() {
  return {{L"QuillonBufferOperaU.dll", ExportList(), 7},
          {L"qbo_exports_fixture.dll", FixtureExportList(), 6}};
}

std::string Narrow(const wchar_t* s) { return std::string(s, s + wcslen(s)); }

void* Proc(HMODULE module, const std::string& name) {
  return reinterpret_cast<void*>(GetProcAddress(module, name.c_str()));
}

// Both DLLs are linked into this program, so they are loaded already.
HMODULE Loaded(const Module& m) {
  HMODULE h = GetModuleHandleW(m.file);
  EXPECT_NE(h, nullptr) << Narrow(m.file);
  return h;
}

TEST(DllExports, ListsCameFromTheHeaders) {
  for (const Module& m : Modules()) {
    EXPECT_GE(m.exports.size(), m.at_least) << Narrow(m.file);
  }
  // The fixture's list, as its header declares it.
  const std::vector<ExportInfo>& f = FixtureExportList();
  ASSERT_EQ(f.size(), 6u);
  const ExportInfo expected[] = {{"FxStdWeigh3", 3, true, ""},
                                 {"FxStdWeigh3Again", 3, true, "FxStdWeigh3"},
                                 {"FxStdNone", 0, true, ""},
                                 {"FxCdeclDiff2", 2, false, ""},
                                 {"FxCdeclDiff2Again", 2, false, "FxCdeclDiff2"},
                                 {"FxStdPointers", 4, true, ""}};
  for (std::size_t i = 0; i < f.size(); ++i) {
    EXPECT_EQ(f[i].name, expected[i].name);
    EXPECT_EQ(f[i].arg_count, expected[i].arg_count) << f[i].name;
    EXPECT_EQ(f[i].callee_pops, expected[i].callee_pops) << f[i].name;
    EXPECT_EQ(f[i].alias_of, expected[i].alias_of) << f[i].name;
  }
}

TEST(DllExports, EveryDeclaredNameResolves) {
  for (const Module& m : Modules()) {
    HMODULE dll = Loaded(m);
    for (const ExportInfo& e : m.exports) EXPECT_NE(Proc(dll, e.name), nullptr) << e.name;
  }
}

TEST(DllExports, NoDecoratedNameIsExported) {
  for (const Module& m : Modules()) {
    HMODULE dll = Loaded(m);
    for (const ExportInfo& e : m.exports) {
      const std::string decorated = e.name + "@" + std::to_string(4 * e.arg_count);
      EXPECT_EQ(Proc(dll, decorated), nullptr) << decorated;
      EXPECT_EQ(Proc(dll, "_" + e.name), nullptr) << "_" << e.name;
    }
  }
}

TEST(DllExports, SecondNamesShareTheEntry) {
  for (const Module& m : Modules()) {
    HMODULE dll = Loaded(m);
    for (const ExportInfo& e : m.exports) {
      if (e.alias_of.empty()) continue;
      EXPECT_EQ(Proc(dll, e.name), Proc(dll, e.alias_of)) << e.name << " -> " << e.alias_of;
    }
  }
}


}  // namespace
}  // namespace qbo::test
