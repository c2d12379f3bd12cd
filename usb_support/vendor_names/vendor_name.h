// Looks up the name of a USB vendor in the list that the USB-IF publishes and that the operator has
// saved as "usbif.json".
//
//   if (VendorLookup const vendor = FindVendorName(0x1209)) {
//     std::printf("%s\n", vendor.name.c_str());
//   } else {
//     std::printf("%s\n", VendorAnswerText(vendor.answer));
//   }
//
// The list is in the folder that GetUsbifJsonFolderPathName() names; one that was saved in the
// current directory is moved there. The file is read and parsed at every call, and nothing is kept.
// Every fault of the file or of an entry is logged, with advice to the operator; a bad entry is
// skipped. Any thread may call.
#pragma once

#include <cstdint>
#include <string>

#include <usb_support/platform/export.h>
#include <usb_support/status/return_code.h>

/// Copies the name of vendor `vid` (0 to 65,535; no other value matches) to `buffer`, which holds
/// `size` bytes: the name is cut to size - 1 bytes, the rest is filled with zeros. The first entry
/// with that ID counts. RC_OPERATION_FAILED, with `buffer` unchanged, when there is no list, it
/// cannot be read or no entry matches. A list of more than 128 MiB, or one that is not a regular file
/// (a pipe, a device), is not read. Throws std::filesystem::filesystem_error when the file could
/// not be moved, and std::bad_alloc when the list does not fit into memory twice.
/// Requires: `buffer` is valid and `size` at least 1.
USB_SUPPORT_API RETURN_CODE GetVendorName(int vid, char* buffer, int size);

namespace usb_support {

/// How a look-up ended.
enum class VendorAnswer : std::uint8_t {
  kFound,
  kNotInList,   ///< the list has no usable entry with the ID
  kNoList,      ///< there is no list
  kBrokenList,  ///< the list cannot be opened or read, is not JSON, or is not an array
};

/// The answer in words, such as "not in the list"; lives as long as the library.
USB_SUPPORT_API char const* VendorAnswerText(VendorAnswer answer) noexcept;

/// The result of a look-up.
struct [[nodiscard]] VendorLookup {
  VendorAnswer answer = VendorAnswer::kNoList;
  std::string name;  ///< whole, in UTF-8; empty unless it was found

  /// True when the name was found.
  explicit operator bool() const noexcept { return answer == VendorAnswer::kFound; }
};

/// The name of vendor `vid`, looked up and logged as GetVendorName does, with the reason when there
/// is none. Throws what GetVendorName throws.
USB_SUPPORT_API VendorLookup FindVendorName(int vid);

}  // namespace usb_support
