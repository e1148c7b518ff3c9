# run(<expected code> <command> <argument>...): ends the test when the code differs. The output is
# left in the variable `output`.
macro(run expected)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE code OUTPUT_VARIABLE output
    ERROR_VARIABLE errors)
  if(NOT code EQUAL ${expected})
    message(FATAL_ERROR "${ARGN}\nended with ${code}, not ${expected}\n${output}\n${errors}")
  endif()
endmacro()

# expect_same(<file> <file>): ends the test when the bytes differ.
function(expect_same first second)
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${first} ${second}
    RESULT_VARIABLE code)
  if(NOT code EQUAL 0)
    message(FATAL_ERROR "${first} and ${second} differ")
  endif()
endfunction()
