#include <benchmarks/vendor_list_file.h>

#include <array>
#include <cstddef>
#include <random>
#include <string>

#include <standalone_suite/base_support/vendor_list_folder.h>

namespace usb_support::benchmarks {
namespace {

// Names with the length of real company names; the same list every time.
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

}  // namespace

VendorListFile::VendorListFile(int vendors) {
  std::mt19937 engine(1);
  std::string list;
  for (int vid = 1; vid <= vendors; ++vid) {
    list += (vid == 1 ? "[\n" : ",\n") + (R"(  {"name":")" + NameOf(engine)) +
            R"(","field_vid":")" + std::to_string(vid) + R"("})";
  }
  folder_.Write("usbif.json", list + "\n]\n");
  standalone::SetVendorListFolder(folder_.Path().string());
}

VendorListFile::~VendorListFile() {
  standalone::SetVendorListFolder({});
}

std::filesystem::path VendorListFile::Path() const {
  return folder_.Path() / "usbif.json";
}

}  // namespace usb_support::benchmarks
