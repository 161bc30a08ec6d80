# Cross-compiles the 32-bit Windows DLL with Debian's MinGW-w64 (package
# g++-mingw-w64-i686-posix). The posix thread model is named explicitly:
# the win32 one has no std::mutex, and it is the unsuffixed default when
# both are installed. Test programs run under wine when it is present.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(QBO_MINGW_TRIPLET i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/qbo_mingw_common.cmake)
