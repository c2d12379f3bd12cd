# The program's test sources: they belong into one program that links usbdesc_core and gets the root of the
# source tree as USB_SUPPORT_SOURCE_DIR.
file(GLOB USB_SUPPORT_USBDESC_TESTS CONFIGURE_DEPENDS
  ${CMAKE_CURRENT_LIST_DIR}/*_test.cpp ${CMAKE_CURRENT_LIST_DIR}/views/*_test.cpp)
if(WIN32)
  list(REMOVE_ITEM USB_SUPPORT_USBDESC_TESTS ${CMAKE_CURRENT_LIST_DIR}/terminal_test.cpp)
endif()

# A variable of the environment is set as the stand-in's tests do it.
if(WIN32)
  list(APPEND USB_SUPPORT_USBDESC_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/../../standalone_suite/platform/scoped_environment_variable_windows.cpp)
else()
  list(APPEND USB_SUPPORT_USBDESC_TESTS
    ${CMAKE_CURRENT_LIST_DIR}/../../standalone_suite/platform/scoped_environment_variable_posix.cpp)
endif()

# Runs the real executable: arguments, standard streams and exit status as the system hands them over.
set(USB_SUPPORT_USBDESC_PROGRAM_TEST ${CMAKE_CURRENT_LIST_DIR}/program_test.cmake)

# Gives the generated manual page and completions to the programs that read them.
if(TARGET usbdesc_documents)
  add_test(NAME usbdesc.documents
    COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:usbdesc>" "-DWORK=${CMAKE_CURRENT_BINARY_DIR}/usbdesc_documents"
      -P "${CMAKE_CURRENT_LIST_DIR}/documents_test.cmake")
endif()
