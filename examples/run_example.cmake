# Runs an example as a newcomer does. Variables: PROGRAM; ARGUMENTS, a list; EMULATOR, the command that runs a
# program of the target system, may be empty; EXPECTED, the file with what standard output must be; ACTUAL, the
# file to write it to.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${EMULATOR} "${PROGRAM}" ${ARGUMENTS}
                OUTPUT_VARIABLE output
                RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM}: status ${result}, output:\n${output}")
endif()
# The examples leave standard output in the system's text mode.
string(REPLACE "\r\n" "\n" output "${output}")
file(WRITE "${ACTUAL}" "${output}")
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${ACTUAL} and ${EXPECTED} differ.")
endif()
