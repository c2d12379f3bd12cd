# The program's test sources: they belong into one program that links usbdesc_core and gets the root of the
# source tree as USB_SUPPORT_SOURCE_DIR.
set(USB_SUPPORT_USBDESC_TESTS
  ${CMAKE_CURRENT_LIST_DIR}/assertions_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/captured_device_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/captured_sets_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/captures_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/characters_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/checks_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/colours_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/golden_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/input_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/manual_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/options_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/round_trip_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/run_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/summary_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/text_reader_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/vendor_line_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/views_property_test.cpp
  ${CMAKE_CURRENT_LIST_DIR}/views_test.cpp)

# A variable of the environment is set as the stand-in's tests do it.
if(WIN32)
  list(APPEND USB_SUPPORT_USBDESC_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/../../standalone_suite/platform/scoped_environment_variable_windows.cpp)
else()
  list(APPEND USB_SUPPORT_USBDESC_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/../../standalone_suite/platform/scoped_environment_variable_posix.cpp
    ${CMAKE_CURRENT_LIST_DIR}/terminal_test.cpp)
endif()

# Runs the real executable: arguments, standard streams and exit status as the system hands them over.
set(USB_SUPPORT_USBDESC_PROGRAM_TEST ${CMAKE_CURRENT_LIST_DIR}/program_test.cmake)

# Gives the generated manual page and completions to the programs that read them.
if(TARGET usbdesc_documents)
  add_test(NAME usbdesc.documents
    COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:usbdesc>" "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/usbdesc_documents"
      -P "${CMAKE_CURRENT_LIST_DIR}/documents_test.cmake")
endif()
