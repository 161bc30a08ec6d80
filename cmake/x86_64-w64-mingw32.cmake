# Cross-compiles the library for 64-bit Windows (g++-mingw-w64-x86-64-posix).
# The shipped DLL is the 32-bit one; this build runs the same Win32 platform
# layer, loader and tests under 64-bit wine, on machines that cannot execute
# 32-bit code.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(QBO_MINGW_TRIPLET x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/qbo_mingw_common.cmake)
