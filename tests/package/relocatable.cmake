# Checks that no installed file names a folder of this build, and that installed programs and libraries find each other
# by relative paths.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

file(GLOB_RECURSE files "${PREFIX}/*")
foreach(file ${files})
  foreach(folder "${SOURCE}" "${BUILD}" "${WORK}")
    file(STRINGS "${file}" found REGEX "${folder}")
    if(found)
      list(LENGTH found count)
      list(GET found 0 first)
      message(SEND_ERROR "${file} names ${folder} ${count} times, first: ${first}")
    endif()
  endforeach()
endforeach()

if(NOT CROSS)
  foreach(row "bin/usbdesc;$ORIGIN/../lib" "lib/libusb_fields.so;$ORIGIN" "lib/libusb_devices.so;$ORIGIN"
              "lib/libusb_rules.so;$ORIGIN"
              "lib/libusb_support.so;$ORIGIN" "lib/libsuite_runtime.so;$ORIGIN"
              "lib/libbase_support.so;$ORIGIN")
    list(GET row 0 file)
    list(GET row 1 wanted)
    run(runpath "${READELF}" -d "${PREFIX}/${file}")
    if(NOT output MATCHES "R(UN)?PATH\\)[^\n]*\\[([^\n]*)\\]" OR NOT CMAKE_MATCH_2 STREQUAL wanted)
      message(SEND_ERROR "${file} looks for libraries in '${CMAKE_MATCH_2}', not in '${wanted}'.")
    endif()
  endforeach()
endif()

run_program(usbdesc-run "usbdesc ${VERSION}\n" "" "${PREFIX}/bin/usbdesc${EXE}" --version)
