# The library's test sources; each test is beside the code that it tests.
file(GLOB USB_FIELDS_TESTS CONFIGURE_DEPENDS "${CMAKE_CURRENT_LIST_DIR}/*_test.cpp")
list(APPEND USB_FIELDS_TESTS
  "${CMAKE_CURRENT_LIST_DIR}/samples.cpp"
  "${UsbSupport_SOURCE_DIR}/tests/support/allocation_counter.cpp")
