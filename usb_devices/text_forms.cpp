#include <usb_devices/text_forms.h>

#include <algorithm>

namespace usb_devices {
namespace {

constexpr std::string_view kForms[kTextForms] = {
    "hex",     "hex-stream", "colons",    "prefixes", "escapes", "c-array", "python", "xxd",
    "hexdump", "od",         "wireshark", "listing",  "code",    "json",    "lsusb"};

}  // namespace

std::string_view NameOf(TextForm form) noexcept {
  return kForms[static_cast<std::size_t>(form)];
}

std::optional<TextForm> TextFormOf(std::string_view name) noexcept {
  auto const found = std::find(std::begin(kForms), std::end(kForms), name);
  return found == std::end(kForms) ? std::nullopt
                                   : std::optional(static_cast<TextForm>(found - kForms));
}

TextError::TextError(std::string const& name, std::size_t line, std::size_t column,
                     std::string const& found, std::string_view expected)
    : ReadError(name, "line " + std::to_string(line) + ", column " + std::to_string(column) +
                          ": found " + found + ", expected " + std::string(expected)),
      line_(line),
      column_(column) {
}

}  // namespace usb_devices
