# Tests the generated documents with the programs that read them: the manual page with groff, the completions with
# their shells. A document whose program is not installed is left out, with a message. Variables: PROGRAM, the program;
# WORK, a folder to write in.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}/folder")
file(WRITE "${WORK}/a capture.bin" "")
file(WRITE "${WORK}/alog.txt" "")

foreach(kind man bash zsh fish)
  execute_process(COMMAND "${PROGRAM}" --generate ${kind} OUTPUT_FILE "${WORK}/${kind}.txt"
                  ERROR_VARIABLE error RESULT_VARIABLE result)
  if(NOT result EQUAL 0 OR error)
    message(SEND_ERROR "usbdesc --generate ${kind}: status ${result}, standard error: ${error}")
  endif()
endforeach()

# run(<variable> <command>...): stores the standard output. A message or a status other than 0 is a failure.
function(run variable)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${WORK}" OUTPUT_VARIABLE output ERROR_VARIABLE error
                  RESULT_VARIABLE result)
  if(NOT result EQUAL 0 OR error)
    message(SEND_ERROR "${ARGN}: status ${result}, standard error: ${error}")
  endif()
  set(${variable} "${output}" PARENT_SCOPE)
endfunction()

function(find_or_report variable name)
  find_program(${variable} ${name})
  if(NOT ${variable})
    message(STATUS "${name} is not installed: its document was not tried.")
  endif()
endfunction()

# expect(<typed text> <offered completions> <expected completions>)
function(expect typed offered expected)
  if(NOT offered STREQUAL expected)
    message(SEND_ERROR "usbdesc ${typed}: offered\n${offered}expected\n${expected}")
  endif()
endfunction()

find_or_report(groff groff)
if(groff)
  run(page "${groff}" -ww -man -Tascii -P-c -P-b -P-o -P-u man.txt)
  foreach(text "USBDESC(1)" "usbdesc - list, show and check" "--color auto|always|never" "COMMANDS" "NO_COLOR" "EXIT STATUS" "EXAMPLES")
    string(FIND "${page}" "${text}" found)
    if(found EQUAL -1)
      message(SEND_ERROR "The manual page does not show \"${text}\":\n${page}")
    endif()
  endforeach()
endif()

find_or_report(bash bash)
if(bash)
  # The completions that bash offers for a command line whose last word is being typed.
  file(WRITE "${WORK}/offer.bash" [[
    . ./bash.txt || exit 1
    complete -p usbdesc >/dev/null || exit 1
    eval "COMP_WORDS=(usbdesc $1)"
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _usbdesc
    [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort
]])
  function(expect_bash expected typed)
    run(offered "${bash}" --norc offer.bash "${typed}")
    expect("${typed}" "${offered}" "${expected}")
  endfunction()
  expect_bash("--input\n--interfaces\n" "--in")
  expect_bash("hex\nhex-stream\nhexdump\n" "--input h")
  expect_bash("text\ntraffic\n" "--fake --input t")
  expect_bash("always\nauto\nnever\n" "--color =")
  expect_bash("raw\n" "--input = r")
  expect_bash("always\nauto\n" "--color a")
  expect_bash("a capture.bin\nalog.txt\n" "a")
  expect_bash("a capture.bin\n" "'a c'")
  expect_bash("alog.txt\n" "--log al")
  expect_bash("alog.txt\n" "--log = al")
  expect_bash("" "--verbosity ''")
  expect_bash("tree\n" "tr")
  expect_bash("a capture.bin\n" "tree 'a c'")
  expect_bash("" "-- --in")
  expect_bash("folder\n" "tree fo")
endif()

find_or_report(zsh zsh)
if(zsh)
  # The function passes its entries to _arguments, which works only during a completion.
  file(WRITE "${WORK}/offer.zsh" "_arguments() { print -rl -- \"$@\" }\n. ./zsh.txt\n")
  run(syntax "${zsh}" -f -n zsh.txt)
  run(entries "${zsh}" -f offer.zsh)
  foreach(entry "-s\n-S\n(-h --help)-h[Print help and end]\n"
          "\n--input=[The form of the files, instead of recognising it]:raw|text|folder|"
          "\n--vendor[Show the vendor's name, or why there is none]\n" "\n*:INPUT:_files\n")
    string(FIND "${entries}" "${entry}" found)
    if(found EQUAL -1)
      message(SEND_ERROR "zsh does not get \"${entry}\":\n${entries}")
    endif()
  endforeach()
endif()

find_or_report(fish fish)
if(fish)
  file(WRITE "${WORK}/offer.fish" [[
    source fish.txt
    complete -C "usbdesc $argv[1]" | string replace -r '\t.*' ''
    true
]])
  function(expect_fish expected typed)
    run(offered "${CMAKE_COMMAND}" -E env "HOME=${WORK}" "${fish}" --no-config offer.fish "${typed}")
    expect("${typed}" "${offered}" "${expected}")
  endfunction()
  expect_fish("--input\n--interfaces\n" "--in")
  expect_fish("always\nauto\nnever\n" "--color ")
  expect_fish("always\nauto\n" "--color a")
  expect_fish("alog.txt\n" "--log al")
  expect_fish("" "--verbosity ")
endif()
