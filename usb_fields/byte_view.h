// The one door to bytes that a device sent: no read leaves the view.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

namespace usb_fields {

/// Bytes that may say anything. What is beyond the end reads as 0.
class ByteView {
 public:
  constexpr ByteView() noexcept = default;

  /// The bytes stay the caller's.
  constexpr explicit ByteView(std::span<std::uint8_t const> bytes) noexcept
      : bytes_(bytes),
        readable_(bytes.size()) {}

  /// How many bytes there are.
  constexpr std::size_t Size() const noexcept { return bytes_.size(); }

  /// The byte at `offset`.
  constexpr std::uint8_t At(std::size_t offset) const noexcept {
    return offset < bytes_.size() ? bytes_[offset] : std::uint8_t{0};
  }

  /// The first `size` bytes, or all when there are fewer.
  constexpr ByteView First(std::size_t size) const noexcept {
    ByteView view = *this;
    view.bytes_ = bytes_.first(std::min(size, bytes_.size()));
    return view;
  }

  /// The little-endian number of the first 8 of the `size` bytes at `offset`.
  constexpr std::uint64_t Number(std::size_t offset, std::size_t size) const noexcept {
    if (std::endian::native == std::endian::little && !std::is_constant_evaluated() &&
        offset < readable_ && readable_ - offset >= 8) {
      // Eight bytes at once, and of them those that are the number's: without a branch by its size.
      std::uint64_t value = 0;
      std::memcpy(&value, bytes_.data() + offset, sizeof(value));
      std::size_t const left = bytes_.size() - std::min(offset, bytes_.size());
      return value & kMasks[std::min({size, left, std::size_t{8}})];
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
  // The bytes of a number of 0 to 8 bytes.
  static constexpr std::uint64_t kMasks[] = {
      0x00,         0xFF,           0xFFFF,           0xFFFFFF,          0xFFFFFFFF,
      0xFFFFFFFFFF, 0xFFFFFFFFFFFF, 0xFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF};

  std::span<std::uint8_t const> bytes_;
  std::size_t readable_ = 0;  // bytes that are there, of which bytes_ may be the first
};

}  // namespace usb_fields
