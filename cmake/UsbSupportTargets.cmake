# The settings that all targets of the project share.

function(usb_support_configure_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive- /utf-8 /Zc:__cplusplus /Zc:preprocessor)
    target_compile_definitions(${target} PRIVATE _CRT_SECURE_NO_WARNINGS)
    if(USB_SUPPORT_WERROR)
      target_compile_options(${target} PRIVATE /WX)
    endif()
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wpedantic -Wconversion -Wsign-conversion -Wshadow -Wold-style-cast
      -Wcast-qual -Wnon-virtual-dtor -Wformat=2 -Wundef -Wextra-semi)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
      # At -O3, GCC 12 wrongly warns about its own std::string.
      target_compile_options(${target} PRIVATE -Wno-restrict)
    endif()
    if(USB_SUPPORT_WERROR)
      target_compile_options(${target} PRIVATE -Werror)
    endif()
  endif()
  if(USB_SUPPORT_SANITIZE)
    set(flags -fsanitize=${USB_SUPPORT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(${target} PRIVATE ${flags})
    target_link_options(${target} PUBLIC ${flags})
  endif()
  if(USB_SUPPORT_COVERAGE)
    target_compile_options(${target} PRIVATE -fprofile-instr-generate -fcoverage-mapping)
    target_link_options(${target} PUBLIC -fprofile-instr-generate)
  endif()
endfunction()

# Adds a library of the project: `prefix` is that of its export macro (see usb_support/platform/export.h).
function(usb_support_add_library name prefix)
  add_library(${name} ${ARGN})
  add_library(usb_support::${name} ALIAS ${name})
  usb_support_configure_target(${name})
  target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${UsbSupport_SOURCE_DIR}>")
  if(NOT MSVC)
    # The text of a failed assertion then names the file without the folder of the source tree.
    target_compile_options(${name} PRIVATE "-fmacro-prefix-map=${UsbSupport_SOURCE_DIR}/=")
  endif()
  get_target_property(type ${name} TYPE)
  if(type STREQUAL "SHARED_LIBRARY")
    target_compile_definitions(${name} PRIVATE ${prefix}_BUILDING)
  else()
    target_compile_definitions(${name} PUBLIC ${prefix}_STATIC)
  endif()
  set_target_properties(${name} PROPERTIES
    VERSION "${UsbSupport_VERSION_MAJOR}.${UsbSupport_VERSION_MINOR}.${UsbSupport_VERSION_PATCH}"
    SOVERSION "${UsbSupport_VERSION_MAJOR}")
  if(WIN32 AND type STREQUAL "SHARED_LIBRARY")
    # MinGW would name it libusb_support.dll; all other Windows tools expect the name without "lib".
    set_target_properties(${name} PROPERTIES PREFIX "" IMPORT_PREFIX "")
    enable_language(RC)
    set(USB_SUPPORT_RESOURCE_NAME ${name})
    configure_file("${UsbSupport_SOURCE_DIR}/cmake/version.rc.in"
                   "${CMAKE_CURRENT_BINARY_DIR}/${name}_version.rc" @ONLY)
    target_sources(${name} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${name}_version.rc")
  endif()
endfunction()
