# Runs the program as a user does. Variables: PROGRAM; VERSION; COMPILER, a compiler with the options of GCC, or empty;
# EMULATOR, the command that runs a program of the target system, or empty; SOURCE, the root of the source tree; WORK, a
# folder to write in.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")

# expect(<status> <regular expression for standard error> <arguments>...): standard output goes to out.txt.
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

# An emulator may print its own messages when it runs for the first time.
execute_process(COMMAND ${EMULATOR} "${PROGRAM}" --version OUTPUT_VARIABLE version ERROR_QUIET)
if(NOT version STREQUAL "usbdesc ${VERSION}\n")
  message(SEND_ERROR "usbdesc --version: ${version}")
endif()

file(WRITE "${WORK}/empty" "")
set(INPUT "${WORK}/empty")

expect(0 "^$" --fake)
expect_same("${WORK}/out.txt" "${SOURCE}/tests/golden/usbdesc/fake.txt")
expect(0 "^$" --fake --code)
expect_same("${WORK}/out.txt" "${SOURCE}/tests/golden/usbdesc/fake-code.txt")
expect(0 "^$" tree --fake)
expect_same("${WORK}/out.txt" "${SOURCE}/tests/golden/usbdesc/tree-fake.txt")

# The code for a broken run must compile.
if(COMPILER)
  file(GLOB samples "${SOURCE}/examples/captures/malformed-*.txt")
  foreach(sample ${samples})
    expect(1 "^$" --code "${sample}")
    file(READ "${WORK}/out.txt" code)
    file(WRITE "${WORK}/code.cpp" "unsigned char const run[] = {${code}};\n")
    execute_process(COMMAND ${COMPILER} -fsyntax-only "${WORK}/code.cpp" ERROR_VARIABLE error
                    RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
      message(SEND_ERROR "usbdesc --code ${sample} is not code: ${error}")
    endif()
  endforeach()
endif()

# The input must keep line ends and the old end-of-file mark 1Ah: the run contains the bytes 0D 0A and 1A, and only
# --input raw reads it correctly.
string(ASCII 3 13 10 2 26 raw)
file(WRITE "${WORK}/raw" "${raw}")
set(INPUT "${WORK}/raw")
expect(0 "^$" --input raw -)
file(READ "${WORK}/out.txt" listing)
if(NOT listing MATCHES "   0h:  03 0D 0A : .*   3h:  02 1A : .*, 5 bytes, lengths good\n$")
  message(SEND_ERROR "Standard input was changed on its way: ${listing}")
endif()

# Saved output can be read again.
file(RENAME "${WORK}/out.txt" "${WORK}/saved.txt")
set(INPUT "${WORK}/saved.txt")
expect(0 "^$" -)
file(READ "${WORK}/out.txt" again)
string(REPLACE "// listing: " "// raw: " again "${again}")
if(NOT again STREQUAL listing)
  message(SEND_ERROR "Saved output gives something else: ${again}")
endif()

set(INPUT "${WORK}/empty")
file(WRITE "${WORK}/a name with spaces.txt" "00 01")
expect(1 "^$" "a name with spaces.txt")
expect(2 "^usbdesc: missing: cannot be opened: No such file or directory\r?\n$" missing "a name with spaces.txt")
expect(2 "^usbdesc: no input: ")

# The program stops reading an endless input soon, in each form.
if(EXISTS /dev/zero AND NOT EMULATOR)
  foreach(form raw text)
    set(INPUT /dev/zero)
    expect(2 "^usbdesc: /dev/zero: [^\n]*\n$" --input ${form} /dev/zero)
    expect(2 "^usbdesc: standard input: [^\n]*\n$" --input ${form} -)
  endforeach()
  set(INPUT "${WORK}/empty")
endif()

if(EXISTS /dev/full AND NOT EMULATOR)
  execute_process(COMMAND "${PROGRAM}" --fake OUTPUT_FILE /dev/full ERROR_VARIABLE error RESULT_VARIABLE result)
  if(NOT result EQUAL 2 OR NOT error STREQUAL
     "usbdesc: standard output cannot be written: No space left on device\n")
    message(SEND_ERROR "A full disk: status ${result}, standard error: ${error}")
  endif()
  # No file that is opened later may get the file descriptor of standard output.
  foreach(arguments "--fake --log log.txt" "--help" "raw raw")
    execute_process(COMMAND sh -c "\"$0\" ${arguments} >&-" "${PROGRAM}" WORKING_DIRECTORY "${WORK}"
                    ERROR_VARIABLE error RESULT_VARIABLE result)
    if(NOT result EQUAL 2 OR NOT error STREQUAL
       "usbdesc: standard output cannot be written: Bad file descriptor\n")
      message(SEND_ERROR "usbdesc ${arguments}, closed output: status ${result}, standard error: ${error}")
    endif()
  endforeach()
  execute_process(COMMAND sh -c "\"$0\" - <&-" "${PROGRAM}" ERROR_VARIABLE error RESULT_VARIABLE result)
  if(NOT result EQUAL 2 OR NOT error STREQUAL "usbdesc: standard input: cannot be read: Bad file descriptor\n")
    message(SEND_ERROR "Closed input: status ${result}, standard error: ${error}")
  endif()
  # The message cannot be written; it must not go to the log.
  execute_process(COMMAND sh -c "\"$0\" --fake --log log.txt missing 2>&-" "${PROGRAM}"
                  WORKING_DIRECTORY "${WORK}" OUTPUT_FILE "${WORK}/out.txt" RESULT_VARIABLE result)
  file(READ "${WORK}/log.txt" log)
  if(NOT result EQUAL 2 OR log MATCHES "usbdesc:")
    message(SEND_ERROR "Closed standard error: status ${result}, log: ${log}")
  endif()
  expect(2 "^usbdesc: /dev/full: the log file cannot be written: No space left on device\n$" --fake --log /dev/full)
endif()
