// The header leaves the program's own choices for <windows.h> as they are. Before any other header,
// since MinGW's standard library defines NOMINMAX too.
#if defined(_WIN32)

#if defined(WIN32_LEAN_AND_MEAN) || defined(NOMINMAX)
#error "This source must not be compiled with these macros."
#endif
#define NOMINMAX

#include <usb_support/platform/overlapped.h>

#if defined(WIN32_LEAN_AND_MEAN)
#error "overlapped.h leaves WIN32_LEAN_AND_MEAN defined."
#endif
#if !defined(NOMINMAX)
#error "overlapped.h undefines the program's NOMINMAX."
#endif

#endif
