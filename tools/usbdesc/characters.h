// What the characters of a text are. A text is bytes: ASCII, and UTF-8 where it is allowed.
#pragma once

#include <cstddef>
#include <string_view>

namespace usb_support::usbdesc {

inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

constexpr bool IsLineEnd(char c) noexcept {
  return c == '\n' || c == '\r';
}

constexpr bool IsWhiteSpace(char c) noexcept {
  return c == ' ' || c == '\t' || c == '\f' || c == '\v' || IsLineEnd(c);
}

/// A printable ASCII character; the blank is one.
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

/// Length in bytes of the UTF-8 character at the start of `text`, also of one that the text cuts
/// off; 0 when there is none or it is not well-formed (Unicode 15, table 3-7).
std::size_t Utf8Length(std::string_view text) noexcept;

}  // namespace usb_support::usbdesc
