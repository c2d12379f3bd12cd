// The vendor's name for idVendor.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>

namespace usb_support::usbdesc {

/// The names of vendors in the list in the folder of GetUsbifJsonFolderPathName. The list is read
/// once for each vendor ID, because GetVendorName reads it at every call. No file is ever moved:
/// only the list in that folder is used, whereas GetVendorName alone would first move one from the
/// current folder.
class VendorNames {
 public:
  /// The file in which the names are looked up; it need not exist.
  static std::filesystem::path ListPath();

  /// Logs "// idVendor 0x1209: NAME", or instead of the name that it is not in the list, or that
  /// there is no list in the folder. GetVendorName logs the faults of a list.
  void Log(std::uint16_t vendor);

 private:
  std::map<std::uint16_t, std::string> answers_;
};

}  // namespace usb_support::usbdesc
