// The characters of a text, and how texts from outside are shown. A text is bytes: ASCII, and UTF-8
// where it is allowed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <usb_devices/export.h>

namespace usb_devices {

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr bool IsLineEnd(char c) noexcept {
  return c == '\n' || c == '\r';
}

constexpr bool IsWhiteSpace(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\f' || c == '\v' || IsLineEnd(c);
}

/// True for a printable ASCII character, including the space.
constexpr bool IsPrintable(char c) noexcept {
  return c >= ' ' && c <= '~';
}

/// The value of a hexadecimal digit in either case; -1 for anything else.
constexpr int HexDigit(char c) noexcept {
  return c >= '0' && c <= '9'   ? c - '0'
         : c >= 'A' && c <= 'F' ? c - 'A' + 10
         : c >= 'a' && c <= 'f' ? c - 'a' + 10
                                : -1;
}

/// The value of a text that contains only digits; nothing for any other text, or for a value above
/// `most`.
USB_DEVICES_API std::optional<std::uint64_t> NumberOf(std::string_view digits, int base,
                                                      std::uint64_t most);

/// `count` hexadecimal digits of a number, in capital letters.
USB_DEVICES_API std::string Hexadecimal(std::uint64_t number, int count);

/// The same with as many digits as necessary.
USB_DEVICES_API std::string Hexadecimal(std::uint64_t number);

/// Length in bytes of the UTF-8 character at the start of `text`, even when the text ends inside
/// it; 0 when there is none or it is not well-formed (Unicode 15, table 3-7).
USB_DEVICES_API std::size_t Utf8Length(std::string_view text) noexcept;

/// A text that cannot harm a terminal: a byte that is not part of a whole printable character is
/// written as "\x1B". Control characters beyond ASCII (U+0080 to U+009F) are not printable.
USB_DEVICES_API std::string Harmless(std::string_view text);

}  // namespace usb_devices
