# Runs the invariance program at every QBO_CPU level and fails when any
# level's digests differ from the reference level's.
set(levels c sse2 avx2)
set(reference "")
foreach(level IN LISTS levels)
  execute_process(COMMAND ${CMAKE_COMMAND} -E env QBO_CPU=${level} ${EMULATOR} ${PROGRAM}
                          --calls 400
                  OUTPUT_VARIABLE out RESULT_VARIABLE rc)
  if(NOT rc EQUAL 0)
    message(FATAL_ERROR "invariance program failed at QBO_CPU=${level} (${rc})")
  endif()
  if(reference STREQUAL "")
    set(reference "${out}")
  elseif(NOT out STREQUAL reference)
    string(REPLACE "\n" ";" ref_lines "${reference}")
    string(REPLACE "\n" ";" out_lines "${out}")
    foreach(line IN LISTS out_lines)
      if(NOT line IN_LIST ref_lines)
        message(SEND_ERROR "QBO_CPU=${level} differs from QBO_CPU=c: ${line}")
      endif()
    endforeach()
    message(FATAL_ERROR "digests differ between levels")
  endif()
endforeach()
