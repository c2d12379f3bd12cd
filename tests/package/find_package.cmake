# An outside program through find_package, and every installed header alone, with the compiler ${COMPILER}.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

if(NOT COMPILER_${COMPILER})
  message(FATAL_ERROR "The compiler ${COMPILER}++ was not found. Install it (Debian: ${COMPILER}) and configure again.")
endif()
consume_by_find_package("find_package-${COMPILER}" "${PREFIX}" "${PREFIX}/bin"
  "-DCMAKE_CXX_COMPILER=${COMPILER_${COMPILER}}" "-DCHECK_HEADERS=${PREFIX}/include")
