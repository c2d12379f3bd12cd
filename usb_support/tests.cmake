# The library's test sources; a test lies beside what it tests, a property test in tests/property.
file(GLOB_RECURSE USB_SUPPORT_TESTS CONFIGURE_DEPENDS
  "${CMAKE_CURRENT_LIST_DIR}/*_test.cpp"
  "${UsbSupport_SOURCE_DIR}/tests/property/*_test.cpp")
list(APPEND USB_SUPPORT_TESTS "${UsbSupport_SOURCE_DIR}/tests/support/allocation_counter.cpp")

# What the shared library does not export, compiled into the tests once more.
if(WIN32)
  list(APPEND USB_SUPPORT_TESTS "${CMAKE_CURRENT_LIST_DIR}/platform/files_windows.cpp")
else()
  list(APPEND USB_SUPPORT_TESTS "${CMAKE_CURRENT_LIST_DIR}/platform/files_posix.cpp")
endif()
