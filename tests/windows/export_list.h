// The header's exports as the build generated them from the header itself:
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

inline const std::vector<ExportInfo>& ExportList() {
  static const std::vector<ExportInfo> list = {
#define QBO_EXPORT(name, args, callee, alias) {name, args, callee != 0, alias},
#include "qbo_export_list.inc"
#undef QBO_EXPORT
  };
  return list;
}

}  // namespace qbo::test

#endif  // QBO_TESTS_WINDOWS_EXPORT_LIST_H_
