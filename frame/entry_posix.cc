// The shared library's process entry on POSIX: constructor and destructor
// run the same attach and detach as DllMain does on Windows.
#if !defined(_WIN32)

#include "frame/attach.h"

namespace {

__attribute__((constructor)) void QboProcessAttach() {
  qbo::LibraryEntry(qbo::NativePlatform(), qbo::DefaultFramework(), nullptr,
                    qbo::kProcessAttach);
}

__attribute__((destructor)) void QboProcessDetach() {
  qbo::LibraryEntry(qbo::NativePlatform(), qbo::DefaultFramework(), nullptr,
                    qbo::kProcessDetach);
}

}  // namespace

#endif  // !_WIN32
