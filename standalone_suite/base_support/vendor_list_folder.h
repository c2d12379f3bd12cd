// Where GetUsbifJsonFolderPathName looks for the USB-IF vendor list file. The first of these
// counts:
//
//   1. the folder that SetVendorListFolder was given;
//   2. the environment variable USBIF_JSON_FOLDER, when it is set and not empty;
//   3. the current user's data folder of this product: %LOCALAPPDATA%\usb_support on Windows;
//      $XDG_DATA_HOME/usb_support, or ~/.local/share/usb_support, elsewhere.
//
// The name is a text in UTF-8 on every system. The third folder is made when it does not exist, the
// other two need not exist and are never made. When the system has no data folder either, the
// result is the empty text: the current folder. Any thread may call.
#pragma once

#include <usb_support/platform/export.h>
#include <optional>
#include <string>

namespace usb_support::standalone {

/// Sets the vendor list folder of this process, for a test or a tool; without a value the usual
/// search applies again. An empty text is the current folder.
BASE_SUPPORT_API void SetVendorListFolder(std::optional<std::string> folder);

}  // namespace usb_support::standalone
