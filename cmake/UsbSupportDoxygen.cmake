# The target `docs` writes the reference of the public headers, which are those that are installed, to docs/html in the
# build folder. It fails when a comment has an error.
find_program(USB_SUPPORT_DOXYGEN doxygen)
if(NOT USB_SUPPORT_DOXYGEN OR CMAKE_HOST_WIN32)
  return()
endif()

set(USB_SUPPORT_REFERENCE "${CMAKE_CURRENT_BINARY_DIR}/docs")
set(headers)
foreach(target usb_fields usb_devices usb_rules usb_support suite_runtime base_support)
  if(TARGET ${target})
    get_target_property(folder ${target} SOURCE_DIR)
    get_target_property(names ${target} HEADER_SET)
    foreach(name ${names})
      get_filename_component(path "${name}" ABSOLUTE BASE_DIR "${folder}")
      list(APPEND headers "${path}")
    endforeach()
  endif()
endforeach()
list(REMOVE_DUPLICATES headers)
list(JOIN headers " \\\n                         " USB_SUPPORT_REFERENCE_HEADERS)
configure_file("${CMAKE_CURRENT_LIST_DIR}/../docs/Doxyfile.in" "${USB_SUPPORT_REFERENCE}/Doxyfile" @ONLY)
add_custom_target(docs
  COMMAND "${CMAKE_COMMAND}" -E rm -rf "${USB_SUPPORT_REFERENCE}/html"
  COMMAND "${USB_SUPPORT_DOXYGEN}" "${USB_SUPPORT_REFERENCE}/Doxyfile"
  COMMENT "Writing ${USB_SUPPORT_REFERENCE}/html/index.html" VERBATIM)
