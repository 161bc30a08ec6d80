# Shared part of the MinGW-w64 toolchain files; QBO_MINGW_TRIPLET names the
# target.
set(CMAKE_C_COMPILER   ${QBO_MINGW_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${QBO_MINGW_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER  ${QBO_MINGW_TRIPLET}-windres)
set(CMAKE_DLLTOOL      ${QBO_MINGW_TRIPLET}-dlltool)
set(CMAKE_OBJDUMP      ${QBO_MINGW_TRIPLET}-objdump)
set(CMAKE_FIND_ROOT_PATH /usr/${QBO_MINGW_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Test programs are started through wine; ctest and GoogleTest discovery
# both honour the emulator.
find_program(QBO_WINE NAMES wine)
if(QBO_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${QBO_WINE})
endif()
