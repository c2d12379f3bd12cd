// The only access to untrusted bytes: a cursor that never leaves them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace usb_devices {

using Bytes = std::vector<std::uint8_t>;
using ByteSpan = std::span<std::uint8_t const>;

/// Equal in length and content.
inline bool AreEqual(ByteSpan a, ByteSpan b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

/// A place in the caller's bytes, which may have any content. Bytes beyond the end read as 0, and
/// the cursor stops at the end; IsPastEnd tells whether a read went beyond the end.
class ByteCursor {
 public:
  constexpr explicit ByteCursor(ByteSpan bytes) noexcept : bytes_(bytes) {}

  constexpr std::size_t Offset() const noexcept { return offset_; }
  constexpr std::size_t Left() const noexcept { return bytes_.size() - offset_; }

  /// True after a read or a move beyond the end.
  constexpr bool IsPastEnd() const noexcept { return isPastEnd_; }

  /// The byte `ahead` of the cursor, which stays where it is.
  constexpr std::uint8_t Peek(std::size_t ahead = 0) const noexcept {
    return ahead < Left() ? bytes_[offset_ + ahead] : std::uint8_t{0};
  }

  /// The next `size` bytes, or as many as there are.
  constexpr ByteSpan Take(std::size_t size) noexcept {
    isPastEnd_ = isPastEnd_ || size > Left();
    ByteSpan const taken = bytes_.subspan(offset_, std::min(size, Left()));
    offset_ += taken.size();
    return taken;
  }

  constexpr void Skip(std::size_t size) noexcept { Take(size); }

  constexpr std::uint8_t Byte() noexcept {
    std::uint8_t const byte = Peek();
    Skip(1);
    return byte;
  }

  /// Numbers of 2, 4 and 8 bytes, the least significant first.
  constexpr std::uint16_t Little16() noexcept { return static_cast<std::uint16_t>(Little(2)); }
  constexpr std::uint32_t Little32() noexcept { return static_cast<std::uint32_t>(Little(4)); }
  constexpr std::uint64_t Little64() noexcept { return Little(8); }

 private:
  constexpr std::uint64_t Little(std::size_t size) noexcept {
    std::uint64_t value = 0;
    for (std::size_t i = size; i-- != 0;) {
      value = value << 8 | Peek(i);
    }
    Skip(size);
    return value;
  }

  ByteSpan bytes_;
  std::size_t offset_ = 0;
  bool isPastEnd_ = false;
};

}  // namespace usb_devices
