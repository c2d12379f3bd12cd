# 64-bit Windows with MinGW-w64 (posix threads), on a Linux host; programs run under Wine.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)  # GoogleTest needs a C compiler
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# GNU ld needs half a minute for a test program that is not optimised, LLVM's linker half a second. Debian's compiler
# does not accept -fuse-ld=lld, but it accepts specs. GNU ld links the DLLs.
find_program(USB_SUPPORT_LLD ld.lld)
if(USB_SUPPORT_LLD)
  set(CMAKE_EXE_LINKER_FLAGS_INIT "-specs=${CMAKE_CURRENT_LIST_DIR}/lld.specs -fno-use-linker-plugin")
endif()

set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Wine uses a separate prefix in the build folder: the user's Wine settings are neither used nor changed.
set(CMAKE_CROSSCOMPILING_EMULATOR
    env "WINEPREFIX=${CMAKE_BINARY_DIR}/wine" WINEDEBUG=-all "WINEDLLOVERRIDES=winedbg.exe,mscoree,mshtml=" wine)
