# Runs scripts/demo in a fresh copy of the tree. It must build the program and the libraries for Release without a
# warning, and the result must be installable.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

set(clone "${WORK}/demo")
set(prefix "${WORK}/demo_prefix")
file(REMOVE_RECURSE "${prefix}")
file(GLOB entries "${SOURCE}/*")
list(FILTER entries EXCLUDE REGEX "/build$")
file(REMOVE_RECURSE "${clone}")
file(COPY ${entries} DESTINATION "${clone}")

run(demo ${CMAKE_COMMAND} -E env CXXFLAGS=-Werror "CXX=${COMPILER_own}" "${clone}/scripts/demo")
if(NOT output MATCHES "usbdesc --fake\n.*Configuration")
  message(FATAL_ERROR "scripts/demo does not show the fake device:\n${output}")
endif()
run(demo-install "${CMAKE_COMMAND}" --install "${clone}/build/demo" --prefix "${prefix}")
run_program(demo-installed "usbdesc ${VERSION}\n" "" "${prefix}/bin/usbdesc" --version)
