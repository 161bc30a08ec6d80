# Reads the public header and writes what the Windows build needs from its
# export declarations, so an export added to the header is exported, put in
# the import library and checked by the tests without further edits.
#
#   cmake -DHEADER=... -DARCH=x86|x64 -DDLL=Name.dll -DDEF=... -DIMPORT_DEF=...
#         -DLIST=... -P qbo_exports.cmake
#
# Each `QBO_API <ret> QBO_CALLEE Name(args);` is a callee-pops export; on
# 32-bit x86 its internal symbol is decorated Name@<4 x argument count>
# (every argument is a 32-bit word there). QBO_CALLER exports are caller-pops
# and plain. A declaration followed by `/* QBO_ALIAS_OF(Other) */` is a
# second name of Other's entry.
#
# DEF         module-definition file for the link: undecorated export names
#             mapped onto the internal symbols, aliases onto their target.
# IMPORT_DEF  the same exports under their decorated names, for dlltool
#             --kill-at: an import library a host links against directly.
# LIST        one QBO_EXPORT(name, argument count, callee pops, alias target)
#             row per export, for the tests.
cmake_policy(VERSION 3.24)

foreach(var HEADER ARCH DLL DEF IMPORT_DEF LIST)
  if(NOT DEFINED ${var})
    message(FATAL_ERROR "qbo_exports.cmake: ${var} is not set")
  endif()
endforeach()

file(READ ${HEADER} text)
# CMake lists split at ';' and brackets, so those go first; then alias
# markers become tokens, every other comment goes, and so do preprocessor
# lines.
string(REPLACE ";" "|" text "${text}")
string(REPLACE "[" "<" text "${text}")
string(REPLACE "]" ">" text "${text}")
string(REGEX REPLACE "/\\*[ \t]*QBO_ALIAS_OF\\(([A-Za-z0-9_]+)\\)[ \t]*\\*/" "@ALIAS:\\1@"
       text "${text}")
string(REGEX REPLACE "/\\*([^*]|\\*+[^*/])*\\*+/" " " text "${text}")
string(REGEX REPLACE "//[^\n]*" " " text "${text}")
string(REGEX REPLACE "(^|\n)[ \t]*#[^\n]*" "\\1" text "${text}")

string(REGEX MATCHALL "QBO_API[^|]*\\|([ \t\r\n]*@ALIAS:[A-Za-z0-9_]+@)?" decls "${text}")
string(REGEX MATCHALL "QBO_API" api_words "${text}")
list(LENGTH decls decl_count)
list(LENGTH api_words api_count)
if(NOT decl_count EQUAL api_count)
  message(FATAL_ERROR "${HEADER}: ${api_count} QBO_API words but ${decl_count} declarations")
endif()

set(names)
foreach(decl IN LISTS decls)
  string(REGEX REPLACE "[ \t\r\n]+" " " flat "${decl}")
  if(NOT flat MATCHES "QBO_(CALLEE|CALLER) ([A-Za-z_][A-Za-z0-9_]*) ?\\(([^)]*)\\) ?\\|")
    # Every export names its convention, and its parameters are plain
    # 32-bit words (no function-pointer types, which this reader would
    # miscount).
    string(REPLACE "|" ";" shown "${flat}")
    message(FATAL_ERROR "cannot read the export declaration `${shown}`: expected "
                        "QBO_API <type> QBO_CALLEE|QBO_CALLER Name(parameters);")
  endif()
  set(conv ${CMAKE_MATCH_1})
  set(name ${CMAKE_MATCH_2})
  string(STRIP "${CMAKE_MATCH_3}" args)
  if(args STREQUAL "" OR args STREQUAL "void")
    set(argc 0)
  else()
    string(REGEX MATCHALL "," commas "${args}")
    list(LENGTH commas argc)
    math(EXPR argc "${argc} + 1")
  endif()
  set(alias "")
  if(flat MATCHES "@ALIAS:([A-Za-z0-9_]+)@")
    set(alias ${CMAKE_MATCH_1})
  endif()
  if(name IN_LIST names)
    message(FATAL_ERROR "${name} is declared twice")
  endif()
  list(APPEND names ${name})
  set(conv_${name} ${conv})
  set(argc_${name} ${argc})
  set(alias_${name} "${alias}")
endforeach()

# The internal symbol of an entry, as the linker sees it.
function(internal_symbol name out)
  if(ARCH STREQUAL "x86" AND conv_${name} STREQUAL "CALLEE")
    math(EXPR bytes "${argc_${name}} * 4")
    set(${out} "${name}@${bytes}" PARENT_SCOPE)
  else()
    set(${out} "${name}" PARENT_SCOPE)
  endif()
endfunction()

set(def "LIBRARY \"${DLL}\"\nEXPORTS\n")
set(import_def "${def}")
set(list_text "/* Generated from ${HEADER}; do not edit. */\n")
foreach(name IN LISTS names)
  set(target ${name})
  set(alias "${alias_${name}}")
  if(alias)
    if(NOT alias IN_LIST names)
      message(FATAL_ERROR "${name} is an alias of the undeclared ${alias}")
    endif()
    if(alias_${alias})
      message(FATAL_ERROR "${name} is an alias of ${alias}, itself an alias")
    endif()
    if(NOT conv_${alias} STREQUAL conv_${name} OR NOT argc_${alias} EQUAL argc_${name})
      message(FATAL_ERROR "${name} and its target ${alias} differ in convention or arguments")
    endif()
    set(target ${alias})
  endif()
  internal_symbol(${target} symbol)
  internal_symbol(${name} decorated)
  if(symbol STREQUAL name)
    string(APPEND def "  ${name}\n")
  else()
    string(APPEND def "  ${name} = ${symbol}\n")
  endif()
  string(APPEND import_def "  ${decorated}\n")
  if(conv_${name} STREQUAL "CALLEE")
    set(callee 1)
  else()
    set(callee 0)
  endif()
  string(APPEND list_text "QBO_EXPORT(\"${name}\", ${argc_${name}}, ${callee}, \"${alias}\")\n")
endforeach()

# Written only when changed, so an untouched header rebuilds nothing.
function(write_if_changed path content)
  if(EXISTS ${path})
    file(READ ${path} old)
    if(old STREQUAL content)
      return()
    endif()
  endif()
  file(WRITE ${path} "${content}")
endfunction()
write_if_changed(${DEF} "${def}")
write_if_changed(${IMPORT_DEF} "${import_def}")
write_if_changed(${LIST} "${list_text}")
