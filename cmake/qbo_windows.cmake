# The Windows DLL: QuillonBufferOperaU.dll with exactly the header's exports
# under their undecorated names, the C/C++ runtime linked in (it imports
# system DLLs only), and an import library carrying the decorated names so a
# 32-bit host can link against it directly.

set(QBO_WIN_ARCH x64)
if(QBO_WIN_X86)
  set(QBO_WIN_ARCH x86)
endif()
set(QBO_GENERATED_DIR ${PROJECT_BINARY_DIR}/generated)
find_program(QBO_DLLTOOL NAMES ${CMAKE_DLLTOOL} ${QBO_MINGW_TRIPLET}-dlltool dlltool REQUIRED)

# Gives the shared library `target` the exports `header` declares: a
# generated module-definition file for the link, an import library with the
# decorated names in place of the linker's, and <target>_exports.inc (one
# QBO_EXPORT row per export) in QBO_GENERATED_DIR for tests. The export
# table follows the header at every build.
function(qbo_windows_exports target header)
  set(base ${QBO_GENERATED_DIR}/${target})
  set(def ${base}.def)
  set(import_def ${base}.import.def)
  set(list ${base}_exports.inc)
  add_custom_command(
    OUTPUT ${def} ${import_def} ${list}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${QBO_GENERATED_DIR}
    COMMAND ${CMAKE_COMMAND} -DHEADER=${header} -DARCH=${QBO_WIN_ARCH}
            -DDLL=$<TARGET_FILE_NAME:${target}> -DDEF=${def} -DIMPORT_DEF=${import_def}
            -DLIST=${list} -P ${PROJECT_SOURCE_DIR}/cmake/qbo_exports.cmake
    DEPENDS ${header} ${PROJECT_SOURCE_DIR}/cmake/qbo_exports.cmake
    COMMENT "Export table of ${target} from ${header}"
    VERBATIM)
  add_custom_target(${target}_export_table DEPENDS ${def} ${import_def} ${list})

  target_sources(${target} PRIVATE ${def})
  set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "" LINK_DEPENDS ${def})
  target_link_options(${target} PRIVATE $<$<NOT:$<CONFIG:Debug>>:-s>)

  # The linker's own import library names every stdcall export without its
  # @N, which a C caller of the header's prototypes cannot link against.
  set(kill_at)
  if(QBO_WIN_X86)
    set(kill_at --kill-at)
  endif()
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${QBO_DLLTOOL} --def ${import_def} --dllname $<TARGET_FILE_NAME:${target}> ${kill_at}
            --output-lib $<TARGET_LINKER_FILE:${target}>
    VERBATIM)
endfunction()

qbo_windows_exports(QuillonBufferOperaU ${PROJECT_SOURCE_DIR}/include/QuillonBufferOperaU.h)
