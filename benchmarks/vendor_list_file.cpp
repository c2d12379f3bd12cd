#include <benchmarks/vendor_list_file.h>

#include <array>
#include <cstddef>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

#include <standalone_suite/base_support/vendor_list_folder.h>

namespace usb_support::benchmarks {
namespace {

// Names as long as companies' names are; the same list every time.
std::string NameOf(std::mt19937& engine) {
  constexpr std::array<char const*, 12> kWords = {
      "Advanced",    "Micro",     "Shenzhen",     "Technology", "Electronics", "International",
      "Instruments", "Solutions", "Corporation,", "Co., Ltd.",  "GmbH & Co.",  "Inc."};
  std::string name;
  for (std::size_t words = 2 + engine() % 3; words != 0; --words) {
    name.append(name.empty() ? "" : " ").append(kWords[engine() % kWords.size()]);
  }
  return name;
}

std::filesystem::path MakeFolder() {
  std::random_device random;
  std::filesystem::path const folder =
      std::filesystem::temp_directory_path() / ("usb_support_vendors_" + std::to_string(random()));
  if (!std::filesystem::create_directory(folder)) {
    throw std::runtime_error("There is already a folder " + folder.string());
  }
  return folder;
}

}  // namespace

VendorListFile::VendorListFile(int vendors) : folder_(MakeFolder()) {
  std::mt19937 engine(1);
  std::ofstream file(Path(), std::ios::binary);
  for (int vid = 1; vid <= vendors; ++vid) {
    file << (vid == 1 ? "[\n" : ",\n") << R"(  {"name":")" << NameOf(engine) << R"(","field_vid":")"
         << vid << R"("})";
  }
  file << "\n]\n";
  file.close();
  if (!file) {
    throw std::runtime_error("The vendor list cannot be written: " + Path().string());
  }
  standalone::SetVendorListFolder(folder_.string());
}

VendorListFile::~VendorListFile() {
  standalone::SetVendorListFolder({});
  std::error_code error;
  std::filesystem::remove_all(folder_, error);
}

std::filesystem::path VendorListFile::Path() const {
  return folder_ / "usbif.json";
}

}  // namespace usb_support::benchmarks
