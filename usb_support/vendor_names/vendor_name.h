// Looks up the name of a USB vendor in the list that the USB-IF publishes and that the operator has
// saved as "usbif.json".
//
// The list lies in the folder that GetUsbifJsonFolderPathName() names; one that was saved in the
// current directory is moved there. The file is read and parsed anew at every call, and nothing is
// kept. Whatever is wrong with the file or with an entry is in the log, in words that tell the
// operator what to do; a bad entry is skipped.
#pragma once

#include <usb_support/platform/export.h>
#include <usb_support/status/return_code.h>

/// Copies the name of vendor `vid` (0 to 65,535; no other value matches) to `buffer`, which holds
/// `size` bytes: the name is cut to size - 1 bytes, the rest is filled with zeros. The first entry
/// with that ID counts. RC_OPERATION_FAILED, with `buffer` as it was, when there is no list, it
/// cannot be read or no entry matches. A list of more than 1 GiB, and whatever is not a regular
/// file (a pipe, a device), is not read. Throws std::filesystem::filesystem_error when the file
/// could not be moved, and std::bad_alloc when the list does not fit into memory twice.
/// Requires: `buffer` is valid and `size` at least 1.
USB_SUPPORT_API RETURN_CODE GetVendorName(int vid, char* buffer, int size);
