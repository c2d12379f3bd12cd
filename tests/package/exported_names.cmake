# Compares the names that each installed library exports with exports/<build>/<library>.txt.
#
# A .so also exports, as weak symbols, the templates of the standard library that its code instantiates. Which ones
# depends on the optimiser, so those names are left out, and also CBOSDescriptorSet's private template.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

set(not_compared
  "^_Z(T[ISV]|GV|GR)?Z?N?K?(St|9__gnu_cxx)|^_ZT[IS]P?F|^_ZNK?17CBOSDescriptorSet5FirstI")

file(REMOVE_RECURSE "${WORK}/exports")
foreach(library usb_fields usb_devices usb_rules usb_support suite_runtime base_support)
  set(names)
  if(CROSS)
    run(exports-${library} "${OBJDUMP}" -p "${PREFIX}/bin/${library}.dll")
    string(REGEX REPLACE ".*Ordinal/Name Pointer\\] Table" "" output "${output}")
    string(REGEX MATCHALL "\n\t\\[ *[0-9]+\\] [^\n]+" lines "${output}")
    foreach(line ${lines})
      string(REGEX REPLACE ".*\\] (\\+base\\[ *[0-9]+\\] +[0-9a-f]+ )?" "" name "${line}")
      list(APPEND names "${name}")
    endforeach()
  else()
    run(exports-${library} "${NM}" -D --defined-only --format=posix "${PREFIX}/lib/lib${library}.so")
    string(REGEX MATCHALL "[^\n]+\n" lines "${output}")
    foreach(line ${lines})
      string(REGEX REPLACE " .*" "" name "${line}")
      list(APPEND names "${name}")
    endforeach()
    list(FILTER names EXCLUDE REGEX "${not_compared}")
  endif()
  list(REMOVE_DUPLICATES names)
  list(SORT names)
  list(JOIN names "\n" text)
  set(actual "${WORK}/exports/${BUILD_NAME}/${library}.txt")
  set(expected "${SOURCE}/tests/package/exports/${BUILD_NAME}/${library}.txt")
  file(WRITE "${actual}" "${text}\n")
  if(NOT names)
    message(SEND_ERROR "${library} exports no names.")
    continue()
  endif()
  execute_process(COMMAND "${CMAKE_COMMAND}" -E compare_files "${expected}" "${actual}"
                  RESULT_VARIABLE different ERROR_QUIET)
  if(different)
    execute_process(COMMAND diff -U0 "${expected}" "${actual}" COMMAND c++filt OUTPUT_VARIABLE diff)
    message("${diff}")
    message(SEND_ERROR "${library} does not export the names that ${expected} lists (above: - is missing, + is new)."
      " If that is meant:\n  cp ${actual} ${expected}")
  endif()
endforeach()
