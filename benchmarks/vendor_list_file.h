// A vendor list of many vendors in its own folder, for the duration of the program.
#pragma once

#include <filesystem>

#include <standalone_suite/test_support/temp_folder.h>

namespace usb_support::benchmarks {

/// Creates the folder with the list and lets the library use it; removes both at its destruction.
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
