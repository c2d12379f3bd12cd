// A vendor list of many vendors in a folder of its own, for the time of the program.
#pragma once

#include <filesystem>

#include <standalone_suite/test_support/temp_folder.h>

namespace usb_support::benchmarks {

/// Makes the folder with the list in it and lets the library look there; removes both at its end.
/// Vendor IDs are 1 to `vendors`.
class VendorListFile {
 public:
  explicit VendorListFile(int vendors);
  VendorListFile(VendorListFile const&) = delete;
  VendorListFile& operator=(VendorListFile const&) = delete;
  ~VendorListFile();

  std::filesystem::path Path() const;

 private:
  standalone::TempFolder folder_;
};

}  // namespace usb_support::benchmarks
