# Runs an example as a new user does, and compares its output. Variables: PROGRAM; ARGUMENTS, a list; EMULATOR, the
# command that runs a program of the target system, or empty; EXPECTED, the file with the expected output; ACTUAL, the
# file to write the output to; STATUS, the expected exit status, 0 by default.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${EMULATOR} "${PROGRAM}" ${ARGUMENTS}
                OUTPUT_VARIABLE output
                ERROR_VARIABLE log
                RESULT_VARIABLE result)
if(NOT STATUS)
  set(STATUS 0)
endif()
if(NOT result EQUAL STATUS)
  message(FATAL_ERROR "${PROGRAM}: status ${result}, output:\n${output}${log}")
endif()
# The log goes to standard error unless the program chooses otherwise; Wine writes messages there at its first start.
string(REGEX REPLACE "wine: [^\n]*\n" "" log "${log}")
string(APPEND output "${log}")
# Standard output of the examples is in the system's text mode.
string(REPLACE "\r\n" "\n" output "${output}")
file(WRITE "${ACTUAL}" "${output}")
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${ACTUAL} and ${EXPECTED} differ.")
endif()
