# The library as static libraries in another project: runs the program of that project, then builds the same program
# with the libraries that the project has installed.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

set(linker_flags)
if(CROSS)
  set(linker_flags -static)
endif()
set(prefix "${WORK}/static_prefix")
configure(subdirectory-configure "${SOURCE}/tests/package/subdirectory" "${WORK}/subdirectory"
  "-DUSB_SUPPORT_SOURCE=${SOURCE}" -DCMAKE_BUILD_TYPE= -DCMAKE_UNITY_BUILD=ON "-DCMAKE_EXE_LINKER_FLAGS=${linker_flags}")
build(subdirectory-build "${WORK}/subdirectory")
run_program(subdirectory-run "${CONSUMER_OUTPUT}" "" "${WORK}/subdirectory/consumer${EXE}")

file(REMOVE_RECURSE "${prefix}")
run(subdirectory-install "${CMAKE_COMMAND}" --install "${WORK}/subdirectory" --prefix "${prefix}")
file(GLOB_RECURSE shared "${prefix}/*.dll" "${prefix}/*.so")
if(shared)
  message(FATAL_ERROR "A static build installs ${shared}.")
endif()
consume_by_find_package(static-find_package "${prefix}" "" "-DCMAKE_EXE_LINKER_FLAGS=${linker_flags}")
consume_by_pkg_config(static-pkg_config "${prefix}" "" ${linker_flags})
