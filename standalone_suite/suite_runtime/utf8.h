// The lengths of UTF-8 characters.
#pragma once

#include <cstddef>
#include <string_view>

namespace usb_support::standalone {

/// Length in bytes of the UTF-8 character at the start of `text`, even when the text ends inside
/// it; 0 when there is none or it is not well-formed (Unicode 15, table 3-7).
constexpr std::size_t Utf8Length(std::string_view text) noexcept {
  auto const byte = [&text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  if (text.empty()) {
    return 0;
  }
  unsigned char const lead = byte(0);
  if (lead < 0x80) {
    return 1;
  }
  std::size_t const length = lead >= 0xC2 && lead <= 0xDF   ? 2
                             : lead >= 0xE0 && lead <= 0xEF ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
  // The second byte's limits exclude overlong forms, surrogates and values above U+10FFFF.
  unsigned char const lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  unsigned char const highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  for (std::size_t at = 1; at < length && at < text.size(); ++at) {
    if (byte(at) < (at == 1 ? lowest : 0x80) || byte(at) > (at == 1 ? highest : 0xBF)) {
      return 0;
    }
  }
  return length;
}

}  // namespace usb_support::standalone
