# The export-table generator refuses headers it would turn into a wrong
# table, naming the fault, rather than exporting something else.
#
#   cmake -DGENERATOR=cmake/qbo_exports.cmake -DWORK=<dir> -P export_generator_rejects.cmake
cmake_policy(VERSION 3.24)

# name | header text ('@' stands for ';') | words the error must contain,
# or "accept" for the control that must pass
set(cases
  "control|QBO_API int32_t QBO_CALLEE QN_A(int32_t a)@ QBO_API int32_t QBO_CALLEE QN_B(int32_t a)@ /* QBO_ALIAS_OF(QN_A) */|accept"
  "no convention|QBO_API int32_t QN_A(int32_t a)@|cannot read"
  "function pointer parameter|QBO_API int32_t QBO_CALLEE QN_A(void (*f)(int), int32_t b)@|cannot read"
  "declared twice|QBO_API int32_t QBO_CALLEE QN_A(int32_t a)@ QBO_API int32_t QBO_CALLEE QN_A(int32_t a)@|declared twice"
  "alias of nothing|QBO_API int32_t QBO_CALLEE QN_B(int32_t a)@ /* QBO_ALIAS_OF(QN_A) */|undeclared"
  "alias of an alias|QBO_API int32_t QBO_CALLEE QN_A(int32_t a)@ QBO_API int32_t QBO_CALLEE QN_B(int32_t a)@ /* QBO_ALIAS_OF(QN_A) */ QBO_API int32_t QBO_CALLEE QN_C(int32_t a)@ /* QBO_ALIAS_OF(QN_B) */|itself an alias"
  "alias with other convention|QBO_API int32_t QBO_CALLEE QN_A(int32_t a)@ QBO_API int32_t QBO_CALLER QN_B(int32_t a)@ /* QBO_ALIAS_OF(QN_A) */|differ"
  "alias with other arguments|QBO_API int32_t QBO_CALLEE QN_A(int32_t a)@ QBO_API int32_t QBO_CALLEE QN_B(int32_t a, int32_t b)@ /* QBO_ALIAS_OF(QN_A) */|differ"
)

set(failures)
file(MAKE_DIRECTORY ${WORK})
foreach(case IN LISTS cases)
  string(REPLACE "|" ";" parts "${case}")
  list(GET parts 0 name)
  list(GET parts 1 text)
  list(GET parts 2 words)
  string(REPLACE "@" ";" text "${text}")
  file(WRITE ${WORK}/header.h "${text}\n")
  execute_process(
    COMMAND ${CMAKE_COMMAND} -DHEADER=${WORK}/header.h -DARCH=x86 -DDLL=T.dll
            -DDEF=${WORK}/t.def -DIMPORT_DEF=${WORK}/t.import.def -DLIST=${WORK}/t.inc
            -P ${GENERATOR}
    RESULT_VARIABLE rc ERROR_VARIABLE err OUTPUT_QUIET)
  if(words STREQUAL "accept")
    if(NOT rc EQUAL 0)
      list(APPEND failures "${name}: rejected: ${err}")
    endif()
  elseif(rc EQUAL 0)
    list(APPEND failures "${name}: accepted")
  elseif(NOT err MATCHES "${words}")
    list(APPEND failures "${name}: rejected without saying '${words}': ${err}")
  endif()
endforeach()

if(failures)
  string(REPLACE ";" "\n  " text "${failures}")
  message(FATAL_ERROR "export generator:\n  ${text}")
endif()
list(LENGTH cases n)
message(STATUS "${n} headers read as expected")
