// The DLL's process entry on Windows. MinGW's DllMainCRTStartup runs the
// C++ static constructors first, then this.
#if defined(_WIN32)

#include <windows.h>

#include "frame/attach.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  // No exception may leave through the loader: a failed attach (out of
  // memory while searching for the modules) fails the load instead.
  try {
    return qbo::LibraryEntry(qbo::NativePlatform(), qbo::DefaultFramework(), instance, reason)
               ? TRUE
               : FALSE;
  } catch (...) {
    return reason == DLL_PROCESS_ATTACH ? FALSE : TRUE;
  }
}

#endif  // _WIN32
