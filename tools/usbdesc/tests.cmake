# The program's test sources: they belong into one program that links usbdesc_core and gets the root of the
# source tree as USB_SUPPORT_SOURCE_DIR.
set(USB_SUPPORT_USBDESC_TESTS
  ${CMAKE_CURRENT_LIST_DIR}/assertions_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/captured_device_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/captured_sets_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/captures_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/characters_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/checks_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/golden_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/input_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/options_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/round_trip_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/run_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/summary_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/text_reader_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/views_property_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/views_test.cpp)

# Runs the real executable: arguments, standard streams and exit status as the system hands them over.
set(USB_SUPPORT_USBDESC_PROGRAM_TEST ${CMAKE_CURRENT_LIST_DIR}/program_test.cmake)
