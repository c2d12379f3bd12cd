#include <tools/usbdesc/names.h>

#include <string>

namespace usb_support::usbdesc {

std::filesystem::path PathOf(std::string_view name) {
  return std::u8string(name.begin(), name.end());
}

}  // namespace usb_support::usbdesc
