#include <tools/usbdesc/vendor_line.h>

#include <array>
#include <cstddef>
#include <system_error>

#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/platform.h>
#include <usb_support/suite_interfaces/system.h>
#include <usb_support/vendor_names/vendor_name.h>

namespace usb_support::usbdesc {
namespace {

constexpr char kListName[] = "usbif.json";

std::string FolderText() {
  CSafeString const folder = GetUsbifJsonFolderPathName();
  std::string const& name = folder.get();
  return name.empty() ? "the current folder" : standalone::Showable(name);
}

// The vendor's name, or why there is none.
std::string AnswerFor(std::uint16_t vid) {
  std::error_code ignored;
  if (!std::filesystem::exists(VendorNames::ListPath(), ignored)) {
    return std::string("there is no ") + kListName + " in " + FolderText();
  }
  std::array<char, 256> name{};
  if (GetVendorName(vid, name.data(), static_cast<int>(name.size())) == RC_SUCCESS) {
    return standalone::Showable(name.data());
  }
  return std::string("not found in ") + kListName + " in " + FolderText();
}

}  // namespace

std::filesystem::path VendorNames::ListPath() {
  return PathOf(AppendToPath(GetUsbifJsonFolderPathName().get(), kListName).get());
}

void VendorNames::Log(std::uint16_t vendor) {
  auto const [answer, isNew] = answers_.try_emplace(vendor);
  if (isNew) {
    answer->second = AnswerFor(vendor);
  }
  LogPlain("// idVendor " + HexText(vendor, 4) + ": " + answer->second);
}

}  // namespace usb_support::usbdesc
