# Windows-only tests, included from tests/CMakeLists.txt. Programs run under
# CMAKE_CROSSCOMPILING_EMULATOR (wine) when cross-compiling; the export
# table check runs on the build machine.

# The Win32 platform layer against the real file system, environment and
# loader.
add_executable(qbo_windows_platform_tests windows/platform_win32_test.cc)
target_link_libraries(qbo_windows_platform_tests PRIVATE qbo_test_support)
qbo_discover_tests(qbo_windows_platform_tests windows)

# A small DLL built by the same export machinery, declaring what the
# library's header may not have yet: both conventions and second names of
# each.
add_library(qbo_exports_fixture SHARED windows/fixture_exports.cc)
target_include_directories(qbo_exports_fixture PRIVATE
  ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include)
qbo_windows_exports(qbo_exports_fixture ${CMAKE_CURRENT_SOURCE_DIR}/windows/fixture_exports.h)
set_target_properties(qbo_exports_fixture PROPERTIES
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})

# The built DLL as a host sees it: loaded by name, every export looked up,
# both calling conventions, misaligned callers, and the import library.
# The program sits beside the DLL so the loader finds it at start.
set(dll_test_sources windows/dll_exports_test.cc windows/import_library_test.cc)
if(QBO_WIN_X86)
  list(APPEND dll_test_sources abi/stack_test.cc abi/stack_thunks_x86.cc)
endif()
add_executable(qbo_windows_dll_tests ${dll_test_sources})
target_include_directories(qbo_windows_dll_tests PRIVATE
  ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/include ${QBO_GENERATED_DIR})
target_link_libraries(qbo_windows_dll_tests PRIVATE
  QuillonBufferOperaU qbo_exports_fixture GTest::gtest_main)
add_dependencies(qbo_windows_dll_tests
  QuillonBufferOperaU_export_table qbo_exports_fixture_export_table)
set_target_properties(qbo_windows_dll_tests PROPERTIES
  RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
qbo_discover_tests(qbo_windows_dll_tests windows)

# The export table, read from the DLL file itself: exactly the header's
# names, undecorated, aliases at their target's address, and system DLLs
# only among the imports.
find_program(QBO_OBJDUMP NAMES ${CMAKE_OBJDUMP} ${QBO_MINGW_TRIPLET}-objdump objdump REQUIRED)
find_program(QBO_WIN_NM NAMES ${QBO_MINGW_TRIPLET}-nm nm REQUIRED)
foreach(dll QuillonBufferOperaU qbo_exports_fixture)
  add_test(NAME ${dll}_export_table
           COMMAND ${CMAKE_COMMAND} -DOBJDUMP=${QBO_OBJDUMP} -DNM=${QBO_WIN_NM}
                   -DDLL=$<TARGET_FILE:${dll}> -DIMPORT_LIB=$<TARGET_LINKER_FILE:${dll}>
                   -DLIST=${QBO_GENERATED_DIR}/${dll}_exports.inc -DARCH=${QBO_WIN_ARCH}
                   -P ${CMAKE_CURRENT_SOURCE_DIR}/windows/dll_export_table.cmake)
  set_tests_properties(${dll}_export_table PROPERTIES LABELS windows)
endforeach()

# The generator itself refuses headers it would turn into a wrong table.
add_test(NAME export_generator_rejects
         COMMAND ${CMAKE_COMMAND} -DGENERATOR=${PROJECT_SOURCE_DIR}/cmake/qbo_exports.cmake
                 -DWORK=${CMAKE_CURRENT_BINARY_DIR}/export_generator_rejects
                 -P ${CMAKE_CURRENT_SOURCE_DIR}/windows/export_generator_rejects.cmake)
set_tests_properties(export_generator_rejects PROPERTIES LABELS windows)
