# Checks that the installed DLLs and programs import only Windows' own DLLs and DLLs that are installed beside them, and
# that each of the library's DLLs has the version resource (usb_support/status/version_test.cpp checks its contents).
include("${CMAKE_CURRENT_LIST_DIR}/common.cmake")

set(windows KERNEL32.dll msvcrt.dll)
set(windows_usb_support dbgeng.dll ole32.dll)
set(windows_usbdesc SHELL32.dll)

file(GLOB files "${PREFIX}/bin/*.dll" "${PREFIX}/bin/*.exe")
set(installed)
foreach(file ${files})
  get_filename_component(name "${file}" NAME)
  list(APPEND installed "${name}")
endforeach()
foreach(wanted usb_fields.dll usb_devices.dll usb_rules.dll usb_support.dll suite_runtime.dll
               base_support.dll usbdesc.exe
               libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  if(NOT wanted IN_LIST installed)
    message(SEND_ERROR "${wanted} is not installed in ${PREFIX}/bin.")
  endif()
endforeach()

foreach(file ${files})
  get_filename_component(name "${file}" NAME_WLE)
  run(imports-${name} "${OBJDUMP}" -p "${file}")
  string(REGEX MATCHALL "DLL Name: [^\r\n]+" imports "${output}")
  if(NOT imports)
    message(SEND_ERROR "${file} imports nothing.")
  endif()
  foreach(import ${imports})
    string(REPLACE "DLL Name: " "" import "${import}")
    if(NOT import IN_LIST windows AND NOT import IN_LIST windows_${name} AND NOT import IN_LIST installed)
      message(SEND_ERROR "${file} imports ${import}, which is neither installed beside it nor listed in"
        " ${CMAKE_CURRENT_LIST_FILE} as Windows' own.")
    endif()
  endforeach()
endforeach()

foreach(library usb_fields usb_devices usb_rules usb_support suite_runtime base_support)
  file(READ "${PREFIX}/bin/${library}.dll" bytes HEX)
  foreach(text "OriginalFilename" "${library}.dll" "ProductVersion" "${VERSION}")
    string(HEX "${text}" hex)
    string(REGEX REPLACE "(..)" "\\100" hex "${hex}")
    string(FIND "${bytes}" "${hex}" at)
    if(at EQUAL -1)
      message(SEND_ERROR "${library}.dll has no '${text}' in its version resource.")
    endif()
  endforeach()
endforeach()
