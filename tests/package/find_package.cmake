# Builds outside programs with find_package, and every installed header alone, with the compiler ${COMPILER}.
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

if(NOT COMPILER_${COMPILER})
  message(FATAL_ERROR "The compiler ${COMPILER}++ was not found. Install it (Debian: ${COMPILER}) and configure again.")
endif()
consume_by_find_package("find_package-${COMPILER}" "${PREFIX}" "${PREFIX}/bin"
  "-DCMAKE_CXX_COMPILER=${COMPILER_${COMPILER}}" "-DCHECK_HEADERS=${PREFIX}/include")

# every_member.cpp uses everything that the libraries export, except private members.
set(private
  "^CDescriptorRange::(LogInvalid|The(RangeVect|String)Deleter)\\("
  "^C(Compound)?DescriptorSet<.*>::(ForgetDeviceDescriptor|TakeBytesOf)\\("
  "^CDriverEvent::Record\\("
  "^CUSBDebugCapabilities::Initialize\\("
  "^usb_devices::TrafficReader::(Ask|Finish|Keep|DeviceOf)\\("
  "^usb_support::standalone::(ConsoleSink::Print|FileSink::Check)\\(")
list(JOIN private "|" private)

# Each constructor and destructor has several symbol names, and a program may use any of them; in C++ they are one name.
function(readable variable text)
  set(file "${WORK}/find_package-${COMPILER}/names.txt")
  file(WRITE "${file}" "${text}")
  execute_process(COMMAND c++filt INPUT_FILE "${file}" OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+" names "${output}")
  set(${variable} "${names}" PARENT_SCOPE)
endfunction()

file(GLOB_RECURSE object "${WORK}/find_package-${COMPILER}/every_member.cpp.o*")
run(every_member "${NM}" --format=posix "${object}")
string(REGEX REPLACE " [^\n]*" "" output "${output}")
string(REPLACE "__imp_" "" output "${output}")
readable(used "${output}")
foreach(library usb_fields usb_devices usb_rules usb_support suite_runtime base_support)
  file(READ "${SOURCE}/tests/package/exports/${BUILD_NAME}/${library}.txt" exports)
  string(REGEX REPLACE "_ZT[ISV][^\n]*\n" "" exports "${exports}")
  readable(names "${exports}")
  list(REMOVE_ITEM names ${used})
  list(FILTER names EXCLUDE REGEX "${private}")
  list(REMOVE_DUPLICATES names)
  foreach(name ${names})
    message(SEND_ERROR "${library} exports ${name}, which tests/package/consumer/every_member.cpp does not use."
      " Add it there or, when it is private, to the list in ${CMAKE_CURRENT_LIST_FILE}.")
  endforeach()
endforeach()
