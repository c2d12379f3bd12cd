# Appends to the list the targets of the folder and of all folders below it that lie in the project's tree.
function(usb_support_targets_of folder list)
  get_property(targets DIRECTORY "${folder}" PROPERTY BUILDSYSTEM_TARGETS)
  get_property(folders DIRECTORY "${folder}" PROPERTY SUBDIRECTORIES)
  list(FILTER folders INCLUDE REGEX "^${UsbSupport_SOURCE_DIR}/")
  set(all ${${list}} ${targets})
  foreach(below ${folders})
    usb_support_targets_of("${below}" all)
  endforeach()
  set(${list} "${all}" PARENT_SCOPE)
endfunction()

# The targets `tidy` and `tidy_tests`: clang-tidy over every source of the build, those of tests apart, since they
# take as long as everything else. A source is looked at again only when it, a header of the project or the
# configuration has changed.
function(usb_support_add_tidy)
  find_program(USB_SUPPORT_CLANG_TIDY clang-tidy)
  if(NOT USB_SUPPORT_CLANG_TIDY)
    return()
  endif()
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS
    "${UsbSupport_SOURCE_DIR}/usb_support/*.h" "${UsbSupport_SOURCE_DIR}/usb_fields/*.h"
    "${UsbSupport_SOURCE_DIR}/usb_devices/*.h" "${UsbSupport_SOURCE_DIR}/usb_rules/*.h"
    "${UsbSupport_SOURCE_DIR}/standalone_suite/*.h" "${UsbSupport_SOURCE_DIR}/tools/*.h"
    "${UsbSupport_SOURCE_DIR}/tests/*.h")
  set(targets)
  usb_support_targets_of("${UsbSupport_SOURCE_DIR}" targets)
  foreach(target ${targets})
    get_target_property(sources ${target} SOURCES)
    get_target_property(folder ${target} SOURCE_DIR)
    foreach(source ${sources})
      get_filename_component(path "${source}" ABSOLUTE BASE_DIR "${folder}")
      if(NOT path MATCHES "\\.cpp$")
        continue()
      endif()
      file(RELATIVE_PATH name "${UsbSupport_SOURCE_DIR}" "${path}")
      set(stamp "${CMAKE_BINARY_DIR}/tidy/${name}.stamp")
      if(stamp IN_LIST stamps OR stamp IN_LIST test_stamps)
        continue()
      endif()
      get_filename_component(stamp_folder "${stamp}" DIRECTORY)
      file(MAKE_DIRECTORY "${stamp_folder}")
      set(checks)
      set(list stamps)
      if(path MATCHES "_test\\.cpp$")
        set(list test_stamps)
        set(checks "--checks=-clang-analyzer-*,-performance-unnecessary-copy-initialization")
      endif()
      add_custom_command(OUTPUT "${stamp}"
        COMMAND "${USB_SUPPORT_CLANG_TIDY}" -p "${CMAKE_BINARY_DIR}" --quiet ${checks} "${path}"
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS "${path}" ${headers} "${UsbSupport_SOURCE_DIR}/.clang-tidy"
        COMMENT "clang-tidy ${name}" VERBATIM)
      list(APPEND ${list} "${stamp}")
    endforeach()
  endforeach()
  add_custom_target(tidy DEPENDS ${stamps})
  add_custom_target(tidy_tests DEPENDS ${test_stamps})
endfunction()
