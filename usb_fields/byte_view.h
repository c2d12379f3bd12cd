// The only access to bytes that a device sent. No read goes outside the bytes that a view was made
// from.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

namespace usb_fields {

/// Untrusted bytes. A read beyond the end gives 0.
class ByteView {
 public:
  constexpr ByteView() noexcept = default;

  /// The caller owns the bytes, which must outlive the view.
  constexpr explicit ByteView(std::span<std::uint8_t const> bytes) noexcept
      : bytes_(bytes),
        words_(bytes.size() >= 8 ? bytes.size() - 7 : 0) {}

  /// The number of bytes.
  constexpr std::size_t Size() const noexcept { return bytes_.size(); }

  /// The byte at `offset`, or 0 beyond the end.
  constexpr std::uint8_t At(std::size_t offset) const noexcept {
    return offset < bytes_.size() ? bytes_[offset] : std::uint8_t{0};
  }

  /// The first `size` bytes, or all of them when there are fewer.
  constexpr ByteView First(std::size_t size) const noexcept {
    ByteView view = *this;
    view.bytes_ = bytes_.first(std::min(size, bytes_.size()));
    return view;
  }

  /// The little-endian number in the `size` bytes at `offset`; only the first 8 count.
  constexpr std::uint64_t Number(std::size_t offset, std::size_t size) const noexcept {
    std::size_t const left = bytes_.size() - std::min(offset, bytes_.size());
    return Word(offset) & MaskOf(std::min(size, left));
  }

  /// The little-endian number in the 8 bytes at `offset`. Bytes beyond the end are 0 or, in a view
  /// that First returned, bytes of the original view: mask the number with MaskOf.
  constexpr std::uint64_t Word(std::size_t offset) const noexcept {
    std::uint64_t word = 0;
    if (std::endian::native == std::endian::little && !std::is_constant_evaluated() &&
        offset < words_) {
      std::memcpy(&word, bytes_.data() + offset, sizeof(word));
      return word;
    }
    for (std::size_t i = sizeof(word); i-- != 0;) {
      word = word << 8 | At(offset + i);
    }
    return word;
  }

  /// The mask for a number of `size` bytes, at most 8.
  static constexpr std::uint64_t MaskOf(std::size_t size) noexcept {
    return kMasks[std::min<std::size_t>(size, 8)];
  }

  /// The `size` bytes at `offset`, or fewer where the view ends.
  constexpr std::span<std::uint8_t const> Slice(std::size_t offset,
                                                std::size_t size) const noexcept {
    std::size_t const from = std::min(offset, bytes_.size());
    return bytes_.subspan(from, std::min(size, bytes_.size() - from));
  }

 private:
  // The masks for numbers of 0 to 8 bytes.
  static constexpr std::uint64_t kMasks[] = {
      0x00,         0xFF,           0xFFFF,           0xFFFFFF,          0xFFFFFFFF,
      0xFFFFFFFFFF, 0xFFFFFFFFFFFF, 0xFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF};

  std::span<std::uint8_t const> bytes_;
  std::size_t words_ = 0;  // offsets with 8 readable bytes, which may end after bytes_
};

}  // namespace usb_fields
