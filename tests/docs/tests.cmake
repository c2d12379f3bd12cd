# The rules for every header.
add_test(NAME headers
  COMMAND "${CMAKE_COMMAND}" "-DSOURCE=${UsbSupport_SOURCE_DIR}" -P "${CMAKE_CURRENT_LIST_DIR}/headers.cmake")

# The test of the documents. It builds the shown programs with the project's compiler and the libraries of this build.
# It is left out where a program would need more than that: with sanitizers, static libraries or for other systems.
find_package(Python3 3.9 COMPONENTS Interpreter)
get_target_property(docs_library_type usb_support TYPE)
if(NOT Python3_FOUND)
  message(WARNING "Python 3 was not found: the documents are not tested.")
elseif(UNIX AND NOT CMAKE_CROSSCOMPILING AND NOT USB_SUPPORT_SANITIZE AND USB_SUPPORT_BUILD_TOOLS AND USB_SUPPORT_INSTALL
       AND docs_library_type STREQUAL "SHARED_LIBRARY")
  add_test(NAME docs
    COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_LIST_DIR}/check_docs.py"
      --build "${CMAKE_BINARY_DIR}" --bin "${CMAKE_RUNTIME_OUTPUT_DIRECTORY}" --compiler "${CMAKE_CXX_COMPILER}"
      --library "$<TARGET_FILE:usb_support>" --library "$<TARGET_FILE:suite_runtime>"
      --library "$<TARGET_FILE:base_support>" --work "${CMAKE_CURRENT_BINARY_DIR}/docs")
  add_test(NAME docs.checker
    COMMAND "${Python3_EXECUTABLE}" "${CMAKE_CURRENT_LIST_DIR}/check_docs_test.py" "${CMAKE_CXX_COMPILER}")
  set_tests_properties(docs docs.checker PROPERTIES LABELS slow TIMEOUT 600)
endif()
