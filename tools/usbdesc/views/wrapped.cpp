#include <tools/usbdesc/views/wrapped.h>

#include <algorithm>

namespace usb_support::usbdesc {

std::string Wrapped(std::string_view text, std::size_t indent, std::size_t columns) {
  std::string lines;
  std::size_t used = 0;
  while (!text.empty()) {
    std::string_view const word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(text.size(), word.size() + 1));
    if (used != 0 && used + 1 + word.size() > columns) {
      lines += '\n';
      used = 0;
    }
    lines.append(used == 0 ? indent : 1, ' ').append(word);
    used += (used == 0 ? indent : 1) + word.size();
  }
  return lines += '\n';
}

}  // namespace usb_support::usbdesc
