// Bytes for the tests.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include <usb_devices/bytes.h>
#include <usb_devices/characters.h>

namespace usb_devices::testing_support {

/// The bytes of "12 01 00".
inline Bytes FromHex(std::string_view text) {
  Bytes bytes;
  for (std::size_t at = 0; at + 1 < text.size(); ++at) {
    if (text[at] != ' ') {
      bytes.push_back(static_cast<std::uint8_t>(HexDigit(text[at]) << 4 | HexDigit(text[at + 1])));
      ++at;
    }
  }
  return bytes;
}

inline Bytes Joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (Bytes const& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

/// A descriptor of `length` bytes; those after its header count up from 1.
inline Bytes MakeDescriptor(std::uint8_t length, std::uint8_t type) {
  Bytes descriptor;
  for (std::uint8_t at = 0; at < length; ++at) {
    descriptor.push_back(at == 0 ? length : at == 1 ? type : static_cast<std::uint8_t>(at - 1));
  }
  return descriptor;
}

/// The header of a configuration that announces `total` bytes.
inline Bytes Header(std::uint8_t type, unsigned total) {
  return {
      9,    type, static_cast<std::uint8_t>(total), static_cast<std::uint8_t>(total >> 8), 0, 1, 0,
      0x80, 50};
}

/// A mouse: its device descriptor, its configuration and its HID report descriptor (HID 1.11,
/// appendix E.10).
inline constexpr std::string_view kMouseDevice =
    "12 01 10 01 00 00 00 08 FF FF 02 00 10 00 04 0E 30 01";
inline constexpr std::string_view kMouseConfiguration =
    "09 02 22 00 01 01 00 A0 32 09 04 00 00 01 03 01 02 00 09 21 11 01 00 01 22 32 00 "
    "07 05 81 03 08 00 0A";
inline constexpr std::string_view kMouseReport =
    "05 01 09 02 A1 01 09 01 A1 00 05 09 19 01 29 03 15 00 25 01 95 03 75 01 81 02 95 01 75 05 "
    "81 01 05 01 09 30 09 31 15 81 25 7F 75 08 95 02 81 06 C0 C0";

}  // namespace usb_devices::testing_support
