# `cmake --install` installs headers, libraries, programs, the CMake package UsbSupport and the pkg-config modules
# usb_support, usb_fields, usb_devices and usb_rules. No installed file names a folder of this build, so the installed
# tree can be moved as a whole.

include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/UsbSupport")
set(libraries usb_support)
if(USB_SUPPORT_STANDALONE_SUITE)
  list(APPEND libraries suite_runtime base_support)
endif()

# A library finds the other libraries in its own folder, a program finds them by the path from its own folder.
set_target_properties(${libraries} usb_fields usb_devices usb_rules PROPERTIES INSTALL_RPATH "$ORIGIN")
if(TARGET usbdesc)
  file(RELATIVE_PATH libraries_from_programs "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
  set_target_properties(usbdesc PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries_from_programs}")
  install(TARGETS usbdesc RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

install(TARGETS ${libraries} usb_fields usb_devices usb_rules EXPORT UsbSupportTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}")
install(EXPORT UsbSupportTargets NAMESPACE usb_support:: DESTINATION "${package_dir}")

if(MINGW AND USB_SUPPORT_OWN_BUILD)
  foreach(dll ${USB_SUPPORT_MINGW_RUNTIME})
    install(FILES "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/${dll}" DESTINATION "${CMAKE_INSTALL_BINDIR}")
  endforeach()
endif()

# GDB loads the script that is beside the library and is named after it.
install(FILES "${UsbSupport_SOURCE_DIR}/debugger/usb_support.natvis"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/usb_support")
get_target_property(type usb_support TYPE)
if(type STREQUAL "SHARED_LIBRARY")
  if(WIN32)
    set(beside_library "${CMAKE_INSTALL_BINDIR}")
  else()
    set(beside_library "${CMAKE_INSTALL_LIBDIR}")
  endif()
  install(FILES "${UsbSupport_SOURCE_DIR}/debugger/usb_support-gdb.py" DESTINATION "${beside_library}"
    RENAME "$<TARGET_FILE_NAME:usb_support>-gdb.py")
endif()

# A program that links a static library must also link what that library needs.
set(USB_SUPPORT_LINKS_BOOST_STACKTRACE OFF)
if(type STREQUAL "STATIC_LIBRARY" AND USB_SUPPORT_BOOST_STACKTRACE_LIBRARY)
  set(USB_SUPPORT_LINKS_BOOST_STACKTRACE ON)
endif()

configure_package_config_file("${CMAKE_CURRENT_LIST_DIR}/UsbSupportConfig.cmake.in"
  "${CMAKE_CURRENT_BINARY_DIR}/package/UsbSupportConfig.cmake"
  INSTALL_DESTINATION "${package_dir}" NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file("${CMAKE_CURRENT_BINARY_DIR}/package/UsbSupportConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${CMAKE_CURRENT_BINARY_DIR}/package/UsbSupportConfig.cmake"
  "${CMAKE_CURRENT_BINARY_DIR}/package/UsbSupportConfigVersion.cmake"
  DESTINATION "${package_dir}")

# The pkg-config module. All paths are relative to its own folder.
file(RELATIVE_PATH pc_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
file(RELATIVE_PATH pc_libdir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_LIBDIR}")
file(RELATIVE_PATH pc_includedir "${CMAKE_INSTALL_PREFIX}" "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
string(REGEX REPLACE "/$" "" pc_prefix "${pc_prefix}")
set(pc_cflags)
set(pc_libs)
foreach(library ${libraries})
  string(APPEND pc_libs " -l${library}")
  if(type STREQUAL "STATIC_LIBRARY")
    string(TOUPPER "${library}" macro)
    string(APPEND pc_cflags " -D${macro}_STATIC")
  endif()
endforeach()
if(USB_SUPPORT_LINKS_BOOST_STACKTRACE)
  get_filename_component(stacktrace "${USB_SUPPORT_BOOST_STACKTRACE_LIBRARY}" NAME_WE)
  string(REGEX REPLACE "^lib" "-l" stacktrace "${stacktrace}")
  string(APPEND pc_libs " ${stacktrace}")
elseif(type STREQUAL "STATIC_LIBRARY" AND TARGET usb_support_boost_headers)
  if(WIN32)
    string(APPEND pc_libs " -ldbgeng -lole32")
  elseif(CMAKE_DL_LIBS)
    string(APPEND pc_libs " -l${CMAKE_DL_LIBS}")
  endif()
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/usb_support.pc.in"
  "${CMAKE_CURRENT_BINARY_DIR}/package/usb_support.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/package/usb_support.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# usb_fields needs no other library.
set(pc_cflags)
if(type STREQUAL "STATIC_LIBRARY")
  set(pc_cflags " -DUSB_FIELDS_STATIC")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/usb_fields.pc.in"
  "${CMAKE_CURRENT_BINARY_DIR}/package/usb_fields.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/package/usb_fields.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# usb_devices needs only the libraries that read some of its inputs.
set(pc_cflags)
set(pc_libs " -lusb_devices")
if(type STREQUAL "STATIC_LIBRARY")
  set(pc_cflags " -DUSB_DEVICES_STATIC")
  foreach(library ${USB_DEVICES_NEEDS})
    string(APPEND pc_libs " -l${library}")
  endforeach()
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/usb_devices.pc.in"
  "${CMAKE_CURRENT_BINARY_DIR}/package/usb_devices.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/package/usb_devices.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# usb_rules needs usb_fields and usb_support.
set(pc_cflags)
if(type STREQUAL "STATIC_LIBRARY")
  set(pc_cflags " -DUSB_RULES_STATIC")
endif()
configure_file("${CMAKE_CURRENT_LIST_DIR}/usb_rules.pc.in"
  "${CMAKE_CURRENT_BINARY_DIR}/package/usb_rules.pc" @ONLY)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/package/usb_rules.pc"
  DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
