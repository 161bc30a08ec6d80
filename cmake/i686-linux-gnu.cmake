# 32-bit x86 Linux with the host's multilib compilers (Debian's
# g++-multilib): the code generation of the 32-bit DLL, on Linux. Test
# programs start through CMAKE_CROSSCOMPILING_EMULATOR, which the caller
# sets: "qemu-i386;-cpu;max" where the kernel runs no 32-bit code, or
# "env" where it does.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_FLAGS_INIT "-m32")
set(CMAKE_CXX_FLAGS_INIT "-m32")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-m32")
set(CMAKE_MODULE_LINKER_FLAGS_INIT "-m32")
set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
