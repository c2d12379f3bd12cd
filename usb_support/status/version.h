// The version of the library, the same as the version resource of its DLL. The names are exported
// undecorated, so that a caller can find them by name at run time. Callable at any time from any
// thread.
#pragma once

#include <cstdint>

#include <usb_support/platform/export.h>

extern "C" {

/// The four numbers of the version, the most significant first.
USB_SUPPORT_API std::int32_t GetVersionMajor();
USB_SUPPORT_API std::int32_t GetVersionMinor();
USB_SUPPORT_API std::int32_t GetVersionPatch();
USB_SUPPORT_API std::int32_t GetVersionTweak();

}  // extern "C"
