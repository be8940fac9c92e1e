# Runs the first program of README.md and compares what it prints with what README.md shows. Lines of a message end
# with CR LF, those of README.md with LF.
cmake_policy(VERSION 3.25)
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output RESULT_VARIABLE result)
string(REPLACE "\r" "" output "${output}")
file(READ ${EXPECTED} expected)
if(NOT result EQUAL 0 OR NOT output STREQUAL expected)
    message(FATAL_ERROR "ends with ${result} and prints\n${output}")
endif()
