// The one door to bytes that a device sent: no read leaves the view.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace usb_fields {

/// Bytes that may say anything. What is beyond the end reads as 0.
class ByteView {
 public:
  constexpr ByteView() noexcept = default;

  /// The bytes stay the caller's.
  constexpr explicit ByteView(std::span<std::uint8_t const> bytes) noexcept : bytes_(bytes) {}

  /// How many bytes there are.
  constexpr std::size_t Size() const noexcept { return bytes_.size(); }

  /// The byte at `offset`.
  constexpr std::uint8_t At(std::size_t offset) const noexcept {
    return offset < bytes_.size() ? bytes_[offset] : std::uint8_t{0};
  }

  /// The little-endian number of the first 8 of the `size` bytes at `offset`.
  constexpr std::uint64_t Number(std::size_t offset, std::size_t size) const noexcept {
    if (size == 1) {
      return At(offset);
    }
    if (size == 2) {
      return static_cast<std::uint64_t>(At(offset) | At(offset + 1) << 8);
    }
    std::uint64_t value = 0;
    for (std::size_t i = std::min<std::size_t>(size, 8); i-- != 0;) {
      value = value << 8 | At(offset + i);
    }
    return value;
  }

  /// As many of the `size` bytes from `offset` on as there are.
  constexpr std::span<std::uint8_t const> Slice(std::size_t offset,
                                                std::size_t size) const noexcept {
    std::size_t const from = std::min(offset, bytes_.size());
    return bytes_.subspan(from, std::min(size, bytes_.size() - from));
  }

 private:
  std::span<std::uint8_t const> bytes_;
};

}  // namespace usb_fields
