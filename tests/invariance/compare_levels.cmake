# Runs the invariance program at every QBO_CPU level and fails when any
# level's digests differ from the recorded ones. The record was made by a
# build that passed the whole suite, and every build (Debug, Clang, 32-bit,
# Windows) must print it, so a digest that moves is a changed result: find
# the call with `--trace NAME`, and re-record only when the change is meant.
file(READ ${RECORDED} reference)
foreach(level c sse2 avx2 avx512 avx512vbmi)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env QBO_CPU=${level} ${EMULATOR} ${PROGRAM}
                          --calls 400
                  OUTPUT_VARIABLE out RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "invariance program failed at QBO_CPU=${level} (${rc})")
  endif()
  if(NOT out STREQUAL reference)
    string(REPLACE "\n" ";" ref_lines "${reference}")
    string(REPLACE "\n" ";" out_lines "${out}")
    foreach(line IN LISTS out_lines)
      if(NOT line IN_LIST ref_lines)
        message(SEND_ERROR "QBO_CPU=${level} differs from the record: ${line}")
      endif()
    endforeach()
    message(FATAL_ERROR "digests differ from ${RECORDED}")
  endif()
endforeach()
