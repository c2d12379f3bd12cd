#include <tools/usbdesc/characters.h>
#include <tools/usbdesc/names.h>

namespace usb_support::usbdesc {

std::filesystem::path PathOf(std::string_view name) {
  return std::u8string(name.begin(), name.end());
}

std::string OneLine(std::string_view text) {
  std::string line;
  while (!text.empty()) {
    std::size_t const length = Utf8Length(text);
    if (length == 0 || length > text.size() || (length == 1 && !IsPrintable(text.front()))) {
      line += '?';
      text.remove_prefix(1);
    } else {
      line += text.substr(0, length);
      text.remove_prefix(length);
    }
  }
  return line;
}

}  // namespace usb_support::usbdesc
