// Builds a text in the caller's buffer. Internal to the library.
#pragma once

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include <usb_fields/table.h>

namespace usb_fields::detail {

/// A text that does not fit ends with "...", at the end of a whole character.
class TextWriter {
 public:
  explicit TextWriter(std::span<char> buffer) noexcept : buffer_(buffer) {}

  void Add(std::string_view text) noexcept {
    std::size_t const room = buffer_.size() - size_;
    std::size_t const count = std::min(room, text.size());
    std::copy_n(text.begin(), count, buffer_.begin() + static_cast<std::ptrdiff_t>(size_));
    size_ += count;
    isCut_ = isCut_ || count < text.size();
  }

  void Add(char c) noexcept { Add(std::string_view(&c, 1)); }

  void AddNumber(std::uint64_t number) noexcept {
    char digits[std::numeric_limits<std::uint64_t>::digits10 + 1];
    Add({digits, std::to_chars(std::begin(digits), std::end(digits), number).ptr});
  }

  /// The lowest `count` hexadecimal digits.
  void AddHex(std::uint64_t number, int count) noexcept {
    while (count-- > 0) {
      Add("0123456789ABCDEF"[number >> (4 * count) & 0xF]);
    }
  }

  bool IsEmpty() const noexcept { return size_ == 0; }
  bool IsFull() const noexcept { return isCut_; }

  std::string_view Text() noexcept {
    constexpr std::string_view kDots = "...";
    if (isCut_ && buffer_.size() >= kDots.size()) {
      std::size_t end = buffer_.size() - kDots.size();
      while (end != 0 && (static_cast<unsigned char>(buffer_[end]) & 0xC0) == 0x80) {
        --end;
      }
      std::copy(kDots.begin(), kDots.end(), buffer_.begin() + static_cast<std::ptrdiff_t>(end));
      size_ = end + kDots.size();
    }
    return {buffer_.data(), isCut_ && buffer_.size() < kDots.size() ? 0 : size_};
  }

 private:
  std::span<char> buffer_;
  std::size_t size_ = 0;
  bool isCut_ = false;
};

/// The name of a code in a sorted table, or the empty text.
inline std::string_view NameOf(std::span<Code const> codes, std::uint64_t value) noexcept {
  auto const after =
      std::upper_bound(codes.begin(), codes.end(), value,
                       [](std::uint64_t wanted, Code const& code) { return wanted < code.first; });
  if (after == codes.begin() || value > (after - 1)->last) {
    return {};
  }
  return (after - 1)->name;
}

}  // namespace usb_fields::detail
