# The stand-in's tests. USB_SUPPORT_STANDALONE_TESTS are built into one program that links usb_support::suite_runtime.

file(GLOB USB_SUPPORT_STANDALONE_TESTS CONFIGURE_DEPENDS
  ${CMAKE_CURRENT_LIST_DIR}/base_support/*_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/*_test.cpp)
list(APPEND USB_SUPPORT_STANDALONE_TESTS ${UsbSupport_SOURCE_DIR}/tests/support/allocation_counter.cpp)

if(WIN32)
  list(APPEND USB_SUPPORT_STANDALONE_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/platform/host_windows_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/platform/scoped_environment_variable_windows.cpp)
else()
  list(APPEND USB_SUPPORT_STANDALONE_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/platform/host_posix_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/platform/scoped_environment_variable_posix.cpp)
endif()
