# Runs PROGRAM; fails unless it succeeds and prints exactly the contents of EXPECTED.
execute_process(COMMAND "${PROGRAM}" OUTPUT_VARIABLE output RESULT_VARIABLE result)
file(READ "${EXPECTED}" expected)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${result}:\n${output}")
endif()
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} printed:\n${output}\ninstead of:\n${expected}")
endif()
