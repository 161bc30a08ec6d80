# The Windows DLL: QuillonBufferOperaU.dll with exactly the header's exports
# under their undecorated names, the C/C++ runtime linked in (it imports
# system DLLs only), and an import library carrying the decorated names so a
# 32-bit host can link against it directly.

set(QBO_WIN_ARCH x64)
if(QBO_WIN_X86)
  set(QBO_WIN_ARCH x86)
endif()

set(QBO_GENERATED_DIR ${PROJECT_BINARY_DIR}/generated)
set(QBO_DEF ${QBO_GENERATED_DIR}/QuillonBufferOperaU.def)
set(QBO_IMPORT_DEF ${QBO_GENERATED_DIR}/QuillonBufferOperaU.import.def)
set(QBO_EXPORT_LIST ${QBO_GENERATED_DIR}/qbo_export_list.inc)
set(QBO_HEADER ${PROJECT_SOURCE_DIR}/include/QuillonBufferOperaU.h)
add_custom_command(
  OUTPUT ${QBO_DEF} ${QBO_IMPORT_DEF} ${QBO_EXPORT_LIST}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${QBO_GENERATED_DIR}
  COMMAND ${CMAKE_COMMAND} -DHEADER=${QBO_HEADER} -DARCH=${QBO_WIN_ARCH}
          -DDLL=QuillonBufferOperaU.dll -DDEF=${QBO_DEF} -DIMPORT_DEF=${QBO_IMPORT_DEF}
          -DLIST=${QBO_EXPORT_LIST} -P ${PROJECT_SOURCE_DIR}/cmake/qbo_exports.cmake
  DEPENDS ${QBO_HEADER} ${PROJECT_SOURCE_DIR}/cmake/qbo_exports.cmake
  COMMENT "Export table from QuillonBufferOperaU.h"
  VERBATIM)
add_custom_target(qbo_export_table DEPENDS ${QBO_DEF} ${QBO_IMPORT_DEF} ${QBO_EXPORT_LIST})

target_sources(QuillonBufferOperaU PRIVATE ${QBO_DEF})
set_target_properties(QuillonBufferOperaU PROPERTIES PREFIX "" IMPORT_PREFIX ""
                      LINK_DEPENDS ${QBO_DEF})
target_link_options(QuillonBufferOperaU PRIVATE $<$<NOT:$<CONFIG:Debug>>:-s>)

# The linker's own import library names every stdcall export without its
# @N, which a C caller of the header's prototypes cannot link against;
# replace it with one built from the decorated names.
find_program(QBO_DLLTOOL NAMES ${CMAKE_DLLTOOL} ${QBO_MINGW_TRIPLET}-dlltool dlltool REQUIRED)
set(kill_at)
if(QBO_WIN_X86)
  set(kill_at --kill-at)
endif()
add_custom_command(TARGET QuillonBufferOperaU POST_BUILD
  COMMAND ${QBO_DLLTOOL} --def ${QBO_IMPORT_DEF} --dllname QuillonBufferOperaU.dll ${kill_at}
          --output-lib $<TARGET_LINKER_FILE:QuillonBufferOperaU>
  VERBATIM)
