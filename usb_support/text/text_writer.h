// Writes text piece by piece into memory that the caller has reserved. Not installed.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace usb_support {

inline constexpr char kHexDigits[] = "0123456789ABCDEF";

/// The position after the text so far, and the end of the memory. The caller guarantees that the
/// pieces fit.
class TextWriter {
 public:
  TextWriter(char* out, std::size_t room) noexcept : out_(out), end_(out + room) {}

  char* Position() const noexcept { return out_; }
  std::size_t Room() const noexcept { return static_cast<std::size_t>(end_ - out_); }

  void Text(std::string_view text) noexcept {
    Advance(text.size());
    text.copy(out_ - text.size(), text.size());
  }

  /// A literal, whose length the compiler knows.
  template <std::size_t Size>
  void Text(char const (&literal)[Size]) noexcept {
    Advance(Size - 1);
    std::memcpy(out_ - (Size - 1), literal, Size - 1);
  }

  /// As "%u".
  void Decimal(std::uint32_t value) noexcept {
    std::size_t digits = 1;
    for (std::uint32_t rest = value; rest >= 10; rest /= 10) {
      ++digits;
    }
    Advance(digits);
    for (char* digit = out_; digits != 0; --digits) {
      *--digit = static_cast<char>('0' + value % 10);
      value /= 10;
    }
  }

  /// As "%02X" and "%04X".
  void HexByte(std::uint8_t value) noexcept {
    char const pair[] = {kHexDigits[value >> 4], kHexDigits[value & 0xF], '\0'};
    Text(pair);
  }
  void HexWord(std::uint16_t value) noexcept {
    HexByte(static_cast<std::uint8_t>(value >> 8));
    HexByte(static_cast<std::uint8_t>(value & 0xFF));
  }

 private:
  // Checks and takes the place of the next piece, which is then written before the new position.
  void Advance(std::size_t characters) noexcept {
    out_ += characters;
    assert(out_ <= end_);
  }

  char* out_;
  char* end_;
};

}  // namespace usb_support
