# Runs views.py in GDB on the subject and compares the output with gdb.txt. Variables: SUBJECT, the program; PRINTERS,
# GDB's script; WORK, the folder for the output. If LIBRARIES names a folder, the subject runs with the libraries there,
# and GDB may load their scripts by itself. USB_SUPPORT_UPDATE_GOLDEN=1 in the environment rewrites gdb.txt.
cmake_minimum_required(VERSION 3.25)
set(EXPECTED "${CMAKE_CURRENT_LIST_DIR}/gdb.txt")
set(OUTPUT "${WORK}/gdb.txt")

find_program(GDB gdb)
if(NOT GDB)
  message("Skipped: gdb is not installed.")
  return()
endif()

if(LIBRARIES)
  set(ENV{LD_LIBRARY_PATH} "${LIBRARIES}")
  set(auto_load "add-auto-load-safe-path ${LIBRARIES}")
else()
  set(auto_load "set auto-load python-scripts off")
endif()
execute_process(
  COMMAND "${GDB}" -nx -batch -iex "${auto_load}"
    -ex "python PRINTERS = r'''${PRINTERS}'''" -ex "source ${CMAKE_CURRENT_LIST_DIR}/views.py" "${SUBJECT}"
  OUTPUT_VARIABLE output
  ERROR_VARIABLE error
  RESULT_VARIABLE result)
if(error MATCHES "Python scripting is not supported|ptrace: Operation not permitted|Could not trace the inferior")
  message("Skipped: this gdb cannot be used: ${error}")
  return()
endif()
# GDB's own messages about breakpoints and libraries come first.
string(REGEX REPLACE "^.*The views:\n" "" output "${output}")
file(WRITE "${OUTPUT}" "${output}")
if("$ENV{USB_SUPPORT_UPDATE_GOLDEN}" STREQUAL "1")
  file(WRITE "${EXPECTED}" "${output}")
endif()
if(NOT result EQUAL 0 OR error)
  message(SEND_ERROR "gdb: status ${result}, standard error:\n${error}")
endif()
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
  message(SEND_ERROR "${OUTPUT} differs from ${EXPECTED}:\n${output}")
endif()
