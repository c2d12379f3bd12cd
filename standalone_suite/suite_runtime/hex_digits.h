// Numbers as hexadecimal digits. Not installed.
#pragma once

#include <cstdint>
#include <string>

namespace usb_support::standalone {

inline constexpr char kHexDigits[] = "0123456789ABCDEF";

/// Appends the low `digits` digits of a number, with capital letters.
inline void AppendHex(std::string& output, std::uint32_t value, int digits) {
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    output += kHexDigits[value >> shift & 0xFU];
  }
}

}  // namespace usb_support::standalone
