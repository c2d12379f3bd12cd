# The stand-in's tests: USB_SUPPORT_STANDALONE_TESTS belong into one program that links
# usb_support::suite_runtime.

set(USB_SUPPORT_STANDALONE_TESTS
  ${CMAKE_CURRENT_LIST_DIR}/base_support/simple_buffer_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/base_support/sleep_recorder_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/base_support/system_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/base_support/values_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/allocation_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/app_settings_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/app_state_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/call_recorder_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/log_sinks_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/log_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/settings_file_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/settings_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/showable_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/tq_helper_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/utf8_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/suite_runtime/tq_logger_test.cpp
  ${UsbSupport_SOURCE_DIR}/tests/support/allocation_counter.cpp)

if(WIN32)
  list(APPEND USB_SUPPORT_STANDALONE_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/platform/host_windows_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/platform/scoped_environment_variable_windows.cpp)
else()
  list(APPEND USB_SUPPORT_STANDALONE_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/platform/host_posix_test.cpp
    ${CMAKE_CURRENT_LIST_DIR}/platform/scoped_environment_variable_posix.cpp)
endif()
