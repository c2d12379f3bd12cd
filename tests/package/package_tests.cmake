# Tests of the files that `cmake --install` installs, and of the ways in which another project can use the library. Each
# test is a script beside this file; everything that it creates is in <build>/tests/package.

# The compilers that must accept every public header, in addition to the build's own.
set(package_compilers own)
if(NOT CMAKE_CROSSCOMPILING AND NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  find_program(USB_SUPPORT_CLANGXX clang++)
  list(APPEND package_compilers clang)
endif()
find_program(USB_SUPPORT_PKG_CONFIG NAMES pkg-config pkgconf)

if(CMAKE_CROSSCOMPILING)
  set(package_build windows)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  set(package_build linux-clang)
else()
  set(package_build linux-gcc)
endif()

set(package_work "${CMAKE_CURRENT_BINARY_DIR}/package")
file(CONFIGURE OUTPUT "${package_work}/settings.cmake" @ONLY CONTENT [[
set(SOURCE "@UsbSupport_SOURCE_DIR@")
set(VERSION "@UsbSupport_VERSION@")
set(BUILD "@CMAKE_BINARY_DIR@")
set(BUILD_TYPE "@CMAKE_BUILD_TYPE@")
set(BUILD_NAME "@package_build@")
set(WORK "@package_work@")
set(PREFIX "@package_work@/prefix")
set(CROSS "@CMAKE_CROSSCOMPILING@")
set(TOOLCHAIN "@CMAKE_TOOLCHAIN_FILE@")
set(EMULATOR "@CMAKE_CROSSCOMPILING_EMULATOR@")
set(GENERATOR "@CMAKE_GENERATOR@")
set(COMPILER_own "@CMAKE_CXX_COMPILER@")
set(COMPILER_clang "@USB_SUPPORT_CLANGXX@")
set(PKG_CONFIG "@USB_SUPPORT_PKG_CONFIG@")
set(NM "@CMAKE_NM@")
set(OBJDUMP "@CMAKE_OBJDUMP@")
set(READELF "@CMAKE_READELF@")
]])

# Adds a test that runs `script` of this folder; further arguments are its -D options.
function(usb_support_add_package_test name script)
  cmake_parse_arguments(PARSE_ARGV 2 arg "BUILDS" "" "DEFINE;PROPERTIES")
  list(TRANSFORM arg_DEFINE PREPEND "-D")
  add_test(NAME package.${name}
    COMMAND "${CMAKE_COMMAND}" "-DSETTINGS=${package_work}/settings.cmake" ${arg_DEFINE}
      -P "${UsbSupport_SOURCE_DIR}/tests/package/${script}.cmake")
  set_tests_properties(package.${name} PROPERTIES LABELS slow TIMEOUT 600 ${arg_PROPERTIES})
  if(arg_BUILDS)
    set_tests_properties(package.${name} PROPERTIES PROCESSORS 2)
  endif()
endfunction()

usb_support_add_package_test(install install PROPERTIES FIXTURES_SETUP installed_package)
set(needs_installed PROPERTIES FIXTURES_REQUIRED installed_package)
foreach(compiler ${package_compilers})
  usb_support_add_package_test(find_package.${compiler} find_package BUILDS
    DEFINE COMPILER=${compiler} ${needs_installed})
  usb_support_add_package_test(refused.${compiler} refused DEFINE COMPILER=${compiler} ${needs_installed})
endforeach()
usb_support_add_package_test(pkg_config pkg_config ${needs_installed})
usb_support_add_package_test(relocatable relocatable ${needs_installed})
usb_support_add_package_test(exported_names exported_names ${needs_installed})
if(CMAKE_CROSSCOMPILING)
  usb_support_add_package_test(imported_dlls imported_dlls ${needs_installed})
endif()
usb_support_add_package_test(subdirectory_static subdirectory BUILDS)
usb_support_add_package_test(vcpkg vcpkg)
if(NOT CMAKE_CROSSCOMPILING)
  # Nothing in this test depends on the system.
  usb_support_add_package_test(minimal_suite minimal_suite BUILDS)
endif()
if(package_build STREQUAL "linux-gcc")
  usb_support_add_package_test(demo demo BUILDS)
endif()

# Runs GDB on the installed libraries, which have no debug information, with the views that GDB loads by itself.
if(TARGET debugger_subject)
  set(debugger "${UsbSupport_SOURCE_DIR}/tests/debugger")
  add_test(NAME package.debugger
    COMMAND "${CMAKE_COMMAND}" "-DSUBJECT=$<TARGET_FILE:debugger_subject>" -DPRINTERS=
      "-DWORK=${package_work}" "-DLIBRARIES=${package_work}/prefix/lib" -P "${debugger}/debugger_test.cmake")
  set_tests_properties(package.debugger PROPERTIES TIMEOUT 120 SKIP_REGULAR_EXPRESSION "Skipped: "
    FIXTURES_REQUIRED installed_package)
endif()
