# The library's test sources. Each test is beside the code that it tests, except the property tests in tests/property.
file(GLOB_RECURSE USB_SUPPORT_TESTS CONFIGURE_DEPENDS
  "${CMAKE_CURRENT_LIST_DIR}/*_test.cpp"
  "${UsbSupport_SOURCE_DIR}/tests/property/*_test.cpp")
list(APPEND USB_SUPPORT_TESTS "${UsbSupport_SOURCE_DIR}/tests/support/allocation_counter.cpp")

# These sources are also compiled into the tests, because the shared library does not export their functions.
if(WIN32)
  list(APPEND USB_SUPPORT_TESTS "${CMAKE_CURRENT_LIST_DIR}/platform/files_windows.cpp")
else()
  list(APPEND USB_SUPPORT_TESTS "${CMAKE_CURRENT_LIST_DIR}/platform/files_posix.cpp")
endif()
