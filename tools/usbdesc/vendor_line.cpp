#include <tools/usbdesc/vendor_line.h>

#include <array>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include <tools/usbdesc/captured_sets.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/names.h>
#include <usb_support/suite_interfaces/system.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

bool HasVendorList() {
  CSafeString const path = AppendToPath(GetUsbifJsonFolderPathName().get(), "usbif.json");
  std::error_code error;
  return std::filesystem::exists(PathOf(path.get()), error);
}

}  // namespace

void LogVendor() {
  constexpr std::uint16_t kSize = sizeof(TQ_USB_DEVICE_DESCRIPTOR);
  Bytes const sent = DeviceUnderTest().GetDescriptor(kDeviceType, 0, kSize);
  if (sent.size() < kSize || !HasVendorList()) {
    return;
  }
  auto const descriptor = ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(RangeOver(sent).begin());
  std::array<char, 256> name{};
  if (GetVendorName(descriptor.idVendor, name.data(), static_cast<int>(name.size())) ==
      RC_SUCCESS) {
    LogPlain("// idVendor " + HexText(descriptor.idVendor, 4) + ": " + OneLine(name.data()));
  }
}

}  // namespace usb_support::usbdesc
