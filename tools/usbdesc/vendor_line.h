// The vendor's name beside idVendor.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

namespace usb_support::usbdesc {

/// The names of vendors in the list in the folder of GetUsbifJsonFolderPathName. The list is read
/// once for each vendor ID, as GetVendorName reads it anew at every call. Nothing is ever moved: the
/// list in that folder is all that is looked at, where GetVendorName alone would first fetch one
/// from the current folder.
class VendorNames {
 public:
  /// The file that the names are looked up in; it need not be there.
  static std::filesystem::path ListPath();

  /// Logs "// idVendor 0x1209: NAME", or in place of the name that it is not in the list, or that
  /// there is no list in the folder. What is wrong with a list is in the log, as GetVendorName
  /// reports it.
  void Log(std::uint16_t vendor);

 private:
  std::map<std::uint16_t, std::string> answers_;
};

}  // namespace usb_support::usbdesc
