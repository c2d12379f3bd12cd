# Runs the program as a user does. Variables: PROGRAM; EMULATOR, the command that runs a program of the target
# system, may be empty; SOURCE, the root of the source tree; WORK, a folder to write in.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")

# expect(<status> <text that standard error must match> <arguments>...): standard output goes to out.txt.
function(expect status message)
  execute_process(COMMAND ${EMULATOR} "${PROGRAM}" ${ARGN}
                  WORKING_DIRECTORY "${WORK}"
                  INPUT_FILE "${INPUT}"
                  OUTPUT_FILE "${WORK}/out.txt"
                  ERROR_VARIABLE error
                  RESULT_VARIABLE result)
  if(NOT result STREQUAL status OR NOT error MATCHES "${message}")
    message(SEND_ERROR "usbdesc ${ARGN}: status ${result}, standard error: ${error}")
  endif()
endfunction()

function(expect_same file other)
  execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${file}" "${other}" RESULT_VARIABLE different)
  if(different)
    message(SEND_ERROR "${file} and ${other} differ.")
  endif()
endfunction()

# An emulator may have things to say of its own when it runs for the first time.
execute_process(COMMAND ${EMULATOR} "${PROGRAM}" --version OUTPUT_VARIABLE version ERROR_QUIET)
if(NOT version MATCHES "^usbdesc 3\\.0\\.0\\.0\n$")
  message(SEND_ERROR "usbdesc --version: ${version}")
endif()

file(WRITE "${WORK}/empty" "")
set(INPUT "${WORK}/empty")

expect(0 "^$" --fake)
expect_same("${WORK}/out.txt" "${SOURCE}/tests/golden/usbdesc/fake.txt")
expect(0 "^$" --fake --code)
expect_same("${WORK}/out.txt" "${SOURCE}/tests/golden/usbdesc/fake-code.txt")
expect(1 "^$" --fake --tree --assert)
expect_same("${WORK}/out.txt" "${SOURCE}/tests/golden/usbdesc/tree-fake.txt")

# Neither line ends nor the old end-of-file mark 1Ah may be changed on their way in: bytes 0D 0A and 1A are
# in a run that only --input raw takes for what it is.
string(ASCII 3 13 10 2 26 raw)
file(WRITE "${WORK}/raw" "${raw}")
set(INPUT "${WORK}/raw")
expect(0 "^$" --input raw -)
file(READ "${WORK}/out.txt" listing)
if(NOT listing MATCHES "   0h:  03 0D 0A : .*   3h:  02 1A : .*, 5 bytes, valid\n$")
  message(SEND_ERROR "Standard input was changed on its way: ${listing}")
endif()

# What was saved can be read again.
file(RENAME "${WORK}/out.txt" "${WORK}/saved.txt")
set(INPUT "${WORK}/saved.txt")
expect(0 "^$" -)
file(READ "${WORK}/out.txt" again)
if(NOT again STREQUAL listing)
  message(SEND_ERROR "Saved output gives something else: ${again}")
endif()

set(INPUT "${WORK}/empty")
file(WRITE "${WORK}/a name with blanks.txt" "00 01")
expect(1 "^$" "a name with blanks.txt")
expect(2 "^usbdesc: missing: cannot be opened: No such file or directory\r?\n$" missing "a name with blanks.txt")
expect(2 "^usbdesc: no input: ")

if(EXISTS /dev/full AND NOT EMULATOR)
  execute_process(COMMAND "${PROGRAM}" --fake OUTPUT_FILE /dev/full ERROR_VARIABLE error RESULT_VARIABLE result)
  if(NOT result EQUAL 2 OR NOT error STREQUAL
     "usbdesc: The log's stream cannot be flushed: No space left on device\n")
    message(SEND_ERROR "A full disk: status ${result}, standard error: ${error}")
  endif()
  expect(2 "^usbdesc: /dev/full: the log file cannot be written: No space left on device\n$" --fake --log /dev/full)
endif()
