# The library with a suite other than the stand-in: installs tests/minimal_suite as the package UsbSupportSuite, builds
# and installs the library with it, and runs a program that uses both.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

set(tree "${SOURCE}/tests/minimal_suite")
set(folder "${WORK}/minimal_suite")
set(suite_prefix "${folder}/suite_prefix")
set(prefix "${folder}/prefix")
set(suite "-DUsbSupportSuite_DIR=${suite_prefix}/lib/cmake/UsbSupportSuite")
file(REMOVE_RECURSE "${folder}")

configure(minimal_suite-configure "${tree}" "${folder}/suite" "-DSOURCE=${SOURCE}")
build(minimal_suite-build "${folder}/suite")
run(minimal_suite-install "${CMAKE_COMMAND}" --install "${folder}/suite" --prefix "${suite_prefix}")

configure(minimal_suite-library-configure "${SOURCE}" "${folder}/library"
  -DUSB_SUPPORT_STANDALONE_SUITE=OFF -DUSB_SUPPORT_WERROR=ON -DCMAKE_UNITY_BUILD=ON ${suite}
  -DUSB_SUPPORT_BUILD_TESTS=OFF -DUSB_SUPPORT_BUILD_TOOLS=OFF)
build(minimal_suite-library-build "${folder}/library")
run(minimal_suite-library-install "${CMAKE_COMMAND}" --install "${folder}/library" --prefix "${prefix}")
file(GLOB_RECURSE stand_in "${prefix}/*suite_runtime*" "${prefix}/*base_support*" "${prefix}/include/standalone_suite/*")
if(stand_in)
  message(FATAL_ERROR "Without the stand-in ${stand_in} is installed all the same.")
endif()

configure(minimal_suite-program-configure "${tree}/program" "${folder}/program"
  "-DUsbSupport_DIR=${prefix}/lib/cmake/UsbSupport" ${suite})
build(minimal_suite-program-build "${folder}/program")
file(READ "${tree}/program/expected.txt" expected)
run_program(minimal_suite-program "${expected}" "${prefix}/bin;${suite_prefix}/bin;${suite_prefix}/lib"
  "${folder}/program/program${EXE}")
