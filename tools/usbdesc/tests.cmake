# The program's test sources. They are built into one program that links usbdesc_core and gets the root of the source
# tree as USB_SUPPORT_SOURCE_DIR.
file(GLOB USB_SUPPORT_USBDESC_TESTS CONFIGURE_DEPENDS
  ${CMAKE_CURRENT_LIST_DIR}/*_test.cpp ${CMAKE_CURRENT_LIST_DIR}/views/*_test.cpp)
if(WIN32)
  list(REMOVE_ITEM USB_SUPPORT_USBDESC_TESTS ${CMAKE_CURRENT_LIST_DIR}/terminal_test.cpp)
endif()

# The tests set environment variables in the same way as the stand-in's tests.
if(WIN32)
  list(APPEND USB_SUPPORT_USBDESC_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/../../standalone_suite/platform/scoped_environment_variable_windows.cpp)
else()
  list(APPEND USB_SUPPORT_USBDESC_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/../../standalone_suite/platform/scoped_environment_variable_posix.cpp)
endif()

# Runs the real executable, to test arguments, standard streams and the exit status as the system passes them.
set(USB_SUPPORT_USBDESC_PROGRAM_TEST ${CMAKE_CURRENT_LIST_DIR}/program_test.cmake)

# Tests the generated manual page and completions with the programs that read them.
if(TARGET usbdesc_documents)
  add_test(NAME usbdesc.documents
    COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:usbdesc>" "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/usbdesc_documents"
      -P "${CMAKE_CURRENT_LIST_DIR}/documents_test.cmake")
endif()
