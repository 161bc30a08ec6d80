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
# *_sse2.cc, *_ssse3.cc, *_sse41.cc, *_avx2.cc. Only those files get the
# flags, so baseline code never picks up an instruction the CPU may lack.
function(qbo_apply_isa_flags sources)
  foreach(src IN LISTS sources)
    if(src MATCHES "_avx2\\.cc$")
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
