// The few services of the base support library that reach the system: a pause and paths. Paths are
// text in UTF-8 on every system.
#pragma once

#include <cstdint>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/safe_string.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>

/// Lets the calling thread sleep for at least `microseconds`.
BASE_SUPPORT_API void SleepMicroSec(std::uint64_t microseconds);

/// `folder` and `name` joined into one path, with the platform's separator where one is needed.
/// An empty folder gives the name alone.
BASE_SUPPORT_API CSafeString AppendToPath(basic_sv_wrapper<char> const& folder,
                                          basic_sv_wrapper<char> const& name);

/// The folder in which the USB-IF vendor list file must be. A name that the system cannot convert,
/// such as one that is not UTF-8 on Windows, counts as a folder without a list.
BASE_SUPPORT_API CSafeString GetUsbifJsonFolderPathName();
