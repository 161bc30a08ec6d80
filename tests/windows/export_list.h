// Exports as the build generated them from the declaring header itself:
// name, argument count (32-bit words on x86), who pops the arguments, and
// the entry a second name belongs to.
#ifndef QBO_TESTS_WINDOWS_EXPORT_LIST_H_
#define QBO_TESTS_WINDOWS_EXPORT_LIST_H_

#include <string>
#include <vector>

namespace qbo::test {

struct ExportInfo {
  std::string name;
  int arg_count;
  bool callee_pops;
  std::string alias_of;  // empty for a first name
};

#define QBO_EXPORT(name, args, callee, alias) {name, args, callee != 0, alias},

// The library's exports.
inline const std::vector<ExportInfo>& ExportList() {
  static const std::vector<ExportInfo> list = {
#include "QuillonBufferOperaU_exports.inc"
  };
  return list;
}

// The fixture DLL's exports (tests/windows/fixture_exports.h).
inline const std::vector<ExportInfo>& FixtureExportList() {
  static const std::vector<ExportInfo> list = {
#include "qbo_exports_fixture_exports.inc"
  };
  return list;
}

#undef QBO_EXPORT

}  // namespace qbo::test

#endif  // QBO_TESTS_WINDOWS_EXPORT_LIST_H_
