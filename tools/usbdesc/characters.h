// What the characters of a text are. A text is bytes: ASCII, and UTF-8 where it is allowed.
#pragma once

#include <string_view>

#include <standalone_suite/suite_runtime/utf8.h>
#include <usb_support/text/utf8.h>

namespace usb_support::usbdesc {

using standalone::Utf8Length;

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

}  // namespace usb_support::usbdesc
