// The DLL's process entry on Windows.
#if defined(_WIN32)

#include <windows.h>

#include "frame/attach.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  return qbo::LibraryEntry(qbo::NativePlatform(), qbo::DefaultFramework(), instance, reason)
             ? TRUE
             : FALSE;
}

#endif  // _WIN32
