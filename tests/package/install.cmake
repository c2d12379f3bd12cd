# Installs the build, then moves the installed tree, so that the other tests use a moved tree.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

file(REMOVE_RECURSE "${WORK}/staged" "${PREFIX}")
run(install "${CMAKE_COMMAND}" --install "${BUILD}" --prefix "${WORK}/staged" --strip)
file(RENAME "${WORK}/staged" "${PREFIX}")
