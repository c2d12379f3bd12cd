# Builds an outside program with pkg-config.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

consume_by_pkg_config(pkg_config "${PREFIX}" "${PREFIX}/bin;${PREFIX}/lib")
