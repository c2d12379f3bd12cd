#include <usb_devices/characters.h>

namespace usb_devices {

std::optional<std::uint64_t> NumberOf(std::string_view digits, int base, std::uint64_t most) {
  std::uint64_t value = 0;
  for (char const c : digits) {
    int const digit = HexDigit(c);
    if (digit < 0 || digit >= base) {
      return std::nullopt;
    }
    auto const next = static_cast<std::uint64_t>(digit);
    if (next > most || value > (most - next) / static_cast<std::uint64_t>(base)) {
      return std::nullopt;
    }
    value = value * static_cast<std::uint64_t>(base) + next;
  }
  return digits.empty() ? std::nullopt : std::optional(value);
}

std::string Hexadecimal(std::uint64_t number, int count) {
  std::string text;
  while (count-- > 0) {
    text += "0123456789ABCDEF"[number >> (4 * count) & 0xF];
  }
  return text;
}

std::string Hexadecimal(std::uint64_t number) {
  int count = 1;
  while (count < 16 && number >> (4 * count) != 0) {
    ++count;
  }
  return Hexadecimal(number, count);
}

std::size_t Utf8Length(std::string_view text) noexcept {
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

std::string Harmless(std::string_view text) {
  std::string harmless;
  while (!text.empty()) {
    std::size_t const length = Utf8Length(text);
    bool const isControl = text.starts_with('\xC2') && length == 2 && text.size() >= 2 &&
                           static_cast<unsigned char>(text[1]) < 0xA0;
    bool const isWhole = length != 0 && length <= text.size() && !isControl;
    if (isWhole && (length > 1 || IsPrintable(text.front()))) {
      harmless += text.substr(0, length);
      text.remove_prefix(length);
    } else {
      harmless += "\\x" + Hexadecimal(static_cast<unsigned char>(text.front()), 2);
      text.remove_prefix(1);
    }
  }
  return harmless;
}

}  // namespace usb_devices
