# Compiles refused.cpp once for each of its lines "case N: message". Each case must fail with that message, except
# case 0, which must compile. Variables: COMPILER, SOURCE (the root of the source tree).
cmake_minimum_required(VERSION 3.25)

set(file "${SOURCE}/usb_fields/refused.cpp")
set(compile "${CMAKE_COMMAND}" -E env LC_ALL=C "${COMPILER}" -std=c++20 -fsyntax-only "-I${SOURCE}" "${file}")

execute_process(COMMAND ${compile} -DCASE=0 RESULT_VARIABLE result ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "The table without a mistake does not compile:\n${errors}")
endif()

file(STRINGS "${file}" cases REGEX "// case [0-9]+: ")
list(LENGTH cases count)
foreach(case ${cases})
  string(REGEX REPLACE ".*// case ([0-9]+): .*" "\\1" number "${case}")
  string(REGEX REPLACE ".*// case [0-9]+: " "" message "${case}")
  execute_process(COMMAND ${compile} "-DCASE=${number}" RESULT_VARIABLE result ERROR_VARIABLE errors)
  string(FIND "${errors}" "TableError(\"${message}" at)
  if(result EQUAL 0)
    message(SEND_ERROR "Case ${number} compiles: ${message}")
  elseif(at EQUAL -1)
    message(SEND_ERROR "Case ${number} does not fail with '${message}':\n${errors}")
  endif()
endforeach()
message("${count} wrong tables do not compile.")
