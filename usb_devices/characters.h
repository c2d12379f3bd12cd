// What the characters of a text are, and how texts of others are shown. A text is bytes: ASCII,
// and UTF-8 where it is allowed.
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

/// A printable ASCII character; the space is one.
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

/// The value of a text of nothing but digits; nothing when it is not such a text, or is beyond
/// `most`.
USB_DEVICES_API std::optional<std::uint64_t> NumberOf(std::string_view digits, int base,
                                                      std::uint64_t most);

/// `count` hexadecimal digits of a number, in capital letters.
USB_DEVICES_API std::string Hexadecimal(std::uint64_t number, int count);

/// The same with as many digits as it takes.
USB_DEVICES_API std::string Hexadecimal(std::uint64_t number);

/// Length in bytes of the UTF-8 character at the start of `text`, also of one that the text cuts
/// off; 0 when there is none or it is not well-formed (Unicode 15, table 3-7).
USB_DEVICES_API std::size_t Utf8Length(std::string_view text) noexcept;

/// A text that does a terminal no harm: a byte outside a whole printable character is
/// written as "\x1B". Control characters beyond ASCII (U+0080 to U+009F) are not printable.
USB_DEVICES_API std::string Harmless(std::string_view text);

}  // namespace usb_devices
