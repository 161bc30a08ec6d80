# Warnings are errors everywhere; floating point is never contracted into
# FMA so the SIMD rows and the reference rows round identically.
add_compile_options(-Wall -Wextra -Werror -Wshadow -Wno-unused-parameter -ffp-contract=off)

# Unique symbols would pin the library in memory after a host unloads it.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
  add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fno-gnu-unique>)
endif()

set(QBO_X86 OFF)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64|i[3-6]86|x86)$")
  set(QBO_X86 ON)
endif()

set(QBO_WIN_X86 OFF)
set(QBO_X86_32 OFF)
if(QBO_X86 AND CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(QBO_X86_32 ON)
  if(WIN32)
    set(QBO_WIN_X86 ON)
  endif()
  # SSE2 is the library's x86 baseline, and x87 arithmetic would carry excess
  # precision into the float rows, rounding them differently from the SIMD
  # rows. 32-bit Windows callers keep esp only 4-byte aligned, so every
  # function that needs an aligned stack slot realigns its own frame; the
  # 32-bit Linux build uses the same code generation so that it runs what
  # the DLL runs.
  add_compile_options(-msse2 -mfpmath=sse -mincoming-stack-boundary=2)
endif()
if(WIN32)
  # No runtime DLL has to travel with the library or the test programs.
  add_link_options(-static -static-libgcc -static-libstdc++)
endif()

if(QBO_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# Rows built for one instruction set carry it in their file name:
# *_sse2.cc, *_ssse3.cc, *_sse41.cc, *_avx2.cc, *_avx512.cc, *_avx512vbmi.cc. Only those
# files get the flags, so baseline code never picks up an instruction the
# CPU may lack.
# 64-bit MinGW cannot realign a frame for 64-byte spills, so the assembler
# turns the aligned vector moves of the AVX-512 rows into unaligned ones.
# AVX-512 F implies FMA (Clang drops AVX-512 under -mno-fma); the global
# -ffp-contract=off is what keeps FMA out of the arithmetic.
set(QBO_AVX512_FLAGS -mavx2 -mavx512f -mavx512bw)
# GCC 12's own AVX-512 headers seed undefined registers with self-assignments
# that its uninitialized-variable warnings report (GCC bug 105593, fixed in 13).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  list(APPEND QBO_AVX512_FLAGS -Wno-uninitialized -Wno-maybe-uninitialized)
endif()
if(WIN32)
  list(APPEND QBO_AVX512_FLAGS -Wa,-muse-unaligned-vector-move)
endif()
function(qbo_apply_isa_flags sources)
  foreach(src IN LISTS sources)
    if(src MATCHES "_avx512\\.cc$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "${QBO_AVX512_FLAGS}")
    elseif(src MATCHES "_avx512vbmi\\.cc$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "${QBO_AVX512_FLAGS};-mavx512vbmi")
    elseif(src MATCHES "_avx2\\.cc$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-mavx2;-mno-fma")
    elseif(src MATCHES "_sse41\\.cc$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-msse4.1")
    elseif(src MATCHES "_ssse3\\.cc$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-mssse3")
    elseif(src MATCHES "_sse2\\.cc$")
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-msse2")
    endif()
  endforeach()
endfunction()
