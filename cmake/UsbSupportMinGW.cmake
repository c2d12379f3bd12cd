# The compiler's own DLLs, which the project's DLLs need.
set(USB_SUPPORT_MINGW_RUNTIME libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)

# Copies the compiler's own DLLs beside the programs, so that these run on Windows and under Wine without installation.
function(usb_support_copy_mingw_runtime folder)
  file(MAKE_DIRECTORY "${folder}")
  foreach(dll ${USB_SUPPORT_MINGW_RUNTIME})
    execute_process(COMMAND "${CMAKE_CXX_COMPILER}" "-print-file-name=${dll}"
                    OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${path}")
      find_file(USB_SUPPORT_${dll} ${dll} PATH_SUFFIXES lib bin)
      set(path "${USB_SUPPORT_${dll}}")
    endif()
    if(NOT EXISTS "${path}")
      message(FATAL_ERROR "${CMAKE_CXX_COMPILER} does not say where its ${dll} is.")
    endif()
    file(COPY_FILE "${path}" "${folder}/${dll}" ONLY_IF_DIFFERENT)
  endforeach()
endfunction()
