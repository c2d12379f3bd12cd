# Included by every script of this folder: the settings of the build and the functions that the scripts share.
cmake_minimum_required(VERSION 3.25)
include("${SETTINGS}")

# run(<name> <command>...): runs the command, writes its output to ${WORK}/logs/<name>.log, and its standard output also
# to the caller's variable `output`. A command that fails ends the test.
function(run name)
  set(log "${WORK}/logs/${name}.log")
  file(MAKE_DIRECTORY "${WORK}/logs")
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY "${WORK}"
                  OUTPUT_VARIABLE standard_output ERROR_VARIABLE standard_error RESULT_VARIABLE result)
  list(JOIN ARGN " " command)
  file(WRITE "${log}" "${command}\n${standard_output}\n${standard_error}")
  if(NOT result STREQUAL "0")
    message("${standard_output}\n${standard_error}")
    message(FATAL_ERROR "${name} failed (${result}): ${command}\nAll of its output: ${log}")
  endif()
  set(output "${standard_output}" PARENT_SCOPE)
endfunction()

# run_program(<name> <expected text> <folders with DLLs> <program> <arguments>...): runs a program of the
# target system; it must end with status 0 and write the expected text.
function(run_program name expected folders)
  if(CROSS)
    list(TRANSFORM folders PREPEND "Z:")
    list(JOIN folders "\\;" path)
    run("${name}" ${CMAKE_COMMAND} -E env "WINEPATH=${path}" ${EMULATOR} ${ARGN})
  else()
    list(JOIN folders ":" path)
    run("${name}" ${CMAKE_COMMAND} -E env "LD_LIBRARY_PATH=${path}" ${ARGN})
  endif()
  string(REPLACE "\r\n" "\n" output "${output}")
  if(NOT output STREQUAL expected)
    message("${name} wrote\n---\n${output}---\ninstead of\n---\n${expected}---")
    message(FATAL_ERROR "${name}: ${ARGN} did not write what it was to write (above).")
  endif()
endfunction()

# configure(<name> <source> <build> <options>...): configures a project in an empty build folder. A cross build gets the
# folder of each package from <package>_DIR, because its toolchain file looks for packages only in the target system.
function(configure name source build)
  file(REMOVE_RECURSE "${build}")
  set(options "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}")
  if(TOOLCHAIN)
    list(APPEND options "-DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}")
  else()
    list(APPEND options "-DCMAKE_CXX_COMPILER=${COMPILER_own}")
  endif()
  run("${name}" "${CMAKE_COMMAND}" -S "${source}" -B "${build}" -G "${GENERATOR}" ${options} ${ARGN})
endfunction()

function(build name folder)
  run("${name}" "${CMAKE_COMMAND}" --build "${folder}" --parallel 2)
endfunction()

if(CROSS)
  set(EXE ".exe")
else()
  set(EXE "")
endif()

# The output of tests/package/consumer/main.cpp.
set(CONSUMER_OUTPUT "${VERSION}\nInterface: Num=0, Alt=0 (HID)\n9 bytes\n")
# The output of tests/package/consumer/rules.cpp.
set(RULES_OUTPUT "usb2.config.attributes-bit7: configuration[0]+0, Configuration: bmAttributes[7] is 0, expected 1\n")
# The output of tests/package/consumer/fields.cpp.
set(FIELDS_OUTPUT "bmAttributes: Self-powered, Remote Wakeup\nbMaxPower: 500 mA\n")

# The output of tests/package/consumer/devices.cpp.
set(DEVICES_OUTPUT "hex: configuration 0 has 9 bytes\nno-such-file\n")

# consume_by_find_package(<name> <prefix> <folders with DLLs> <options>...)
function(consume_by_find_package name prefix folders)
  configure("${name}-configure" "${SOURCE}/tests/package/consumer" "${WORK}/${name}"
    "-DUsbSupport_DIR=${prefix}/lib/cmake/UsbSupport" ${ARGN})
  build("${name}-build" "${WORK}/${name}")
  run_program("${name}-run" "${CONSUMER_OUTPUT}" "${folders}" "${WORK}/${name}/consumer${EXE}")
  run_program("${name}-fields" "${FIELDS_OUTPUT}" "${folders}" "${WORK}/${name}/fields_consumer${EXE}")
  run_program("${name}-rules" "${RULES_OUTPUT}" "${folders}" "${WORK}/${name}/rules_consumer${EXE}")
  run_program("${name}-devices" "${DEVICES_OUTPUT}" "${folders}" "${WORK}/${name}/devices_consumer${EXE}")
endfunction()

# consume_by_pkg_config(<name> <prefix> <folders with DLLs> <compiler options>...)
function(consume_by_pkg_config name prefix folders)
  if(NOT PKG_CONFIG)
    message(FATAL_ERROR "pkg-config was not found. Install it (Debian: pkg-config) and configure again.")
  endif()
  set(pkg_config "${CMAKE_COMMAND}" -E env "PKG_CONFIG_LIBDIR=${prefix}/lib/pkgconfig" "${PKG_CONFIG}")
  file(MAKE_DIRECTORY "${WORK}/${name}")
  foreach(module usb_support usb_fields usb_devices usb_rules)
    run("${name}-version" ${pkg_config} --modversion ${module})
    if(NOT output STREQUAL "${VERSION}\n")
      message(FATAL_ERROR "pkg-config --modversion ${module}: ${output}")
    endif()
    run("${name}-too-old" ${pkg_config} --exists "${module} >= 3.0")
    run("${name}-flags" ${pkg_config} --cflags --libs ${module})
    separate_arguments(flags_${module} UNIX_COMMAND "${output}")
  endforeach()
  run("${name}-compile" "${COMPILER_own}" -std=c++20 -o "${WORK}/${name}/consumer${EXE}"
    "${SOURCE}/tests/package/consumer/main.cpp" ${flags_usb_support} ${ARGN})
  run_program("${name}-run" "${CONSUMER_OUTPUT}" "${folders}" "${WORK}/${name}/consumer${EXE}")
  run("${name}-compile-fields" "${COMPILER_own}" -std=c++20 -o "${WORK}/${name}/fields_consumer${EXE}"
    "${SOURCE}/tests/package/consumer/fields.cpp" ${flags_usb_fields} ${ARGN})
  run_program("${name}-fields" "${FIELDS_OUTPUT}" "${folders}" "${WORK}/${name}/fields_consumer${EXE}")
  run("${name}-compile-rules" "${COMPILER_own}" -std=c++20 -o "${WORK}/${name}/rules_consumer${EXE}"
    "${SOURCE}/tests/package/consumer/rules.cpp" ${flags_usb_rules} ${ARGN})
  run_program("${name}-rules" "${RULES_OUTPUT}" "${folders}" "${WORK}/${name}/rules_consumer${EXE}")
  run("${name}-compile-devices" "${COMPILER_own}" -std=c++20 -o "${WORK}/${name}/devices_consumer${EXE}"
    "${SOURCE}/tests/package/consumer/devices.cpp" ${flags_usb_devices} ${ARGN})
  run_program("${name}-devices" "${DEVICES_OUTPUT}" "${folders}" "${WORK}/${name}/devices_consumer${EXE}")
endfunction()
